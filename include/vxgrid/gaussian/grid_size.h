/// \file
/// The size of a grid that holds a set of Gaussians.
#ifndef VXGRID_GAUSSIAN_GRID_SIZE_H
#define VXGRID_GAUSSIAN_GRID_SIZE_H

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Mid and dimensions of the grid at `spacing` around `count` Gaussians (coords[3*count], a width
/// and a prefactor each), every one of them out to where it has fallen to `cutoff` (vi_gauss_rad).
/// The mid is the middle of their box and the centre point of the lattice: dim = 3 + 2*trunc((high
/// - mid)/spacing), always odd.
///
/// Nothing is written when there are no Gaussians, the spacing is not above 0, or a dimension fits
/// no int.
VXGRID_API void vi_grid_size(int count, float* coords, float* widths, float* prefactors,
                             float cutoff, float spacing, float* xmid, float* ymid, float* zmid,
                             int* xdim, int* ydim, int* zdim);

}  // namespace VXCore

#endif
