#include "document/sets/CompartmentCodec.h"

namespace kov::sets {

namespace {

constexpr std::size_t WordBytes = 4;
constexpr std::size_t SetBytes = 3 * WordBytes;

void Append(std::string& bytes, std::int32_t value) {
    auto word = static_cast<std::uint32_t>(value);
    for (std::size_t i = 0; i < WordBytes; ++i, word >>= 8) {
        bytes.push_back(static_cast<char>(word & 0xff));
    }
}

std::int32_t Word(std::string_view bytes, std::size_t at) {
    std::uint32_t word = 0;
    for (std::size_t i = WordBytes; i-- > 0;) {
        word = word << 8 | static_cast<unsigned char>(bytes[at + i]);
    }
    return static_cast<std::int32_t>(word);
}

}  // namespace

void EncodeCompartment(std::vector<CompartmentWord> const& words, std::string& bytes) {
    for (CompartmentWord const& word : words) {
        Append(bytes, word.collection);
        Append(bytes, word.set);
        Append(bytes, word.type);
    }
}

bool DecodeCompartment(std::string_view bytes, std::vector<CompartmentWord>& words) {
    if (bytes.size() % SetBytes != 0) return false;
    words.clear();
    for (std::size_t at = 0; at < bytes.size(); at += SetBytes) {
        words.push_back(
            {Word(bytes, at), Word(bytes, at + WordBytes), Word(bytes, at + 2 * WordBytes)});
    }
    return true;
}

}  // namespace kov::sets
