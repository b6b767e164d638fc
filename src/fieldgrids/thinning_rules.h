/// \file
/// Directions and templates of the thinning, for 64 points at a time.
#ifndef VXGRID_SRC_FIELDGRIDS_THINNING_RULES_H
#define VXGRID_SRC_FIELDGRIDS_THINNING_RULES_H

#include <array>    // for array
#include <cstddef>  // for size_t
#include <cstdint>  // for uint64_t

namespace VXCore::detail::thinning {

/// A step from a point to a neighbour, in grid points.
struct Step {
  int x, y, z;
};

inline constexpr Step right{1, 0, 0}, left{-1, 0, 0};
inline constexpr Step back{0, 1, 0}, front{0, -1, 0};
inline constexpr Step up{0, 0, 1}, down{0, 0, -1};

inline constexpr int direction_count = 12;

/// A point is a border point of a direction where one of these two neighbours is background.
using BorderSteps = std::array<std::array<Step, 2>, direction_count>;
inline constexpr BorderSteps border_steps{{{up, front},
                                           {back, right},
                                           {down, left},
                                           {front, right},
                                           {up, left},
                                           {down, back},
                                           {front, left},
                                           {up, back},
                                           {down, right},
                                           {back, left},
                                           {up, right},
                                           {down, front}}};

/// Where the x, y and z axes of the templates lie in the grid. The templates take points off from
/// their right and front, which thus is the edge of the border neighbours with x and z exchanged.
/// The last direction has no templates.
inline constexpr std::array<std::array<Step, 3>, direction_count - 1> template_axes{
    {{right, back, up},
     {back, down, left},
     {left, up, front},
     {up, back, left},
     {right, up, front},
     {left, front, up},
     {down, back, right},
     {right, front, up},
     {left, down, back},
     {back, up, right},
     {right, down, back}}};

/// One bit for each of 64 points.
using Word = std::uint64_t;

/// Whether neighbour (dx + 1) + 3 (dy + 1) + 9 (dz + 1) is object, along the axes of the templates;
/// 13 is the point itself.
using Pattern = std::array<Word, 27>;

/// The neighbour of a pattern as a step in the grid.
constexpr Step neighbour_step(std::size_t neighbour, const std::array<Step, 3>& axes) {
  const int dx = static_cast<int>(neighbour % 3) - 1;
  const int dy = static_cast<int>(neighbour / 3 % 3) - 1;
  const int dz = static_cast<int>(neighbour / 9) - 1;
  return {dx * axes[0].x + dy * axes[1].x + dz * axes[2].x,
          dx * axes[0].y + dy * axes[1].y + dz * axes[2].y,
          dx * axes[0].z + dy * axes[1].z + dz * axes[2].z};
}

template <int... neighbours>
constexpr Word any(const Pattern& p) {
  return (p[neighbours] | ...);
}

template <int... neighbours>
constexpr Word none(const Pattern& p) {
  return ~any<neighbours...>(p);
}

/// No template matches where this neighbour is object.
inline constexpr std::size_t always_background = 11;

/// A flat face with more object behind it.
constexpr Word face_matches(const Pattern& p) {
  return (p[12] & none<2, 5, 8, 11, 14, 17, 20, 23, 26>(p) &
          any<0, 9, 18, 3, 21, 6, 15, 24, 1, 10, 19, 4, 22, 7, 16, 25>(p)) |
         (p[16] & none<0, 1, 2, 9, 10, 11, 18, 19, 20>(p) &
          any<3, 12, 21, 4, 22, 5, 14, 23, 6, 15, 24, 7, 25, 8, 17, 26>(p)) |
         (p[15] & none<0, 9, 18, 1, 10, 19, 2, 11, 20, 5, 14, 23, 8, 17, 26>(p) &
          any<3, 6, 21, 24, 4, 7, 22, 25>(p));
}

/// An edge between two object neighbours. `low` and `high` say of its two ends, at z-1 and z+1,
/// that they hold to the rest of the object without the point: by no more than one side, or past a
/// corner.
constexpr Word edge_matches(const Pattern& p) {
  const Word low_corner = p[2] & (p[1] ^ p[5]);
  const Word high_corner = p[20] & (p[19] ^ p[23]);
  const Word low = (~p[2] & ~(p[1] & p[5])) | low_corner;
  const Word high = (~p[20] & ~(p[19] & p[23])) | high_corner;
  return p[12] & p[16] & none<10, 11, 14>(p) &
         ((low & high & ~(low_corner & high_corner)) | (p[22] & low) | (p[4] & high));
}

/// The end of a diagonal line.
constexpr Word line_matches(const Pattern& p) {
  return p[15] & none<2, 9, 10, 11, 14, 17, 20>(p) &
         ((p[21] & none<0, 1, 5, 8, 23, 26>(p)) | (p[3] & none<5, 8, 18, 19, 23, 26>(p)) |
          (p[25] & none<0, 1, 5, 8, 18, 19>(p)) | (p[7] & none<0, 1, 18, 19, 23, 26>(p)));
}

/// The points that a template takes off.
constexpr Word removable(const Pattern& p) {
  return p[13] & (face_matches(p) | edge_matches(p) | line_matches(p));
}

}  // namespace VXCore::detail::thinning

#endif
