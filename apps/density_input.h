// Gets a density map from whatever file the user has: a map file or reflections.
#ifndef VXGRID_APPS_DENSITY_INPUT_H
#define VXGRID_APPS_DENSITY_INPUT_H

#include <string>  // for string
#include <vector>  // for vector

#include "console.h"
#include "vxgrid/grid/skew_grid.h"

namespace vxgrid_app {

/// The names that --type takes.
std::vector<std::string> map_type_names();

/// Makes a map of the named type from the columns that the file has; false with the reason told.
bool make_density(const std::string& path, const std::string& type, VXCore::VXSkewGrid& map,
                  const Console& console);

/// Reads a map file, or makes a map of the named type from reflections.
bool read_density(const std::string& path, const std::string& type, VXCore::VXSkewGrid& map,
                  const Console& console);

}  // namespace vxgrid_app

#endif
