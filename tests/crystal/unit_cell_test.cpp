// The unit cell against geometry, gemmi's cell and the stated limits of validity.
#include "vxgrid/crystal/unit_cell.h"

#include <gtest/gtest.h>

#include <cmath>               // for sqrt, acos, isnan
#include <gemmi/unitcell.hpp>  // for UnitCell
#include <limits>              // for quiet_NaN
#include <numeric>             // for inner_product
#include <string>              // for string
#include <tuple>               // for tuple

namespace {

using VXCore::VXXtal::VXUnitCell;

constexpr float nan_value = std::numeric_limits<float>::quiet_NaN();

const VXUnitCell cells[] = {
    {10, 20, 30, 90, 90, 90},          {51.3f, 62.7f, 44.1f, 90, 107.25f, 90},
    {10, 20, 30, 70, 80, 100},         {78.9f, 78.9f, 37.2f, 90, 90, 120},
    {34.5f, 34.5f, 34.5f, 97, 97, 97}, {120.5f, 8.25f, 301.75f, 101.5f, 64.3f, 118.75f},
};

double dot(const float* u, const float* v) {
  return std::inner_product(u, u + 3, v, 0.0);
}

double angle(const float* u, const float* v) {
  return std::acos(dot(u, v) / std::sqrt(dot(u, u) * dot(v, v))) * 180 / M_PI;
}

TEST(UnitCell, rows_of_the_cartesian_matrix_are_the_cell_axes) {
  for (const VXUnitCell& cell : cells) {
    SCOPED_TRACE(testing::Message() << cell.a << " " << cell.alpha);
    const float* axis[] = {cell.Frac2Cart(), cell.Frac2Cart() + 4, cell.Frac2Cart() + 8};
    const float lengths[] = {cell.a, cell.b, cell.c},
                angles[] = {cell.alpha, cell.beta, cell.gamma};
    for (int i = 0; i < 3; ++i) {
      EXPECT_NEAR(std::sqrt(dot(axis[i], axis[i])), lengths[i], 1e-6 * lengths[i]);
      EXPECT_NEAR(angle(axis[(i + 1) % 3], axis[(i + 2) % 3]), angles[i], 2e-5);
    }
    // a along x, b in the xy plane; rows are translation-free.
    for (int zero : {1, 2, 3, 6, 7, 11, 12, 13, 14})
      EXPECT_EQ(cell.Frac2Cart()[zero], 0);
    EXPECT_EQ(cell.Frac2Cart()[15], 1);
  }
}

TEST(UnitCell, matrices_and_volume_agree_with_gemmi) {
  for (const VXUnitCell& cell : cells) {
    SCOPED_TRACE(testing::Message() << cell.a << " " << cell.alpha);
    const gemmi::UnitCell other(cell.a, cell.b, cell.c, cell.alpha, cell.beta, cell.gamma);
    EXPECT_NEAR(cell.GetVolume(), other.volume, 2e-7 * other.volume);
    for (int i = 0; i < 3; ++i) {
      for (int j = 0; j < 3; ++j) {
        // gemmi's matrices are for column vectors. Volume and edge products are rounded on the way,
        // and an element that almost cancels is good to the rounding of its terms.
        const double edge = std::sqrt(dot(cell.Frac2Cart() + 4 * j, cell.Frac2Cart() + 4 * j));
        EXPECT_NEAR(cell.Frac2Cart()[4 * j + i], other.orth.mat[i][j], 2e-7 * edge);
        EXPECT_NEAR(cell.Cart2Frac()[4 * j + i], other.frac.mat[i][j], 2e-7 / cell.b);
      }
    }
    for (int zero : {3, 7, 11, 12, 13, 14})
      EXPECT_EQ(cell.Cart2Frac()[zero], 0);
    EXPECT_EQ(cell.Cart2Frac()[15], 1);
  }
}

TEST(UnitCell, a_right_angled_cell_has_its_closed_form) {
  const VXUnitCell cell(10, 20, 30, 90, 90, 90);
  EXPECT_EQ(cell.GetVolume(), 6000);
  EXPECT_FLOAT_EQ(cell.Frac2Cart()[5], 20);
  EXPECT_FLOAT_EQ(cell.Cart2Frac()[10], 1 / 30.0f);
  // The cosine of 90 degrees is taken as it comes: tiny, but no zero.
  EXPECT_NE(cell.Frac2Cart()[4], 0);
  EXPECT_NEAR(cell.Frac2Cart()[4], 0, 1e-13);
  // Angles that no cell can have give no volume.
  EXPECT_TRUE(std::isnan(VXUnitCell(10, 10, 10, 150, 150, 150).GetVolume()));
}

TEST(UnitCell, only_cells_with_edges_and_angles_above_zero_are_valid_and_have_matrices) {
  const std::tuple<VXUnitCell, bool, bool> table[] = {
      {{1, 1, 1, 90, 90, 90}, true, true},
      {{1e-30f, 1, 1, 0.001f, 90, 179.99f}, true, true},
      {{0, 1, 1, 90, 90, 90}, false, false},
      {{1, -1, 1, 90, 90, 90}, false, false},
      {{1, 1, -0.0f, 90, 90, 90}, false, false},
      {{1, 1, 1, 0, 90, 90}, false, false},
      {{1, 1, 1, 90, 180, 90}, false, false},
      {{1, 1, 1, 90, 90, -10}, false, false},
      {{1, 1, 1, 90, 90, 200}, false, false},
      {{nan_value, 1, 1, 90, 90, 90}, true, false},
      {{1, 1, 1, nan_value, 90, 90}, false, false},
      {{1, 1, 1, 90, nan_value, 90}, false, false},
      {{1, 1, 1, 90, 90, nan_value}, false, false},
  };
  for (const auto& [cell, valid, built] : table) {
    SCOPED_TRACE(testing::Message() << cell.a << " " << cell.b << " " << cell.c << " " << cell.alpha
                                    << " " << cell.beta << " " << cell.gamma);
    EXPECT_EQ(cell.isValid(), valid);
    EXPECT_EQ(cell.Frac2Cart()[15], built ? 1 : 0);
    for (int i = 0; i < 16 && !built; ++i) {
      EXPECT_EQ(cell.Frac2Cart()[i], 0);
      EXPECT_EQ(cell.Cart2Frac()[i], 0);
    }
  }
  EXPECT_FALSE(VXUnitCell().isValid());
  EXPECT_EQ(VXUnitCell(5, 6, 7, 90, 180, 91).beta, 180);
}

TEST(UnitCell, equality_counts_numbers_only_when_the_asked_cell_is_valid) {
  const VXUnitCell cell(10, 20, 30, 70, 80, 100);
  EXPECT_TRUE(cell.equalsCell(cell, 0));
  const VXUnitCell moved[] = {{10.25f, 20, 30, 70, 80, 100}, {10, 19.75f, 30, 70, 80, 100},
                              {10, 20, 30.25f, 70, 80, 100}, {10, 20, 30, 70.25f, 80, 100},
                              {10, 20, 30, 70, 79.75f, 100}, {10, 20, 30, 70, 80, 100.25f}};
  for (const VXUnitCell& other : moved) {
    EXPECT_TRUE(cell.equalsCell(other, 0.25f));
    EXPECT_FALSE(cell.equalsCell(other, 0.2499f));
  }

  const VXUnitCell invalid(0, 20, 30, 70, 80, 100);
  EXPECT_TRUE(VXUnitCell().equalsCell(VXUnitCell(), 0));
  EXPECT_TRUE(VXUnitCell().equalsCell(invalid, 0));
  EXPECT_FALSE(invalid.equalsCell(cell, 1000));
  EXPECT_FALSE(cell.equalsCell(invalid, 9.5f));
  EXPECT_TRUE(cell.equalsCell(invalid, 10));
}

TEST(UnitCell, copies_take_the_matrices_as_they_stand) {
  const float six[] = {10, 20, 30, 70, 80, 100};
  VXUnitCell cell(six);
  cell.a = 11;
  const VXUnitCell copy(cell);
  EXPECT_TRUE(copy.a == 11 && copy.gamma == 100);
  for (int i = 0; i < 16; ++i) {
    EXPECT_EQ(copy.Frac2Cart()[i], VXUnitCell(six).Frac2Cart()[i]);
    EXPECT_EQ(copy.Cart2Frac()[i], VXUnitCell(six).Cart2Frac()[i]);
  }
}

}  // namespace
