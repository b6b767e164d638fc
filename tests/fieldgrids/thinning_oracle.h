/// \file
/// The rules of the thinning as they read, point by point: what the library is held against, in
/// results by the tests and in time by the benchmark.
#ifndef VXGRID_TESTS_FIELDGRIDS_THINNING_ORACLE_H
#define VXGRID_TESTS_FIELDGRIDS_THINNING_ORACLE_H

#include <array>             // for array
#include <cstddef>           // for size_t, ptrdiff_t
#include <initializer_list>  // for initializer_list
#include <vector>            // for vector

namespace thinning_oracle {

using Neighbours = std::array<float, 27>;

/// p[i] of a direction is n[reorientation[direction][i]].
inline constexpr int reorientation[11][27] = {
    {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13,
     14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26},
    {20, 23, 26, 11, 14, 17, 2,  5, 8,  19, 22, 25, 10, 13,
     16, 1,  4,  7,  18, 21, 24, 9, 12, 15, 0,  3,  6},
    {8,  7,  6,  17, 16, 15, 26, 25, 24, 5, 4,  3,  14, 13,
     12, 23, 22, 21, 2,  1,  0,  11, 10, 9, 20, 19, 18},
    {2,  11, 20, 5,  14, 23, 8,  17, 26, 1,  10, 19, 4, 13,
     22, 7,  16, 25, 0,  9,  18, 3,  12, 21, 6,  15, 24},
    {6,  7,  8,  15, 16, 17, 24, 25, 26, 3,  4,  5,  12, 13,
     14, 21, 22, 23, 0,  1,  2,  9,  10, 11, 18, 19, 20},
    {8,  7,  6,  5, 4,  3,  2,  1,  0,  17, 16, 15, 14, 13,
     12, 11, 10, 9, 26, 25, 24, 23, 22, 21, 20, 19, 18},
    {18, 9,  0,  21, 12, 3,  24, 15, 6,  19, 10, 1,  22, 13,
     4,  25, 16, 7,  20, 11, 2,  23, 14, 5,  26, 17, 8},
    {6,  7, 8,  3,  4,  5,  0,  1,  2,  15, 16, 17, 12, 13,
     14, 9, 10, 11, 24, 25, 26, 21, 22, 23, 18, 19, 20},
    {20, 19, 18, 11, 10, 9,  2,  1,  0,  23, 22, 21, 14, 13,
     12, 5,  4,  3,  26, 25, 24, 17, 16, 15, 8,  7,  6},
    {0,  3,  6,  9,  12, 15, 18, 21, 24, 1,  4,  7,  10, 13,
     16, 19, 22, 25, 2,  5,  8,  11, 14, 17, 20, 23, 26},
    {18, 19, 20, 9, 10, 11, 0,  1,  2,  21, 22, 23, 12, 13,
     14, 3,  4,  5, 24, 25, 26, 15, 16, 17, 6,  7,  8},
};

/// The two border neighbours of a direction as dx, dy, dz.
inline constexpr int border[12][2][3] = {
    {{0, 0, 1}, {0, -1, 0}},   // z+1, y-1
    {{0, 1, 0}, {1, 0, 0}},    // y+1, x+1
    {{0, 0, -1}, {-1, 0, 0}},  // z-1, x-1
    {{0, -1, 0}, {1, 0, 0}},   // y-1, x+1
    {{0, 0, 1}, {-1, 0, 0}},   // z+1, x-1
    {{0, 0, -1}, {0, 1, 0}},   // z-1, y+1
    {{0, -1, 0}, {-1, 0, 0}},  // y-1, x-1
    {{0, 0, 1}, {0, 1, 0}},    // z+1, y+1
    {{0, 0, -1}, {1, 0, 0}},   // z-1, x+1
    {{0, 1, 0}, {-1, 0, 0}},   // y+1, x-1
    {{0, 0, 1}, {1, 0, 0}},    // z+1, x+1
    {{0, 0, -1}, {0, -1, 0}},  // z-1, y-1
};

inline bool matches(const Neighbours& p) {
  const auto N = [&](std::size_t i) { return p[i] != 0.0f; };
  const auto Z = [&](std::size_t i) { return p[i] == 0.0f; };
  const auto all_zero = [&](std::initializer_list<std::size_t> list) {
    for (std::size_t i : list)
      if (N(i)) return false;
    return true;
  };
  const auto one = [&](std::size_t i, std::size_t j) { return N(i) != N(j); };

  if (N(12) && N(13) && all_zero({2, 5, 8, 11, 14, 17, 20, 23, 26}) &&
      !all_zero({0, 9, 18, 3, 21, 6, 15, 24, 1, 10, 19, 4, 22, 7, 16, 25}))
    return true;
  if (N(13) && N(16) && all_zero({0, 1, 2, 9, 10, 11, 18, 19, 20}) &&
      !all_zero({3, 12, 21, 4, 22, 5, 14, 23, 6, 15, 24, 7, 25, 8, 17, 26}))
    return true;
  if (N(13) && N(15) && all_zero({0, 9, 18, 1, 10, 19, 2, 11, 20, 5, 14, 23, 8, 17, 26}) &&
      !all_zero({3, 6, 21, 24, 4, 7, 22, 25}))
    return true;
  if (Z(13)) return false;
  if (N(12) && N(16)) {
    const bool A = N(1) && N(5);
    const bool C = N(19) && N(23);
    const bool E = all_zero({10, 11, 14});
    int step = 1;
    if (E && Z(2) && Z(20)) {
      if (!A && !C) return true;
      if (!A && C) step = 6;
    }
    if (step == 1) step = Z(20) ? 4 : 3;
    if (step == 3) {
      if (Z(10)) {
        if (N(2)) {
          step = 5;
        } else {
          if (all_zero({11, 14}) && !A && one(19, 23)) return true;
          step = 6;
        }
      } else {
        step = 4;
      }
    }
    if (step == 4) step = Z(2) ? 6 : 5;
    if (step == 5 && E && Z(20) && one(5, 1) && !C) return true;
    if (N(22) && E && Z(2) && !A) return true;
    if (N(4) && E && Z(20) && !C) return true;
    if (N(2) && N(22) && E && one(5, 1)) return true;
    if (N(4) && N(20) && E && one(19, 23)) return true;
  }
  if (Z(15)) return false;
  if (N(21) && all_zero({0, 9, 1, 10, 2, 11, 20, 5, 14, 23, 8, 17, 26})) return true;
  if (N(3) && all_zero({9, 18, 10, 19, 2, 11, 20, 5, 14, 23, 8, 17, 26})) return true;
  if (N(25) && all_zero({0, 9, 18, 1, 10, 19, 2, 11, 20, 5, 14, 8, 17})) return true;
  return N(7) && all_zero({0, 9, 18, 1, 10, 19, 2, 11, 20, 14, 23, 17, 26});
}

struct Result {
  int passes = 0;
  /// Points taken off by each direction.
  std::array<int, 12> removed{};
};

/// Thins the values of a grid, x fastest, in place.
inline Result thin(std::vector<float>& values, std::ptrdiff_t nx, std::ptrdiff_t ny,
                   std::ptrdiff_t nz) {
  for (float& value : values)
    value = value != 0.0f ? 1.0f : 0.0f;
  std::vector<char> interior(values.size());
  for (std::ptrdiff_t z = 1; z <= nz - 2; ++z)
    for (std::ptrdiff_t y = 1; y <= ny - 2; ++y)
      for (std::ptrdiff_t x = 1; x <= nx - 2; ++x)
        interior[static_cast<std::size_t>(x + nx * (y + ny * z))] = 1;
  std::array<std::ptrdiff_t, 27> offset{};
  for (int dz = -1; dz <= 1; ++dz)
    for (int dy = -1; dy <= 1; ++dy)
      for (int dx = -1; dx <= 1; ++dx)
        offset[static_cast<std::size_t>(dx + 1 + 3 * (dy + 1) + 9 * (dz + 1))] =
            dx + dy * nx + dz * nx * ny;

  Result result;
  Neighbours n{}, p{};
  bool removed = true;
  while (removed) {
    removed = false;
    for (std::size_t d = 0; d < 12; ++d) {
      std::array<std::ptrdiff_t, 2> side{};
      for (std::size_t k = 0; k < 2; ++k)
        side[k] = border[d][k][0] + border[d][k][1] * nx + border[d][k][2] * nx * ny;
      const auto at = [&](std::size_t i, std::ptrdiff_t step) {
        return values[static_cast<std::size_t>(static_cast<std::ptrdiff_t>(i) + step)];
      };
      for (std::size_t i = 0; i < values.size(); ++i)
        if (interior[i] && values[i] == 1.0f && (at(i, side[0]) == 0.0f || at(i, side[1]) == 0.0f))
          values[i] = 10.0f;
      for (std::size_t i = 0; i < values.size(); ++i) {
        if (values[i] != 10.0f) continue;
        for (std::size_t k = 0; k < 27; ++k)
          n[k] = at(i, offset[k]) != 0.0f ? 1.0f : 0.0f;
        if (d < 11)
          for (std::size_t k = 0; k < 27; ++k)
            p[k] = n[static_cast<std::size_t>(reorientation[d][k])];
        if (!matches(p)) continue;
        values[i] = 20.0f;
        ++result.removed[d];
        removed = true;
      }
      for (float& value : values)
        value = value == 20.0f || value == 0.0f ? 0.0f : 1.0f;
    }
    ++result.passes;
  }
  for (std::size_t i = 0; i < values.size(); ++i)
    if (!interior[i]) values[i] = 0.0f;
  return result;
}

}  // namespace thinning_oracle

#endif
