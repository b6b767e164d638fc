// Proximity grids: counting, running sums and filling of the runs, and reading them at points.
#include "vxgrid/fieldgrids/proximity.h"

#include <algorithm>  // for fill_n
#include <array>      // for array
#include <cstddef>    // for size_t
#include <cstdint>    // for int64_t
#include <limits>     // for numeric_limits
#include <optional>   // for optional

#include "gridmath/record_lattice.h"
#include "gridmath/sphere_list.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::RecordLattice;
using detail::SphereItems;
using detail::SphereList;

bool refuses_zero_spacing(float spacing) {
  if (spacing != 0.0f) return false;
  vx_printf("Cant have a grid of zero spacing!\n");
  return true;
}

// A fresh integer buffer of zeros in place of the one that the record had; false, with the record
// as it was, without memory.
bool renew_integers(GridStruct& grid) {
  GridStruct fresh = grid;
  if (!vx_allocate_grid_struct(fresh, true, false, -1)) return false;
  vx_zero_grid_struct(fresh, true, false, -1);
  vx_deallocate_grid_struct(grid, true, false);
  grid.integers = fresh.integers;
  return true;
}

// Turns the counts of the points into the ends of their runs: the sums of (count + 1) so far, so
// that each run has a 0 before it. Gives the last end; the counts go where it fits no int.
std::optional<int> ends_from_counts(int* integers, std::size_t points) {
  std::int64_t total = 0;
  for (std::size_t i = 0; i < points; ++i) {
    if (integers[i] != 0) total += std::int64_t{integers[i]} + 1;
  }
  if (total >= std::numeric_limits<int>::max()) {
    std::fill_n(integers, points, 0);
    return std::nullopt;
  }
  int end = 0;
  for (std::size_t i = 0; i < points; ++i) {
    if (integers[i] == 0) continue;
    end += integers[i] + 1;
    integers[i] = end;
  }
  return end;
}

// Fills a record of zeros, and its list, from the points of the spheres that `is_open` lets pass.
template <class IsOpen>
int fill_runs(const SphereList& spheres, std::size_t count, GridStruct& grid,
              std::vector<int>& list, IsOpen is_open) {
  const RecordLattice lattice(grid);
  int* const integers = grid.integers;
  for (std::size_t i = 0; i < count; ++i) {
    detail::visit_sphere(lattice, spheres[i], [&](std::size_t point) {
      if (is_open(point)) ++integers[point];
    });
  }
  const std::optional<int> total = ends_from_counts(integers, lattice.size());
  if (total.value_or(0) == 0) return 0;

  // From the end of each run backwards, so the last item comes first.
  list.assign(static_cast<std::size_t>(*total) + 1, 0);
  for (std::size_t i = count; i-- > 0;) {
    detail::visit_sphere(lattice, spheres[i], [&](std::size_t point) {
      if (is_open(point)) list[static_cast<std::size_t>(integers[point]--)] = static_cast<int>(i);
    });
  }
  for (std::size_t i = 0; i < lattice.size(); ++i) {
    if (integers[i] != 0) ++integers[i];
  }
  return 1;
}

// The index of the cell of one spacing around a node; nothing beyond the grid.
std::optional<int> cell_along(const RecordLattice& lattice, std::size_t axis, float position) {
  const float h = lattice.spacing;
  const float corner =
      lattice.mid[axis] - h / 2.0f - static_cast<float>(lattice.dim[axis] - 1) * h / 2.0f;
  const float f = (position - corner) / h;
  if (!(f >= 0.0f && f < static_cast<float>(lattice.dim[axis]))) return std::nullopt;
  return static_cast<int>(f);
}

}  // namespace

int vx_make_proximity_grid(int, void* items, float* radii, int count, float probe, GridStruct* grid,
                           float spacing, float buffer, int kind, std::vector<int>& list) {
  if (refuses_zero_spacing(spacing)) return 1;
  const std::optional<SphereItems> layout = detail::sphere_items_of(kind);
  const bool is_known = layout && *layout != SphereItems::double_triples;
  if (!is_known || !items || !grid || count < 1 || !(spacing > 0.0f)) return 0;
  const SphereList spheres{items, radii, probe, *layout};
  const auto n = static_cast<std::size_t>(count);
  GridStruct sized = *grid;
  constexpr float anywhere = std::numeric_limits<float>::infinity();
  if (!detail::size_around(spheres, n, probe + buffer, spacing, anywhere, sized) ||
      !renew_integers(sized)) {
    return 0;
  }
  *grid = sized;
  return fill_runs(spheres, n, *grid, list, [](std::size_t) { return true; });
}

int vx_make_masked_and_boxed_proximity_grid(float* coords, float* radii, int count, float probe,
                                            float* mask_coords, float* mask_radii, int mask_count,
                                            float mask_probe, GridStruct* grid,
                                            std::vector<int>& list) {
  if (!grid) return 0;
  if (refuses_zero_spacing(grid->spacing)) return 1;
  const RecordLattice lattice(*grid);
  if (!(lattice.spacing > 0.0f) || lattice.size() == 0 || !renew_integers(*grid)) return 0;
  grid->inverse_spacing = 1.0f / grid->spacing;
  if (grid->floats) vx_zero_grid_struct(*grid, false, true, -1);

  const auto count_of = [](const float* spheres, int n) {
    return spheres && n > 0 ? static_cast<std::size_t>(n) : 0;
  };
  std::vector<char> open(lattice.size(), 1);
  const SphereList mask{mask_coords, mask_radii, mask_probe, SphereItems::triples};
  for (std::size_t i = 0; i < count_of(mask_coords, mask_count); ++i)
    detail::visit_sphere(lattice, mask[i], [&](std::size_t point) { open[point] = 0; });

  const SphereList spheres{coords, radii, probe, SphereItems::triples};
  return fill_runs(spheres, count_of(coords, count), *grid, list,
                   [&](std::size_t point) { return open[point] != 0; });
}

int vx_get_proximity_list(void* points, int count, GridStruct* grid, int kind, int* values) {
  if (!values) return 0;
  const auto n = static_cast<std::size_t>(count > 0 ? count : 0);
  std::fill_n(values, n, 0);
  const std::optional<SphereItems> layout = detail::sphere_items_of(kind);
  if (!layout || !points || !grid || !grid->integers) return 0;
  const RecordLattice lattice(*grid);
  if (!(lattice.spacing > 0.0f) || lattice.size() == 0) return 0;
  if (grid->inverse_spacing == 0.0f) grid->inverse_spacing = 1.0f / grid->spacing;

  const SphereList list{points, nullptr, 0.0f, *layout};
  for (std::size_t i = 0; i < n; ++i) {
    const std::array<float, 3> position = list[i].centre;
    const std::optional<int> x = cell_along(lattice, 0, position[0]);
    const std::optional<int> y = cell_along(lattice, 1, position[1]);
    const std::optional<int> z = cell_along(lattice, 2, position[2]);
    if (x && y && z) values[i] = grid->integers[detail::element_at(lattice, *x, *y, *z)];
  }
  return 1;
}

}  // namespace VXCore
