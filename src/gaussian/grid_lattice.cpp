// Records over lattices, and lattices around points.
#include "gaussian/grid_lattice.h"

#include <array>  // for array
#include <cmath>  // for isfinite

#include "gridmath/dimensions.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore::detail {

GridStruct record_over(const RecordLattice& lattice, float* values) {
  GridStruct record;
  record.floats = values;
  set_lattice(record, lattice);
  return record;
}

bool size_around_points(VXBrioGrid& grid, const float* points, std::size_t n, float reach,
                        float spacing) {
  if (!(spacing > 0.0f) || !std::isfinite(spacing)) return false;
  std::array<float, 3> low{};
  std::array<float, 3> high{};
  vx_get_box_size(points, static_cast<int>(n), low.data(), high.data());
  std::array<float, 3> mid{};
  std::array<int, 3> dim{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    mid[axis] = (low[axis] + high[axis]) * 0.5f;
    const float length = high[axis] - low[axis] + 2.0f * reach;
    const auto points_on_axis = points_for(1, truncated(length * (-1.0f / spacing)));
    if (!points_on_axis) return false;
    dim[axis] = *points_on_axis;
  }
  if (vx_grid_struct_overflow(dim[0], dim[1], dim[2])) return false;
  grid.SetSpacing(spacing);
  grid.SetMid(mid[0], mid[1], mid[2]);
  return grid.SetDim(static_cast<unsigned int>(dim[0]), static_cast<unsigned int>(dim[1]),
                     static_cast<unsigned int>(dim[2]));
}

}  // namespace VXCore::detail
