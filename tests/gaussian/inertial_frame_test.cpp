// Principal frames of Gaussians and of grids against the axes that they were made along.
#include "vxgrid/gaussian/inertial_frame.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <vector>

#include "support/grid_probes.h"
#include "vxgrid/gaussian/multipoles.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/names.h"

namespace {

using namespace VXCore;
using vxgrid_test::dims_of;
using vxgrid_test::place_of;
using vxgrid_test::values_of;

using Matrix = std::array<float, 9>;

/// Terms of levels 0 and 1 with volumes of both signs of storage, around a place off the origin.
std::vector<Gsphere> random_terms(unsigned int seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> uniform(0, 1);
  std::vector<Gsphere> terms(12);
  for (std::size_t i = 0; i < terms.size(); ++i) {
    Gsphere& term = terms[i];
    term.width = 0.6f + uniform(random);
    term.x = 4 + 9 * uniform(random);
    term.y = -3 + 5 * uniform(random);
    term.z = 1 + 2 * uniform(random);
    term.level = i % 4 == 3 ? 1 : 0;
    term.volume = term.level ? 3.0f : 10.0f + 15 * uniform(random);
    if (i == 3) term.volume = -term.volume;
  }
  return terms;
}

int count_of(const std::vector<Gsphere>& terms) {
  return static_cast<int>(terms.size());
}

double determinant(const Matrix& m) {
  return m[0] * double{m[4] * m[8] - m[5] * m[7]} - m[1] * double{m[3] * m[8] - m[5] * m[6]} +
         m[2] * double{m[3] * m[7] - m[4] * m[6]};
}

struct Multipoles {
  explicit Multipoles(const std::vector<Gsphere>& terms) {
    vx_CalcShapeMultipoles(count_of(terms), terms.data(), moments.data(), centre.data(),
                           rotation.data());
  }
  std::array<float, 14> moments{};
  std::array<float, 3> centre{};
  Matrix rotation{};
};

TEST(InertialFrame, has_the_axes_of_the_multipoles_in_either_direction) {
  for (unsigned int seed = 1; seed < 20; ++seed) {
    const std::vector<Gsphere> terms = random_terms(seed);
    const Multipoles expected(terms);
    Matrix matrix{};
    std::array<float, 3> centre{};
    ASSERT_EQ(
        vx_CalcShapeInertialFrame(count_of(terms), terms.data(), matrix.data(), centre.data()), 1);
    EXPECT_NEAR(determinant(matrix), 1.0, 1e-5);
    for (std::size_t a = 0; a < 3; ++a) {
      EXPECT_NEAR(centre[a], expected.centre[a], 1e-4);
      double agreement = 0;
      for (std::size_t k = 0; k < 3; ++k)
        agreement += matrix[3 * a + k] * expected.rotation[3 * a + k];
      EXPECT_NEAR(std::fabs(agreement), 1.0, 1e-4) << "seed " << seed << " axis " << a;
    }
  }
}

TEST(InertialFrame, moments_in_it_are_the_multipoles) {
  for (unsigned int seed = 1; seed < 10; ++seed) {
    const std::vector<Gsphere> terms = random_terms(seed);
    const Multipoles expected(terms);
    std::vector<float> coords;
    for (const Gsphere& term : terms) {
      const float p[3] = {term.x, term.y, term.z};
      for (std::size_t a = 0; a < 3; ++a) {
        double u = 0;
        for (std::size_t k = 0; k < 3; ++k)
          u += expected.rotation[3 * a + k] * (p[k] - double{expected.centre[k]});
        coords.push_back(static_cast<float>(u));
      }
    }
    std::array<float, 3> second{}, third{};
    EXPECT_EQ(
        vx_CalcInFrameShapeQuadrapoles(count_of(terms), coords.data(), terms.data(), second.data()),
        1);
    EXPECT_EQ(
        vx_CalcInFrameShapeOctopoles(count_of(terms), coords.data(), terms.data(), third.data()),
        1);
    for (std::size_t a = 0; a < 3; ++a) {
      EXPECT_NEAR(second[a], expected.moments[1 + a], 1e-3) << seed;
      EXPECT_NEAR(third[a], expected.moments[4 + a], 2e-2) << seed;
    }
  }
}

TEST(InertialFrame, counts_as_aligned_below_a_thousandth_and_needs_a_volume) {
  std::vector<Gsphere> terms(2);
  terms[0].width = terms[1].width = 0.5f;
  terms[0].volume = terms[1].volume = 10;
  terms[1].y = 10;  // moments 1, 26, 1, apart from what a tilt towards x adds
  const Matrix identity{1, 0, 0, 0, 1, 0, 0, 0, 1};
  for (const auto& [tilt, aligned] : {std::pair(0.01f, true), {0.0105f, true}, {0.0116f, false}}) {
    terms[1].x = tilt;  // off-diagonal 2.5*tilt, diagonal 28
    Matrix matrix{};
    std::array<float, 3> centre{};
    EXPECT_EQ(vx_CalcShapeInertialFrame(2, terms.data(), matrix.data(), centre.data()), 1);
    EXPECT_EQ(matrix == identity, aligned) << tilt;
    // Longest first.
    EXPECT_NEAR(std::fabs(matrix[aligned ? 0 : 1]), 1.0f, 1e-4f);
    EXPECT_EQ(centre[1], 5.0f);
  }

  terms[1].level = 1;
  Matrix matrix{7};
  std::array<float, 3> centre{7};
  EXPECT_EQ(vx_CalcShapeInertialFrame(2, terms.data(), matrix.data(), centre.data()), 0);
  EXPECT_EQ(vx_CalcShapeInertialFrame(0, nullptr, matrix.data(), centre.data()), 0);
  const std::array<float, 6> coords{};
  EXPECT_EQ(vx_CalcInFrameShapeQuadrapoles(2, coords.data(), terms.data(), centre.data()), 0);
  EXPECT_EQ(vx_CalcInFrameShapeOctopoles(2, coords.data(), terms.data(), centre.data()), 0);
  EXPECT_EQ(matrix, (Matrix{7}));
  EXPECT_EQ(centre, (std::array<float, 3>{7}));
}

/// An ellipsoid with half axes 4, 2.5 and 1.5 along the columns of a rotation, less a background.
struct Ellipsoid {
  Matrix axes{};
  std::array<float, 3> centre{};

  void fill(VXBrioGrid& grid) const {
    for (unsigned int e = 0; e < grid.GetSize(); ++e) {
      const std::array<float, 3> p = place_of(grid, e);
      double sum = 0;
      for (std::size_t a = 0; a < 3; ++a) {
        constexpr double half[3] = {4, 2.5, 1.5};
        double u = 0;
        for (std::size_t k = 0; k < 3; ++k)
          u += axes[3 * k + a] * double{p[k] - centre[k]};
        sum += u * u / (half[a] * half[a]);
      }
      grid.GetValues()[e] = static_cast<float>(std::exp(-sum) - 0.05);
    }
  }
};

VXBrioGrid box(unsigned int nx, unsigned int ny, unsigned int nz, float spacing) {
  VXBrioGrid grid;
  grid.SetDim(nx, ny, nz);
  grid.SetSpacing(spacing);
  grid.SetMid(3, -2, 1);
  return grid;
}

TEST(InertialFrame, of_a_grid_turns_its_lattice_along_what_it_holds) {
  const std::array<float, 4> quaternion{0.8f, 0.3f, -0.4f, 0.33f};
  Ellipsoid ellipsoid{{}, {3.7f, -1.6f, 0.6f}};
  vx_quaternions_to_rotation_matrix(quaternion.data(), ellipsoid.axes.data());
  for (const bool sheared : {false, true}) {
    VXBrioGrid grid = box(45, 41, 43, 0.5f);
    // On a lattice of a crystal values count where they lie, so that the axes are the same.
    if (sheared) grid.SetOrientation(Matrix{1.1f, 0.2f, 0, 0, 0.95f, 0.1f, 0, 0, 1}.data());
    ellipsoid.fill(grid);
    const std::vector<float> before = values_of(grid);
    ASSERT_EQ(vx_orient_grid_by_moments_of_inertia(grid), 1);
    EXPECT_EQ(values_of(grid), before);
    EXPECT_EQ(dims_of(grid), (std::array<unsigned int, 3>{45, 41, 43}));
    EXPECT_EQ(grid.GetXMid(), 3.0f);
    Matrix m{};
    ASSERT_TRUE(grid.GetOrientation(m.data()));
    EXPECT_NEAR(determinant(m), 1.0, 1e-6);
    for (std::size_t column = 0; column < 3; ++column) {
      double agreement = 0;
      for (std::size_t k = 0; k < 3; ++k)
        agreement += m[3 * k + column] * ellipsoid.axes[3 * k + column];
      EXPECT_NEAR(std::fabs(agreement), 1.0, 1e-3) << column;
    }

    // Filled anew, the turned lattice has the ellipsoid along its own axes.
    VXBrioGrid anew = box(45, 41, 43, 0.5f);
    anew.SetOrientation(m.data());
    ellipsoid.fill(anew);
    anew.SetOrientationSet(false);
    ASSERT_EQ(vx_orient_grid_by_moments_of_inertia(anew), 1);
    anew.GetOrientation(m.data());
    for (std::size_t i = 0; i < 9; ++i)
      EXPECT_NEAR(m[i], i % 4 == 0 ? 1.0 : 0.0, 2e-3) << i;
  }
}

TEST(InertialFrame, of_a_grid_without_positive_values_is_not_there) {
  VXBrioGrid empty;
  EXPECT_EQ(vx_orient_grid_by_moments_of_inertia(empty), 0);
  EXPECT_FALSE(empty.GetOrientationSet());
  VXBrioGrid negative = box(4, 3, 5, 1);
  negative.GetValues()[7] = -2;
  negative.GetValues()[8] = std::nanf("");
  EXPECT_EQ(vx_orient_grid_by_moments_of_inertia(negative), 0);
  EXPECT_FALSE(negative.GetOrientationSet());
  // One point, in itself round: the axes stay.
  negative.GetValues()[22] = 1;
  EXPECT_EQ(vx_orient_grid_by_moments_of_inertia(negative), 1);
  Matrix m{};
  EXPECT_TRUE(negative.GetOrientation(m.data()));
  EXPECT_EQ(m, (Matrix{1, 0, 0, 0, 1, 0, 0, 0, 1}));
}

}  // namespace
