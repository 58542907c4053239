#include "ExodusLayout.h"

#include <algorithm>
#include <limits>
#include <set>
#include <utility>

#include "DataFields.h"
#include "Json.h"
#include "ObjectContent.h"

namespace kov::tool {

namespace {

using Variable = NetcdfFile::Variable;

// Kinds of variables that a document has no place for.
struct OtherKind {
    char const* names;
    char const* what;
};
constexpr OtherKind kOtherKinds[] = {
    {"name_glo_var", "global"},
    {"name_nset_var", "node set"},
    {"name_sset_var", "side set"},
    {"name_edge_var", "edge block"},
    {"name_face_var", "face block"},
    {"name_eset_var", "edge set"},
    {"name_fset_var", "face set"},
    {"name_elset_var", "element set"},
    {"name_assembly_var", "assembly"},
    {"name_blob_var", "blob"},
    {"name_elem_red_var", "whole element block"},
};
constexpr std::size_t kMostTold = 8;
constexpr std::size_t kMost = static_cast<std::size_t>(std::numeric_limits<int>::max());
// Endings that are given to the columns of values with a dimension for components.
constexpr char const* kColumns[] = {"_x", "_y", "_z"};

std::string Counted(std::size_t count, std::string const& what) {
    return CountText(static_cast<long>(count), what);
}

class LayoutReader {
  public:
    explicit LayoutReader(NetcdfFile const& file) : m_file(file) {}

    ExodusLayout Run() {
        if (!m_file.Dimension("num_dim")) {
            m_file.Refuse("is not an Exodus II file: it has no dimension num_dim");
        }
        ReadTimes();
        m_layout.nodes = Length("num_nodes");
        ReadBlocks();
        ReadNodes();
        ReadElements();
        TellOthers();
        return std::move(m_layout);
    }

  private:
    std::size_t Length(std::string const& name) const {
        std::size_t const length = m_file.Dimension(name).value_or(0);
        if (length > kMost) {
            m_file.Refuse(name + " is " + std::to_string(length) + ", and counts end at " +
                          std::to_string(kMost));
        }
        return length;
    }
    void Note(std::string text) { m_layout.notes.push_back(std::move(text)); }

    void ReadTimes();
    void ReadBlocks();
    void ReadNodes();
    void ReadElements();
    void TellOthers();
    std::vector<std::string> Names(std::string const& kind, std::string const& dimension,
                                   std::string const& unnamed);
    std::vector<std::vector<bool>> TruthTable(std::size_t variables) const;
    void CheckValues(Variable const& variable, std::vector<std::size_t> const& shape) const;
    std::vector<ExodusLane> Lanes(Variable const& variable, std::size_t items) const;
    ExodusLane LaneOfAll(Variable const& variable, std::size_t which, std::size_t first) const {
        return {variable, {0, which, first}, 2, m_file.Unwritten(variable)};
    }

    NetcdfFile const& m_file;
    ExodusLayout m_layout;
};

void LayoutReader::ReadTimes() {
    m_layout.frames = Length("time_step");
    m_layout.times = m_file.Find("time_whole");
    if (m_layout.frames == 0) {
        Note("it has no time steps, and so no results");
        return;
    }
    if (!m_layout.times) m_file.Refuse("has time steps, but no times: time_whole is missing");
    if (!m_layout.times->IsReal() ||
        m_layout.times->shape != std::vector<std::size_t>{m_layout.frames}) {
        m_file.Refuse(*m_layout.times, "is not a list of a real number for each of " +
                                           Counted(m_layout.frames, "time step"));
    }
}

void LayoutReader::ReadBlocks() {
    std::size_t const count = Length("num_el_blk");
    std::vector<long long> ids(count);
    if (auto const properties = m_file.Find("eb_prop1")) {
        if (!properties->IsInteger() || properties->shape != std::vector<std::size_t>{count}) {
            m_file.Refuse(*properties,
                          "is not a whole number for each of " + Counted(count, "element block"));
        }
        if (count > 0) m_file.Read(*properties, {0}, {count}, ids.data());
    } else {
        for (std::size_t b = 0; b < count; ++b) ids[b] = static_cast<long long>(b) + 1;
    }
    std::size_t first = 0;
    for (std::size_t b = 0; b < count; ++b) {
        // A block without elements has no such dimension.
        std::size_t const size = Length("num_el_in_blk" + std::to_string(b + 1));
        m_layout.blocks.push_back({ids[b], first, size});
        first += size;
        if (first > kMost) m_file.Refuse("has more elements than " + std::to_string(kMost));
    }
    m_layout.elements = first;
    auto const told = m_file.Dimension("num_elem");
    if (told && *told != first) {
        m_file.Refuse("num_elem is " + std::to_string(*told) + ", and the element blocks have " +
                      Counted(first, "element"));
    }
}

// The names of the variables of a kind, distinct and none empty.
std::vector<std::string> LayoutReader::Names(std::string const& kind, std::string const& dimension,
                                             std::string const& unnamed) {
    std::vector<std::string> names;
    auto const variable = m_file.Find(kind);
    if (variable) {
        names = m_file.ReadTexts(*variable);
    } else {
        names.resize(Length(dimension));
    }
    std::set<std::string> used;
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::string& name = names[i];
        std::string const number = std::to_string(i + 1);
        for (std::string_view rest = name; !rest.empty();) {
            std::size_t const length = Utf8SequenceLength(rest);
            if (length == 0) m_file.Refuse(*variable, "name " + number + " is not UTF-8");
            rest.remove_prefix(length);
        }
        if (HasControl(name)) {
            m_file.Refuse(*variable, "name " + number + " has a control character");
        }
        std::string const original = name;
        if (name.empty()) name = unnamed + number;
        while (!used.insert(name).second) name.append(" (").append(number).append(")");
        if (name == original) continue;
        std::string note;
        if (original.empty()) {
            note.append("variable ").append(number).append(" of ").append(kind);
            note.append(" has no name; it is called ").append(name);
        } else {
            note.append("there are several '").append(original).append("' in ").append(kind);
            note.append("; variable ").append(number);
            note.append(" is called '").append(name).append("'");
        }
        Note(std::move(note));
    }
    return names;
}

void LayoutReader::CheckValues(Variable const& variable,
                               std::vector<std::size_t> const& shape) const {
    if (!variable.IsReal()) m_file.Refuse(variable, "its values are not real numbers");
    bool const fits = variable.shape.size() >= shape.size() &&
                      std::equal(shape.begin(), shape.end(), variable.shape.begin()) &&
                      (variable.shape.size() == shape.size() ||
                       (variable.shape.size() == shape.size() + 1 && shape.size() == 2 &&
                        variable.shape.back() >= 1 && variable.shape.back() <= 3));
    if (fits) return;
    auto const text = [](std::vector<std::size_t> const& lengths) {
        std::string result;
        for (std::size_t const length : lengths) {
            result += (result.empty() ? "" : " x ") + std::to_string(length);
        }
        return result.empty() ? "1" : result;
    };
    m_file.Refuse(variable, "has " + text(variable.shape) + " values, where " + text(shape) +
                                " were expected");
}

// The lanes of a variable that stands alone: one, or one for each component.
std::vector<ExodusLane> LayoutReader::Lanes(Variable const& variable, std::size_t items) const {
    CheckValues(variable, {m_layout.frames, items});
    double const unwritten = m_file.Unwritten(variable);
    if (variable.shape.size() == 2) return {{variable, {0, 0}, 1, unwritten}};
    std::vector<ExodusLane> lanes;
    for (std::size_t c = 0; c < variable.shape[2]; ++c) {
        lanes.push_back({variable, {0, 0, c}, 1, unwritten});
    }
    return lanes;
}

void LayoutReader::ReadNodes() {
    if (m_layout.frames == 0) return;
    std::vector<std::string> const names = Names("name_nod_var", "num_nod_var", "nodal_variable_");
    ExodusSection& section = m_layout.atNodes;
    section.lanes.resize(1);
    section.variables.present.resize(1);
    auto const add = [&](std::string name, std::optional<ExodusLane> lane) {
        section.variables.names.push_back(std::move(name));
        section.variables.present[0].push_back(lane && m_layout.nodes > 0);
        section.lanes[0].push_back(std::move(lane));
    };
    section.variables.items = {m_layout.nodes};
    auto const all = m_file.Find("vals_nod_var");
    if (all) CheckValues(*all, {m_layout.frames, names.size(), m_layout.nodes});
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (all) {
            add(names[i], LaneOfAll(*all, i, 0));
            continue;
        }
        auto const variable = m_file.Find("vals_nod_var" + std::to_string(i + 1));
        if (!variable) {
            Note("nodal variable '" + names[i] + "' has no values");
            continue;
        }
        std::vector<ExodusLane> lanes = Lanes(*variable, m_layout.nodes);
        if (lanes.size() == 1) {
            add(names[i], std::move(lanes[0]));
            continue;
        }
        for (std::size_t c = 0; c < lanes.size(); ++c) {
            std::string name = names[i] + kColumns[c];
            auto const& used = section.variables.names;
            if (std::find(names.begin(), names.end(), name) != names.end() ||
                std::find(used.begin(), used.end(), name) != used.end()) {
                m_file.Refuse(*variable,
                              "its component " + name + " is the name of another variable");
            }
            add(std::move(name), std::move(lanes[c]));
        }
    }
}

// For each block and variable whether there are values; all true where the file does not say.
std::vector<std::vector<bool>> LayoutReader::TruthTable(std::size_t variables) const {
    std::size_t const blocks = m_layout.blocks.size();
    std::vector<std::vector<bool>> table(blocks, std::vector<bool>(variables, true));
    auto const stored = m_file.Find("elem_var_tab");
    if (!stored || blocks == 0 || variables == 0) return table;
    if (!stored->IsInteger() || stored->shape != std::vector<std::size_t>{blocks, variables}) {
        m_file.Refuse(*stored, "is not a table of " + Counted(blocks, "element block") + " and " +
                                   Counted(variables, "variable"));
    }
    std::vector<long long> row(variables);
    for (std::size_t b = 0; b < blocks; ++b) {
        m_file.Read(*stored, {b, 0}, {1, variables}, row.data());
        for (std::size_t i = 0; i < variables; ++i) table[b][i] = row[i] != 0;
    }
    return table;
}

void LayoutReader::ReadElements() {
    if (m_layout.frames == 0) return;
    ExodusSection& section = m_layout.inElements;
    section.variables.elements = true;
    section.variables.names = Names("name_elem_var", "num_elem_var", "element_variable_");
    std::size_t const count = section.variables.names.size(), blocks = m_layout.blocks.size();
    bool const tabled = m_file.Find("elem_var_tab").has_value();
    auto const table = TruthTable(count);
    auto const all = m_file.Find("vals_elem_var");
    if (all) CheckValues(*all, {m_layout.frames, count, m_layout.elements});

    section.lanes.assign(blocks, std::vector<std::optional<ExodusLane>>(count));
    section.variables.present.assign(blocks, std::vector<bool>(count, false));
    for (std::size_t b = 0; b < blocks; ++b) {
        ExodusBlock const& block = m_layout.blocks[b];
        section.variables.items.push_back(block.count);
        section.variables.blockIds.push_back(std::to_string(block.id));
        for (std::size_t i = 0; i < count; ++i) {
            std::optional<ExodusLane>& lane = section.lanes[b][i];
            std::string const name =
                "vals_elem_var" + std::to_string(i + 1) + "eb" + std::to_string(b + 1);
            if (all) {
                if (table[b][i]) lane = LaneOfAll(*all, i, block.first);
            } else if (auto const variable = m_file.Find(name)) {
                if (table[b][i]) {
                    std::vector<ExodusLane> lanes = Lanes(*variable, block.count);
                    if (lanes.size() > 1) m_file.Refuse(*variable, "has a third dimension");
                    lane = std::move(lanes[0]);
                } else {
                    Note(name + " is passed over: elem_var_tab says that it is not there");
                }
            } else if (tabled && table[b][i] && block.count > 0) {
                m_file.Refuse(name + " is missing, and elem_var_tab says that it is there");
            }
            section.variables.present[b][i] = lane.has_value() && block.count > 0;
        }
    }
    for (std::size_t i = 0; i < count; ++i) {
        bool const somewhere =
            std::any_of(section.variables.present.begin(), section.variables.present.end(),
                        [&](auto const& row) { return row[i]; });
        if (!somewhere) Note("element variable '" + section.variables.names[i] + "' has no values");
    }
}

void LayoutReader::TellOthers() {
    for (OtherKind const& kind : kOtherKinds) {
        auto const variable = m_file.Find(kind.names);
        if (!variable) continue;
        std::vector<std::string> const names = m_file.ReadTexts(*variable);
        if (names.empty()) continue;
        std::string told;
        for (std::size_t i = 0; i < std::min(names.size(), kMostTold); ++i) {
            told += (i == 0 ? "" : ", ") + names[i];
        }
        if (names.size() > kMostTold) {
            told += " and " + std::to_string(names.size() - kMostTold) + " more";
        }
        Note(Counted(names.size(), std::string(kind.what) + " variable") + " passed over: " + told);
    }
    if (int const groups = m_file.Groups(); groups > 0) {
        Note(Counted(static_cast<std::size_t>(groups), "group") +
             " below the root of the file passed over");
    }
}

}  // namespace

ExodusLayout ReadExodusLayout(NetcdfFile const& file) { return LayoutReader(file).Run(); }

}  // namespace kov::tool
