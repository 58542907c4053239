#include "SectionFit.h"

#include <algorithm>
#include <map>
#include <optional>
#include <utility>

#include "Interrupt.h"

namespace kov::tool {
namespace {

// The elements of one section that are of another kind. A run is cut where a keyword ends that gave
// elements: each step takes a member at least, so that all sections together take as many steps as
// they have members, whatever the number of keywords.
class Counter {
  public:
    Counter(ElementBlocks const& blocks, int elements) : m_blocks(blocks), m_elements(elements) {}

    void Take(SectionEntry const& section) {
        m_count = 0;
        section.set->members.ForRuns([&](int first, int count, int stride) {
            while (count > 0) {
                // Members one by one are mostly of the same keyword.
                if (first < m_range.first || first >= m_range.end) {
                    m_range = m_blocks.RangeOf(first, m_elements);
                }
                int const within = std::min(count, (m_range.end - first - 1) / stride + 1);
                if (!Fits(section.kind, m_range.type->family)) {
                    Add(*m_range.type, first, within, stride);
                }
                first += within * stride;
                count -= within;
            }
        });
    }

    long Count() const { return m_count; }
    /// The first of them in the order of the deck.
    int First() const { return m_first; }
    ElementType const& Type() const { return *m_type; }

  private:
    void Add(ElementType const& type, int first, int count, int stride) {
        if (m_count == 0 || first < m_first) {
            m_first = first;
            m_type = &type;
        }
        // A set may name one of its members twice.
        if (!m_counted) m_counted.emplace(m_elements);
        m_count += m_counted->Take(first, count, stride);
    }

    ElementBlocks const& m_blocks;
    int m_elements;
    ElementBlocks::Range m_range;
    std::optional<ElementMarks> m_counted;
    long m_count = 0;
    int m_first = 0;
    ElementType const* m_type = nullptr;
};

}  // namespace

bool Fits(SectionEntry::Kind kind, Family family) noexcept {
    switch (kind) {
        case SectionEntry::Kind::Shell:
            return family == Family::Shell;
        case SectionEntry::Kind::Solid:
            return family == Family::Solid || family == Family::PlaneStress ||
                   family == Family::PlaneStrain || family == Family::Axisymmetric ||
                   family == Family::Truss;
        case SectionEntry::Kind::Membrane:
            return family == Family::Membrane;
        case SectionEntry::Kind::Beam:
            return family == Family::Beam;
    }
    return true;
}

char const* FittingElement(SectionEntry::Kind kind) noexcept {
    constexpr char const* kWords[] = {"shell", "solid", "membrane", "beam"};
    return kWords[static_cast<int>(kind)];
}

Misfits FindMisfits(SectionTable const& table, ElementBlocks const& blocks, int elements,
                    Scopes const& scopes, std::size_t most) {
    Misfits misfits;
    // A part is read for each of its instances: one finding for all of them. By file and line;
    // those beyond the first have the place `most`.
    std::map<std::pair<int, int>, std::size_t> found;
    Counter counter(blocks, elements);
    long done = 0;
    for (SectionEntry const& section : table.sections) {
        if (++done % 1000 == 0) ThrowIfInterrupted();
        counter.Take(section);
        if (counter.Count() == 0) continue;
        misfits.elements += counter.Count();
        auto const [at, isNew] =
            found.try_emplace({section.at.file, section.at.line}, misfits.first.size());
        if (isNew) {
            ++misfits.sections;
            if (misfits.first.size() < most) {
                Scope const& scope = scopes.OfElement(counter.First());
                misfits.first.push_back({table.files.Path(section.at), section.at.line,
                                         section.kind, section.set->name, 0,
                                         std::string(counter.Type().name),
                                         scope.elementLabels.LabelOf(counter.First()), scope.name});
            } else {
                at->second = most;
            }
        }
        if (at->second < misfits.first.size()) misfits.first[at->second].count += counter.Count();
    }
    return misfits;
}

}  // namespace kov::tool
