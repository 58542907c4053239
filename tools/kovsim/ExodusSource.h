// ExodusSource: the results in an Exodus II file, in any form of netCDF.
//
// A frame for each time step, all in step 1; fields of variables that belong together by their
// names (ExodusNames); labels by the number maps. What was never written, told by the fill value of
// netCDF, is no value: rows that have such an entry are left out and counted.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ExodusLabels.h"
#include "ExodusLayout.h"
#include "NetcdfFile.h"
#include "ResultSource.h"

namespace kov::tool {

class ExodusSource final : public ResultSource {
  public:
    /// Throws Failure that names the file where it cannot be read as Exodus II.
    explicit ExodusSource(std::string const& path);

    bool NextFrame(ResultFrame& frame) override;
    bool NextField(ResultField& field) override;
    bool NextBlock(ResultBlock& block) override;
    std::string Where() const override { return m_file.Path(); }
    std::vector<std::string> Notes() const override;
    double Done() const override;

    /// The largest block: rows, and bytes of values.
    static constexpr std::size_t kMostRows = 100'000;
    static constexpr std::size_t kMostBytes = std::size_t{8} << 20;

  private:
    // Lanes of one field in one block, (points, components).
    struct Part {
        std::vector<ExodusLane const*> lanes;
        std::size_t points = 1;
        std::size_t first = 0;  // item within the labels
        std::size_t count = 0;
    };
    struct Field {
        ResultField head;
        ExodusLabels const* labels = nullptr;
        std::vector<Part> parts;
        long long unwritten = 0;  // rows left out so far
        long long partly = 0;     // of them, those with some values
    };

    void AddFields(ExodusSection const& section);
    bool ReadBlock(ResultBlock& block);
    void ReadRows(Field& field, Part const& part, std::size_t first, std::size_t count,
                  ResultBlock& block);

    NetcdfFile m_file;
    ExodusLayout m_layout;
    ExodusLabels m_nodes, m_elements;
    std::vector<Field> m_fields;
    std::vector<std::string> m_notes;
    double m_lastTime = 0.0;
    bool m_ascending = true;

    std::size_t m_frame = 0;  // the next one
    std::size_t m_field = 0;  // the next one
    std::size_t m_part = 0;   // of the field at hand: the part and item to read next
    std::size_t m_item = 0;
    bool m_hasAhead = false;
    ResultBlock m_ahead;
    std::vector<double> m_lane;
};

}  // namespace kov::tool
