// NetcdfLayout: what the header of a netCDF file of the classic forms (CDF-1, CDF-2, CDF-5) says of
// the file, held against the file itself, before any library is let loose on it. A damaged header
// ends the process of the netCDF C library, and what was cut off a file it reads as zeros.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kov::tool {

/// True for the first bytes of a netCDF file of any form, 8 at least.
bool LooksLikeNetcdf(std::string_view start);

/// How many records, that is time steps, the file has whole: of one that is still being written, or
/// was cut short, the last are missing. The largest number where the form does not tell.
///
/// Throws Failure where the file cannot be read, is no netCDF file, has a header that contradicts
/// itself, or ends before the data that stand in front of the records. Of a file in HDF5 form only
/// the signature is looked at.
std::uint64_t CheckNetcdfLayout(std::string const& path);

}  // namespace kov::tool
