// Copies, fills and differences on plain records.
#include "vxgrid/gridmath/arithmetic.h"

#include <algorithm>  // for copy_n, fill_n, max, min
#include <array>      // for array
#include <cstddef>    // for size_t
#include <cstring>    // for memcpy, memmove, strlen

#include "gridmath/record_lattice.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::RecordLattice;

// Points of one axis that the centred block takes: it begins at `from` in the source.
struct BlockRange {
  int to, from, length;
};

BlockRange centred(int to_dim, int from_dim) {
  const int offset = (from_dim - to_dim) / 2;
  const int to = std::max(0, -offset);
  const int from = std::max(0, offset);
  return {to, from, std::min(to_dim - to, from_dim - from)};
}

// Rows are taken from the front on, so that a block can move towards the front of its own array.
template <class T>
void copy_centred(const RecordLattice& to, T* to_values, const RecordLattice& from,
                  const T* from_values) {
  const BlockRange x = centred(to.dim[0], from.dim[0]);
  const BlockRange y = centred(to.dim[1], from.dim[1]);
  const BlockRange z = centred(to.dim[2], from.dim[2]);
  for (int k = 0; k < z.length; ++k) {
    for (int j = 0; j < y.length; ++j) {
      std::memmove(to_values + element_at(to, x.to, y.to + j, z.to + k),
                   from_values + element_at(from, x.from, y.from + j, z.from + k),
                   static_cast<std::size_t>(x.length) * sizeof(T));
    }
  }
}

// Forward differences along one axis: an axis is walked in lines of `dim` points, `stride` apart,
// and the lines lie side by side.
void forward_differences(const float* values, float* out, std::size_t size, std::size_t stride,
                         int dim, float spacing) {
  if (dim < 2) {
    std::fill_n(out, size, 0.0f);
    return;
  }
  const std::size_t slab = stride * static_cast<std::size_t>(dim);
  for (std::size_t begin = 0; begin < size; begin += slab) {
    const std::size_t last = begin + slab - stride;
    for (std::size_t i = begin; i < last; ++i)
      out[i] = (values[i + stride] - values[i]) / spacing;
    for (std::size_t i = last; i < last + stride; ++i)
      out[i] = out[i - stride];
  }
}

}  // namespace

void vi_copy_grid(int, GridStruct* to, GridStruct from, int with_floats) {
  if (!to) return;
  to->xmid = from.xmid;
  to->ymid = from.ymid;
  to->zmid = from.zmid;
  to->xdim = from.xdim;
  to->ydim = from.ydim;
  to->zdim = from.zdim;
  to->spacing = from.spacing;
  to->inverse_spacing = from.inverse_spacing;
  if (from.name && *from.name != '\0') {
    const std::size_t bytes = std::strlen(from.name) + 1;
    to->name = static_cast<char*>(vx_malloc(bytes));
    if (to->name) std::memcpy(to->name, from.name, bytes);
  }
  if (with_floats == 1) {
    const std::size_t size = RecordLattice(from).size();
    to->floats = nullptr;
    if (from.floats && size != 0 && vx_allocate_grid_struct(*to, false, true, -1)) {
      std::copy_n(from.floats, size, to->floats);
    }
  }
}

void vi_clear_grid(GridStruct* g, int count) {
  if (g && count > 0) std::fill_n(g, count, GridStruct{});
}

void vi_constant_grid(GridStruct g, float value) {
  if (g.floats) std::fill_n(g.floats, RecordLattice(g).size(), value);
}

void vi_zero_grid(GridStruct g) {
  const std::size_t size = RecordLattice(g).size();
  if (g.floats) std::fill_n(g.floats, size, 0.0f);
  if (g.integers) std::fill_n(g.integers, size, 0);
}

int vi_get_grid_limits(GridStruct g, float* xlo, float* xhi, float* ylo, float* yhi, float* zlo,
                       float* zhi) {
  const RecordLattice lattice(g);
  const std::array<float*, 3> low = {xlo, ylo, zlo};
  const std::array<float*, 3> high = {xhi, yhi, zhi};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    if (low[axis]) *low[axis] = lattice.lower[axis];
    if (high[axis]) *high[axis] = lattice.upper[axis];
  }
  return 1;
}

int vi_print_grid_limits(GridStruct g) {
  const RecordLattice lattice(g);
  vx_printf("grid extents are: %f to %f, %f to %f, %f to %f\n", double{lattice.lower[0]},
            double{lattice.upper[0]}, double{lattice.lower[1]}, double{lattice.upper[1]},
            double{lattice.lower[2]}, double{lattice.upper[2]});
  return 1;
}

void vi_simple_grid_remap(GridStruct to, GridStruct from) {
  const RecordLattice target(to);
  const RecordLattice source(from);
  if (target.size() == 0 || source.size() == 0) return;
  if (to.floats && from.floats) copy_centred(target, to.floats, source, from.floats);
  if (to.integers && from.integers) copy_centred(target, to.integers, source, from.integers);
}

void vi_simple_one_grid_remap(GridStruct g, int x, int y, int z) {
  if (x > g.xdim || y > g.ydim || z > g.zdim) return;
  GridStruct block = g;
  block.xdim = x;
  block.ydim = y;
  block.zdim = z;
  vi_simple_grid_remap(block, g);
}

int vi_add_simple_gradients_to_grid(GridStruct* g) {
  if (!g || !g->floats || g->spacing == 0.0f) return 0;
  const RecordLattice lattice(*g);
  const std::size_t size = lattice.size();
  const std::array<std::size_t, 3> strides = {1, lattice.row_stride(), lattice.plane_stride()};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    forward_differences(g->floats, g->floats + size * (axis + 1), size, strides[axis],
                        lattice.dim[axis], lattice.spacing);
  }
  return 1;
}

}  // namespace VXCore
