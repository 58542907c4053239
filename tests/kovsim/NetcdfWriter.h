// Writes netCDF files of any form, variable by variable, through the C library alone.
#pragma once

#include <gtest/gtest.h>
#include <netcdf.h>

#include <cstddef>
#include <numeric>
#include <string>
#include <vector>

namespace kov::test {

class NetcdfWriter {
  public:
    /// `form`: NC_CLASSIC_MODEL with NC_NETCDF4, NC_64BIT_OFFSET, NC_64BIT_DATA, NC_NETCDF4, or 0.
    NetcdfWriter(std::string const& path, int form) {
        Require(nc_create(path.c_str(), NC_CLOBBER | form, &m_id));
        Require(nc_enddef(m_id));
    }
    ~NetcdfWriter() { Require(nc_close(m_id)); }
    NetcdfWriter(NetcdfWriter const&) = delete;
    NetcdfWriter& operator=(NetcdfWriter const&) = delete;

    /// Length 0: without end.
    void Dimension(char const* name, std::size_t length) {
        int id = 0;
        nc_redef(m_id);
        Require(nc_def_dim(m_id, name, length, &id));
        nc_enddef(m_id);
    }
    /// A variable without values.
    int Define(std::string const& name, std::vector<char const*> const& dimensions, int type,
               double const* fill = nullptr) {
        std::vector<int> ids;
        m_lengths.clear();
        for (char const* dimension : dimensions) {
            std::size_t length = 0;
            ids.push_back(0);
            Require(nc_inq_dimid(m_id, dimension, &ids.back()));
            Require(nc_inq_dimlen(m_id, ids.back(), &length));
            m_lengths.push_back(length);
        }
        int variable = 0;
        nc_redef(m_id);
        Require(nc_def_var(m_id, name.c_str(), type, static_cast<int>(ids.size()), ids.data(),
                           &variable));
        if (fill != nullptr) {
            Require(nc_put_att_double(m_id, variable, "_FillValue", type, 1, fill));
        }
        nc_enddef(m_id);
        return variable;
    }
    /// As many records as the values suffice for, where the first dimension has no end.
    void Reals(std::string const& name, std::vector<char const*> const& dimensions,
               std::vector<double> const& values, int type = NC_DOUBLE,
               double const* fill = nullptr) {
        int const variable = Define(name, dimensions, type, fill);
        std::vector<std::size_t> const start(m_lengths.size(), 0), count = Count(values.size());
        Require(nc_put_vara_double(m_id, variable, start.data(), count.data(), values.data()));
    }
    void Integers(std::string const& name, std::vector<char const*> const& dimensions,
                  std::vector<long long> const& values, int type = NC_INT) {
        int const variable = Define(name, dimensions, type);
        std::vector<std::size_t> const start(m_lengths.size(), 0), count = Count(values.size());
        Require(nc_put_vara_longlong(m_id, variable, start.data(), count.data(), values.data()));
    }
    /// Names, each filled up to 33 characters by `pad`.
    void Texts(std::string const& name, char const* rows, std::vector<std::string> const& texts,
               char pad = '\0') {
        int length = 0;
        if (nc_inq_dimid(m_id, "len_name", &length) != NC_NOERR) Dimension("len_name", 33);
        if (nc_inq_dimid(m_id, rows, &length) != NC_NOERR) Dimension(rows, texts.size());
        int const variable = Define(name, {rows, "len_name"}, NC_CHAR);
        std::string characters;
        for (std::string text : texts) {
            text.resize(33, pad);
            characters += text;
        }
        Require(nc_put_var_text(m_id, variable, characters.data()));
    }
    /// A group below the root, of netCDF-4 alone.
    void Group(char const* name) {
        int id = 0;
        Require(nc_def_grp(m_id, name, &id));
    }

  private:
    static void Require(int status) { ASSERT_EQ(status, NC_NOERR) << nc_strerror(status); }

    std::vector<std::size_t> Count(std::size_t values) const {
        std::vector<std::size_t> count = m_lengths;
        if (count.empty()) return count;
        std::size_t const row =
            std::accumulate(count.begin() + 1, count.end(), std::size_t{1}, std::multiplies<>());
        count[0] = row == 0 ? 0 : values / row;
        return count;
    }

    int m_id = -1;
    std::vector<std::size_t> m_lengths;
};

}  // namespace kov::test
