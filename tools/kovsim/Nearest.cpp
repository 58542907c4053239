#include "Nearest.h"

#include <algorithm>

#include "Names.h"

namespace kov::tool {
namespace {

// Names are cut to so many letters for the comparison.
constexpr std::size_t kLongest = 128;

// The distance of two texts; anything above `most` if it is more. `rows` is working storage.
//
// Three rows of the usual table, of which only a band of width 2 * most + 1 is filled.
int BoundedDistance(std::string_view a, std::string_view b, int most, std::vector<int>& rows) {
    int const n = static_cast<int>(a.size());
    int const m = static_cast<int>(b.size());
    if (std::abs(n - m) > most) return most + 1;
    auto const width = static_cast<std::size_t>(m) + 1;
    rows.assign(3 * width, most + 1);
    int* before = rows.data();
    int* last = before + width;
    int* row = last + width;
    for (int j = 0; j <= std::min(m, most); ++j) last[j] = j;
    for (int i = 1; i <= n; ++i) {
        int const from = std::max(1, i - most);
        int const to = std::min(m, i + most);
        row[from - 1] = from == 1 ? i : most + 1;
        int least = row[from - 1];
        for (int j = from; j <= to; ++j) {
            auto const at = static_cast<std::size_t>(i) - 1;
            auto const bt = static_cast<std::size_t>(j) - 1;
            int const above = j < i + most ? last[j] : most + 1;
            int cost = std::min({above + 1, row[j - 1] + 1, last[j - 1] + (a[at] != b[bt])});
            if (i > 1 && j > 1 && a[at] == b[bt - 1] && a[at - 1] == b[bt]) {
                cost = std::min(cost, before[j - 2] + 1);
            }
            row[j] = cost;
            least = std::min(least, cost);
        }
        if (least > most) return most + 1;
        std::swap(before, last);
        std::swap(last, row);
    }
    return last[m];
}

}  // namespace

NearestSearch::NearestSearch(std::string_view wanted)
    : m_wanted(LowerCase(wanted.substr(0, kLongest))),
      m_most(m_wanted.size() < 2
                 ? 0
                 : std::max(1, std::min(8, static_cast<int>(m_wanted.size()) / 3))) {}

void NearestSearch::Look(std::string_view name) {
    m_lower = LowerCase(name.substr(0, kLongest));
    int const worst = m_found.size() < kMost ? m_most : m_found.back().distance;
    int const distance = BoundedDistance(m_wanted, m_lower, worst, m_rows);
    if (distance > worst) return;
    Found found{distance, std::string(name)};
    auto const before = [](Found const& a, Found const& b) {
        return a.distance != b.distance ? a.distance < b.distance : a.name < b.name;
    };
    auto const place = std::lower_bound(m_found.begin(), m_found.end(), found, before);
    if (place != m_found.end() && place->distance == distance && place->name == name) return;
    m_found.insert(place, std::move(found));
    if (m_found.size() > kMost) m_found.pop_back();
}

std::vector<std::string> NearestSearch::Names() const {
    std::vector<std::string> names;
    for (Found const& found : m_found) names.push_back(found.name);
    return names;
}

std::string NearestHint(std::vector<std::string> const& names) {
    std::string hint;
    for (std::size_t i = 0; i < names.size(); ++i) {
        hint += i == 0 ? "; did you mean " : i + 1 < names.size() ? ", " : " or ";
        hint += "'" + Shown(names[i]) + "'";
    }
    return hint.empty() ? hint : hint + "?";
}

}  // namespace kov::tool
