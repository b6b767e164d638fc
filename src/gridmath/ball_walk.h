/// \file
/// The walk over the lattice points inside a sphere.
#ifndef VXGRID_SRC_GRIDMATH_BALL_WALK_H
#define VXGRID_SRC_GRIDMATH_BALL_WALK_H

#include <array>    // for array
#include <cstddef>  // for size_t

#include "gridmath/record_lattice.h"

namespace VXCore::detail {

/// Lattice indices from `first` to `last` on each axis, both included; none where last < first.
struct IndexBox {
  std::array<int, 3> first{};
  std::array<int, 3> last{};
};

/// Calls visit(element, squared distance) for every point of the box that lies strictly inside a
/// sphere, z outermost. Centre, radius and distance count in spacings, the centre from the first
/// lattice point, and the box has to lie within the lattice.
///
/// The squared distance is carried along by its differences, (i+1-c)^2 = (i-c)^2 + 1 - 2(c-i), in
/// single precision: additions only, whose rounding is part of what comes out.
template <class Visit>
void walk_ball_distances(const RecordLattice& lattice, const std::array<float, 3>& centre,
                         float radius, const IndexBox& box, Visit visit) {
  const float limit = radius * radius;
  const float dx = centre[0] - static_cast<float>(box.first[0]);
  const float dy = centre[1] - static_cast<float>(box.first[1]);
  const float dz = centre[2] - static_cast<float>(box.first[2]);
  float plane_d2 = dx * dx + dy * dy + dz * dz;
  float z_step = 1.0f - 2.0f * dz;
  for (int z = box.first[2]; z <= box.last[2]; ++z, plane_d2 += z_step, z_step += 2.0f) {
    float row_d2 = plane_d2;
    float y_step = 1.0f - 2.0f * dy;
    for (int y = box.first[1]; y <= box.last[1]; ++y, row_d2 += y_step, y_step += 2.0f) {
      const std::size_t row = element_at(lattice, 0, y, z);
      float d2 = row_d2;
      float x_step = 1.0f - 2.0f * dx;
      for (int x = box.first[0]; x <= box.last[0]; ++x, d2 += x_step, x_step += 2.0f) {
        if (d2 < limit) visit(row + static_cast<std::size_t>(x), d2);
      }
    }
  }
}

/// The same for visit(element).
template <class Visit>
void walk_ball(const RecordLattice& lattice, const std::array<float, 3>& centre, float radius,
               const IndexBox& box, Visit visit) {
  walk_ball_distances(lattice, centre, radius, box,
                      [&](std::size_t element, float) { visit(element); });
}

}  // namespace VXCore::detail

#endif
