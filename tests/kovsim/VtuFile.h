// A VTU file of one piece with raw appended arrays, taken apart.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <string>
#include <vector>

namespace kov::test {

/// The arrays by group and name, such as "PointData/NodeLabel".
class VtuFile {
  public:
    explicit VtuFile(std::string const& path) {
        std::ifstream in(path, std::ios::binary);
        m_text.assign(std::istreambuf_iterator<char>(in), {});
        std::size_t const mark = m_text.find("<AppendedData encoding=\"raw\">\n_");
        EXPECT_NE(mark, std::string::npos);
        m_head = m_text.substr(0, mark);
        m_data = mark + std::strlen("<AppendedData encoding=\"raw\">\n_");
        std::string group;
        std::regex const tag(
            "<(PointData|CellData|Points|Cells)>|<DataArray type=\"(\\w+)\" Name=\"([^\"]*)\"[^>]* "
            "offset=\"(\\d+)\"/>");
        for (std::sregex_iterator at(m_head.begin(), m_head.end(), tag), end; at != end; ++at) {
            if ((*at)[1].matched) {
                group = (*at)[1];
            } else {
                m_arrays[group + "/" + (*at)[3].str()] = {(*at)[2], std::stoull((*at)[4]),
                                                          LabelsOf(at->str())};
            }
        }
    }

    template <class T>
    std::vector<T> Array(std::string const& name, char const* type) const {
        auto const found = m_arrays.find(name);
        if (found == m_arrays.end()) {
            ADD_FAILURE() << "no array " << name;
            return {};
        }
        EXPECT_EQ(found->second.type, type) << name;
        std::uint64_t bytes = 0;
        char const* const at = m_text.data() + m_data + found->second.offset;
        std::memcpy(&bytes, at, sizeof bytes);
        std::vector<T> values(bytes / sizeof(T));
        if (bytes > 0) std::memcpy(values.data(), at + sizeof bytes, bytes);
        return values;
    }
    std::vector<double> Doubles(std::string const& name) const {
        return Array<double>(name, "Float64");
    }
    /// The names of an array's components, each with a blank behind it.
    std::string Labels(std::string const& name) const {
        return m_arrays.contains(name) ? m_arrays.at(name).labels : "no array";
    }
    /// What stands between the tags of a number of the whole file; "" without one.
    std::string Number(std::string const& name) const {
        std::regex const tag(" Name=\"" + name +
                             "\" NumberOfTuples=\"1\" format=\"ascii\">([^<]*)<");
        std::smatch match;
        return std::regex_search(m_head, match, tag) ? match[1].str() : "";
    }
    bool Has(std::string const& name) const { return m_arrays.contains(name); }
    std::size_t Count() const { return m_arrays.size(); }
    std::string const& Head() const { return m_head; }

  private:
    struct Entry {
        std::string type;
        std::size_t offset;
        std::string labels;
    };
    static std::string LabelsOf(std::string const& tag) {
        std::string labels;
        std::regex const one("ComponentName\\d=\"([^\"]*)\"");
        for (std::sregex_iterator at(tag.begin(), tag.end(), one), end; at != end; ++at)
            labels += (*at)[1].str() + " ";
        return labels;
    }
    std::string m_text;
    std::string m_head;
    std::size_t m_data = 0;
    std::map<std::string, Entry> m_arrays;
};

}  // namespace kov::test
