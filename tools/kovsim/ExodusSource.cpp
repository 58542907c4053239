#include "ExodusSource.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Failure.h"

namespace kov::tool {

namespace {

bool IsUnwritten(double value, double unwritten) {
    return value == unwritten || (std::isnan(unwritten) && std::isnan(value));
}

}  // namespace

ExodusSource::ExodusSource(std::string const& path)
    : m_file(path), m_layout(ReadExodusLayout(m_file)), m_notes(m_layout.notes) {
    if (m_layout.frames == 0) return;
    m_nodes = ExodusLabels(m_file, "node_num_map", m_layout.nodes);
    m_elements = ExodusLabels(m_file, "elem_num_map", m_layout.elements);
    AddFields(m_layout.atNodes);
    AddFields(m_layout.inElements);
}

void ExodusSource::AddFields(ExodusSection const& section) {
    bool const elements = section.variables.elements;
    ExodusGroups groups = GroupExodusVariables(section.variables);
    for (std::string& note : groups.notes) {
        m_notes.push_back((elements ? "element variables: " : "nodal variables: ") +
                          std::move(note));
    }
    for (ExodusGroup& group : groups.groups) {
        Field field;
        field.head.label = std::move(group.label);
        field.head.components = std::move(group.components);
        field.head.place = !elements        ? ResultPlace::Node
                           : group.numbered ? ResultPlace::IntegrationPoint
                                            : ResultPlace::Element;
        field.labels = elements ? &m_elements : &m_nodes;
        for (int const block : group.blocks) {
            auto const b = static_cast<std::size_t>(block);
            Part part;
            part.points = 0;
            part.first = elements ? m_layout.blocks[b].first : 0;
            part.count = elements ? m_layout.blocks[b].count : m_layout.nodes;
            for (std::vector<int> const& point : group.variables) {
                if (!section.lanes[b][static_cast<std::size_t>(point[0])]) break;
                for (int const variable : point) {
                    part.lanes.push_back(&*section.lanes[b][static_cast<std::size_t>(variable)]);
                }
                ++part.points;
            }
            field.parts.push_back(std::move(part));
        }
        m_fields.push_back(std::move(field));
    }
}

bool ExodusSource::NextFrame(ResultFrame& frame) {
    m_field = m_fields.size();
    m_hasAhead = false;
    if (m_frame == m_layout.frames) return false;
    if (m_frame >= m_file.WholeRecords()) {
        throw UnfinishedResults(m_file.Path() + ": time step " + std::to_string(m_frame + 1) +
                                " is not whole: the file was cut short, or is still being "
                                "written");
    }
    double time = 0.0;
    m_file.Read(*m_layout.times, {m_frame}, {1}, &time);
    std::string const step = std::to_string(m_frame + 1);
    if (!std::isfinite(time) || IsUnwritten(time, m_file.Unwritten(*m_layout.times))) {
        m_file.Refuse(*m_layout.times, "time step " + step + " has no time");
    }
    if (m_ascending && m_frame > 0 && !(time > m_lastTime)) {
        m_ascending = false;
        m_notes.push_back("times do not ascend: time step " + step +
                          " is not behind the one before");
    }
    m_lastTime = time;
    frame = {};
    frame.increment = static_cast<int>(m_frame) + 1;
    frame.value = frame.totalTime = time;
    ++m_frame;
    m_field = 0;
    return true;
}

bool ExodusSource::NextField(ResultField& field) {
    m_hasAhead = false;
    // A field that was not written in this frame is not in it.
    while (m_field < m_fields.size()) {
        ++m_field;
        m_part = m_item = 0;
        if (!ReadBlock(m_ahead)) continue;
        m_hasAhead = true;
        field = m_fields[m_field - 1].head;
        return true;
    }
    m_part = m_item = 0;
    return false;
}

bool ExodusSource::NextBlock(ResultBlock& block) {
    if (m_hasAhead) {
        std::swap(block, m_ahead);
        m_hasAhead = false;
        return true;
    }
    return ReadBlock(block);
}

bool ExodusSource::ReadBlock(ResultBlock& block) {
    if (m_frame == 0 || m_field == 0 || m_field > m_fields.size()) return false;
    Field& field = m_fields[m_field - 1];
    while (m_part < field.parts.size()) {
        Part const& part = field.parts[m_part];
        std::size_t const most = std::clamp<std::size_t>(
            kMostBytes / (part.lanes.size() * sizeof(double)), 1, kMostRows);
        std::size_t const count = std::min(most, part.count - m_item);
        std::size_t const first = m_item;
        m_item += count;
        if (m_item == part.count) {
            m_item = 0;
            ++m_part;
        }
        ReadRows(field, part, first, count, block);
        if (!block.labels.empty()) return true;
    }
    return false;
}

void ExodusSource::ReadRows(Field& field, Part const& part, std::size_t first, std::size_t count,
                            ResultBlock& block) {
    std::size_t const width = part.lanes.size();
    block.points = static_cast<int>(part.points);
    block.values.resize(count * width);
    field.labels->Read(m_file, part.first + first, count, block.labels);
    m_lane.resize(count);
    std::vector<std::size_t> missing(count, 0);
    for (std::size_t c = 0; c < width; ++c) {
        ExodusLane const& lane = *part.lanes[c];
        std::vector<std::size_t> start = lane.start, extent(start.size(), 1);
        start[0] = m_frame - 1;
        start[lane.along] += first;
        extent[lane.along] = count;
        m_file.Read(lane.variable, start, extent, m_lane.data());
        for (std::size_t i = 0; i < count; ++i) {
            block.values[i * width + c] = m_lane[i];
            if (IsUnwritten(m_lane[i], lane.unwritten)) ++missing[i];
        }
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < count; ++i) {
        if (missing[i] > 0) {
            ++field.unwritten;
            if (missing[i] < width) ++field.partly;
            continue;
        }
        if (kept != i) {
            block.labels[kept] = block.labels[i];
            std::copy_n(block.values.data() + i * width, width, block.values.data() + kept * width);
        }
        ++kept;
    }
    block.labels.resize(kept);
    block.values.resize(kept * width);
}

std::vector<std::string> ExodusSource::Notes() const {
    std::vector<std::string> notes = m_notes;
    for (Field const& field : m_fields) {
        if (field.unwritten == 0) continue;
        std::string note = field.head.label + ": " + std::to_string(field.unwritten) +
                           " rows that were never written are left out";
        if (field.partly > 0) {
            note += ", " + std::to_string(field.partly) + " of them with some values";
        }
        notes.push_back(std::move(note));
    }
    return notes;
}

double ExodusSource::Done() const {
    if (m_layout.frames == 0) return 1.0;
    double const fields = m_fields.empty()
                              ? 1.0
                              : static_cast<double>(m_field) / static_cast<double>(m_fields.size());
    double const frames = m_frame == 0 ? 0.0 : static_cast<double>(m_frame - 1) + fields;
    return std::clamp(frames / static_cast<double>(m_layout.frames), 0.0, 1.0);
}

}  // namespace kov::tool
