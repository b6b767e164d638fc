/// \file
/// The lattice of a plain record, as the grid routines of this floor see it.
#ifndef VXGRID_SRC_GRIDMATH_RECORD_LATTICE_H
#define VXGRID_SRC_GRIDMATH_RECORD_LATTICE_H

#include <algorithm>  // for any_of
#include <array>      // for array
#include <cstddef>    // for size_t
#include <cstdint>    // for int64_t

#include "vxgrid/grid/grid_struct.h"
#include "vxgrid/toolkit/core/grid_base.h"

namespace VXCore::detail {

/// A regular lattice of points with its outer corners, in Angstrom and single precision.
struct RecordLattice {
  RecordLattice(const std::array<int, 3>& dims, const std::array<float, 3>& mids, float step)
      : dim(dims), mid(mids), spacing(step) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const auto intervals = static_cast<float>(static_cast<std::int64_t>(dim[axis]) - 1);
      lower[axis] = mid[axis] - intervals * spacing / 2.0f;
      upper[axis] = mid[axis] + intervals * spacing / 2.0f;
    }
  }
  explicit RecordLattice(const GridStruct& g)
      : RecordLattice({g.xdim, g.ydim, g.zdim}, {g.xmid, g.ymid, g.zmid}, g.spacing) {}

  /// Number of points; 0 when a dimension is below 1 or the number is above what an int takes.
  std::size_t size() const {
    if (std::any_of(dim.begin(), dim.end(), [](int n) { return n < 1; })) return 0;
    if (vx_grid_struct_overflow(dim[0], dim[1], dim[2])) return 0;
    return row_stride() * static_cast<std::size_t>(dim[1]) * static_cast<std::size_t>(dim[2]);
  }

  /// Steps in the value array from one row, and from one plane, to the next.
  std::size_t row_stride() const { return static_cast<std::size_t>(dim[0]); }
  std::size_t plane_stride() const { return row_stride() * static_cast<std::size_t>(dim[1]); }

  /// The coordinate of an index along an axis.
  float coordinate(std::size_t axis, int index) const {
    return lower[axis] + static_cast<float>(index) * spacing;
  }

  std::array<int, 3> dim;
  std::array<float, 3> mid;
  float spacing;
  std::array<float, 3> lower{};
  std::array<float, 3> upper{};
};

/// Element number of a point, x fastest.
inline std::size_t element_at(const RecordLattice& lattice, int x, int y, int z) {
  return static_cast<std::size_t>(x) + lattice.row_stride() * static_cast<std::size_t>(y) +
         lattice.plane_stride() * static_cast<std::size_t>(z);
}

/// The lattice of a grid object, as if it had no orientation.
inline RecordLattice lattice_of(const VXGridAbstractBase& grid) {
  return {{static_cast<int>(grid.GetXDim()), static_cast<int>(grid.GetYDim()),
           static_cast<int>(grid.GetZDim())},
          {grid.GetXMid(), grid.GetYMid(), grid.GetZMid()},
          grid.GetSpacing()};
}

/// Gives a record the geometry of a lattice.
inline void set_lattice(GridStruct& record, const RecordLattice& lattice) {
  record.xmid = lattice.mid[0];
  record.ymid = lattice.mid[1];
  record.zmid = lattice.mid[2];
  record.xdim = lattice.dim[0];
  record.ydim = lattice.dim[1];
  record.zdim = lattice.dim[2];
  record.spacing = lattice.spacing;
  record.inverse_spacing = 1.0f / lattice.spacing;
}

}  // namespace VXCore::detail

#endif
