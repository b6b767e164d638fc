/// \file
/// Telling difference maps from ordinary ones.
#ifndef VXGRID_DENSITY_DIFFERENCE_MAP_H
#define VXGRID_DENSITY_DIFFERENCE_MAP_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXScalarGrid;
class VXSkewGrid;

/// By the grid's type where that says it, RegularMap or DifferenceMap. Otherwise a grid is a
/// difference map when its negative side reaches nearly as far as the positive one: when the
/// smallest value over the largest, both absolute, is above 0.65. A grid of zeros is none; a grid
/// without values counts as one.
VXGRID_API bool VXGridIsDifferenceMap(const VXSkewGrid& grid);
VXGRID_API bool VXGridIsDifferenceMap(const VXScalarGrid& grid);

}  // namespace VXCore

#endif
