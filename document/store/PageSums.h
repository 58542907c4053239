// PageSums: the checksum of the document format, XXH3 with 64 bits. One for each 64 KiB page of a
// block, counted from the block's start, the last page as long as it is; and one for each page of
// the catalogue, seeded with the page's number so that a page that was written to a wrong place is
// found.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kov::store {

std::uint64_t Sum(void const* data, std::size_t bytes);
std::uint64_t SeededSum(void const* data, std::size_t bytes, std::uint64_t seed);

}  // namespace kov::store
