// One character of a KOVString, as its UTF-8 bytes.
//
// The bytes are kept, and not a code point, so that text which is not valid UTF-8 passes through
// unchanged, byte for byte.
#pragma once

#include <cstring>

/// A character by value. The default-built one is the null character: what KOVString gives for a
/// position outside its text.
class KOVChar {
  public:
    KOVChar() = default;

    /// The character whose bytes are [bytes, bytes + count); more than 4 bytes are cut to 4.
    KOVChar(char const* bytes, int count) {
        std::memcpy(m_bytes, bytes,
                    static_cast<std::size_t>(count < 0   ? 0
                                             : count > 4 ? 4
                                                         : count));
    }

    /// The character itself if it is ASCII, else the first of its bytes.
    operator char() const { return m_bytes[0]; }

    /// Its bytes, ending with a zero byte.
    char const* Bytes() const { return m_bytes; }

  private:
    char m_bytes[5] = {};
};
