// Grids for a finite-difference solver: does the solute fit, where is it, its charges, and the
// halves of the interior.
#include "vxgrid/fieldgrids/finite_difference.h"

#include <algorithm>  // for max, min
#include <array>      // for array
#include <cmath>      // for ceil, floor
#include <cstddef>    // for size_t
#include <limits>     // for numeric_limits
#include <optional>   // for optional

#include "gridmath/ball_walk.h"
#include "gridmath/dimensions.h"
#include "gridmath/record_lattice.h"
#include "gridmath/sphere_list.h"
#include "vxgrid/gridmath/buffered_grid.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using detail::IndexBox;
using detail::RecordLattice;
using detail::Sphere;
using detail::SphereItems;
using detail::SphereList;

// The points that a sphere, in spacings, may cover; nothing when it misses the lattice.
std::optional<IndexBox> box_of(const Sphere& scaled, const RecordLattice& lattice) {
  IndexBox box;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const float first = std::max(std::ceil(scaled.centre[axis] - scaled.radius), 0.0f);
    const float last = std::floor(scaled.centre[axis] + scaled.radius);
    const int end = lattice.dim[axis] - 1;
    if (!(first <= static_cast<float>(end) && last >= 0.0f)) return std::nullopt;
    box.first[axis] = static_cast<int>(std::min<double>(first, end));
    box.last[axis] = static_cast<int>(std::min<double>(last, end));
  }
  return box;
}

// Shares a charge out over the points inside its sphere; false when there are none.
bool smear(const GridStruct& g, const RecordLattice& lattice, const Sphere& sphere, float charge) {
  if (!(sphere.radius > 0.0f)) return false;
  const Sphere scaled = detail::in_spacings(sphere, lattice);
  const std::optional<IndexBox> box = box_of(scaled, lattice);
  if (!box) return false;
  const double squared_radius = double{scaled.radius} * double{scaled.radius};
  const auto weight = [&](float d2) { return 1.0 - double{d2} / squared_radius; };
  double sum = 0;
  detail::walk_ball_distances(lattice, scaled.centre, scaled.radius, *box,
                              [&](std::size_t, float d2) { sum += weight(d2); });
  if (!(sum > 0.0)) return false;
  const double share = double{charge} / sum;
  detail::walk_ball_distances(lattice, scaled.centre, scaled.radius, *box,
                              [&](std::size_t point, float d2) {
                                g.floats[point] += static_cast<float>(share * weight(d2));
                              });
  return true;
}

// How far a sphere reaches beyond the lattice along an axis, on the side where it is more.
float excess_along(const RecordLattice& lattice, std::size_t axis, const Sphere& sphere) {
  return std::max(lattice.lower[axis] - (sphere.centre[axis] - sphere.radius),
                  (sphere.centre[axis] + sphere.radius) - lattice.upper[axis]);
}

void mark_spheres(const SphereList& spheres, int count, const GridStruct& g, int mark,
                  float value) {
  const RecordLattice lattice(g);
  if ((!g.integers && !g.floats) || !(lattice.spacing > 0.0f) || lattice.size() == 0) return;
  for (int i = 0; i < count; ++i) {
    detail::visit_sphere(lattice, spheres[static_cast<std::size_t>(i)], [&](std::size_t point) {
      if (g.integers) g.integers[point] = mark;
      if (g.floats) g.floats[point] = value;
    });
  }
}

}  // namespace

int vi_bound_check(PdbStruct* atoms, float* radii, GridStruct g, float probe, int n, int, int* x,
                   int* y, int* z) {
  const std::array<int*, 3> results = {x, y, z};
  for (int* const result : results) {
    if (result) *result = 0;
  }
  const RecordLattice lattice(g);
  const bool has_points = lattice.dim[0] > 0 && lattice.dim[1] > 0 && lattice.dim[2] > 0;
  if (!(lattice.spacing > 0.0f) || !has_points || (n > 0 && !atoms)) return 0;

  const SphereList spheres{atoms, radii, probe, SphereItems::atoms};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    float excess = 0;
    for (int i = 0; i < n; ++i)
      excess = std::max(excess, excess_along(lattice, axis, spheres[static_cast<std::size_t>(i)]));
    if (!results[axis]) continue;
    *results[axis] =
        detail::truncated(excess / lattice.spacing).value_or(std::numeric_limits<int>::max());
  }
  return 1;
}

void vi_alias_charge_grid(GridStruct g, SphereStruct* charges, int count, float* values, int mode) {
  const RecordLattice lattice(g);
  if (!g.floats || !charges || !values || !(lattice.spacing > 0.0f) || lattice.size() == 0) return;
  for (int i = 0; i < count; ++i) {
    const SphereStruct& charge = charges[i];
    const Sphere sphere{{charge.x, charge.y, charge.z}, charge.r};
    if (mode == 0 && smear(g, lattice, sphere, values[i])) continue;
    PdbStruct point;
    point.x = charge.x;
    point.y = charge.y;
    point.z = charge.z;
    vi_add_from_atoms_to_buffered_grid(0, &point, 1, &values[i], g, 0, 0);
  }
}

void vi_pack_half(GridStruct g, float* out, int mode, int odd) {
  const RecordLattice lattice(g);
  if (!g.floats || !out || lattice.size() == 0) return;
  float* packed = out;
  for (int z = 1; z < g.zdim - 1; ++z) {
    for (int y = 1; y < g.ydim - 1; ++y) {
      float* const row = g.floats + detail::element_at(lattice, 0, y, z);
      for (int x = odd != 0 ? 1 : 2; x < g.xdim - 1; x += 2, ++packed) {
        if (mode == 0) {
          *packed = row[x];
        } else {
          row[x] = *packed;
        }
      }
    }
  }
}

void vi_sph_to_grid2(SphereStruct* spheres, PntStruct* points, PdbStruct* atoms, float* radii,
                     GridStruct g, float probe, int a, int b, int c, int d, float e) {
  if (spheres && a > 0) {
    vx_printf("mapping %d spheres to grid with probe radius of %f\n", a, double{probe});
    mark_spheres({spheres, nullptr, probe, SphereItems::quadruples}, a, g, d, e);
  }
  if (points && b > 0) {
    vx_printf("mapping %d points to grid with probe radius of %f\n", b, double{probe});
    mark_spheres({points, nullptr, probe, SphereItems::triples}, b, g, d, e);
  }
  if (atoms && c > 0) {
    vx_printf("mapping %d atoms to grid with probe radius of %f\n", c, double{probe});
    mark_spheres({atoms, radii, probe, SphereItems::atoms}, c, g, d, e);
  }
}

}  // namespace VXCore
