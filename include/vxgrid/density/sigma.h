/// \file
/// Putting a density map on the scale of its own standard deviation.
#ifndef VXGRID_DENSITY_SIGMA_H
#define VXGRID_DENSITY_SIGMA_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXScalarGrid;
class VXSkewGrid;

/// Divides all values by sigma and returns sigma; the mean stays where it is.
///
/// Sigma is the float tag "ARMS" (a map file's published deviation) when the grid has that, and
/// otherwise the sample standard deviation sqrt((sum v^2 - (sum v)^2 / n) / (n - 1)) of the n
/// values, summed in double precision in element order. The grid gets the bool tag "vx_no_norm" and
/// the float tag "SIGMA"; a skew grid gets them on the Brio grid below as well, from where the map
/// writers take them to undo the scaling.
///
/// A grid that has been through this before (it has "SIGMA" and a true "vx_no_norm") stays as it
/// is: the Warning "VXSigmaNormalizeGrid: grid has been previously normalized, skipping..." goes
/// out and the stored "SIGMA" is returned. A map without variation has a sigma of 0, or not a
/// number by rounding, and its values do not survive.
VXGRID_API float VXSigmaNormalizeGrid(VXSkewGrid& grid);
VXGRID_API float VXSigmaNormalizeGrid(VXScalarGrid& grid);

}  // namespace VXCore

#endif
