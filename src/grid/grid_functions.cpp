/// \file
/// Free functions over all grid classes.
#include "vxgrid/grid/grid_functions.h"

#include <algorithm>  // for any_of, fill_n, max, min
#include <array>      // for array
#include <cstddef>    // for size_t

#include "grid/lattice.h"
#include "vxgrid/grid/brio_flat.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/toolkit/core/dimension.h"

namespace VXCore {

namespace {

bool has_non_zero(const float* values, unsigned int size) {
  return values && std::any_of(values, values + size,
                               [](float value) { return value < 0.0f || value > 0.0f; });
}

void clear_boundary(float* values, const detail::Index3& dim) {
  const auto [nx, ny, nz] = dim;
  if (!values || nx == 0 || ny == 0 || nz == 0) return;
  for (unsigned int z = 0; z < nz; ++z) {
    for (unsigned int y = 0; y < ny; ++y) {
      float* row = values + (std::size_t{z} * ny + y) * nx;
      if (z == 0 || z == nz - 1 || y == 0 || y == ny - 1) {
        std::fill_n(row, nx, 0.0f);
      } else {
        row[0] = row[nx - 1] = 0.0f;
      }
    }
  }
}

}  // namespace

bool VXIsGrid(const VXBase& object) {
  return object.IsDataType(type_ids::scalar_grid) || object.IsDataType(type_ids::skew_grid) ||
         object.IsDataType(type_ids::brio_grid);
}

bool VXGridHasNonZeroValue(const VXBrioGrid& grid) {
  return has_non_zero(grid.GetValues(), grid.GetSize());
}
bool VXGridHasNonZeroValue(const VXScalarGrid& grid) {
  return has_non_zero(grid.GetValues(), grid.GetSize());
}
bool VXGridHasNonZeroValue(const VXSkewGrid& grid) {
  return has_non_zero(grid.GetValues(), grid.GetSize());
}

bool VXClearGridBoundary(VXScalarGrid& grid) {
  if (!grid.GetValues()) return false;
  clear_boundary(grid.GetValues(), {grid.GetXDim(), grid.GetYDim(), grid.GetZDim()});
  return true;
}

bool VXClearGridBoundary(VXBrioGrid& grid) {
  vx_clear_grid_boundary(grid);
  return true;
}

int vx_clear_grid_boundary(VXBrioGrid& grid) {
  clear_boundary(grid.GetFloats().GetValues(0), {grid.GetXDim(), grid.GetYDim(), grid.GetZDim()});
  return 1;
}

void VXGetCenterAndExtents(const VXBrioGrid& grid, float* center, float* extents) {
  const detail::OrientedLattice lattice(grid);
  const auto& dim = lattice.dim;
  if (!lattice.is_oriented) {
    for (unsigned int axis = 0; axis < 3; ++axis) {
      center[axis] = lattice.mid[axis];
      if (grid.IsSpacingSet()) extents[axis] = static_cast<float>(dim[axis]) * lattice.spacing;
    }
    return;
  }
  if (dim[0] == 0 || dim[1] == 0 || dim[2] == 0) return;

  detail::Vector3 low{};
  detail::Vector3 high{};
  for (unsigned int corner = 0; corner < 8; ++corner) {
    const auto end = [&](unsigned int axis, unsigned int bit) {
      return (corner >> bit & 1u) != 0 ? static_cast<float>(dim[axis] - 1) : 0.0f;
    };
    const detail::Vector3 place = lattice.place(end(0, 2), end(1, 1), end(2, 0));
    for (unsigned int axis = 0; axis < 3; ++axis) {
      const float shifted = place[axis] + lattice.spacing;
      low[axis] = corner == 0 ? shifted : std::min(low[axis], shifted);
      high[axis] = corner == 0 ? shifted : std::max(high[axis], shifted);
    }
  }
  for (unsigned int axis = 0; axis < 3; ++axis) {
    extents[axis] = high[axis] - low[axis];
    center[axis] = high[axis] - extents[axis] * 0.5f;
  }
}

void VXGetCenterAndExtents(const VXSkewGrid& grid, float* center, float* extents) {
  VXGetCenterAndExtents(grid.GetImpl().GetImpl(), center, extents);
}

bool VXMakeGridFromCenterAndExtents(VXBrioGrid& grid, const float* center, const float* extents,
                                    float spacing) {
  if (!center || !extents || spacing == 0.0f) return false;
  VXMultiGrid<float>& floats = grid.GetFloats();
  VXMultiGrid<int>& integers = grid.GetIntegers();
  std::array<unsigned int, 3> dim{};
  return floats.SetSpacing(spacing) && integers.SetSpacing(spacing) &&
         floats.SetMid(center[0], center[1], center[2]) &&
         integers.SetMid(center[0], center[1], center[2]) &&
         dimensions_from_extents(extents, spacing, dim.data()) &&
         floats.SetDim(dim[0], dim[1], dim[2]) && integers.SetDim(dim[0], dim[1], dim[2]);
}

bool VXMakeGridFromCenterAndExtents(VXScalarGrid& grid, const float* center, const float* extents,
                                    float spacing) {
  VXBrioGrid brio;
  if (!VXMakeGridFromCenterAndExtents(brio, center, extents, spacing)) return false;
  grid = brio.GetFloats()[0];
  return true;
}

}  // namespace VXCore
