/// \file
/// From lengths counted in spacings to numbers of points, without leaving the range of an int.
#ifndef VXGRID_SRC_GRIDMATH_DIMENSIONS_H
#define VXGRID_SRC_GRIDMATH_DIMENSIONS_H

#include <cstdint>   // for int64_t
#include <limits>    // for numeric_limits
#include <optional>  // for optional

namespace VXCore::detail {

/// The number cut towards zero; nothing for what is no number or fits no int.
inline std::optional<int> truncated(double value) {
  if (!(value > -2147483649.0 && value < 2147483648.0)) return std::nullopt;
  return static_cast<int>(value);
}

/// base - intervals where that is an int above 0, and nothing otherwise. Sizes are worked out from
/// a negative count of intervals, length * (-1/spacing) cut towards zero.
inline std::optional<int> points_for(int base, std::optional<int> intervals) {
  if (!intervals) return std::nullopt;
  const std::int64_t points = std::int64_t{base} - *intervals;
  if (points < 1 || points > std::numeric_limits<int>::max()) return std::nullopt;
  return static_cast<int>(points);
}

}  // namespace VXCore::detail

#endif
