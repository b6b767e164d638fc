// Grid documents in files, for commands that work on grids of any kind.
#ifndef VXGRID_APPS_GRID_JSON_FILE_H
#define VXGRID_APPS_GRID_JSON_FILE_H

#include <string>  // for string

#include "console.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace vxgrid_app {

/// True for the extension of grid documents.
bool is_json_file(const std::string& path);

/// Reads a document of a scalar or a skew grid; false with the reason told.
bool read_json_grid(const std::string& path, VXCore::VXSkewGrid& grid, const Console& console);
bool read_json_grid(const std::string& path, VXCore::VXBrioGrid& grid, const Console& console);

/// Writes a grid with a unit cell as a skew grid and any other as a scalar grid. Sampling, space
/// group and reentrance, for which documents have no key, go along as tagged data, and are put back
/// on reading. False with the reason told.
bool write_json_grid(const std::string& path, const VXCore::VXBrioGrid& grid,
                     const Console& console);
bool write_json_grid(const std::string& path, const VXCore::VXSkewGrid& grid,
                     const Console& console);
bool write_json_grid(const std::string& path, const VXCore::VXScalarGrid& grid,
                     const Console& console);

}  // namespace vxgrid_app

#endif
