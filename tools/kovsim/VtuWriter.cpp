#include "VtuWriter.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>
#include <utility>

#include "Failure.h"
#include "Interrupt.h"
#include "Json.h"
#include "ObjectContent.h"

namespace kov::tool {
namespace {

constexpr std::size_t kBuffer = std::size_t{1} << 20;

constexpr std::pair<VtuGroup, char const*> kGroups[] = {
    {VtuGroup::PointData, "PointData"},
    {VtuGroup::CellData, "CellData"},
    {VtuGroup::Points, "Points"},
    {VtuGroup::Cells, "Cells"},
};

[[noreturn]] void Fail(std::string const& path) {
    throw Failure(path + ": cannot be written: " + std::generic_category().message(errno));
}

std::string FieldDataOf(char const* type, std::string_view name, std::string const& value) {
    return std::string("<DataArray type=\"") + type + "\" Name=\"" + XmlText(name) +
           "\" NumberOfTuples=\"1\" format=\"ascii\">" + value + "</DataArray>\n";
}

}  // namespace

std::string XmlText(std::string_view text) {
    std::string xml;
    while (!text.empty()) {
        std::size_t const length = Utf8SequenceLength(text);
        auto const byte = static_cast<unsigned char>(text.front());
        // XML has no U+FFFE and U+FFFF.
        std::string_view const sequence = text.substr(0, length);
        bool const none = sequence == "\xef\xbf\xbe" || sequence == "\xef\xbf\xbf";
        if (length == 0 || byte < 0x20 || byte == 0x7f || none) {
            xml += '?';
        } else if (byte == '&') {
            xml += "&amp;";
        } else if (byte == '<') {
            xml += "&lt;";
        } else if (byte == '>') {
            xml += "&gt;";
        } else if (byte == '"') {
            xml += "&quot;";
        } else {
            xml += sequence;
        }
        text.remove_prefix(length == 0 ? 1 : length);
    }
    return xml;
}

VtuWriter::VtuWriter(std::string path)
    : m_path(std::move(path)),
      m_descriptor(open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)),
      m_buffer(std::make_unique_for_overwrite<char[]>(kBuffer)) {
    if (m_descriptor < 0) Fail(m_path);
}

VtuWriter::~VtuWriter() {
    if (m_descriptor >= 0) close(m_descriptor);
}

void VtuWriter::Add(VtuGroup group, std::string_view name, char const* type, int components,
                    std::int64_t bytes, std::function<void(VtuWriter&)> write,
                    std::vector<std::string> const& labels) {
    std::string const base = XmlText(name);
    std::string unique = base;
    auto const key = [&] { return std::to_string(static_cast<int>(group)) + unique; };
    for (int number = 2; !m_names.insert(key()).second; ++number)
        unique = base + "_" + std::to_string(number);
    std::string attributes;
    if (components > 1) attributes = " NumberOfComponents=\"" + std::to_string(components) + "\"";
    for (std::size_t i = 0; i < labels.size(); ++i) {
        attributes += " ComponentName" + std::to_string(i) + "=\"" + XmlText(labels[i]) + "\"";
    }
    m_arrays.push_back({group, unique, type, bytes, std::move(write), attributes});
}

void VtuWriter::AddTexts(std::string_view name, std::vector<std::string> texts) {
    m_fieldData += "<Array type=\"String\" Name=\"" + XmlText(name) + "\" NumberOfTuples=\"" +
                   std::to_string(texts.size()) + "\" format=\"ascii\">";
    for (std::string const& text : texts) {
        for (char const c : text)
            m_fieldData += " " + std::to_string(static_cast<int>(static_cast<unsigned char>(c)));
        m_fieldData += " 0";
    }
    m_fieldData += "</Array>\n";
}

void VtuWriter::AddNumber(std::string_view name, double value) {
    m_fieldData += FieldDataOf("Float64", name, NumberText(value));
}

void VtuWriter::AddNumber(std::string_view name, int value) {
    m_fieldData += FieldDataOf("Int32", name, std::to_string(value));
}

std::string VtuWriter::Head(std::int64_t points, std::int64_t cells) const {
    std::string head =
        "<?xml version=\"1.0\"?>\n"
        "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
        "header_type=\"UInt64\">\n"
        "<UnstructuredGrid>\n";
    if (!m_fieldData.empty()) head += "<FieldData>\n" + m_fieldData + "</FieldData>\n";
    head += "<Piece NumberOfPoints=\"" + std::to_string(points) + "\" NumberOfCells=\"" +
            std::to_string(cells) + "\">\n";
    for (auto const& [group, tag] : kGroups) {
        (head += "<") += tag;
        head += ">\n";
        std::int64_t offset = 0;
        for (Array const& array : m_arrays) {
            if (array.group == group) {
                head += std::string("<DataArray type=\"") + array.type + "\" Name=\"" + array.name +
                        "\"" + array.attributes;
                head += " format=\"appended\" offset=\"" + std::to_string(offset) + "\"/>\n";
            }
            offset += array.bytes + static_cast<std::int64_t>(sizeof(std::uint64_t));
        }
        (head += "</") += tag;
        head += ">\n";
    }
    return head + "</Piece>\n</UnstructuredGrid>\n<AppendedData encoding=\"raw\">\n_";
}

void VtuWriter::Write(std::int64_t points, std::int64_t cells) {
    std::string const head = Head(points, cells);
    m_left = static_cast<std::int64_t>(head.size());
    m_total = m_left;
    for (Array const& array : m_arrays) m_total += array.bytes;
    Append(head.data(), head.size());
    for (Array const& array : m_arrays) {
        auto const bytes = static_cast<std::uint64_t>(array.bytes);
        m_left = array.bytes + static_cast<std::int64_t>(sizeof bytes);
        Append(&bytes, sizeof bytes);
        array.write(*this);
        if (m_left != 0)
            throw Failure(m_path + ": array '" + array.name + "' came out shorter than announced");
    }
    constexpr std::string_view tail = "\n</AppendedData>\n</VTKFile>\n";
    m_left = static_cast<std::int64_t>(tail.size());
    Append(tail.data(), tail.size());
    Flush();
    if (fsync(m_descriptor) != 0 && errno != EINVAL) Fail(m_path);
    int const descriptor = std::exchange(m_descriptor, -1);
    if (close(descriptor) != 0) Fail(m_path);
}

void VtuWriter::Append(void const* data, std::size_t bytes) {
    m_left -= static_cast<std::int64_t>(bytes);
    if (m_left < 0) throw Failure(m_path + ": an array came out longer than announced");
    char const* from = static_cast<char const*>(data);
    while (bytes > 0) {
        std::size_t const part = std::min(bytes, kBuffer - m_filled);
        std::memcpy(m_buffer.get() + m_filled, from, part);
        m_filled += part;
        from += part;
        bytes -= part;
        if (m_filled == kBuffer) Flush();
    }
}

void VtuWriter::Flush() {
    ThrowIfInterrupted();
    if (m_progress) m_progress(static_cast<double>(m_written), static_cast<double>(m_total));
    char const* from = m_buffer.get();
    while (m_filled > 0) {
        ssize_t const written = write(m_descriptor, from, m_filled);
        if (written < 0 && errno != EINTR) Fail(m_path);
        if (written <= 0) continue;
        from += written;
        m_written += written;
        m_filled -= static_cast<std::size_t>(written);
    }
}

}  // namespace kov::tool
