// CompartmentCodec: a compartment as it is stored: for each domain 12 bytes, little-endian: the
// number of the collection, the number of the set (0 is the collection's empty set), the type of
// the collection. Private to this room.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kov::sets {

struct CompartmentWord {
    std::int32_t collection;
    std::int32_t set;
    std::int32_t type;
};

void EncodeCompartment(std::vector<CompartmentWord> const& words, std::string& bytes);
/// False if the bytes are no compartment.
bool DecodeCompartment(std::string_view bytes, std::vector<CompartmentWord>& words);

}  // namespace kov::sets
