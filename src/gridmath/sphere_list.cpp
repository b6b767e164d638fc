// Spheres from arrays, on a lattice, and the grid around them.
#include "gridmath/sphere_list.h"

#include <algorithm>  // for clamp, max, min
#include <cstdint>    // for int64_t
#include <limits>     // for numeric_limits

#include "gridmath/dimensions.h"
#include "vxgrid/grid/pdb_struct.h"

namespace VXCore::detail {

std::optional<SphereItems> sphere_items_of(int kind) {
  switch (kind) {
    case 1:
      return SphereItems::atoms;
    case 2:
    case 3:
      return SphereItems::triples;
    case 4:
      return SphereItems::quadruples;
    case 5:
      return SphereItems::double_triples;
    default:
      return std::nullopt;
  }
}

Sphere SphereList::operator[](std::size_t i) const {
  const float widened = radii ? probe + radii[i] : probe;
  switch (kind) {
    case SphereItems::atoms: {
      const PdbStruct& atom = static_cast<const PdbStruct*>(items)[i];
      return {{atom.x, atom.y, atom.z}, widened};
    }
    case SphereItems::quadruples: {
      const float* const p = static_cast<const float*>(items) + 4 * i;
      return {{p[0], p[1], p[2]}, probe + p[3]};
    }
    case SphereItems::triples: {
      const float* const p = static_cast<const float*>(items) + 3 * i;
      return {{p[0], p[1], p[2]}, widened};
    }
    case SphereItems::double_triples:
      break;
  }
  const double* const p = static_cast<const double*>(items) + 3 * i;
  return {{static_cast<float>(p[0]), static_cast<float>(p[1]), static_cast<float>(p[2])}, widened};
}

Sphere in_spacings(const Sphere& sphere, const RecordLattice& lattice) {
  Sphere scaled{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    scaled.centre[axis] = (sphere.centre[axis] - lattice.lower[axis]) / lattice.spacing;
  }
  scaled.radius = sphere.radius / lattice.spacing;
  return scaled;
}

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

bool size_around(const SphereList& spheres, std::size_t count, float margin, float spacing,
                 float far, GridStruct& grid) {
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
    const std::optional<int> half = truncated((high[axis] - low[axis]) * 0.5f / spacing);
    const std::int64_t points = 3 + 2 * std::int64_t{half.value_or(-2)};
    if (points < 1 || points > std::numeric_limits<int>::max()) return false;
    dims[axis] = static_cast<int>(points);
  }
  const RecordLattice lattice(dims, mid, spacing);
  if (lattice.size() == 0) return false;
  set_lattice(grid, lattice);
  return true;
}

}  // namespace VXCore::detail
