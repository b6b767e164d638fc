/// \file
/// Trilinear blending of the eight values around a cell; every routine that blends comes here.
#ifndef VXGRID_SRC_GRIDMATH_TRILINEAR_H
#define VXGRID_SRC_GRIDMATH_TRILINEAR_H

#include <cstddef>  // for size_t

namespace VXCore::detail {

inline float blend(float a, float b, float t) {
  return a + (b - a) * t;
}

/// The four corners of one face of a cell: both ends along x of two rows.
inline float blend_face(const float* corner, std::size_t row, float tx, float ty) {
  return blend(blend(corner[0], corner[1], tx), blend(corner[row], corner[row + 1], tx), ty);
}

/// Blends along x for the four edges, then along y, then along z. `corner` is the value at the low
/// corner of the cell, `row` and `plane` the steps from it to its neighbours along y and z, and
/// tx, ty, tz the fractions within the cell.
inline float blend_cell(const float* corner, std::size_t row, std::size_t plane, float tx, float ty,
                        float tz) {
  return blend(blend_face(corner, row, tx, ty), blend_face(corner + plane, row, tx, ty), tz);
}

}  // namespace VXCore::detail

#endif
