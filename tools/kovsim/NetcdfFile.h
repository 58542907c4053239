// NetcdfFile: a netCDF file that is read through the netCDF C library, in any of its forms:
// classic, 64-bit offset, 64-bit data (CDF-5), and netCDF-4, which is an HDF5 file.
//
// The library trusts the header of a classic file and gives zeros behind the end of one that is cut
// short. Files of these forms are therefore looked over by CheckNetcdfLayout before it sees them.
//
// Each operation throws Failure with a text that begins with the path, and names the variable where
// there is one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace kov::tool {

class NetcdfFile {
  public:
    struct Variable {
        int id = -1;
        int type = 0;  ///< nc_type
        std::string name;
        std::vector<std::size_t> shape;

        bool IsReal() const;
        bool IsInteger() const;
    };

    /// Opens a regular file for reading.
    explicit NetcdfFile(std::string path);
    ~NetcdfFile();
    NetcdfFile(NetcdfFile const&) = delete;
    NetcdfFile& operator=(NetcdfFile const&) = delete;

    std::string const& Path() const { return m_path; }
    /// How many entries of the dimension without end are in the file; fewer than its length where
    /// the file is cut short.
    std::uint64_t WholeRecords() const { return m_wholeRecords; }
    std::optional<std::size_t> Dimension(std::string const& name) const;
    /// None where there is no such variable.
    std::optional<Variable> Find(std::string const& name) const;
    /// Groups below the root, which only netCDF-4 knows.
    int Groups() const;

    /// A part of a variable: `start` and `count` have an entry for each dimension, and `values`
    /// room for the product of `count`. Numbers of single precision are widened.
    void Read(Variable const& variable, std::vector<std::size_t> const& start,
              std::vector<std::size_t> const& count, double* values) const;
    void Read(Variable const& variable, std::vector<std::size_t> const& start,
              std::vector<std::size_t> const& count, long long* values) const;
    /// The rows of a matrix of characters, each up to its first zero byte and without blanks at its
    /// end.
    std::vector<std::string> ReadTexts(Variable const& variable) const;
    /// What stands in a real variable where nothing was written: its fill value, widened.
    double Unwritten(Variable const& variable) const;

    /// Throws Failure: "PATH: VARIABLE: TEXT".
    [[noreturn]] void Refuse(Variable const& variable, std::string const& text) const;
    /// Throws Failure: "PATH: TEXT".
    [[noreturn]] void Refuse(std::string const& text) const;

  private:
    void Require(int status, Variable const& variable) const;

    std::string m_path;
    std::uint64_t m_wholeRecords = 0;
    int m_id = -1;
};

}  // namespace kov::tool
