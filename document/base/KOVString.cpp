#include "KOVString.h"

#include <climits>
#include <cstring>
#include <string_view>

#include "KOVSimException.h"

namespace {

bool BeginsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

std::string_view View(char const* text) { return text ? std::string_view(text) : ""; }
std::string_view View(KOVString const& text) {
    return {text.TextOrEmpty(), static_cast<std::size_t>(text.GetLengthInByte())};
}

int Order(std::string_view a, std::string_view b) {
    int const order = a.compare(b);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

}  // namespace

void KOVString::BuildFromUTF8(char const* text, int bytes) {
    if (bytes <= 0 || !text) {
        Delete();
        return;
    }
    char* const made = Make(bytes);
    std::memcpy(made, text, static_cast<std::size_t>(bytes));
    Adopt(made);
}

KOVString& KOVString::Append(KOVString const& tail) {
    if (tail.IsEmpty()) return *this;
    if (IsEmpty()) return *this = tail;
    KOVString const kept(tail);
    long long const head = GetLengthInByte();
    long long const more = kept.GetLengthInByte();
    char* const made = Make(head + more);
    std::memcpy(made, m_text, static_cast<std::size_t>(head));
    std::memcpy(made + head, kept.m_text, static_cast<std::size_t>(more));
    Adopt(made);
    return *this;
}

KOVString& KOVString::Append(char const* tail) { return Append(KOVString(tail)); }

KOVString operator+(KOVString const& a, KOVString const& b) {
    KOVString sum(a);
    sum.Append(b);
    return sum;
}

KOVString operator+(KOVString const& a, char const* b) { return a + KOVString(b); }

KOVString operator+(char const* a, KOVString const& b) { return KOVString(a) + b; }

int KOVString::Compare(char const* other) const { return Order(View(*this), View(other)); }

int KOVString::Compare(KOVString const& other) const {
    return m_text == other.m_text ? 0 : Order(View(*this), View(other));
}

int KOVString::GetLengthInChar() const {
    if (!m_text) return 0;
    Head& head = TextHead();
    int characters = head.characters.load(std::memory_order_relaxed);
    if (characters < 0) {
        characters = BeginsCharacter(m_text[0]) ? 0 : 1;
        for (int i = 0; i < head.bytes; ++i) characters += BeginsCharacter(m_text[i]) ? 1 : 0;
        head.characters.store(characters, std::memory_order_relaxed);
    }
    return characters;
}

int KOVString::ByteOffset(long long position) const {
    int const bytes = GetLengthInByte();
    if (position <= 0) return 0;
    if (GetLengthInChar() == bytes) return static_cast<int>(position < bytes ? position : bytes);
    int at = 0;
    while (at < bytes && position > 0) {
        do ++at;
        while (at < bytes && !BeginsCharacter(m_text[at]));
        --position;
    }
    return at;
}

void KOVString::ByteRange(int start, int length, int& first, int& last) const {
    first = ByteOffset(start);
    last = length <= 0 ? first : ByteOffset(static_cast<long long>(start) + length);
}

int KOVString::FindPosition(KOVString const& sought, int start) const {
    if (sought.IsEmpty()) return -1;
    std::string_view const text = View(*this);
    std::size_t const from = static_cast<std::size_t>(ByteOffset(start));
    std::size_t const at = text.find(View(sought), from);
    if (at == std::string_view::npos) return -1;
    int const bytes = static_cast<int>(at);
    if (GetLengthInChar() == GetLengthInByte()) return bytes;
    int position = BeginsCharacter(m_text[0]) || bytes == 0 ? 0 : 1;
    for (int i = 0; i < bytes; ++i) position += BeginsCharacter(m_text[i]) ? 1 : 0;
    return position;
}

KOVString KOVString::SubString(int start, int length) const {
    int first = 0;
    int last = 0;
    ByteRange(start, length, first, last);
    if (first == 0 && last == GetLengthInByte()) return *this;
    KOVString part;
    part.BuildFromUTF8(TextOrEmpty() + first, last - first);
    return part;
}

KOVString& KOVString::Remove(int start, int length) {
    int first = 0;
    int last = 0;
    ByteRange(start, length, first, last);
    if (first == last) return *this;
    int const bytes = GetLengthInByte();
    char* const made = Make(static_cast<long long>(bytes) - (last - first));
    if (made) {
        std::memcpy(made, m_text, static_cast<std::size_t>(first));
        std::memcpy(made + first, m_text + last, static_cast<std::size_t>(bytes - last));
    }
    Adopt(made);
    return *this;
}

KOVString& KOVString::ReplaceAll(KOVString const& sought, KOVString const& replacement) {
    if (sought.IsEmpty() || IsEmpty()) return *this;
    std::string_view const text = View(*this);
    std::string_view const old = View(sought);
    std::string_view const fresh = View(replacement);
    long long count = 0;
    for (std::size_t at = text.find(old); at != std::string_view::npos;
         at = text.find(old, at + old.size())) {
        ++count;
    }
    if (count == 0) return *this;
    auto const growth = static_cast<long long>(fresh.size()) - static_cast<long long>(old.size());
    char* const made = Make(static_cast<long long>(text.size()) + count * growth);
    char* to = made;
    std::size_t from = 0;
    while (made && from < text.size()) {
        std::size_t const at = text.find(old, from);
        std::size_t const kept = (at == std::string_view::npos ? text.size() : at) - from;
        std::memcpy(to, text.data() + from, kept);
        to += kept;
        from += kept;
        if (at == std::string_view::npos) break;
        std::memcpy(to, fresh.data(), fresh.size());
        to += fresh.size();
        from += old.size();
    }
    Adopt(made);
    return *this;
}

KOVString& KOVString::ASCIIToLower() {
    int const bytes = GetLengthInByte();
    for (int i = 0; i < bytes; ++i) {
        if (m_text[i] < 'A' || m_text[i] > 'Z') continue;
        char* const own = Detach();
        for (; i < bytes; ++i) {
            if (own[i] >= 'A' && own[i] <= 'Z') own[i] = static_cast<char>(own[i] + ('a' - 'A'));
        }
    }
    return *this;
}

KOVChar KOVString::operator[](int position) const {
    int first = 0;
    int last = 0;
    ByteRange(position, 1, first, last);
    // A character of a text that is not valid UTF-8 may have any number of bytes.
    return position < 0 ? KOVChar() : KOVChar(TextOrEmpty() + first, last - first);
}

std::size_t std::hash<KOVString>::operator()(KOVString const& text) const noexcept {
    return std::hash<std::string_view>()(View(text));
}
