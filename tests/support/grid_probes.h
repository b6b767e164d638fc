// What tests ask of a grid, as values.
#ifndef VXGRID_TESTS_SUPPORT_GRID_PROBES_H
#define VXGRID_TESTS_SUPPORT_GRID_PROBES_H

#include <array>   // for array
#include <vector>  // for vector

namespace vxgrid_test {

/// Number of points along x, y, z.
template <class Grid>
std::array<unsigned int, 3> dims_of(const Grid& grid) {
  return {grid.GetXDim(), grid.GetYDim(), grid.GetZDim()};
}

/// Coordinates of an element in Angstrom; far from all grids when it has none.
template <class Grid>
std::array<float, 3> place_of(const Grid& grid, unsigned int element) {
  std::array<float, 3> p{};
  if (!grid.ElementToSpatialCoord(element, p[0], p[1], p[2])) return {1e30f, 1e30f, 1e30f};
  return p;
}

/// Edges and angles of the unit cell, zeros without one.
template <class Grid>
std::array<float, 6> cell_of(const Grid& grid) {
  std::array<float, 6> c{};
  grid.GetUnitCell(c[0], c[1], c[2], c[3], c[4], c[5]);
  return c;
}

/// The values of the selected field, none without values.
template <class Grid>
std::vector<float> values_of(const Grid& grid) {
  const float* values = grid.GetValues();
  return values ? std::vector<float>(values, values + grid.GetSize()) : std::vector<float>();
}

}  // namespace vxgrid_test

#endif
