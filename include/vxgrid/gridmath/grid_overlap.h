/// \file
/// Comparing two grids where their lattices overlap.
#ifndef VXGRID_GRIDMATH_GRID_OVERLAP_H
#define VXGRID_GRIDMATH_GRID_OVERLAP_H

#include <tuple>  // for tuple

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Compares field 0 of two grids, given by handle, where their lattices overlap: (sum over the
/// first, sum over the second, sum over both). Sums run in double precision.
///
/// | mode | the sums, with a and b the values of the first and the second                    |
/// |------|----------------------------------------------------------------------------------|
/// | 0    | a*a, b*b, a*b                                                                    |
/// | 1    | counts of values above `threshold` and of those below -`threshold`               |
/// | 2    | as 0, on the differences next minus previous point along the three axes          |
///
/// In mode 1 the third count takes a point where both values pass the same test. In mode 2 the
/// overlap is one point smaller at every end.
///
/// Any other mode gives zeros, and so do an empty overlap, an unknown handle and a grid without
/// values. A first grid of zero spacing gives them with the warning "grid as a zero spacing". The
/// lattices are laid over each other by rounding their corners' distance to whole spacings of the
/// first grid; where the two ranges then differ in length, "mismatch in x %d %d %d %d" (first and
/// last index in the first grid, then in the second, the outermost points of mode 2 included) goes
/// to the error output, and the points that both have are compared.
VXGRID_API std::tuple<float, float, float> VXGridOverlap(int first, int second, int mode,
                                                         float threshold);

}  // namespace VXCore

#endif
