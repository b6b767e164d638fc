// Marking the points inside spheres, on a given grid and on one sized around them.
#include <cstddef>      // for size_t
#include <optional>     // for optional
#include <string_view>  // for string_view

#include "gridmath/record_lattice.h"
#include "gridmath/sphere_list.h"
#include "vxgrid/gridmath/masks.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::RecordLattice;
using detail::SphereItems;
using detail::SphereList;

std::optional<SphereItems> items_of(std::string_view kind) {
  if (kind == "atoms") return SphereItems::atoms;
  if (kind == "spheres") return SphereItems::quadruples;
  if (kind == "points" || kind == "coordinates") return SphereItems::triples;
  return std::nullopt;
}

}  // namespace

int vi_map_spheres_to_grid(void* spheres, const char* kind, float* radii, GridStruct grid,
                           float probe, int count, float value) {
  if (count < 1) return 1;
  const std::string_view name = kind ? kind : "";
  if (name == "doubles") return 1;
  const std::optional<SphereItems> items = items_of(name);
  if (!items) {
    vi_warning("no such sphere type as %s\n", kind ? kind : "");
    return 0;
  }
  const RecordLattice lattice(grid);
  if (!spheres || lattice.size() == 0) return 1;
  const SphereList list{spheres, radii, probe, *items};
  for (int i = 0; i < count; ++i) {
    detail::visit_sphere(lattice, list[static_cast<std::size_t>(i)], [&](std::size_t point) {
      if (grid.integers) grid.integers[point] = i + 1;
      if (grid.floats) grid.floats[point] = value;
    });
  }
  return 1;
}

int vi_sph_to_grid(int, void* spheres, float* radii, int count, float probe, GridStruct* grid,
                   float spacing, float buffer, int kind) {
  if (spacing == 0.0f) {
    vi_warning("cant have a grid of zero spacing!\n");
    return 1;
  }
  const std::optional<SphereItems> items = detail::sphere_items_of(kind);
  if (!items || !spheres || !grid || count < 1) return 0;
  constexpr float box_start = 100000.0f;
  SphereList list{spheres, radii, probe, *items};
  GridStruct sized = *grid;
  if (!detail::size_around(list, static_cast<std::size_t>(count), probe + buffer, spacing,
                           box_start, sized))
    return 0;
  if (!vx_allocate_grid_struct(sized, true, false, -1)) return 0;
  vx_zero_grid_struct(sized, true, false, -1);
  vx_deallocate_grid_struct(*grid, true, false);
  *grid = sized;

  // Points have the probe alone as their radius here.
  if (*items == SphereItems::triples || *items == SphereItems::double_triples) list.radii = nullptr;
  const RecordLattice lattice(*grid);
  for (int i = 0; i < count; ++i) {
    detail::visit_sphere(lattice, list[static_cast<std::size_t>(i)],
                         [&](std::size_t point) { grid->integers[point] = 1; });
  }
  return 1;
}

}  // namespace VXCore
