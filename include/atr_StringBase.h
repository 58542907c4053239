// The shared text under a KOVString: one pointer to characters that end with a zero byte.
//
// Behind the pointer, in front of the characters, stand the share count and the lengths, so that a
// handle is one word and a copy is one increment. The empty text has one representation only: the
// null pointer. Share counts may be touched from several threads; one handle may not.
#pragma once

#include <sys/single_threaded.h>

#include <atomic>

#include "KOVExport.h"

class KOV_EXPORT atr_StringBase {
  public:
    atr_StringBase() = default;
    atr_StringBase(atr_StringBase const& other) noexcept : m_text(other.m_text) { Share(); }
    atr_StringBase(atr_StringBase&& other) noexcept : m_text(other.m_text) {
        other.m_text = nullptr;
    }
    ~atr_StringBase() { Delete(); }

    atr_StringBase& operator=(atr_StringBase const& other) noexcept {
        if (m_text != other.m_text) {
            Delete();
            m_text = other.m_text;
            Share();
        }
        return *this;
    }
    atr_StringBase& operator=(atr_StringBase&& other) noexcept {
        char* const taken = other.m_text;
        other.m_text = m_text;
        m_text = taken;
        return *this;
    }

    /// Takes a copy of plain UTF-8 text, which may be a part of this text itself. Null and "" give
    /// the empty state.
    atr_StringBase& operator=(char const* text);

    /// Gives up this handle's share, and frees the text if that was the last one. The handle is
    /// empty afterwards.
    void Delete() noexcept {
        if (m_text && Unshare()) Free(m_text);
        m_text = nullptr;
    }

    /// The characters, UTF-8, ending with a zero byte; null in the empty state. Valid until the
    /// handle changes or ends.
    char const* Text() const { return m_text; }

  protected:
    /// Stands in front of the characters.
    struct Head {
        std::atomic<int> shares;
        std::atomic<int> characters;  ///< -1 until it is first asked for
        int bytes;                    ///< without the closing zero
    };

    /// A text of `bytes` bytes with one share, closed by a zero, not filled in; null for 0 bytes.
    static char* Make(long long bytes);
    static void Free(char* text) noexcept;

    Head& TextHead() const { return *(reinterpret_cast<Head*>(m_text) - 1); }

    /// A writable text of this handle's own, with the same characters. Not for the empty state.
    char* Detach();

    /// Makes `text`, which came from Make, the text of this handle.
    void Adopt(char* text) noexcept {
        Delete();
        m_text = text;
    }

    char* m_text = nullptr;

  private:
    void Share() const noexcept {
        if (!m_text) return;
        std::atomic<int>& shares = TextHead().shares;
        if (__libc_single_threaded) {
            shares.store(shares.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
        } else {
            shares.fetch_add(1, std::memory_order_relaxed);
        }
    }
    /// Answers true when the last share has gone.
    bool Unshare() const noexcept {
        std::atomic<int>& shares = TextHead().shares;
        if (__libc_single_threaded) {
            int const left = shares.load(std::memory_order_relaxed) - 1;
            shares.store(left, std::memory_order_relaxed);
            return left == 0;
        }
        return shares.fetch_sub(1, std::memory_order_acq_rel) == 1;
    }
};
