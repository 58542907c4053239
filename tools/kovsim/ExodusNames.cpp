#include "ExodusNames.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <tuple>
#include <utility>

#include "ExodusEndings.h"

namespace kov::tool {

namespace {

enum class Numbering { None, Plain, Marked };

// Names that may be one field: the same stem, spelled in the same way.
struct Candidate {
    std::string stem;
    bool others = false;                           // a name of this kind that is no component
    std::map<std::pair<int, int>, int> variables;  // by point, from 1, and term
};

// Sets of terms that make a whole without further knowledge: in space, in a plane, and in a plane
// with the normal term across it.
std::vector<std::set<int>> const& WholeSets(ExodusRank rank) {
    static std::vector<std::set<int>> const kTensor = {{0, 1, 2, 3, 4, 5}, {0, 1, 3}, {0, 1, 2, 3}};
    static std::vector<std::set<int>> const kVector = {{0, 1, 2}, {0, 1}};
    static std::vector<std::set<int>> const kScalar = {{0}};
    switch (rank) {
        case ExodusRank::Tensor:
            return kTensor;
        case ExodusRank::Vector:
            return kVector;
        case ExodusRank::Scalar:
            break;
    }
    return kScalar;
}

class Grouping {
  public:
    explicit Grouping(ExodusVariables const& variables)
        : m_variables(variables), m_taken(variables.names.size(), false) {}

    ExodusGroups Run() {
        if (m_variables.elements) {
            for (ExodusStyle const style : kExodusStyles) Pass(style, Numbering::Marked);
            for (ExodusStyle const style : kExodusStyles) Pass(style, Numbering::Plain);
        }
        for (ExodusStyle const style : kExodusStyles) {
            if (style != ExodusStyle::Scalar) Pass(style, Numbering::None);
        }
        TellNumbers();
        TakeRest();
        std::sort(m_result.groups.begin(), m_result.groups.end(),
                  [](ExodusGroup const& a, ExodusGroup const& b) { return First(a) < First(b); });
        return std::move(m_result);
    }

  private:
    static std::pair<int, int> First(ExodusGroup const& group) {
        int first = group.variables[0][0];
        for (int const variable : group.variables[0]) first = std::min(first, variable);
        return {first, group.blocks.front()};
    }
    std::string const& Name(int variable) const {
        return m_variables.names[static_cast<std::size_t>(variable)];
    }
    bool Present(std::size_t block, int variable) const {
        return m_variables.present[block][static_cast<std::size_t>(variable)];
    }

    void Pass(ExodusStyle style, Numbering numbering);
    void Take(Candidate const& candidate, ExodusStyle style, Numbering numbering);
    void AddGroup(Candidate const& candidate, std::string const& label, ExodusRank rank,
                  Numbering numbering, std::set<int> const& terms, std::vector<int> const& blocks);
    std::size_t Items(std::vector<int> const& blocks) const {
        std::size_t items = 0;
        for (int const block : blocks) items += m_variables.items[static_cast<std::size_t>(block)];
        return items;
    }
    // The components of each block; none where the numbers or the components do not fit.
    std::optional<std::map<std::set<int>, std::vector<int>>> ByTerms(
        Candidate const& candidate) const;
    std::optional<std::string> LabelFor(Candidate const& candidate,
                                        std::optional<ExodusKnown> const& known);
    void TakeRest();
    void TellNumbers();

    ExodusVariables const& m_variables;
    std::vector<bool> m_taken;
    std::set<std::string> m_labels;
    std::set<std::string> m_mapped;  // fields of the variable map that labels lead to
    ExodusGroups m_result;
};

void Grouping::Pass(ExodusStyle style, Numbering numbering) {
    // In the order of the first variable, so that of two fields with one label the first has it.
    std::vector<Candidate> candidates;
    std::map<std::tuple<std::string, std::string, std::string>, std::size_t> index;
    for (std::size_t i = 0; i < m_variables.names.size(); ++i) {
        if (m_taken[i]) continue;
        std::string_view name = m_variables.names[i];
        ExodusPoint point{name, "", 1};
        if (numbering != Numbering::None) {
            auto const found = FindExodusPoint(name, numbering == Numbering::Marked);
            if (!found) continue;
            point = *found;
        }
        auto const component = FindExodusComponent(point.rest, style);
        if (!component) continue;
        auto const [at, isNew] = index.try_emplace(
            {std::string(component->stem), component->form, point.form}, candidates.size());
        if (isNew) candidates.push_back({std::string(component->stem), false, {}});
        Candidate& candidate = candidates[at->second];
        bool const placed =
            component->term != kOtherTerm &&
            candidate.variables.try_emplace({point.number, component->term}, static_cast<int>(i))
                .second;
        if (!placed) candidate.others = true;
    }
    for (Candidate const& candidate : candidates) Take(candidate, style, numbering);
}

void Grouping::Take(Candidate const& candidate, ExodusStyle style, Numbering numbering) {
    if (candidate.variables.empty()) return;
    ExodusRank const rank = RankOf(style);
    auto const known = FindExodusKnown(candidate.stem, m_variables.elements);
    if (known && known->rank != rank) return;
    // A number alone may count components, points, species or anything else.
    bool const bare = style == ExodusStyle::VectorDigits ||
                      (style == ExodusStyle::Scalar && numbering == Numbering::Plain);
    if (!known && (bare || candidate.others)) return;

    auto const byTerms = ByTerms(candidate);
    if (!byTerms) return;
    auto const& wholes = WholeSets(rank);
    for (auto const& [terms, blocks] : *byTerms) {
        bool const whole = std::find(wholes.begin(), wholes.end(), terms) != wholes.end();
        if (!known && !whole) return;
        // Sxy may be beside Sxx or beside Sx, and tells nothing without either.
        bool const letters =
            style == ExodusStyle::TensorLetters || style == ExodusStyle::TensorDiagonal;
        if (letters && *terms.begin() > 2) return;
    }
    auto const label = LabelFor(candidate, known);
    if (!label) return;

    auto const most = std::max_element(
        byTerms->begin(), byTerms->end(),
        [&](auto const& a, auto const& b) { return Items(a.second) < Items(b.second); });
    for (auto const& entry : *byTerms) {
        std::string own = *label;
        if (entry.first != most->first) {
            own += entry.second.size() == 1 ? " of block " : " of blocks ";
            for (int const block : entry.second) {
                if (block != entry.second.front()) own += ", ";
                own += m_variables.blockIds[static_cast<std::size_t>(block)];
            }
            m_labels.insert(own);
            m_result.notes.push_back("'" + own +
                                     "' is a field of its own: it has other components "
                                     "than " +
                                     *label + " elsewhere");
        }
        AddGroup(candidate, own, rank, numbering, entry.first, entry.second);
    }
    for (auto const& [key, variable] : candidate.variables) {
        m_taken[static_cast<std::size_t>(variable)] = true;
    }
}

void Grouping::AddGroup(Candidate const& candidate, std::string const& label, ExodusRank rank,
                        Numbering numbering, std::set<int> const& terms,
                        std::vector<int> const& blocks) {
    ExodusGroup group;
    group.label = label;
    group.numbered = numbering != Numbering::None;
    group.blocks = blocks;
    auto const tails = ComponentTails(rank);
    for (int const term : terms) {
        group.components.push_back(label + tails[static_cast<std::size_t>(term)]);
    }
    auto const isUsed = [&](int point) {
        auto const at = candidate.variables.find({point, *terms.begin()});
        return at != candidate.variables.end() &&
               std::any_of(blocks.begin(), blocks.end(), [&](int block) {
                   return Present(static_cast<std::size_t>(block), at->second);
               });
    };
    for (int point = 1; isUsed(point); ++point) {
        std::vector<int>& row = group.variables.emplace_back();
        for (int const term : terms) row.push_back(candidate.variables.at({point, term}));
    }
    m_result.groups.push_back(std::move(group));
}

std::optional<std::map<std::set<int>, std::vector<int>>> Grouping::ByTerms(
    Candidate const& candidate) const {
    std::map<std::set<int>, std::vector<int>> result;
    for (std::size_t block = 0; block < m_variables.present.size(); ++block) {
        std::map<int, std::set<int>> points;
        for (auto const& [key, variable] : candidate.variables) {
            if (Present(block, variable)) points[key.first].insert(key.second);
        }
        if (points.empty()) continue;
        if (points.begin()->first != 1 ||
            points.rbegin()->first != static_cast<int>(points.size())) {
            return std::nullopt;
        }
        for (auto const& [point, terms] : points) {
            if (terms != points.begin()->second) return std::nullopt;
        }
        result[points.begin()->second].push_back(static_cast<int>(block));
    }
    if (result.empty()) return std::nullopt;
    return result;
}

std::optional<std::string> Grouping::LabelFor(Candidate const& candidate,
                                              std::optional<ExodusKnown> const& known) {
    auto const isFree = [&](std::string const& label) {
        if (m_labels.count(label) > 0) return false;
        // A variable of that very name goes by it, unless it is in this field.
        auto const same = std::find(m_variables.names.begin(), m_variables.names.end(), label);
        if (same == m_variables.names.end()) return true;
        int const index = static_cast<int>(same - m_variables.names.begin());
        return std::any_of(candidate.variables.begin(), candidate.variables.end(),
                           [&](auto const& entry) { return entry.second == index; });
    };
    std::string const label = known ? known->label : candidate.stem;
    std::string const field = known ? known->field : "";
    if (isFree(label) && (field.empty() || m_mapped.insert(field).second)) {
        m_labels.insert(label);
        return label;
    }
    bool const own = known && known->label != candidate.stem && isFree(candidate.stem);
    if (!own) return std::nullopt;
    m_result.notes.push_back("'" + candidate.stem + "' keeps its own name, because there is " +
                             label + " by another name");
    m_labels.insert(candidate.stem);
    return candidate.stem;
}

// What no table claims: scalars, each a field. One that has the label of something else is renamed.
void Grouping::TakeRest() {
    for (std::size_t i = 0; i < m_variables.names.size(); ++i) {
        if (m_taken[i]) continue;
        std::string const& name = m_variables.names[i];
        ExodusGroup group;
        group.variables = {{static_cast<int>(i)}};
        for (std::size_t block = 0; block < m_variables.present.size(); ++block) {
            if (m_variables.present[block][i]) group.blocks.push_back(static_cast<int>(block));
        }
        if (group.blocks.empty()) continue;
        auto known = FindExodusKnown(name, m_variables.elements);
        if (known && known->rank != ExodusRank::Scalar) known.reset();
        std::optional<std::string> label;
        if (known || !IsVariableLabel(name)) {
            label = LabelFor({name, false, {{{1, 0}, static_cast<int>(i)}}}, known);
        }
        group.label = label.value_or(name + " (" + std::to_string(i + 1) + ")");
        if (!label) {
            m_labels.insert(group.label);
            std::string& note = m_result.notes.emplace_back("'");
            note.append(name).append("' is called '").append(group.label);
            note.append("': it is not, or not alone, the variable ").append(name);
        }
        group.components = {group.label};
        m_result.groups.push_back(std::move(group));
    }
}

void Grouping::TellNumbers() {
    std::map<std::string, std::set<int>> series;
    for (std::size_t i = 0; i < m_variables.names.size(); ++i) {
        if (m_taken[i]) continue;
        auto const point = FindExodusPoint(m_variables.names[i], false);
        if (point) series[std::string(point->rest) + point->form].insert(point->number);
    }
    for (auto const& [stem, numbers] : series) {
        int const count = static_cast<int>(numbers.size());
        if (count < 2 || *numbers.begin() != 1 || *numbers.rbegin() != count) continue;
        std::string& note = m_result.notes.emplace_back("'");
        note.append(stem).append("1' to '").append(stem).append(std::to_string(count));
        note.append("' are fields of their own: their numbers do not say what they count");
    }
}

}  // namespace

ExodusGroups GroupExodusVariables(ExodusVariables const& variables) {
    return Grouping(variables).Run();
}

}  // namespace kov::tool
