// LabelRanges: ascending labels told as ranges, such as "1-20, 25, 30-60 step 2".
//
// Labels are folded one by one, with no more than one range in hand. Two neighbouring labels make a
// range already; labels with equal gaps between them make one from four on, below which they are
// shorter told one by one. The folding looks no further back or ahead than the range in hand: equal
// labels always give equal ranges.
#pragma once

#include <string>

namespace kov::tool {

/// The labels first, first + step, ... up to last. A single label: `first` equals `last`, `step` 1.
struct LabelRange {
    int first;
    int last;
    long long step;
};

/// "7", "1-20" or "30-60 step 2".
std::string ToText(LabelRange const& range);

/// Gives ranges to a sink, which is called with a LabelRange.
template <class Sink>
class RangeFolder {
  public:
    explicit RangeFolder(Sink sink) : m_sink(sink) {}

    /// The next label, above all before it.
    void Add(int label) {
        while (m_count >= 2 && label - static_cast<long long>(m_last) != m_step) Close();
        if (m_count == 0) {
            m_first = label;
        } else if (m_count == 1) {
            m_step = label - static_cast<long long>(m_first);
        }
        m_last = label;
        ++m_count;
    }
    /// After the last label.
    void Finish() {
        while (m_count > 0) Close();
    }

  private:
    // Gives away the labels in hand, or the first of them where they make no range.
    void Close() {
        if (m_count == 1 || m_step == 1 || m_count >= 4) {
            m_sink(LabelRange{m_first, m_last, m_count == 1 ? 1 : m_step});
            m_count = 0;
            return;
        }
        m_sink(LabelRange{m_first, m_first, 1});
        m_first = static_cast<int>(m_first + m_step);
        --m_count;
    }

    Sink m_sink;
    int m_first = 0;
    int m_last = 0;
    long long m_step = 0;
    long long m_count = 0;
};

}  // namespace kov::tool
