#include "PointsToNodes.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>

#include "AscendingSets.h"
#include "KOVSrvExtrapolation.h"
#include "Names.h"
#include "ObjectContent.h"
#include "SetBlocks.h"

namespace kov::tool {
namespace {

constexpr std::size_t kBlockNumbers = std::size_t{1} << 21;  // at the points of one block

}  // namespace

struct PointsToNodes::Sums {
    std::vector<double> values;         ///< (nodes, components)
    std::vector<std::uint32_t> counts;  ///< by node
};

PointsToNodes::PointsToNodes(KOVObjDocument const& document, FieldContent const& field)
    : m_field(field), m_width(field.components.size()), m_rows(document) {
    if (field.drawers.empty()) return;
    KOVSimCSet all;
    std::vector<KOVSimCSet> const byPoints = ElementsByPoints(all);
    std::vector<ElementGroup> const groups = ElementGroups(document);
    KOVSimCSet left = all;
    for (std::size_t g = 0; g < groups.size(); ++g) {
        KOVSimCSet const ofGroup = all.Intersection(Ascending(groups[g].elements));
        if (ofGroup.IsEmpty()) continue;
        left = left - ofGroup;
        // The elements of a type have equally many points; those with fewer lack some.
        for (std::size_t points = byPoints.size(); points-- > 1;) {
            KOVSimCSet const whole = ofGroup.Intersection(byPoints[points]);
            if (whole.IsEmpty()) continue;
            AddPart(static_cast<int>(g), groups[g], whole, static_cast<int>(points));
            int const lacking = ofGroup.Size() - whole.Size();
            if (lacking > 0) {
                m_notes.push_back(CountText(lacking, "element") + " of type " +
                                  NameText(groups[g].name) + " without all " +
                                  std::to_string(points) + " points not carried");
            }
            break;
        }
    }
    if (!left.IsEmpty()) {
        m_notes.push_back(CountText(left.Size(), "element") + " without a type not carried");
    }
}

// Entry n: the elements that have the points 1 to n, and no others. Entry 0 is empty.
std::vector<KOVSimCSet> PointsToNodes::ElementsByPoints(KOVSimCSet& all) {
    auto const count = static_cast<std::size_t>(m_field.points);
    KOVSimCSet const none(m_field.drawers[0].items.CollectionID());
    std::vector<KOVSimCSet> atPoint(count + 1, none);
    KOVSimCSet odd = none;
    for (FieldDrawer const& drawer : m_field.drawers) {
        bool const isOdd = drawer.point < 1 || drawer.point > m_field.points;
        KOVSimCSet& into = isOdd ? odd : atPoint[static_cast<std::size_t>(drawer.point)];
        into = into.Union(drawer.items);
    }
    // Those that have a point beyond n, from the last n downwards.
    std::vector<KOVSimCSet> beyond(count + 1, odd);
    for (std::size_t n = count; n-- > 0;) beyond[n] = beyond[n + 1].Union(atPoint[n + 1]);
    all = beyond[0] - odd;
    std::vector<KOVSimCSet> exactly(count + 1, none);
    KOVSimCSet upTo = count > 0 ? atPoint[1] : none;
    for (std::size_t n = 1; n <= count; ++n) {
        upTo = upTo.Intersection(atPoint[n]);
        exactly[n] = upTo - beyond[n];
    }
    if (!odd.IsEmpty()) {
        m_notes.push_back(CountText(odd.Size(), "element") +
                          " with points that are not numbered from 1 not carried");
    }
    return exactly;
}

void PointsToNodes::AddPart(int number, ElementGroup const& group, KOVSimCSet const& elements,
                            int points) {
    if (group.type == nullptr) {
        m_notes.push_back(CountText(elements.Size(), "element") + " of the unknown type " +
                          NameText(group.name) + " not carried");
        return;
    }
    std::optional<IntegrationPoints> rule = FindIntegrationPoints(*group.type, points);
    if (!rule) {
        m_notes.push_back(CountText(elements.Size(), "element") + " of type " +
                          NameText(group.name) + " with " + CountText(points, "point") +
                          " not carried: no rule for that");
        return;
    }
    m_parts.push_back({number, group.type, points, elements, std::move(*rule)});
}

// (elements, points, components), row-major; not-a-number where a drawer lacks a component.
void PointsToNodes::ReadPoints(Part const& part, std::vector<int> const& elements,
                               KOVSimCSet const& set, std::vector<double>& source) const {
    auto const points = static_cast<std::size_t>(part.points);
    source.assign(elements.size() * points * m_width, std::numeric_limits<double>::quiet_NaN());
    std::vector<int> members;
    std::vector<double> values;
    for (FieldDrawer const& drawer : m_field.drawers) {
        if (drawer.point > part.points) break;
        KOVSimCSet const inside = set.Intersection(drawer.items);
        if (inside.IsEmpty()) continue;
        ReadMembers(inside, members);
        ReadRows(drawer, inside, values);
        auto const point = static_cast<std::size_t>(drawer.point) - 1;
        auto at = elements.begin();
        for (std::size_t i = 0; i < members.size(); ++i) {
            at = *at == members[i] ? at : std::lower_bound(at, elements.end(), members[i]);
            auto const row = static_cast<std::size_t>(at - elements.begin());
            double* const to = source.data() + (row * points + point) * m_width;
            for (std::size_t k = 0; k < drawer.Width(); ++k) {
                to[drawer.places[k]] = values[i * drawer.Width() + k];
            }
            if (at + 1 != elements.end()) ++at;
        }
    }
}

// Adds the values of elements at their nodes; gives how many elements have other nodes than their
// type.
int PointsToNodes::Gather(Part const& part, std::vector<int> const& elements,
                          std::vector<double> const& target, Sums& sums) const {
    ElementRows::Rows const rows = m_rows.Read(elements);
    auto const nodes = static_cast<std::size_t>(part.type->nodes);
    int odd = 0;
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (rows.start[i + 1] - rows.start[i] != nodes || rows.group[i] != part.group) {
            ++odd;
            continue;
        }
        double const* from = target.data() + i * nodes * m_width;
        for (std::size_t k = 0; k < nodes; ++k, from += m_width) {
            auto const node = static_cast<std::size_t>(rows.nodes[rows.start[i] + k]);
            ++sums.counts[node];
            double* const to = sums.values.data() + node * m_width;
            for (std::size_t c = 0; c < m_width; ++c) to[c] += from[c];
        }
    }
    return odd;
}

std::vector<double> PointsToNodes::Means(int nodes) {
    Sums sums;
    sums.values.assign(static_cast<std::size_t>(nodes) * m_width, 0.0);
    sums.counts.assign(static_cast<std::size_t>(nodes), 0);
    std::vector<int> elements;
    std::vector<double> source;
    std::vector<double> target;
    int odd = 0;
    for (Part const& part : m_parts) {
        int const widest = std::max(part.points, part.type->nodes);
        std::size_t const numbers = static_cast<std::size_t>(widest) * m_width;
        auto const most =
            static_cast<std::int64_t>(std::max<std::size_t>(kBlockNumbers / numbers, 1));
        ForSetWindows(part.elements, most, [&](KOVSimCSet const& set) {
            ReadMembers(set, elements);
            ReadPoints(part, elements, set, source);
            target.resize(elements.size() * static_cast<std::size_t>(part.type->nodes) * m_width);
            KOVSrvExtrapolation::ExtrapolateDoublePrecision(
                part.points, part.type->nodes, static_cast<int>(m_width), set.Size(), source.data(),
                target.data(), part.rule.toNodes.data());
            odd += Gather(part, elements, target, sums);
        });
    }
    if (odd > 0) {
        m_notes.push_back(CountText(odd, "element") +
                          " with other nodes than their type has not carried");
    }
    double* value = sums.values.data();
    for (std::uint32_t const count : sums.counts) {
        for (std::size_t c = 0; c < m_width; ++c, ++value) {
            *value = count == 0 ? std::numeric_limits<double>::quiet_NaN() : *value / count;
        }
    }
    return std::move(sums.values);
}

}  // namespace kov::tool
