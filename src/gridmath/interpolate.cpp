// Trilinear transfer between lattices: the cell of every target plane on its axis is found once,
// and the points then blend.
#include "vxgrid/gridmath/interpolate.h"

#include <algorithm>  // for copy_n, max, min
#include <array>      // for array
#include <cstddef>    // for size_t
#include <vector>     // for vector

#include "gridmath/record_lattice.h"
#include "gridmath/trilinear.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::lattice_of;
using detail::RecordLattice;

// A target plane that lies in the source: between two source planes, at their array offsets.
struct PlaneCell {
  std::size_t target;  // array offset of the plane in the target
  std::size_t low, high;
  float t;
};

struct IndexRange {
  int begin, end;
};

// The planes of one axis that lie in the source to within a tolerance in cells, so that rounding
// does not cut points on its faces off.
std::vector<PlaneCell> planes_inside(const RecordLattice& to, const RecordLattice& from,
                                     std::size_t axis, IndexRange range) {
  constexpr float tolerance = 1.0e-4f;
  const auto to_stride = std::array{std::size_t{1}, to.row_stride(), to.plane_stride()}[axis];
  const auto stride = std::array{std::size_t{1}, from.row_stride(), from.plane_stride()}[axis];
  const int last = from.dim[axis] - 1;
  std::vector<PlaneCell> planes;
  for (int i = range.begin; i < range.end; ++i) {
    const float f = (to.coordinate(axis, i) - from.lower[axis]) / from.spacing;
    if (!(f >= -tolerance && f <= static_cast<float>(last) + tolerance)) continue;
    const int cell = std::max(std::min(static_cast<int>(f), last - 1), 0);
    const std::size_t low = stride * static_cast<std::size_t>(cell);
    planes.push_back({to_stride * static_cast<std::size_t>(i), low, last > 0 ? low + stride : low,
                      f - static_cast<float>(cell)});
  }
  return planes;
}

bool same_box_and_dims(const RecordLattice& a, const RecordLattice& b) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (a.dim[axis] != b.dim[axis] || !vi_IsZero(a.lower[axis] - b.lower[axis]) ||
        !vi_IsZero(a.upper[axis] - b.upper[axis])) {
      return false;
    }
  }
  return true;
}

void transfer(const RecordLattice& to, float* to_values, const RecordLattice& from,
              const float* from_values, bool inner_only) {
  if (!to_values || !from_values || to.size() == 0 || from.size() == 0) return;
  std::array<IndexRange, 3> range{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    range[axis] = inner_only ? IndexRange{1, to.dim[axis] - 1} : IndexRange{0, to.dim[axis]};
    if (range[axis].begin >= range[axis].end) return;
  }
  if (same_box_and_dims(to, from)) {
    for (int k = range[2].begin; k < range[2].end; ++k) {
      for (int j = range[1].begin; j < range[1].end; ++j) {
        const std::size_t row = element_at(to, range[0].begin, j, k);
        std::copy_n(from_values + row, range[0].end - range[0].begin, to_values + row);
      }
    }
    return;
  }
  if (!(from.spacing > 0.0f)) return;
  const std::vector<PlaneCell> xs = planes_inside(to, from, 0, range[0]);
  const std::vector<PlaneCell> ys = planes_inside(to, from, 1, range[1]);
  const std::vector<PlaneCell> zs = planes_inside(to, from, 2, range[2]);
  for (const PlaneCell& z : zs) {
    for (const PlaneCell& y : ys) {
      const std::array<const float*, 4> rows = {
          from_values + z.low + y.low, from_values + z.low + y.high, from_values + z.high + y.low,
          from_values + z.high + y.high};
      float* const out = to_values + z.target + y.target;
      for (const PlaneCell& x : xs) {
        const std::array<float, 8> corners = {rows[0][x.low],  rows[0][x.high], rows[1][x.low],
                                              rows[1][x.high], rows[2][x.low],  rows[2][x.high],
                                              rows[3][x.low],  rows[3][x.high]};
        out[x.target] = detail::blend_cell(corners.data(), 2, 4, x.t, y.t, z.t);
      }
    }
  }
}

// A grid of a single point has no values in the sense of VXBrioGrid::GetFloatsSet.
bool has_values(const VXScalarGrid& grid) {
  return grid.GetSize() > 1 && grid.GetValues();
}

}  // namespace

void vi_int_btw_grids(GridStruct to, GridStruct from, int mode) {
  if (mode < 0 || mode > 5) return;
  transfer(RecordLattice(to), to.floats, RecordLattice(from), from.floats, mode % 3 == 1);
}

bool VXInterpolateBetweenGrids(VXBrioGrid& to, const VXBrioGrid& from) {
  if (!from.GetFloatsSet() || !to.GetValues()) return false;
  transfer(lattice_of(to), to.GetValues(), lattice_of(from), from.GetValues(), false);
  if (&to != &from) VXCopyBaseData(to, from);
  return true;
}

bool VXInterpolateBetweenGrids(VXScalarGrid& to, const VXScalarGrid& from) {
  if (!has_values(from) || !has_values(to)) return false;
  transfer(lattice_of(to), to.GetValues(), lattice_of(from), from.GetValues(), false);
  if (&to != &from) VXCopyBaseData(to, from);
  return true;
}

}  // namespace VXCore
