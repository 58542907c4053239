// Variable-length integers of the document format: seven bits a byte, lowest first, the high bit
// set on all but the last. Signed values are zigzag-coded. Readers never go past the end of what
// they are given.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kov::base {

inline void AppendVarint(std::string& out, std::uint64_t value) {
    while (value >= 0x80) {
        out.push_back(static_cast<char>(value | 0x80));
        value >>= 7;
    }
    out.push_back(static_cast<char>(value));
}

inline std::uint64_t Zigzag(std::int64_t value) {
    return (static_cast<std::uint64_t>(value) << 1) ^ static_cast<std::uint64_t>(value >> 63);
}

inline std::int64_t Unzigzag(std::uint64_t value) {
    return static_cast<std::int64_t>(value >> 1) ^ -static_cast<std::int64_t>(value & 1);
}

/// Takes one integer off the front of `bytes`; false, with `bytes` left alone, if it is cut short
/// or longer than 64 bits.
inline bool TakeVarint(std::string_view& bytes, std::uint64_t& value) {
    std::uint64_t result = 0;
    for (std::size_t i = 0; i < bytes.size() && i < 10; ++i) {
        auto const byte = static_cast<unsigned char>(bytes[i]);
        result |= static_cast<std::uint64_t>(byte & 0x7F) << (7 * i);
        if (byte < 0x80) {
            if (i == 9 && byte > 1) return false;
            value = result;
            bytes.remove_prefix(i + 1);
            return true;
        }
    }
    return false;
}

}  // namespace kov::base
