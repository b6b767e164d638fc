/// \file
/// Thinning against the rules as they read, and on grids with little or nothing in them.
#include "vxgrid/fieldgrids/thinning.h"

#include <gtest/gtest.h>

#include <algorithm>  // for count, max
#include <array>      // for array
#include <cstddef>    // for size_t
#include <limits>     // for numeric_limits
#include <random>     // for mt19937
#include <string>     // for string
#include <vector>     // for vector

#include "fieldgrids/thinning_oracle.h"
#include "fieldgrids/thinning_rules.h"

namespace {

using VXCore::VXScalarGrid;
using VXCore::VXThinGrid;
namespace thinning = VXCore::detail::thinning;

struct Size {
  int x, y, z;
  std::size_t points() const { return static_cast<std::size_t>(x * y * z); }
};

VXScalarGrid make_grid(const Size& size, const std::vector<float>& values) {
  return {size.x, size.y, size.z, 0, 0, 0, 1, "object", values.data()};
}

std::vector<float> values_of(const VXScalarGrid& grid) {
  return {grid.GetValues(), grid.GetValues() + grid.GetSize()};
}

/// Balls that overlap, some cut by the faces of the grid, with a few specks and holes.
std::vector<float> make_blob(const Size& size, std::mt19937& random) {
  const auto below = [&](int n) {
    return static_cast<int>(random() % static_cast<unsigned int>(n));
  };
  std::vector<float> values(size.points());
  const int largest = std::max({size.x, size.y, size.z}) / 4 + 1;
  for (int ball = 0; ball < 6; ++ball) {
    const int cx = below(size.x), cy = below(size.y), cz = below(size.z);
    const int r2 = 1 + below(largest * largest);
    std::size_t i = 0;
    for (int z = 0; z < size.z; ++z)
      for (int y = 0; y < size.y; ++y)
        for (int x = 0; x < size.x; ++x, ++i)
          if ((x - cx) * (x - cx) + (y - cy) * (y - cy) + (z - cz) * (z - cz) <= r2)
            values[i] = 0.5f;
  }
  for (std::size_t speck = 0; speck < values.size() / 50; ++speck) {
    float& value = values[random() % values.size()];
    value = value != 0.0f ? 0.0f : -3.0f;
  }
  return values;
}

std::vector<float> make_noise(const Size& size, unsigned int percent, std::mt19937& random) {
  std::vector<float> values(size.points());
  for (float& value : values)
    value = random() % 100 < percent ? 2.0f : 0.0f;
  return values;
}

TEST(Thinning, template_axes_of_every_direction_reorient_as_the_table_does) {
  for (std::size_t d = 0; d < thinning::template_axes.size(); ++d) {
    for (std::size_t k = 0; k < 27; ++k) {
      const auto [x, y, z] = thinning::neighbour_step(k, thinning::template_axes[d]);
      EXPECT_EQ(x + 1 + 3 * (y + 1) + 9 * (z + 1), thinning_oracle::reorientation[d][k])
          << "direction " << d << ", neighbour " << k;
    }
  }
}

// Templates ask for many background neighbours, on one side of the point, so that evenly random
// neighbourhoods would seldom match one.
TEST(Thinning, templates_of_64_points_match_as_those_of_one) {
  std::mt19937 random(3);
  int matched = 0, kept = 0;
  for (int round = 0; round < 10000; ++round) {
    const std::size_t percent = 5 + random() % 90;
    std::array<thinning_oracle::Neighbours, 64> points{};
    thinning::Pattern pattern{};
    for (std::size_t point = 0; point < 64; ++point) {
      const std::size_t emptied_sides = random() % 4;
      for (std::size_t k = 0; k < 27; ++k) {
        const bool emptied = ((emptied_sides & 1) != 0 && k % 3 == 2) ||
                             ((emptied_sides & 2) != 0 && k / 3 % 3 == 0);
        const bool object = k == 13 ? random() % 8 != 0 : random() % 100 < (emptied ? 6 : percent);
        points[point][k] = object ? 1.0f : 0.0f;
        pattern[k] |= thinning::Word{object} << point;
      }
    }
    const thinning::Word removed = thinning::removable(pattern);
    for (std::size_t point = 0; point < 64; ++point) {
      const bool expected = thinning_oracle::matches(points[point]);
      ASSERT_EQ((removed >> point & 1) != 0, expected) << testing::PrintToString(points[point]);
      ASSERT_FALSE(expected && points[point][thinning::always_background] != 0.0f);
      ++(expected ? matched : kept);
    }
  }
  EXPECT_GT(matched, 50000);
  EXPECT_GT(kept, 50000);
}

TEST(Thinning, follows_the_rules_on_blobs_noise_and_solid_boxes) {
  // Rows and planes that start anywhere in a word of 64 points, and single interior rows.
  const Size sizes[] = {{3, 3, 3},   {5, 4, 3},    {66, 3, 3},  {3, 67, 3},  {3, 4, 70},
                        {16, 4, 16}, {64, 8, 5},   {63, 9, 7},  {65, 6, 11}, {130, 5, 4},
                        {9, 11, 13}, {24, 19, 17}, {26, 23, 21}};
  std::mt19937 random(11);
  std::array<int, 12> removed{};
  int most_passes = 0;
  for (const Size& size : sizes) {
    std::vector<std::vector<float>> objects;
    for (int i = 0; i < 12; ++i)
      objects.push_back(make_blob(size, random));
    for (unsigned int percent : {15u, 40u, 70u, 90u, 97u})
      objects.push_back(make_noise(size, percent, random));
    objects.emplace_back(size.points(), -1.0f);
    for (std::size_t i = 0; i < objects.size(); ++i) {
      VXScalarGrid grid = make_grid(size, objects[i]);
      std::vector<float> expected = objects[i];
      const thinning_oracle::Result result =
          thinning_oracle::thin(expected, size.x, size.y, size.z);
      const std::string where = std::to_string(size.x) + " x " + std::to_string(size.y) + " x " +
                                std::to_string(size.z) + ", object " + std::to_string(i);
      ASSERT_EQ(VXThinGrid(grid), result.passes) << where;
      ASSERT_EQ(values_of(grid), expected) << where;
      for (std::size_t d = 0; d < removed.size(); ++d)
        removed[d] += result.removed[d];
      most_passes = std::max(most_passes, result.passes);
    }
  }
  for (std::size_t d = 0; d < removed.size(); ++d)
    EXPECT_GT(removed[d], 100) << "direction " << d << " had next to nothing to do";
  EXPECT_GT(most_passes, 5);
}

TEST(Thinning, a_skeleton_is_not_thinned_further) {
  std::mt19937 random(5);
  const Size size{22, 25, 19};
  for (int i = 0; i < 10; ++i) {
    VXScalarGrid grid = make_grid(size, make_blob(size, random));
    const std::size_t object =
        grid.GetSize() - static_cast<std::size_t>(
                             std::count(grid.GetValues(), grid.GetValues() + grid.GetSize(), 0.0f));
    VXThinGrid(grid);
    // Without its outermost layer the skeleton may be open to one more pass, but not to two.
    VXThinGrid(grid);
    const std::vector<float> skeleton = values_of(grid);
    EXPECT_EQ(VXThinGrid(grid), 1);
    EXPECT_EQ(values_of(grid), skeleton);
    const auto left = static_cast<std::size_t>(std::count(skeleton.begin(), skeleton.end(), 1.0f));
    EXPECT_GT(left, 0u);
    EXPECT_LT(left, object / 4);
  }
}

TEST(Thinning, grids_without_an_interior_end_as_zeros_after_one_pass) {
  VXScalarGrid empty;
  EXPECT_EQ(VXThinGrid(empty), 1);
  EXPECT_EQ(empty.GetSize(), 0u);
  EXPECT_EQ(empty.GetValues(), nullptr);
  for (const Size& size :
       {Size{1, 1, 1}, Size{2, 2, 2}, Size{2, 40, 40}, Size{40, 1, 40}, Size{40, 40, 2}}) {
    VXScalarGrid grid = make_grid(size, std::vector<float>(size.points(), 7.0f));
    EXPECT_EQ(VXThinGrid(grid), 1);
    EXPECT_EQ(values_of(grid), std::vector<float>(size.points(), 0.0f));
  }
}

TEST(Thinning, zeros_and_lone_points_need_one_pass_and_the_outermost_layer_goes) {
  const Size size{7, 6, 5};
  const std::size_t inside = 3 + 7 * (2 + 6 * 2);
  const std::vector<float> zeros(size.points());
  VXScalarGrid grid = make_grid(size, zeros);
  EXPECT_EQ(VXThinGrid(grid), 1);
  EXPECT_EQ(values_of(grid), zeros);

  std::vector<float> lone = zeros;
  lone[inside] = 1.0f;
  for (float object : {1.0f, -2.5f, 1e-40f, 10.0f, 20.0f, std::numeric_limits<float>::infinity(),
                       std::numeric_limits<float>::quiet_NaN()}) {
    std::vector<float> values = zeros;
    values[inside] = object;
    values[0] = values[6 + 7 * 2] = values[size.points() - 1] = object;
    grid = make_grid(size, values);
    EXPECT_EQ(VXThinGrid(grid), 1) << object;
    EXPECT_EQ(values_of(grid), lone) << object;
  }
}

TEST(Thinning, what_a_grid_carries_beside_its_values_stays) {
  const Size size{5, 5, 5};
  VXScalarGrid grid = make_grid(size, std::vector<float>(size.points(), 1.0f));
  grid.SetType(VXCore::Electrostatic);
  grid.SetFloatData("SIGMA", 2.0f);
  VXThinGrid(grid);
  EXPECT_EQ(grid.GetType(), VXCore::Electrostatic);
  EXPECT_EQ(grid.GetFloatData("SIGMA"), 2.0f);
  EXPECT_STREQ(std::string(grid.GetTitle()).c_str(), "object");
  EXPECT_EQ(grid.GetSpacing(), 1.0f);
}

}  // namespace
