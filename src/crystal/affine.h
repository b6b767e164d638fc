// Affine maps as 4 by 4 matrices for row vectors, 16 floats row by row, in single precision.
#ifndef VXGRID_SRC_CRYSTAL_AFFINE_H
#define VXGRID_SRC_CRYSTAL_AFFINE_H

#include <array>    // for array
#include <cstddef>  // for size_t

namespace VXCore::detail {

using Matrix4 = std::array<float, 16>;

/// The map that does `first` and then `second`: the row-major product first * second.
inline Matrix4 chain(const float* first, const float* second) {
  Matrix4 out;
  for (std::size_t row = 0; row < 4; ++row) {
    for (std::size_t column = 0; column < 4; ++column) {
      float sum = second[column] * first[4 * row];
      for (std::size_t k = 1; k < 4; ++k)
        sum += second[4 * k + column] * first[4 * row + k];
      out[4 * row + column] = sum;
    }
  }
  return out;
}

/// The image of the point x, y, z.
inline std::array<float, 3> transform_point(const float* matrix, const float* point) {
  std::array<float, 3> out;
  for (std::size_t i = 0; i < 3; ++i) {
    out[i] =
        matrix[i] * point[0] + matrix[4 + i] * point[1] + matrix[8 + i] * point[2] + matrix[12 + i];
  }
  return out;
}

/// True if the value, cut to a whole number, is one of a 32-bit integer; not a number is not.
inline bool fits_int32(float value) {
  return value >= -2147483648.0f && value < 2147483648.0f;
}

/// The cell that a fractional coordinate lies in: its floor. Values beyond 32-bit integers, which
/// are whole numbers anyway, and not a number stand for themselves.
inline float cell_floor(float value) {
  if (!fits_int32(value)) return value;
  const float cut = static_cast<float>(static_cast<int>(value));
  return cut > value ? cut - 1 : cut;
}

}  // namespace VXCore::detail

#endif
