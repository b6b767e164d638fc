/// \file
/// Thinning of the object in a grid to a skeleton.
#ifndef VXGRID_FIELDGRIDS_THINNING_H
#define VXGRID_FIELDGRIDS_THINNING_H

#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Peels the object of a grid, the points whose value is not 0 (negative numbers and NaN too), down
/// to a skeleton one point thick, and returns the number of passes made, 1 at least.
///
/// Afterwards the values are 1 on the skeleton and 0 elsewhere. A pass looks at the object from the
/// twelve edge directions of a cube in turn, and takes off the border points whose 3 x 3 x 3
/// neighbourhood matches a template; all points of one direction are taken off at once. The last
/// pass is the one that finds nothing. Order of directions and templates are those of K. Palagyi
/// and A. Kuba, A parallel 3D 12-subiteration thinning algorithm, Graphical Models and Image
/// Processing 61 (1999) 199-221, https://doi.org/10.1006/gmip.1999.0498.
///
/// Three things differ from the paper. Points of the outermost layer count as neighbours but are
/// never tested, and are 0 at the end; a grid with a dimension below 3 ends as zeros after one
/// pass. The templates of a direction look from its edge with x and z exchanged. The last direction
/// (z-1, y-1) does not look at the points themselves: it takes off all its border points where the
/// last point that an earlier direction tested was taken off, and else none. A skeleton may
/// therefore fall into pieces where the object did not.
///
/// Geometry, type, title and tags stay. An empty grid is left as it is, for one pass. Beside the
/// grid less than a quarter of its memory is used.
VXGRID_API int VXThinGrid(VXScalarGrid& grid);

}  // namespace VXCore

#endif
