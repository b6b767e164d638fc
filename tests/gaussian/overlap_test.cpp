// Overlap integrals against numerical integration and finite differences.
#include "vxgrid/gaussian/overlap.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace VXCore;

const Gsphere first{0.8f, 0.3f, -0.2f, 0.5f, 2.7f, 0, 2.7f, 0};
const Gsphere second{1.1f, 1.1f, 0.4f, -0.1f, 2.2f, 1, 2.2f, 0};

double value_at(const Gsphere& g, double x, double y, double z) {
  const double d2 = (x - g.x) * (x - g.x) + (y - g.y) * (y - g.y) + (z - g.z) * (z - g.z);
  return g.prefactor * std::exp(-g.width * d2);
}

TEST(Overlap, the_product_gaussian_is_the_product_at_every_point_and_its_integral_the_overlap) {
  Gsphere a = first, b = second, product;
  product.radius = 3.0f;
  EXPECT_EQ(vi_make_overlap_gaussian(&a, &b, &product), 1);
  EXPECT_EQ(product.level, 2);
  EXPECT_EQ(product.radius, 3.0f);
  double volume = 0;
  EXPECT_EQ(vi_vol_sg_intersect(&volume, &a, &b), 1);
  double sum = 0;
  constexpr double h = 0.1;
  for (int i = -50; i <= 50; ++i)
    for (int j = -50; j <= 50; ++j)
      for (int k = -50; k <= 50; ++k) {
        const double expected = value_at(a, i * h, j * h, k * h) * value_at(b, i * h, j * h, k * h);
        ASSERT_NEAR(value_at(product, i * h, j * h, k * h), expected, 5e-6);
        sum += expected * h * h * h;
      }
  EXPECT_NEAR(volume, sum, 1e-6 * sum);

  vi_make_overlap_gaussian(&a, &b, &a);
  EXPECT_EQ(a.x, product.x);
  EXPECT_EQ(a.prefactor, product.prefactor);
}

TEST(Overlap, derivatives_are_those_of_the_integral) {
  Gsphere a = first, b = second;
  // Steps that floats can tell: the differences of the integral are taken along them as made.
  const auto moved = [&](std::size_t axis, float step) {
    Gsphere g = a;
    float* const centre[3] = {&g.x, &g.y, &g.z};
    *centre[axis] += step;
    return g;
  };
  const auto gradient_of = [&](Gsphere g) {
    std::array<double, 4> out{};
    EXPECT_EQ(vi_vol_deriv_sg_intersect(&out[3], out.data(), &g, &b), 1);
    return out;
  };
  double volume = 0, gradient[3] = {}, second_derivatives[6] = {};
  EXPECT_EQ(vi_vol_deriv_sec_deriv_sg_intersect(&volume, gradient, second_derivatives, &a, &b), 1);
  const auto here = gradient_of(a);
  EXPECT_NEAR(volume, here[3], 1e-12 * volume);
  constexpr float step = 1.0f / 256;
  const int row[3][3] = {{0, 1, 2}, {1, 3, 4}, {2, 4, 5}};
  for (std::size_t k = 0; k < 3; ++k) {
    const auto above = gradient_of(moved(k, step)), below = gradient_of(moved(k, -step));
    EXPECT_NEAR(gradient[k], here[k], 1e-12);
    EXPECT_NEAR(here[k], (above[3] - below[3]) / (2 * step), 2e-4);
    for (std::size_t l = 0; l < 3; ++l)
      EXPECT_NEAR(second_derivatives[row[k][l]], (above[l] - below[l]) / (2 * step), 5e-4);
  }
}

TEST(Overlap, far_pairs_are_cut_off_except_for_second_derivatives) {
  Gsphere a = first, b = second;
  b.x += 8.0f;
  double volume = 5, gradient[3] = {5, 5, 5}, second_derivatives[6] = {};
  EXPECT_EQ(vi_vol_sg_intersect(&volume, &a, &b), 1);
  EXPECT_EQ(volume, 0.0);
  EXPECT_EQ(vi_vol_deriv_sg_intersect(&volume, gradient, &a, &b), 0);
  EXPECT_EQ(gradient[0], 0.0);
  EXPECT_EQ(vi_vol_deriv_sec_deriv_sg_intersect(&volume, gradient, second_derivatives, &a, &b), 1);
  EXPECT_GT(volume, 0.0);
}

}  // namespace
