// One walk over the boundary points of a grid, and what is done to them.
#include "vxgrid/gridmath/boundary.h"

#include <cstddef>  // for size_t
#include <cstring>  // for memset

#include "gridmath/record_lattice.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::RecordLattice;

// Calls visit(element) once for every boundary point: the first and the last z plane, then for each
// plane between them the rows at both ends of y and the points at both ends of x.
template <class Visit>
void for_each_boundary_point(const RecordLattice& lattice, Visit visit) {
  const std::size_t size = lattice.size();
  if (size == 0) return;
  const std::size_t row = lattice.row_stride();
  const std::size_t plane = lattice.plane_stride();
  const auto run = [&](std::size_t begin, std::size_t count) {
    for (std::size_t e = begin; e < begin + count; ++e)
      visit(e);
  };
  run(0, plane);
  if (lattice.dim[2] > 1) run(size - plane, plane);
  for (std::size_t begin = plane; begin + plane < size; begin += plane) {
    run(begin, row);
    if (lattice.dim[1] > 1) run(begin + plane - row, row);
    for (std::size_t at = begin + row; at + row < begin + plane; at += row) {
      visit(at);
      if (row > 1) visit(at + row - 1);
    }
  }
}

}  // namespace

void vi_Boundary_f0(GridStruct g, float value) {
  if (!g.floats) return;
  for_each_boundary_point(RecordLattice(g), [&](std::size_t e) { g.floats[e] = value; });
}

void vi_Boundary0(GridStruct g) {
  vi_Boundary_f0(g, 0.0f);
}

void vi_Inner_f0(GridStruct g) {
  const RecordLattice lattice(g);
  if (!g.floats || lattice.size() == 0 || g.xdim < 3) return;
  const auto bytes = static_cast<std::size_t>(g.xdim - 2) * sizeof(float);
  for (int k = 1; k < g.zdim - 1; ++k) {
    for (int j = 1; j < g.ydim - 1; ++j) {
      std::memset(g.floats + element_at(lattice, 1, j, k), 0, bytes);
    }
  }
}

void vi_scale_boundary(GridStruct g, float factor) {
  if (!g.floats) return;
  for_each_boundary_point(RecordLattice(g), [&](std::size_t e) { g.floats[e] *= factor; });
}

void vi_PrintBoundary(GridStruct g) {
  if (!g.floats) return;
  for_each_boundary_point(RecordLattice(g), [&](std::size_t e) {
    vx_printf("%d %f\n", static_cast<int>(e), double{g.floats[e]});
  });
}

}  // namespace VXCore
