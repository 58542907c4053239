// Text, UTF-8, reference-counted: copying shares the characters, a change takes its own copy first.
//
// Positions and lengths count characters from 0 unless a name says bytes. A character begins at
// each byte that is no UTF-8 continuation byte (and at the first byte of the text), so that any
// bytes at all can be kept, given back and cut without a loss. A text without characters is always
// in the empty state, in which Text() is null; it equals "".
//
// A range that reaches outside the text means the part of it that lies inside.
#pragma once

#include <cstddef>
#include <functional>

#include "KOVChar.h"
#include "KOVExport.h"
#include "atr_StringBase.h"

class KOV_EXPORT KOVString : public atr_StringBase {
  public:
    KOVString() = default;
    /// A copy of plain UTF-8 text; null counts as "".
    KOVString(char const* text) { atr_StringBase::operator=(text); }

    KOVString& operator=(char const* text) {
        atr_StringBase::operator=(text);
        return *this;
    }

    bool IsEmpty() const { return m_text == nullptr; }
    /// The characters, "" in the empty state: for plain-string functions.
    char const* TextOrEmpty() const { return m_text ? m_text : ""; }

    /// Replaces the text by a copy of `text`; null counts as "".
    void BuildFromUTF8(char const* text) { atr_StringBase::operator=(text); }
    /// The same for the bytes [text, text + bytes), without an end mark. Zero bytes inside are
    /// kept, but plain-string functions see the text only up to the first.
    void BuildFromUTF8(char const* text, int bytes);

    /// Replaces the text by `number`, written as by printf with `format`, which holds exactly one
    /// conversion of an int (d, i, u, x, X, o or c, with flags, width and precision as wished).
    /// Throws KOVSimException on any other format.
    void BuildFromNum(int number, char const* format);

    /// Reads a number from the beginning of the text as scanf does with `format`, one of %d, %i,
    /// %u, %x, %X and %o: leading white space is skipped, and what stands behind the number is
    /// ignored. Answers 1 on success. Answers 0, and leaves *number as it was, if there is no
    /// number, if it does not fit an int, or if the format is another.
    int ConvertToNum(int* number, char const* format) const;

    KOVString& Append(KOVString const& tail);
    KOVString& Append(char const* tail);
    KOVString& operator+=(KOVString const& tail) { return Append(tail); }
    KOVString& operator+=(char const* tail) { return Append(tail); }
    /// Appends the number in decimal, with a sign only if it is negative.
    KOVString& operator+=(int number);
    /// A single character is no number.
    KOVString& operator+=(char) = delete;

    /// Byte order of this text against `other`: negative, 0 or positive. Null counts as "".
    int Compare(char const* other) const;
    int Compare(KOVString const& other) const;

    /// The first position from `start` on at which `sought` stands, or -1. A negative start is
    /// taken as 0. An empty `sought` stands nowhere: -1.
    int FindPosition(KOVString const& sought, int start) const;

    int GetLengthInByte() const { return m_text ? TextHead().bytes : 0; }
    int GetLengthInChar() const;

    /// The characters [start, start + length).
    KOVString SubString(int start, int length) const;

    /// Takes the characters [start, start + length) out of the text.
    KOVString& Remove(int start, int length);

    /// Replaces every occurrence of `sought`, from the left, not looking again at what was put in.
    /// An empty `sought` changes nothing.
    KOVString& ReplaceAll(KOVString const& sought, KOVString const& replacement);

    /// Folds A to Z to a to z, in place; all other bytes stay.
    KOVString& ASCIIToLower();

    /// The character at `position`; the null character outside the text.
    KOVChar operator[](int position) const;

  private:
    /// The byte at which character `position` begins; the length in bytes at or past the end.
    int ByteOffset(long long position) const;
    /// The part of [start, start + length) inside the text, as bytes [first, last).
    void ByteRange(int start, int length, int& first, int& last) const;
};

KOV_EXPORT KOVString operator+(KOVString const& a, KOVString const& b);
KOV_EXPORT KOVString operator+(KOVString const& a, char const* b);
KOV_EXPORT KOVString operator+(char const* a, KOVString const& b);

inline bool operator==(KOVString const& a, KOVString const& b) { return a.Compare(b) == 0; }
inline bool operator!=(KOVString const& a, KOVString const& b) { return a.Compare(b) != 0; }
inline bool operator<(KOVString const& a, KOVString const& b) { return a.Compare(b) < 0; }
inline bool operator==(KOVString const& a, char const* b) { return a.Compare(b) == 0; }
inline bool operator!=(KOVString const& a, char const* b) { return a.Compare(b) != 0; }
inline bool operator==(char const* a, KOVString const& b) { return b.Compare(a) == 0; }
inline bool operator!=(char const* a, KOVString const& b) { return b.Compare(a) != 0; }

/// For the standard's hashed containers.
namespace std {
template <>
struct hash<KOVString> {
    KOV_EXPORT size_t operator()(KOVString const& text) const noexcept;
};
}  // namespace std
