#include "KOVSimDynamicID.h"

namespace {

template <class T>
int Order(T a, T b) {
    return a < b ? -1 : a > b ? 1 : 0;
}

}  // namespace

int KOVSimDynamicID::Compare(KOVSimDynamicID const& other) const {
    if (int const order = Order(context.value, other.context.value)) return order;
    if (int const order = Order(category, other.category)) return order;
    if (int const order = Order(data.parent, other.data.parent)) return order;
    return Order(data.minor, other.data.minor);
}

int KOVSimBtreeCompare(KOVSimDynamicID const& a, KOVSimDynamicID const& b) { return b.Compare(a); }
