// VtuWriter: a VTU file of one piece, with all arrays appended as raw bytes behind the XML part.
//
// The sizes of all arrays are told first, so that the XML part with its offsets can be written at
// once; then each array streams into the file through one buffer, however large it is.
//
//     VtuWriter file(path);  file.Add(...) for each array;  file.Write(points, cells)
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace kov::tool {

enum class VtuGroup { PointData, CellData, Points, Cells };

class VtuWriter {
  public:
    /// Makes the file; throws Failure if it cannot.
    explicit VtuWriter(std::string path);
    ~VtuWriter();
    VtuWriter(VtuWriter const&) = delete;
    VtuWriter& operator=(VtuWriter const&) = delete;

    /// Announces an array of `bytes` bytes, which `write` will give through Append. `type`: a name
    /// of the format such as "Float64". Names within a group become unique by a number behind them.
    /// `labels`: what the components are called; none, or one for each.
    void Add(VtuGroup group, std::string_view name, char const* type, int components,
             std::int64_t bytes, std::function<void(VtuWriter&)> write,
             std::vector<std::string> const& labels = {});
    /// Announces a list of texts that belongs to the whole file.
    void AddTexts(std::string_view name, std::vector<std::string> texts);
    /// Announces a number that belongs to the whole file.
    void AddNumber(std::string_view name, double value);
    void AddNumber(std::string_view name, int value);

    /// `progress` is called now and then with the bytes written and those to write; may be empty.
    void SetProgress(std::function<void(double, double)> progress) {
        m_progress = std::move(progress);
    }

    /// Writes everything and makes it lasting.
    void Write(std::int64_t points, std::int64_t cells);

    /// Only from within a `write` function: the next bytes of its array.
    void Append(void const* data, std::size_t bytes);

  private:
    struct Array {
        VtuGroup group;
        std::string name;
        char const* type;
        std::int64_t bytes;
        std::function<void(VtuWriter&)> write;
        std::string attributes;  ///< further ones, as they stand in the file
    };

    std::string Head(std::int64_t points, std::int64_t cells) const;
    void Flush();

    std::string m_path;
    int m_descriptor;
    std::vector<Array> m_arrays;
    std::string m_fieldData;  ///< as it stands in the file
    std::unordered_set<std::string> m_names;
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_filled = 0;
    std::int64_t m_written = 0;
    std::int64_t m_total = 0;
    std::function<void(double, double)> m_progress;
    std::int64_t m_left = 0;  ///< bytes that the array at hand still owes
};

/// Text for an XML attribute: markup escaped; control characters, U+FFFE, U+FFFF and bytes that
/// are no UTF-8 become '?'.
std::string XmlText(std::string_view text);

}  // namespace kov::tool
