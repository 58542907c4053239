#include "document/sets/Progressions.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace kov::sets {

namespace {

// The members first, first + stride, ... up to `last`, which need not be one.
IndexSetPtr UpTo(int64_t first, int64_t last, int64_t stride) {
    if (first > last) return IndexSet::Empty();
    int64_t const count = (last - first) / stride + 1;
    // A lone member has no stride, and what is above the highest member needs no exact one.
    int64_t const step = std::min<int64_t>(stride, std::numeric_limits<int>::max());
    return IndexSet::Strided(static_cast<int>(first), static_cast<int>(count),
                             static_cast<int>(step));
}

// The greatest common divisor g of a and b, and x with a * x = g modulo b.
struct Divisor {
    int64_t g;
    int64_t x;
};

Divisor ExtendedGcd(int64_t a, int64_t b) {
    int64_t x = 1;
    int64_t nextX = 0;
    while (b != 0) {
        int64_t const quotient = a / b;
        int64_t const rest = a - quotient * b;
        a = b;
        b = rest;
        int64_t const newX = x - quotient * nextX;
        x = nextX;
        nextX = newX;
    }
    return {a, x};
}

}  // namespace

IndexSetPtr ClippedProgression(IndexSet const& p, int from, int to) {
    int64_t const stride = p.Stride();
    int64_t const low = std::max(from, p.Lowest());
    int64_t const last = std::min(to - 1, p.Highest());
    if (low == p.Lowest() && last == p.Highest()) return p.Ascending();
    int64_t const steps = (low - p.Lowest() + stride - 1) / stride;
    return UpTo(p.Lowest() + steps * stride, last, stride);
}

IndexSetPtr CommonProgression(IndexSet const& a, IndexSet const& b) {
    int64_t const s = a.Stride();
    int64_t const t = b.Stride();
    int64_t const apart = int64_t{b.Lowest()} - a.Lowest();
    Divisor const d = ExtendedGcd(s, t);
    if (apart % d.g != 0) return IndexSet::Empty();
    // a.Lowest() + s * k is in both for k = apart / g * x modulo t / g. All factors are below 2^31
    // once reduced, so that no product leaves 64 bits.
    int64_t const period = t / d.g;
    int64_t k = (apart / d.g % period) * (d.x % period) % period;
    if (k < 0) k += period;
    int64_t const meeting = a.Lowest() + s * k;
    int64_t const stride = s * period;
    int64_t const low = std::max(a.Lowest(), b.Lowest());
    int64_t const last = std::min(a.Highest(), b.Highest());
    // The first meeting at or above `low`: `meeting` is the first from a.Lowest() on.
    int64_t const steps = meeting >= low ? 0 : (low - meeting + stride - 1) / stride;
    return UpTo(meeting + steps * stride, last, stride);
}

IndexSetPtr JoinedProgressions(IndexSet const& a, IndexSet const& b) {
    int64_t const low = std::min(a.Lowest(), b.Lowest());
    int64_t const high = std::max(a.Highest(), b.Highest());
    int64_t const apart = std::max(a.Lowest(), b.Lowest()) - low;
    int64_t stride = a.Stride();
    if (a.Size() == 1) stride = b.Size() == 1 ? std::max<int64_t>(apart, 1) : b.Stride();
    if (a.Size() > 1 && b.Size() > 1 && a.Stride() != b.Stride()) return nullptr;
    int64_t const between =
        int64_t{std::max(a.Lowest(), b.Lowest())} - std::min(a.Highest(), b.Highest());
    if (apart % stride != 0 || between > stride) return nullptr;
    return UpTo(low, high, stride);
}

}  // namespace kov::sets
