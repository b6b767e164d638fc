/// \file
/// Values of a grid at arbitrary points: nearest point, trilinear, quadratic.
#ifndef VXGRID_GRIDMATH_SAMPLING_H
#define VXGRID_GRIDMATH_SAMPLING_H

#include <vector>  // for vector

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXMol {
class VXMolBase;
}

namespace VXCore {

class VXScalarGrid;

/// Reads a grid at `count` points into `out[count]`.
///
/// | mode    | items                               | value                                        |
/// |---------|-------------------------------------|----------------------------------------------|
/// | 0, 2, 4 | PdbStruct, float[3], double[3] each | trilinear, blended along x, then y, then z   |
/// | 1, 3, 5 | the same                            | quadratic, over the 27 points around it      |
/// | 6, 7, 8 | the same                            | that of the nearest point                    |
///
/// A point counts only strictly inside the box of the lattice points; for the quadratic order the
/// box is smaller by half a spacing on every side. With e = (upper - lower)/spacing in single
/// precision, the upper side is further lowered by half the fraction of e, taken as Angstrom.
/// Elsewhere, for coordinates that are not numbers, and on a grid with an axis of fewer than two
/// points (three for quadratic), `out[i]` is left as it was. Double coordinates are rounded to
/// float first. An unknown mode, a null array or a spacing not above 0 writes nothing.
///
/// The quadratic weights of the nodes at -1, 0, +1 around the nearest point, t from it in
/// spacings, are those of the triangular-shaped-cloud assignment of Hockney & Eastwood, Computer
/// Simulation Using Particles, section 5-3: (1/2 - t)^2/2, 3/4 - t^2, (1/2 + t)^2/2. They sum to 1
/// but smooth: a field's own values at the lattice points do not come back, except for a linear
/// one.
VXGRID_API void vi_map_to_atoms_from_grid(void* items, int count, float* out, GridStruct grid,
                                          int mode);

/// The same with the values taken from an array of the grid's size instead of `grid.floats`.
VXGRID_API void vi_map_to_atoms_from_grid_and_vals(void* items, int count, float* out,
                                                   GridStruct grid, const float* values, int mode);

/// The quadratic value and its gradient (per Angstrom) at `count` points of three floats each:
/// `values[count]`, and `gradients[3*count]` as x, y, z of each. Where a point counts is the rule
/// above; elsewhere the outputs are set to 0 with a `flag` of 0 and left as they were otherwise. A
/// null output is left out.
VXGRID_API void vi_quadratic_interpolation_and_derivativates(const float* points, int count,
                                                             float* values, float* gradients,
                                                             GridStruct g, int flag);

/// The same on a scalar grid, with 0 for points that do not count. False for a null array or a grid
/// without values.
VXGRID_API bool VXQuadraticInterpolationAndDerivatives(const VXScalarGrid& g, const float* points,
                                                       unsigned int count, float* values,
                                                       float* gradients);

/// The same at the atoms of a molecule; the vectors get one value and three gradient components for
/// each atom index.
VXGRID_API bool VXQuadraticInterpolationAndDerivatives(const VXScalarGrid& g,
                                                       const VXMol::VXMolBase& mol,
                                                       std::vector<float>& values,
                                                       std::vector<float>& gradients);

}  // namespace VXCore

#endif
