// Trilinear spreading and gathering share the eight points and weights of an atom, so that one is
// the transpose of the other.
#include "vxgrid/gridmath/buffered_grid.h"

#include <algorithm>  // for min
#include <array>      // for array
#include <cstddef>    // for size_t

#include "gridmath/record_lattice.h"

namespace VXCore {

namespace {

using detail::RecordLattice;

// The points around an atom and their weights, which sum to 1.
struct Stencil {
  std::array<std::size_t, 8> element;
  std::array<float, 8> weight;
};

class BufferedGrid {
 public:
  BufferedGrid(const GridStruct& g, int x_buffer, int y_buffer)
      : lattice_(g), buffer_{x_buffer, y_buffer, 0} {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      core_[axis] = lattice_.lower[axis] + static_cast<float>(buffer_[axis]) * lattice_.spacing;
    }
  }

  bool empty() const { return !(lattice_.spacing > 0.0f) || lattice_.size() == 0; }

  // False for an atom without a cell in the grid.
  bool find(const PdbStruct& atom, Stencil& stencil) const {
    const std::array<float, 3> point = {atom.x, atom.y, atom.z};
    std::array<int, 3> cell{};
    std::array<float, 3> t{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const float in_core = (point[axis] - core_[axis]) / lattice_.spacing;
      const float f = in_core + static_cast<float>(buffer_[axis]);
      const int last = lattice_.dim[axis] - 1;
      if (last < 1 || !(f >= 0.0f && f <= static_cast<float>(last))) return false;
      cell[axis] = std::min(static_cast<int>(f), last - 1);
      t[axis] = f - static_cast<float>(cell[axis]);
    }
    const std::size_t corner = element_at(lattice_, cell[0], cell[1], cell[2]);
    for (std::size_t n = 0; n < 8; ++n) {
      const bool x = (n & 1u) != 0;
      const bool y = (n & 2u) != 0;
      const bool z = (n & 4u) != 0;
      stencil.element[n] = corner + (x ? 1 : 0) + (y ? lattice_.row_stride() : 0) +
                           (z ? lattice_.plane_stride() : 0);
      stencil.weight[n] =
          (z ? t[2] : 1.0f - t[2]) * (y ? t[1] : 1.0f - t[1]) * (x ? t[0] : 1.0f - t[0]);
    }
    return true;
  }

 private:
  RecordLattice lattice_;
  std::array<int, 3> buffer_;
  std::array<float, 3> core_{};  // where the core begins
};

// Calls visit(i, stencil) for every atom that counts, in array order.
template <class Visit>
void for_each_atom(const PdbStruct* atoms, int count, const GridStruct& g, int x_buffer,
                   int y_buffer, Visit visit) {
  const BufferedGrid grid(g, x_buffer, y_buffer);
  if (!atoms || !g.floats || grid.empty()) return;
  Stencil stencil{};
  for (int i = 0; i < count; ++i) {
    if (grid.find(atoms[i], stencil)) visit(i, stencil);
  }
}

}  // namespace

void vi_add_from_atoms_to_buffered_grid(int, PdbStruct* atoms, int count, float* values,
                                        GridStruct g, int x_buffer, int y_buffer) {
  if (!values) return;
  for_each_atom(atoms, count, g, x_buffer, y_buffer, [&](int i, const Stencil& stencil) {
    for (std::size_t n = 0; n < 8; ++n) {
      g.floats[stencil.element[n]] += stencil.weight[n] * values[i];
    }
  });
}

void vi_add_to_atoms_from_buffered_grid(int, PdbStruct* atoms, int count, float* values,
                                        GridStruct g, int x_buffer, int y_buffer) {
  if (!values) return;
  for_each_atom(atoms, count, g, x_buffer, y_buffer, [&](int i, const Stencil& stencil) {
    float sum = 0.0f;
    for (std::size_t n = 0; n < 8; ++n) {
      sum += stencil.weight[n] * g.floats[stencil.element[n]];
    }
    values[i] += sum;
  });
}

void vi_put_constant_from_atoms_to_buffered_grid(int, PdbStruct* atoms, int count, float value,
                                                 GridStruct g, int x_buffer, int y_buffer) {
  for_each_atom(atoms, count, g, x_buffer, y_buffer, [&](int, const Stencil& stencil) {
    for (const std::size_t element : stencil.element)
      g.floats[element] = value;
  });
}

}  // namespace VXCore
