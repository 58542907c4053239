#include "FrdSource.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include "Interrupt.h"
#include "Names.h"

namespace kov::tool {
namespace {

constexpr std::size_t kWidth = 12;   // columns of a number
constexpr std::size_t kOnALine = 6;  // numbers
constexpr std::size_t kKey = 3;      // columns of " -1" and its like
constexpr std::size_t kFormatColumn = 73;
constexpr long long kMostComponents = 1000;

bool Begins(std::string_view line, std::string_view with) {
    return line.substr(0, with.size()) == with;
}

std::size_t LabelWidth(FrdHeader const& header) { return header.format == 0 ? 5 : 10; }

}  // namespace

bool LooksLikeFrd(std::string_view start) { return Begins(start, "    1C"); }

FrdSource::FrdSource(std::string const& path) : FrdSource(std::make_unique<TextLines>(path)) {}

FrdSource::FrdSource(std::unique_ptr<TextLines> lines) : m_lines(std::move(lines)) {}

void FrdSource::Fail(std::string const& text) const {
    throw Failure(m_lines->Where() + ": " + text);
}

std::string FrdSource::Where() const { return m_where.empty() ? m_lines->Path() : m_where; }

std::string_view FrdSource::NeedLine(char const* what) {
    std::string_view line;
    if (m_lines->Next(line) && m_lines->IsEnded()) return line;
    throw UnfinishedResults(m_lines->Where() + ": the file ends within " + what);
}

// Reads up to the rows of the next data set; false at the end of the file.
bool FrdSource::ReadHeader() {
    std::string_view line;
    while (!m_atEnd) {
        bool const isThere = m_lines->Next(line);
        if (!isThere || (!m_lines->IsEnded() && !Begins(line, " 9999"))) {
            throw UnfinishedResults(m_lines->Where() +
                                    ": the file ends without 9999, so that its last frame may not "
                                    "be complete");
        }
        if (Begins(line, "    1PSTEP")) {
            if (!m_next.ReadStep(line)) Fail("no step and increment behind 1PSTEP");
        } else if (Begins(line, "    1PMODE")) {
            if (!m_next.ReadMode(line)) Fail("no mode behind 1PMODE");
        } else if (Begins(line, "    2C") || Begins(line, "    3C")) {
            SkipMesh(line);
        } else if (Begins(line, "  100C")) {
            if (!m_next.ReadValue(line)) {
                Fail("expected value, count, kind, number and format behind 100C");
            }
            if (!std::isfinite(m_next.value)) {
                Fail("'" + Shown(m_next.valueText) + "' is no time, frequency or load factor");
            }
            if (m_next.format != 0 && m_next.format != 1) {
                Fail("the values are binary; expected an ASCII .frd file");
            }
            m_where = m_lines->Where();
            line = NeedLine("the header of a data set");
            if (!Begins(line, " -4")) Fail("expected -4 and the name of a field behind 100C");
            m_next.name = std::string(FrdColumns(line, 5, 8));
            long long place = 0;
            if (m_next.name.empty() || !FrdInteger(FrdColumns(line, 13, 5), m_componentCount) ||
                m_componentCount < 1 || m_componentCount > kMostComponents) {
                Fail("expected a name and how many components behind -4");
            }
            if (!FrdInteger(FrdColumns(line, 18, 5), place) || place != 1) {
                Fail("field '" + Shown(m_next.name) + "' is not one of values at nodes");
            }
            return true;
        } else if (Begins(line, " 9999")) {
            m_atEnd = true;
        } else if (!Begins(line, "    1") && !FrdColumns(line, 0, line.size()).empty()) {
            Fail("'" + Shown(line.substr(0, 12)) + "' begins no record of an .frd file");
        }
    }
    return false;
}

// The document has its own mesh.
void FrdSource::SkipMesh(std::string_view header) {
    bool const nodes = header[4] == '2';
    std::string_view const format = FrdColumns(header, kFormatColumn, 2);
    if (!format.empty() && format != "0" && format != "1") {
        Fail("the mesh is binary; expected an ASCII .frd file");
    }
    long long count = 0;
    if (!FrdInteger(FrdColumns(header, 24, 12), count)) {
        Fail(nodes ? "no count of nodes behind 2C" : "no count of elements behind 3C");
    }
    long long rows = 0;
    for (;;) {
        std::string_view const line = NeedLine(nodes ? "the nodes" : "the elements");
        if (Begins(line, " -3")) break;
        if (Begins(line, " -1")) {
            ++rows;
        } else if (!Begins(line, " -2")) {
            Fail(std::string("expected a row that begins with -1, -2 or -3 within the ") +
                 (nodes ? "nodes" : "elements"));
        }
        if (rows % 65'536 == 0) ThrowIfInterrupted();
    }
    if (rows != count) {
        Fail(std::to_string(rows) + (nodes ? " nodes" : " elements") + " where the header says " +
             std::to_string(count));
    }
    (nodes ? m_nodes : m_elements) += rows;
}

void FrdSource::ReadNames() {
    m_components.clear();
    m_kept = 0;
    for (long long i = 0; i < m_componentCount; ++i) {
        std::string_view const line = NeedLine("the header of a data set");
        if (!Begins(line, " -5")) {
            Fail(std::to_string(i) + " names of components where the header says " +
                 std::to_string(m_componentCount));
        }
        if (!m_components.emplace_back().Read(line)) Fail("no name and numbers behind -5");
        if (m_components.back().isInFile) ++m_kept;
    }
    if (m_kept == 0) Fail("field '" + Shown(m_next.name) + "' has no components");
    m_rows = 0;
    m_inRows = true;
    m_hasHeader = false;
}

bool FrdSource::NextFrame(ResultFrame& frame) {
    SkipRows();
    if (!m_hasHeader) m_hasHeader = ReadHeader();
    while (m_begun && m_hasHeader && m_next.IsFrameOf(m_at)) {
        ReadNames();
        SkipRows();
        m_hasHeader = ReadHeader();
    }
    if (!m_hasHeader) return false;
    m_begun = true;
    m_at = m_next;
    frame = m_clock.FrameOf(m_at);
    return true;
}

bool FrdSource::NextField(ResultField& field) {
    SkipRows();
    if (!m_hasHeader) m_hasHeader = ReadHeader();
    if (!m_hasHeader || !m_next.IsFrameOf(m_at)) return false;
    m_at = m_next;
    ReadNames();
    LabelFrdField(m_at.name, m_components, field);
    return true;
}

bool FrdSource::NextBlock(ResultBlock& block) {
    block.labels.clear();
    block.values.clear();
    block.points = 1;
    while (m_inRows && block.labels.size() < kBlock) {
        std::string_view line = NeedLine("the rows of a field");
        if (Begins(line, " -3")) {
            FinishRows();
            break;
        }
        std::size_t const label = LabelWidth(m_at);
        long long number = 0;
        if (!Begins(line, " -1")) Fail("expected a row that begins with -1, or -3 behind the last");
        if (!FrdInteger(FrdColumns(line, kKey, label), number) || number < 1 || number > INT_MAX) {
            Fail("'" + Shown(FrdColumns(line, kKey, label)) + "' is no label of a node");
        }
        ++m_rows;
        block.labels.push_back(static_cast<int>(number));
        for (std::size_t read = 0; read < m_kept;) {
            std::size_t const count = std::min(kOnALine, m_kept - read);
            ReadNumbers(line, count, block.values);
            read += count;
            if (read == m_kept) break;
            line = NeedLine("the rows of a field");
            if (!Begins(line, " -2")) Fail("expected a row that begins with -2 for further values");
        }
    }
    return !block.labels.empty();
}

void FrdSource::ReadNumbers(std::string_view line, std::size_t count, std::vector<double>& values) {
    std::size_t at = kKey + LabelWidth(m_at);
    for (std::size_t i = 0; i < count; ++i, at += kWidth) {
        std::string_view const text = FrdColumns(line, at, kWidth);
        double value = 0.0;
        if (!FrdReal(text, value)) {
            if (text.empty()) {
                Fail(std::to_string(i) + (i == 1 ? " number" : " numbers") +
                     " in the row; expected " + std::to_string(count));
            }
            Fail("'" + Shown(text) + "' is no real number");
        }
        values.push_back(value);
    }
    if (!FrdColumns(line, at, line.size()).empty()) {
        Fail("more than " + std::to_string(count) + (count == 1 ? " number" : " numbers") +
             " in the row");
    }
}

void FrdSource::SkipRows() {
    while (m_inRows) {
        std::string_view const line = NeedLine("the rows of a field");
        if (Begins(line, " -3")) {
            FinishRows();
        } else if (Begins(line, " -1")) {
            if (++m_rows % 65'536 == 0) ThrowIfInterrupted();
        } else if (!Begins(line, " -2")) {
            Fail("expected a row that begins with -1, or -3 behind the last");
        }
    }
}

void FrdSource::FinishRows() {
    m_inRows = false;
    if (m_rows == m_at.rows) return;
    Fail(std::to_string(m_rows) + " rows in field '" + Shown(m_at.name) +
         "' where the header says " + std::to_string(m_at.rows));
}

std::vector<std::string> FrdSource::Notes() const {
    if (m_nodes == 0 && m_elements == 0) return {};
    return {m_lines->Path() + ": the mesh of the file is not looked at, " +
            std::to_string(m_nodes) + (m_nodes == 1 ? " node and " : " nodes and ") +
            std::to_string(m_elements) + (m_elements == 1 ? " element" : " elements")};
}

}  // namespace kov::tool
