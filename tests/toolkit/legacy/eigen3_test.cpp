// Eigenvectors and rotations, held against their definitions on random and degenerate matrices.
#include "vxgrid/toolkit/legacy/eigen3.h"

#include <gtest/gtest.h>

#include <array>   // for array
#include <cmath>   // for fabs, sqrt
#include <limits>  // for numeric_limits
#include <random>  // for mt19937
#include <vector>  // for vector

using namespace VXBrioMol;

namespace {

using Matrix = std::array<double, 9>;

std::vector<Matrix> matrices() {
  std::vector<Matrix> all{{1, 0, 0, 0, 2, 0, 0, 0, 3},  {2, 0, 0, 0, 2, 0, 0, 0, 2},
                          {0, 0, 0, 0, 0, 0, 0, 0, 0},  {1, 1, 1, 1, 1, 1, 1, 1, 1},
                          {0, 1, 0, 1, 0, 0, 0, 0, -5}, {1e200, 1, 0, 1, -1e200, 0, 0, 0, 1e-200}};
  std::mt19937 random(7);
  std::uniform_real_distribution<double> uniform(-10.0, 10.0);
  for (int i = 0; i < 200; ++i) {
    const double xy = uniform(random), xz = uniform(random), yz = uniform(random);
    all.push_back({uniform(random), xy, xz, xy, uniform(random), yz, xz, yz, uniform(random)});
  }
  return all;
}

double determinant(const Matrix& m) {
  return m[0] * (m[4] * m[8] - m[5] * m[7]) - m[1] * (m[3] * m[8] - m[5] * m[6]) +
         m[2] * (m[3] * m[7] - m[4] * m[6]);
}

TEST(Eigen3, columns_solve_the_eigenproblem_in_descending_right_handed_order) {
  for (const Matrix& a : matrices()) {
    Matrix e;
    std::array<double, 3> values;
    ASSERT_TRUE(eigen_solve_3_by_3(a.data(), values.data(), e.data()));
    EXPECT_GE(values[0], values[1]);
    EXPECT_GE(values[1], values[2]);
    EXPECT_NEAR(determinant(e), 1.0, 1e-12);
    const double scale = std::fabs(values[0]) + std::fabs(values[2]);
    for (std::size_t k = 0; k < 3; ++k) {
      double length = 0.0;
      for (std::size_t r = 0; r < 3; ++r) {
        const double image = a[3 * r] * e[k] + a[3 * r + 1] * e[3 + k] + a[3 * r + 2] * e[6 + k];
        EXPECT_NEAR(image, values[k] * e[3 * r + k], 1e-13 * scale);
        length += e[3 * r + k] * e[3 * r + k];
      }
      EXPECT_NEAR(length, 1.0, 1e-12);
    }
    Matrix in_place = a;
    std::array<double, 3> roots;
    EXPECT_TRUE(get_roots_3(in_place.data(), roots.data()));
    EXPECT_EQ(in_place, e);
    EXPECT_EQ(roots, values);
  }
}

TEST(Eigen3, a_matrix_that_is_not_finite_gives_the_identity) {
  const Matrix identity{1, 0, 0, 0, 1, 0, 0, 0, 1};
  for (const double bad :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    Matrix e, a = identity;
    a[5] = bad;
    std::array<double, 3> values;
    EXPECT_FALSE(eigen_solve_3_by_3(a.data(), values.data(), e.data()));
    EXPECT_EQ(e, identity);
  }
}

TEST(Rotations, quaternions_and_matrices_undo_each_other) {
  // A third of a turn about (1, 1, 1) takes x to y, y to z, z to x.
  const std::array<float, 4> third{0.5f, 0.5f, 0.5f, 0.5f};
  std::array<float, 9> m;
  vx_quaternions_to_rotation_matrix(third.data(), m.data());
  EXPECT_EQ(m, (std::array<float, 9>{0, 0, 1, 1, 0, 0, 0, 1, 0}));

  std::mt19937 random(3);
  std::normal_distribution<float> normal;
  for (int i = 0; i < 300; ++i) {
    std::array<float, 4> q{normal(random), normal(random), normal(random), normal(random)};
    if (i % 3 == 0) q[0] = 0.0f;  // half turns
    const float length = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
    vx_quaternions_to_rotation_matrix(q.data(), m.data());
    std::array<float, 4> back;
    vx_rotation_matrix_to_quaternions(m.data(), back.data());
    float agreement = 0.0f;
    for (std::size_t k = 0; k < 4; ++k)
      agreement += q[k] * back[k] / length;
    EXPECT_NEAR(std::fabs(agreement), 1.0f, 1e-6f);
    EXPECT_GE(back[0], 0.0f);
  }
  const std::array<float, 4> none{};
  vx_quaternions_to_rotation_matrix(none.data(), m.data());
  EXPECT_EQ(m, (std::array<float, 9>{1, 0, 0, 0, 1, 0, 0, 0, 1}));
}

TEST(Rotations, principal_axes_become_a_proper_rotation_of_x_onto_the_longest) {
  std::array<float, 9> m{1, 0, 0, 0, 9, 0, 0, 0, 4};
  vx_make_rmat2(m.data(), m.data());
  EXPECT_EQ(m, (std::array<float, 9>{0, 0, 1, 1, 0, 0, 0, 1, 0}));
}

}  // namespace
