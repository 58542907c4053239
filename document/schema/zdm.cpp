#include "zdm.h"

#include "document/schema/PairIndex.h"

int zdm_CoreFragmentTypeIndex(int fragment, int member) noexcept {
    return kov::schema::IndexOfPair(fragment, member);
}
