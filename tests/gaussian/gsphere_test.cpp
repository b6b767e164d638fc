// Closed forms of one Gaussian against each other and against integrals.
#include "vxgrid/gaussian/gsphere.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "vxgrid/gaussian/grid_size.h"

namespace {

using namespace VXCore;

TEST(Gsphere, a_gaussian_of_a_sphere_has_its_volume) {
  for (const float radius : {0.8f, 1.2f, 1.7f, 2.4f}) {
    for (const float prefactor : {0.5f, 2.7f, 4.0f}) {
      float r = radius, width = -1;
      vi_assign_gwid_from_rad_pre(&prefactor, &r, &width, 1);
      const double volume = 4.0 / 3.0 * M_PI * std::pow(radius, 3);
      EXPECT_NEAR(prefactor * std::pow(M_PI / width, 1.5), volume, 2e-6 * volume);
      EXPECT_NEAR(VXGetRadius(prefactor, width), radius, 1e-6);
      EXPECT_NEAR(VXGetWidth(VXGetKappa(prefactor), radius), width, 1e-6 * width);

      Gsphere g;
      g.width = width;
      g.prefactor = prefactor;
      vi_set_gaussian_volume(&g);
      EXPECT_NEAR(g.volume, volume, 3e-6 * volume);
      vi_set_gaussian_radius(&g);
      EXPECT_NEAR(g.radius, radius, 2e-5);  // the power is a little short
      g.prefactor = 0;
      vi_set_gaussian_prefactor(&g);
      EXPECT_NEAR(g.prefactor, prefactor, 3e-6 * prefactor);
    }
  }
}

TEST(Gsphere, kappa_and_prefactor_are_inverse) {
  for (const double prefactor : {0.1, 1.0, 2.7, 31.0})
    EXPECT_NEAR(VXGetPrefactor(VXGetKappa(prefactor)), prefactor, 1e-14 * prefactor);
}

TEST(Gsphere, what_is_known_decides_and_what_is_missing_changes_nothing) {
  Gsphere g{0.8f, 0, 0, 0, 2.0f, 0, 5.0f, 1.5f};
  vi_set_gaussian_volume(&g);
  EXPECT_NEAR(g.volume, 4.0 / 3.0 * M_PI * 1.5 * 1.5 * 1.5, 1e-5);

  Gsphere empty{0, 0, 0, 0, 2.0f, 0, 0, 0};
  vi_set_gaussian_volume(&empty);
  vi_set_gaussian_radius(&empty);
  vi_set_gaussian_prefactor(&empty);
  EXPECT_EQ(empty.volume, 0.0f);
  EXPECT_EQ(empty.radius, 0.0f);
  EXPECT_EQ(empty.prefactor, 2.0f);

  Gsphere negative{0.8f, 0, 0, 0, -2.0f, 0, 0, 7.0f};
  vi_set_gaussian_radius(&negative);
  EXPECT_EQ(negative.radius, 7.0f);

  // At the default prefactor a constant of its own serves, beside it a slightly shorter power.
  Gsphere near{0.8f, 0, 0, 0, 2.700005f, 0, 0, 0}, beside{0.8f, 0, 0, 0, 2.70002f, 0, 0, 0};
  vi_set_gaussian_radius(&near);
  vi_set_gaussian_radius(&beside);
  EXPECT_EQ(near.radius, static_cast<float>(std::sqrt(2.344250976862621 / double{0.8f})));
  EXPECT_EQ(beside.radius, std::sqrt(std::pow(2.70002f, 0.666666f) * 1.2090055f / 0.8f));
}

TEST(Gsphere, the_reach_is_where_the_height_has_fallen_to_the_cutoff) {
  for (const float prefactor : {2.7f, -2.7f}) {
    const float r = vi_gauss_rad(prefactor, 0.8f, -0.001f);
    EXPECT_NEAR(2.7 * std::exp(-0.8 * r * r), 0.001, 1e-8);
  }
  EXPECT_EQ(vi_gauss_rad(2.7f, 0.0f, 0.001f), 0.0f);
  EXPECT_EQ(vi_gauss_rad(2.7f, -1.0f, 0.001f), 0.0f);
  EXPECT_EQ(vi_gauss_rad(0.0f, 0.8f, 0.001f), 0.0f);
  EXPECT_EQ(vi_gauss_rad(2.7f, 0.8f, 0.0f), 0.0f);
  EXPECT_EQ(vi_gauss_rad(0.5f, 0.8f, -0.6f), 0.0f);
}

TEST(Gsphere, no_radius_or_no_prefactor_has_no_width) {
  const float prefactors[] = {2.7f, 0.0f};
  float radii[] = {0.0f, 1.7f}, widths[] = {5, 5};
  vi_assign_gwid_from_rad_pre(prefactors, radii, widths, 2);
  EXPECT_EQ(widths[0], 0.0f);
  EXPECT_EQ(widths[1], 0.0f);
}

TEST(GridSize, the_grid_holds_every_gaussian_and_no_plane_more_than_it_needs) {
  float coords[] = {1, 2, 3, 4, 1, 3.5f}, widths[] = {0.8f, 1.2f}, prefactors[] = {2.7f, 2.0f};
  float mid[3] = {};
  int dim[3] = {};
  vi_grid_size(2, coords, widths, prefactors, 0.001f, 0.5f, &mid[0], &mid[1], &mid[2], &dim[0],
               &dim[1], &dim[2]);
  for (std::size_t k = 0; k < 3; ++k) {
    double low = 1e9, high = -1e9;
    for (std::size_t i = 0; i < 2; ++i) {
      const double r = vi_gauss_rad(prefactors[i], widths[i], 0.001f);
      low = std::min(low, coords[3 * i + k] - r);
      high = std::max(high, coords[3 * i + k] + r);
    }
    EXPECT_NEAR(mid[k], (low + high) / 2, 1e-6);
    EXPECT_EQ(dim[k], 2 * static_cast<int>((high - low) / 2 / 0.5) + 3);
  }
  for (const float spacing : {0.0f, -1.0f, 1e-12f}) {
    int x = 7, y = 7, z = 7;
    vi_grid_size(2, coords, widths, prefactors, 0.001f, spacing, &mid[0], &mid[1], &mid[2], &x, &y,
                 &z);
    EXPECT_EQ(x, 7);
  }
}

}  // namespace
