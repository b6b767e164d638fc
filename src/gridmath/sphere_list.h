/// \file
/// Spheres given as arrays of several kinds: where they lie on a lattice, and the grid around them.
#ifndef VXGRID_SRC_GRIDMATH_SPHERE_LIST_H
#define VXGRID_SRC_GRIDMATH_SPHERE_LIST_H

#include <array>     // for array
#include <cstddef>   // for size_t
#include <optional>  // for optional

#include "gridmath/ball_walk.h"
#include "gridmath/record_lattice.h"
#include "vxgrid/grid/grid_struct.h"

namespace VXCore::detail {

/// What the items of an array are: PdbStruct, four floats x, y, z, r, three floats, three doubles.
enum class SphereItems { atoms, quadruples, triples, double_triples };

/// The items of a kind by number: 1 atoms, 2 and 3 triples, 4 quadruples, 5 triples of doubles.
std::optional<SphereItems> sphere_items_of(int kind);

/// A centre and a radius, in Angstrom or counted in spacings from the first lattice point.
struct Sphere {
  std::array<float, 3> centre;
  float radius;
};

/// The spheres of an array of any kind; the arrays stay the caller's.
struct SphereList {
  const void* items;
  const float* radii;  ///< widen all but quadruples, may be null
  float probe;         ///< widens all
  SphereItems kind;

  Sphere operator[](std::size_t i) const;
};

Sphere in_spacings(const Sphere& sphere, const RecordLattice& lattice);

/// The points that a sphere, in spacings, may cover, cut off at the lattice; nothing when it misses
/// the lattice. Index 0 is never among them: the first is the one behind the lower end of the
/// sphere, or of the lattice.
std::optional<IndexBox> clipped_box(const Sphere& scaled, const RecordLattice& lattice);

/// Calls visit(element) for the lattice points strictly inside a sphere in Angstrom, save those of
/// index 0 on any axis.
template <class Visit>
void visit_sphere(const RecordLattice& lattice, const Sphere& sphere, Visit visit) {
  const Sphere scaled = in_spacings(sphere, lattice);
  if (const std::optional<IndexBox> box = clipped_box(scaled, lattice)) {
    walk_ball(lattice, scaled.centre, scaled.radius, *box, visit);
  }
}

/// Geometry of a grid around spheres, `margin` beyond them on all sides; false, with the record as
/// it was, when it has no size. The box of the spheres starts from `far` as its low and -`far` as
/// its high end.
bool size_around(const SphereList& spheres, std::size_t count, float margin, float spacing,
                 float far, GridStruct& grid);

}  // namespace VXCore::detail

#endif
