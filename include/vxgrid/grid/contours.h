/// \file
/// Contour levels and colours that ride on any grid as tagged data.
#ifndef VXGRID_GRID_CONTOURS_H
#define VXGRID_GRID_CONTOURS_H

#include "vxgrid/toolkit/core/color.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXGridAbstractBase;

/// Appends a contour to the grid's tags "VX_grid_contour_levels" (a vector of float) and
/// "VX_grid_contour_colors" (a vector of packed colours). A tag that holds something else counts as
/// empty and is replaced, unless VXBaseImpl::CheckTypeWarning allows its use. Not safe against
/// readers of the same grid on other threads.
VXGRID_API void VXAddContour(VXGridAbstractBase& grid, float level, const VXColor& color);

/// The number of contours, which is the number of levels.
VXGRID_API unsigned int VXNumContours(const VXGridAbstractBase& grid);

/// The level of a contour, in the grid's own value unit; 0 beyond the last.
VXGRID_API float VXGetContourLevel(const VXGridAbstractBase& grid, unsigned int index);

/// The colour of a contour; a default colour beyond the last.
VXGRID_API VXColor VXGetContourColor(const VXGridAbstractBase& grid, unsigned int index);

}  // namespace VXCore

#endif
