// Grid files that the program reads, changes and writes.
#ifndef VXGRID_APPS_GRID_FILE_H
#define VXGRID_APPS_GRID_FILE_H

#include <cstddef>  // for size_t
#include <string>   // for string

#include "console.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"

namespace vxgrid_app {

/// What the help says of an option that names a grid file to write.
inline constexpr const char* grid_output_help = "Map file to write (.map, .ccp4, .mrc, .grd ...)";

/// What a set of values is like, all 0 for none.
struct ValueStatistics {
  float lowest = 0;
  float highest = 0;
  double mean = 0;
  double deviation = 0;  ///< root mean square deviation from the mean
};

ValueStatistics measure(const float* values, std::size_t count);

/// Reads a grid from a file of any grid format, or a JSON document; false with the reason told.
bool read_any_grid(const std::string& path, VXCore::VXBrioGrid& grid, const Console& console);

/// The same for a grid that has to have values.
bool read_grid(const std::string& path, VXCore::VXBrioGrid& grid, const Console& console);

/// False, with the reason told, for a file name whose extension no grid can be written under.
bool is_writeable(const std::string& path, const Console& console);

/// Writes a grid, and notes how many points it has and the remark. The statistics of the values are
/// tagged on the grid first, from where they get into the header of a CCP4 file. False with the
/// reason told.
bool write_grid(const std::string& path, VXCore::VXBrioGrid& grid, const std::string& remark,
                const Console& console);
bool write_grid(const std::string& path, VXCore::VXScalarGrid& grid, const std::string& remark,
                const Console& console);

}  // namespace vxgrid_app

#endif
