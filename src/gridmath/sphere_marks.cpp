// Marking the points inside spheres, on a given grid and on one sized around them.
#include <algorithm>    // for clamp, max, min
#include <array>        // for array
#include <cstddef>      // for size_t
#include <cstdint>      // for int64_t
#include <limits>       // for numeric_limits
#include <optional>     // for optional
#include <string_view>  // for string_view

#include "gridmath/ball_walk.h"
#include "gridmath/dimensions.h"
#include "gridmath/record_lattice.h"
#include "vxgrid/grid/pdb_struct.h"
#include "vxgrid/gridmath/masks.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::IndexBox;
using detail::RecordLattice;

enum class Items { atoms, quadruples, triples, double_triples };

struct Sphere {
  std::array<float, 3> centre;
  float radius;
};

// The spheres of an array of any kind; `radii` widen atoms and triples and may be null.
struct SphereList {
  const void* items;
  const float* radii;
  float probe;
  Items kind;

  Sphere operator[](std::size_t i) const {
    const float widened = radii ? probe + radii[i] : probe;
    switch (kind) {
      case Items::atoms: {
        const PdbStruct& atom = static_cast<const PdbStruct*>(items)[i];
        return {{atom.x, atom.y, atom.z}, widened};
      }
      case Items::quadruples: {
        const float* const p = static_cast<const float*>(items) + 4 * i;
        return {{p[0], p[1], p[2]}, probe + p[3]};
      }
      case Items::triples: {
        const float* const p = static_cast<const float*>(items) + 3 * i;
        return {{p[0], p[1], p[2]}, widened};
      }
      case Items::double_triples:
        break;
    }
    const double* const p = static_cast<const double*>(items) + 3 * i;
    return {{static_cast<float>(p[0]), static_cast<float>(p[1]), static_cast<float>(p[2])},
            widened};
  }
};

// A sphere in spacings from the first lattice point.
Sphere in_spacings(const Sphere& sphere, const RecordLattice& lattice) {
  Sphere scaled{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    scaled.centre[axis] = (sphere.centre[axis] - lattice.lower[axis]) / lattice.spacing;
  }
  scaled.radius = sphere.radius / lattice.spacing;
  return scaled;
}

// The points that a sphere may mark, cut off at the lattice; nothing when it misses the lattice.
// Index 0 is never among them: the first is the one behind the lower end of the sphere, or of the
// lattice.
std::optional<IndexBox> clipped_box(const Sphere& scaled, const RecordLattice& lattice) {
  IndexBox box;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float c = scaled.centre[axis];
    const float r = scaled.radius;
    const double end = lattice.dim[axis] - 1;
    if (!(c - r <= static_cast<float>(end) && c + r >= 0.0f)) return std::nullopt;
    box.first[axis] = static_cast<int>(std::clamp<double>(c - r, 0.0, end)) + 1;
    box.last[axis] = static_cast<int>(std::clamp<double>(c + r, 0.0, end));
  }
  return box;
}

std::optional<Items> items_of(std::string_view kind) {
  if (kind == "atoms") return Items::atoms;
  if (kind == "spheres") return Items::quadruples;
  if (kind == "points" || kind == "coordinates") return Items::triples;
  return std::nullopt;
}

std::optional<Items> items_of(int kind) {
  switch (kind) {
    case 1:
      return Items::atoms;
    case 2:
    case 3:
      return Items::triples;
    case 4:
      return Items::quadruples;
    case 5:
      return Items::double_triples;
    default:
      return std::nullopt;
  }
}

// Geometry of a grid around spheres, `margin` beyond them on all sides; false when it has no size.
bool size_around(const SphereList& spheres, std::size_t count, float margin, float spacing,
                 GridStruct& grid) {
  constexpr float far = 100000.0f;
  std::array<float, 3> low = {far, far, far};
  std::array<float, 3> high = {-far, -far, -far};
  for (std::size_t i = 0; i < count; ++i) {
    const Sphere sphere = spheres[i];
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low[axis] = std::min(low[axis], sphere.centre[axis] - sphere.radius);
      high[axis] = std::max(high[axis], sphere.centre[axis] + sphere.radius);
    }
  }
  std::array<float, 3> mid{};
  std::array<int, 3> dims{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    low[axis] -= margin;
    high[axis] += margin;
    mid[axis] = (high[axis] + low[axis]) * 0.5f;
    const std::optional<int> half = detail::truncated((high[axis] - low[axis]) * 0.5f / spacing);
    const std::int64_t points = 3 + 2 * std::int64_t{half.value_or(-2)};
    if (points < 1 || points > std::numeric_limits<int>::max()) return false;
    dims[axis] = static_cast<int>(points);
  }
  if (vx_grid_struct_overflow(dims[0], dims[1], dims[2])) return false;
  grid.xmid = mid[0];
  grid.ymid = mid[1];
  grid.zmid = mid[2];
  grid.xdim = dims[0];
  grid.ydim = dims[1];
  grid.zdim = dims[2];
  grid.spacing = spacing;
  grid.inverse_spacing = 1.0f / spacing;
  return true;
}

}  // namespace

int vi_map_spheres_to_grid(void* spheres, const char* kind, float* radii, GridStruct grid,
                           float probe, int count, float value) {
  if (count < 1) return 1;
  const std::string_view name = kind ? kind : "";
  if (name == "doubles") return 1;
  const std::optional<Items> items = items_of(name);
  if (!items) {
    vi_warning("no such sphere type as %s\n", kind ? kind : "");
    return 0;
  }
  const RecordLattice lattice(grid);
  if (!spheres || lattice.size() == 0) return 1;
  const SphereList list{spheres, radii, probe, *items};
  for (int i = 0; i < count; ++i) {
    const Sphere scaled = in_spacings(list[static_cast<std::size_t>(i)], lattice);
    const std::optional<IndexBox> box = clipped_box(scaled, lattice);
    if (!box) continue;
    detail::walk_ball(lattice, scaled.centre, scaled.radius, *box, [&](std::size_t point) {
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
  const std::optional<Items> items = items_of(kind);
  if (!items || !spheres || !grid || count < 1) return 0;
  SphereList list{spheres, radii, probe, *items};
  GridStruct sized = *grid;
  if (!size_around(list, static_cast<std::size_t>(count), probe + buffer, spacing, sized)) return 0;
  if (!vx_allocate_grid_struct(sized, true, false, -1)) return 0;
  vx_zero_grid_struct(sized, true, false, -1);
  vx_deallocate_grid_struct(*grid, true, false);
  *grid = sized;

  // Points have the probe alone as their radius here.
  if (*items == Items::triples || *items == Items::double_triples) list.radii = nullptr;
  const RecordLattice lattice(*grid);
  for (int i = 0; i < count; ++i) {
    const Sphere scaled = in_spacings(list[static_cast<std::size_t>(i)], lattice);
    const std::optional<IndexBox> box = clipped_box(scaled, lattice);
    if (!box) continue;
    detail::walk_ball(lattice, scaled.centre, scaled.radius, *box,
                      [&](std::size_t point) { grid->integers[point] = 1; });
  }
  return 1;
}

}  // namespace VXCore
