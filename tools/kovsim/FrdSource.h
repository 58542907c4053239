// FrdSource: results from the ASCII .frd files that CalculiX writes.
//
// Such a file has the mesh first, then one data set for each field of each frame: a header with
// step, increment and value, the names of the components, and rows of fixed columns, in which
// numbers may touch each other. The mesh is passed over: the document has its own.
//
//     1PSTEP ... 100CL ...      header     \.
//     -4 DISP  -5 D1  -5 D2 ... names       | a data set; those of one frame follow each other
//     -1    1 0.00000E+00 ...   rows        |
//     -3                        end        /
//     9999                      end of the file
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "FrdHeader.h"
#include "ResultSource.h"
#include "TextLines.h"

namespace kov::tool {

/// True if a file begins as an .frd file does.
bool LooksLikeFrd(std::string_view start);

class FrdSource : public ResultSource {
  public:
    /// Rows in one block.
    static constexpr std::size_t kBlock = 65'536;

    explicit FrdSource(std::string const& path);
    explicit FrdSource(std::unique_ptr<TextLines> lines);

    bool NextFrame(ResultFrame& frame) override;
    bool NextField(ResultField& field) override;
    bool NextBlock(ResultBlock& block) override;
    std::string Where() const override;
    std::vector<std::string> Notes() const override;
    double Done() const override { return m_lines->Done(); }

  private:
    bool ReadHeader();
    void SkipMesh(std::string_view header);
    void ReadNames();
    void ReadNumbers(std::string_view line, std::size_t count, std::vector<double>& values);
    void SkipRows();
    void FinishRows();
    std::string_view NeedLine(char const* what);
    [[noreturn]] void Fail(std::string const& text) const;

    std::unique_ptr<TextLines> m_lines;
    bool m_atEnd = false;      ///< behind 9999
    bool m_begun = false;      ///< a frame was given
    bool m_hasHeader = false;  ///< m_next is the header of a data set whose names come next
    bool m_inRows = false;     ///< the next line is a row of m_at
    FrdHeader m_next;
    FrdHeader m_at;  ///< of the field at hand, or of the first one of its frame
    long long m_componentCount = 0;
    std::vector<FrdComponent> m_components;
    std::size_t m_kept = 0;  ///< components in the file
    long long m_rows = 0;
    std::string m_where;
    FrdClock m_clock;
    long long m_nodes = 0;
    long long m_elements = 0;
};

}  // namespace kov::tool
