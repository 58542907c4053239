// The findings of the checker while they are made: texts with gaps, filled in their order.
#pragma once

#include <initializer_list>

#include "KOVBasVector.h"
#include "KOVString.h"

namespace kov::fsm {

/// What fills a gap: a text as it is, or a decimal number.
class LumenValue {
  public:
    LumenValue(KOVString const& text) : m_text(text) {}
    LumenValue(char const* text) : m_text(text) {}
    LumenValue(int number) { m_text.BuildFromNum(number, "%d"); }
    KOVString const& Text() const { return m_text; }

  private:
    KOVString m_text;
};

/// `pattern` with each {} replaced by the next of `values`. Those without a gap are left out: of
/// texts that belong together not each names its object.
KOVString LumenText(char const* pattern, std::initializer_list<LumenValue> values);

class LumenFindings {
  public:
    explicit LumenFindings(KOVBasVector<KOVString>& list) : m_list(list) {}

    void Add(char const* pattern, std::initializer_list<LumenValue> values = {}) {
        Add(LumenText(pattern, values));
    }
    void Add(KOVString const& finding) { m_list.PushBack(finding); }

  private:
    KOVBasVector<KOVString>& m_list;
};

}  // namespace kov::fsm
