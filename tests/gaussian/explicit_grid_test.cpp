// Gaussians from plain arrays, round and ellipsoidal, against exp at every point.
#include "vxgrid/gaussian/explicit_grid.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "gaussian/ball_oracle.h"
#include "vxgrid/grid/brio_grid.h"

namespace {

using namespace VXCore;
using vxgrid_test::ball_of;
using vxgrid_test::BallPoint;

constexpr double kappa = 2.344229;

VXBrioGrid made_grid() {
  VXBrioGrid grid;
  grid.SetSpacing(0.4f);
  grid.SetMid(0.5f, -1.0f, 2.0f);
  grid.SetDim(19, 17, 15);
  return grid;
}

GridStruct geometry_of(const VXBrioGrid& grid) {
  GridStruct record;
  record.xdim = static_cast<int>(grid.GetXDim());
  record.ydim = static_cast<int>(grid.GetYDim());
  record.zdim = static_cast<int>(grid.GetZDim());
  grid.GetMid(record.xmid, record.ymid, record.zmid);
  record.spacing = grid.GetSpacing();
  return record;
}

// No centre lies half-way between two points, where rounding would choose.
const std::vector<float> coords = {0.6f,  -1.1f, 2.23f, 4.0f, 0.9f, 3.1f, -2.87f, -4.07f,
                                   0.31f, 40.0f, 0.0f,  0.0f, 1.3f, 0.2f, 1.7f};

struct Round {
  double width, prefactor, reach;
};

void expect_sum(const VXBrioGrid& grid, const std::vector<Round>& items) {
  std::vector<double> expected(grid.GetSize());
  for (std::size_t i = 0; i < items.size(); ++i) {
    for (const BallPoint& point :
         ball_of(geometry_of(grid), {coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]},
                 items[i].reach)
             .points)
      expected[point.element] += items[i].prefactor * std::exp(-items[i].width * point.squared());
  }
  for (std::size_t e = 0; e < expected.size(); ++e)
    ASSERT_NEAR(grid.GetValues()[e], expected[e], 2e-5);
}

TEST(ExplicitGrid, radii_are_reaches_too) {
  const float radii[] = {1.7f, 1.2f, 1.6f, 1.7f, 0.9f};
  const float prefactors[] = {1.0f, 2.0f, -1.5f, 1.0f, 0.4f};
  for (const float* p :
       {static_cast<const float*>(nullptr), static_cast<const float*>(prefactors)}) {
    VXBrioGrid grid = made_grid();
    vx_make_gaussian_grid_explicit(coords.data(), radii, p, 5, 0.1f, grid, 0);
    std::vector<Round> items;
    for (std::size_t i = 0; i < 5; ++i)
      items.push_back({kappa / (double{radii[i]} * double{radii[i]}), p ? p[i] : 2.7, radii[i]});
    expect_sum(grid, items);
  }
}

TEST(ExplicitGrid, with_widths_an_item_reaches_as_far_as_the_height_of_the_one_before_it_says) {
  const float widths[] = {0.9f, 1.4f, 1.1f, 0.8f, 2.0f};
  const float prefactors[] = {0.05f, 2.0f, -4.0f, 9.0f, 0.0004f};
  VXBrioGrid grid = made_grid();
  vx_make_gaussian_grid_explicit(coords.data(), widths, prefactors, 5, 0.1f, grid, 1);
  // The fourth lies beyond the grid, so that its height is never read.
  const double lagging[] = {2.7, 0.05, 2.0, 4.0, 4.0};
  std::vector<Round> items;
  for (std::size_t i = 0; i < 5; ++i)
    items.push_back(
        {widths[i], prefactors[i], std::sqrt(std::log(lagging[i] / 0.001) / widths[i])});
  expect_sum(grid, items);
}

TEST(ExplicitGrid, a_height_below_the_cutoff_does_not_stop_the_items_after_it) {
  const float widths[] = {0.9f, 1.4f, 1.1f};
  const float prefactors[] = {0.0f, 2.0f, 1.0f};
  VXBrioGrid grid = made_grid();
  vx_make_gaussian_grid_explicit(coords.data(), widths, prefactors, 3, 0.1f, grid, 1);
  expect_sum(grid, {{0.9, 0, 0}, {1.4, 2, 0}, {1.1, 1, std::sqrt(std::log(2000) / 1.1)}});
}

TEST(ExplicitGrid, a_grid_without_size_is_made_around_the_items) {
  const float radii[] = {1.7f, 1.2f};
  const float two[] = {0.0f, 1.0f, 2.0f, 3.0f, 1.0f, -2.0f};
  VXBrioGrid grid;
  vx_make_gaussian_grid_explicit(two, radii, nullptr, 2, 0.5f, grid, 0);
  EXPECT_EQ(grid.GetXDim(), 1u + 12u);  // (3 + 3.4)/0.5
  EXPECT_EQ(grid.GetYDim(), 1u + 6u);
  EXPECT_EQ(grid.GetZDim(), 1u + 14u);
  EXPECT_EQ(grid.GetXMid(), 1.5f);
  EXPECT_EQ(grid.GetSpacing(), 0.5f);

  VXBrioGrid alone;
  vx_make_gaussian_grid_explicit(nullptr, nullptr, nullptr, 0, 0.5f, alone, 1);
  EXPECT_EQ(alone.GetSize(), 1u);

  constexpr float inf = std::numeric_limits<float>::infinity();
  const float far[] = {0, 0, 0, 1e9f, 1e9f, 1e9f};
  for (const float spacing : {0.0f, -1.0f, inf * 0.0f, 1e-9f}) {
    VXBrioGrid untouched;
    vx_make_gaussian_grid_explicit(far, radii, nullptr, 2, spacing, untouched, 0);
    vx_ellipsoid_gauss_grid(far, radii, nullptr, 2, spacing, far, untouched);
    EXPECT_EQ(untouched.GetSize(), 0u);
  }
}

TEST(EllipsoidGrid, values_are_those_of_the_deformed_gaussian_within_the_ball) {
  const float mild[9] = {1.1f, 0.2f, -0.1f, 0.0f, 0.9f, 0.3f, 0.15f, -0.2f, 1.2f};
  const float strong[9] = {9.0f, -3.0f, 1.0f, 2.0f, 11.0f, 4.0f, -6.0f, 2.0f, 8.0f};
  const float identity[9] = {1, 0, 0, 0, 1, 0, 0, 0, 1};
  const float radii[] = {1.7f, 1.2f, 1.6f, 1.7f, 0.1f};
  const float prefactors[] = {1.0f, 2.0f, 0.0f, -1.0f, 0.6f};
  const double heights[] = {1.0, 2.0, 2.0, -1.0, 0.6};  // a 0 repeats the last one
  for (const float* m : {mild, strong, identity}) {
    VXBrioGrid grid = made_grid();
    vx_ellipsoid_gauss_grid(coords.data(), radii, prefactors, 5, 0.1f, m, grid);
    std::vector<double> expected(grid.GetSize());
    for (std::size_t i = 0; i < 5; ++i) {
      for (const BallPoint& point :
           ball_of(geometry_of(grid), {coords[3 * i], coords[3 * i + 1], coords[3 * i + 2]},
                   radii[i])
               .points) {
        double squared = 0;
        for (std::size_t row = 0; row < 3; ++row) {
          double sum = 0;
          for (std::size_t k = 0; k < 3; ++k)
            sum += double{m[3 * row + k]} * point.to_centre[k];
          squared += sum * sum;
        }
        expected[point.element] +=
            heights[i] * std::exp(-kappa / (double{radii[i]} * double{radii[i]}) * squared);
      }
    }
    for (std::size_t e = 0; e < expected.size(); ++e)
      ASSERT_NEAR(grid.GetValues()[e], expected[e], 2e-5) << m[0];
    if (m == identity) {
      VXBrioGrid round = made_grid();
      const float read[] = {1.0f, 2.0f, 2.0f, -1.0f, 0.6f};
      vx_make_gaussian_grid_explicit(coords.data(), radii, read, 5, 0.1f, round, 0);
      for (std::size_t e = 0; e < expected.size(); ++e)
        ASSERT_NEAR(grid.GetValues()[e], round.GetValues()[e], 1e-6);
    }
  }
}

}  // namespace
