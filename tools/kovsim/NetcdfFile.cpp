#include "NetcdfFile.h"

#include <netcdf.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "Failure.h"
#include "NetcdfLayout.h"

namespace kov::tool {

namespace {

// Characters of all names of one kind together; far more than any file has.
constexpr std::size_t kMostCharacters = std::size_t{64} << 20;

// A path that begins with a slash is never taken for an address on a network.
std::string LocalPath(std::string const& path) {
    std::error_code error;
    std::filesystem::path const full = std::filesystem::absolute(path, error);
    return error ? path : full.string();
}

std::string TextOf(int status) {
    // Numbers above zero are of the operating system, those below -100 of the HDF5 library.
    return std::string(nc_strerror(status));
}

}  // namespace

bool NetcdfFile::Variable::IsReal() const { return type == NC_FLOAT || type == NC_DOUBLE; }

bool NetcdfFile::Variable::IsInteger() const {
    static constexpr std::array<int, 8> kIntegers = {NC_BYTE,   NC_SHORT, NC_INT,   NC_UBYTE,
                                                     NC_USHORT, NC_UINT,  NC_INT64, NC_UINT64};
    return std::find(kIntegers.begin(), kIntegers.end(), type) != kIntegers.end();
}

NetcdfFile::NetcdfFile(std::string path)
    : m_path(std::move(path)), m_wholeRecords(CheckNetcdfLayout(m_path)) {
    int const status = nc_open(LocalPath(m_path).c_str(), NC_NOWRITE, &m_id);
    if (status != NC_NOERR) Refuse("cannot be read as a netCDF file: " + TextOf(status));
}

NetcdfFile::~NetcdfFile() { nc_close(m_id); }

std::optional<std::size_t> NetcdfFile::Dimension(std::string const& name) const {
    int id = -1;
    std::size_t length = 0;
    int status = nc_inq_dimid(m_id, name.c_str(), &id);
    if (status == NC_EBADDIM) return std::nullopt;
    if (status == NC_NOERR) status = nc_inq_dimlen(m_id, id, &length);
    if (status != NC_NOERR) Refuse("dimension " + name + ": " + TextOf(status));
    return length;
}

std::optional<NetcdfFile::Variable> NetcdfFile::Find(std::string const& name) const {
    Variable variable;
    variable.name = name;
    int const found = nc_inq_varid(m_id, name.c_str(), &variable.id);
    if (found == NC_ENOTVAR) return std::nullopt;
    Require(found, variable);
    int rank = 0;
    Require(nc_inq_vartype(m_id, variable.id, &variable.type), variable);
    Require(nc_inq_varndims(m_id, variable.id, &rank), variable);
    std::vector<int> dimensions(static_cast<std::size_t>(std::max(rank, 1)));
    Require(nc_inq_vardimid(m_id, variable.id, dimensions.data()), variable);
    for (int d = 0; d < rank; ++d) {
        std::size_t length = 0;
        Require(nc_inq_dimlen(m_id, dimensions[static_cast<std::size_t>(d)], &length), variable);
        variable.shape.push_back(length);
    }
    return variable;
}

int NetcdfFile::Groups() const {
    int count = 0;
    return nc_inq_grps(m_id, &count, nullptr) == NC_NOERR ? count : 0;
}

void NetcdfFile::Read(Variable const& variable, std::vector<std::size_t> const& start,
                      std::vector<std::size_t> const& count, double* values) const {
    Require(nc_get_vara_double(m_id, variable.id, start.data(), count.data(), values), variable);
}

void NetcdfFile::Read(Variable const& variable, std::vector<std::size_t> const& start,
                      std::vector<std::size_t> const& count, long long* values) const {
    Require(nc_get_vara_longlong(m_id, variable.id, start.data(), count.data(), values), variable);
}

std::vector<std::string> NetcdfFile::ReadTexts(Variable const& variable) const {
    if (variable.type != NC_CHAR || variable.shape.size() != 2) {
        Refuse(variable, "no table of characters, where one was expected");
    }
    std::size_t const rows = variable.shape[0], length = variable.shape[1];
    if (length > 0 && rows > kMostCharacters / length) {
        Refuse(variable, "its names are longer than " + std::to_string(kMostCharacters) +
                             " characters together");
    }
    std::vector<std::string> texts(rows);
    if (rows == 0 || length == 0) return texts;
    std::string characters(rows * length, '\0');
    std::vector<std::size_t> const start(2, 0);
    Require(
        nc_get_vara_text(m_id, variable.id, start.data(), variable.shape.data(), characters.data()),
        variable);
    for (std::size_t row = 0; row < rows; ++row) {
        std::string_view text(characters.data() + row * length, length);
        text = text.substr(0, text.find('\0'));
        std::size_t const last = text.find_last_not_of(' ');
        texts[row] = text.substr(0, last == std::string_view::npos ? 0 : last + 1);
    }
    return texts;
}

double NetcdfFile::Unwritten(Variable const& variable) const {
    double fill = variable.type == NC_FLOAT ? double{NC_FILL_FLOAT} : NC_FILL_DOUBLE;
    int type = 0;
    std::size_t length = 0;
    int const status = nc_inq_att(m_id, variable.id, "_FillValue", &type, &length);
    if (status == NC_ENOTATT) return fill;
    Require(status, variable);
    if (type != variable.type || length != 1) {
        Refuse(variable, "its _FillValue is not one number of its own type");
    }
    Require(nc_get_att_double(m_id, variable.id, "_FillValue", &fill), variable);
    return fill;
}

void NetcdfFile::Refuse(Variable const& variable, std::string const& text) const {
    throw Failure(m_path + ": " + variable.name + ": " + text);
}

void NetcdfFile::Refuse(std::string const& text) const { throw Failure(m_path + ": " + text); }

void NetcdfFile::Require(int status, Variable const& variable) const {
    if (status != NC_NOERR) Refuse(variable, "cannot be read: " + TextOf(status));
}

}  // namespace kov::tool
