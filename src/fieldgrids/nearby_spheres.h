/// \file
/// Which of many spheres are near a point.
#ifndef VXGRID_SRC_FIELDGRIDS_NEARBY_SPHERES_H
#define VXGRID_SRC_FIELDGRIDS_NEARBY_SPHERES_H

#include <array>   // for array
#include <span>    // for span
#include <vector>  // for vector

#include "vxgrid/fieldgrids/surface_records.h"
#include "vxgrid/grid/grid_struct.h"

namespace VXCore::detail {

/// A proximity grid over spheres, with cells about as wide as they: a point is held against a few
/// dozen spheres, however many there are.
class NearbySpheres {
 public:
  NearbySpheres() = default;
  NearbySpheres(const NearbySpheres&) = delete;
  NearbySpheres& operator=(const NearbySpheres&) = delete;
  ~NearbySpheres();

  /// Makes the grid for spheres around which points count as near up to `reach`, in Angstrom, of
  /// their surface. Cells are at least `spacing` wide, and so wide that there are not many more of
  /// them than spheres. False without spheres and where there is no such grid: something is not
  /// finite, or there is no memory.
  bool make(std::span<SphereStruct> spheres, float reach, float spacing);

  /// The numbers of the spheres that come within the reach of a point, and of some more, ascending.
  std::span<const int> near(std::array<float, 3> point);

 private:
  GridStruct grid_;
  std::vector<int> list_;
};

}  // namespace VXCore::detail

#endif
