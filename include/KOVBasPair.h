// Two values side by side.
#pragma once

template <class A, class B>
struct KOVBasPair {
    KOVBasPair() : first(), second() {}
    KOVBasPair(A const& a, B const& b) : first(a), second(b) {}

    A first;
    B second;
};

template <class A, class B>
bool operator==(KOVBasPair<A, B> const& a, KOVBasPair<A, B> const& b) {
    return a.first == b.first && a.second == b.second;
}
template <class A, class B>
bool operator!=(KOVBasPair<A, B> const& a, KOVBasPair<A, B> const& b) {
    return !(a == b);
}
