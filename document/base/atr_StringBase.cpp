#include "atr_StringBase.h"

#include <climits>
#include <cstring>
#include <new>

#include "KOVSimException.h"
#include "mem.h"

char* atr_StringBase::Make(long long bytes) {
    if (bytes <= 0) return nullptr;
    if (bytes > INT_MAX)
        KOVSimException::ThrowText("KOVString: a text of more than 2147483647 bytes");
    void* const memory =
        mem_OperatorNewTinyThrow(sizeof(Head) + static_cast<std::size_t>(bytes) + 1);
    Head* const head = ::new (memory) Head{{1}, {-1}, static_cast<int>(bytes)};
    char* const text = reinterpret_cast<char*>(head + 1);
    text[bytes] = '\0';
    return text;
}

void atr_StringBase::Free(char* text) noexcept { mem_Free(reinterpret_cast<Head*>(text) - 1); }

char* atr_StringBase::Detach() {
    if (TextHead().shares.load(std::memory_order_acquire) == 1) {
        TextHead().characters.store(-1, std::memory_order_relaxed);
        return m_text;
    }
    int const bytes = TextHead().bytes;
    char* const made = Make(bytes);
    std::memcpy(made, m_text, static_cast<std::size_t>(bytes));
    Adopt(made);
    return m_text;
}

atr_StringBase& atr_StringBase::operator=(char const* text) {
    std::size_t const bytes = text ? std::strlen(text) : 0;
    char* const made = Make(static_cast<long long>(bytes));
    if (made) std::memcpy(made, text, bytes);
    Adopt(made);
    return *this;
}
