/// \file
/// Principal frames of lists of Gaussians and of grids, and moments in a frame that is given.
///
/// The volume of a term counts as the term holds it, and as -|volume| where its level is odd. Sums
/// over the terms of a frame are taken in order and in single precision.
#ifndef VXGRID_GAUSSIAN_INERTIAL_FRAME_H
#define VXGRID_GAUSSIAN_INERTIAL_FRAME_H

#include "vxgrid/gaussian/gsphere.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXBrioGrid;

/// The centroid of `count` terms, `centre[3]` in Angstrom, and the axes of their second moments in
/// the rows of `matrix[9]`, the one of the largest extent first, right-handed. The directions are
/// those of get_roots_3; vx_CalcShapeMultipoles settles them by the shape. Where the off-diagonal
/// moments sum to less than a thousandth of the diagonal ones the frame counts as aligned already,
/// and the matrix is the identity. Gives 1, or 0 with nothing written when the volumes sum to
/// exactly 0.
VXGRID_API int vx_CalcShapeInertialFrame(int count, const Gsphere* terms, float* matrix,
                                         float* centre);

/// The second moments per volume along x, y and z, `out[3]` in Angstrom^2: the mean of u_a^2. The
/// centres are coords[3*count]; width, level and volume are the terms'. Gives 1, or 0 with nothing
/// written when the volumes sum to 0.
VXGRID_API int vx_CalcInFrameShapeQuadrapoles(int count, const float* coords, const Gsphere* terms,
                                              float* out);

/// The same for the mean of u_a*|u|^2, `out[3]` in Angstrom^3.
VXGRID_API int vx_CalcInFrameShapeOctopoles(int count, const float* coords, const Gsphere* terms,
                                            float* out);

/// Turns the lattice of a grid about its mid so that its x, y and z steps run along the principal
/// axes of what the grid holds, longest first: the orientation becomes the matrix with these axes
/// as columns. They are those of the second moments of all values above 0 of the selected float
/// field about their centroid, each value where it lies in space. The values stay with their
/// lattice points, and so turn with them: for the same field on the turned lattice, turn a copy of
/// its grid and fill that anew. Gives 1, or 0 with the grid as it was when no value is above 0.
VXGRID_API int vx_orient_grid_by_moments_of_inertia(VXBrioGrid& grid);

}  // namespace VXCore

#endif
