#include "vxgrid/grid/brio_flat.h"

#include <gtest/gtest.h>

#include <array>   // for array
#include <string>  // for string
#include <vector>  // for vector

#include "support/messages.h"
#include "vxgrid/grid/brio_grid.h"

namespace VXCore {
namespace {

using vxgrid_test::MessageCapture;

VXBrioGrid two_field_grid() {
  VXBrioGrid grid;
  grid.SetDim(3, 2, 1);
  grid.SetFloatsMultiple(2);
  grid.SetIntegersMultiple(2);
  return grid;
}

TEST(BrioFlat, SetsGeometryOnBothStoresAndGetsItBack) {
  VXBrioGrid grid;
  EXPECT_FALSE(vx_is_grid_x_midpoint_set(grid) || vx_is_grid_spacing_set(grid) ||
               vx_is_grid_name_set(grid) || vx_is_grid_orientation_set(grid));
  EXPECT_TRUE(vx_set_grid_x_dimension(4, grid) == 1 && vx_set_grid_y_dimension(3, grid) == 1 &&
              vx_set_grid_z_dimension(2, grid) == 1);
  EXPECT_EQ(vx_set_grid_z_dimension(-2, grid), 0);
  EXPECT_TRUE(vx_set_grid_y_midpoint(2.5f, grid) == 1 && vx_set_grid_spacing(0.5f, grid) == 1 &&
              vx_set_grid_name("a name", grid) == 1);
  EXPECT_TRUE(!vx_is_grid_x_midpoint_set(grid) && vx_is_grid_y_midpoint_set(grid) &&
              vx_is_grid_spacing_set(grid) && vx_is_grid_name_set(grid));
  EXPECT_EQ(grid.GetIntegers().GetSize(), 24u);
  EXPECT_EQ(grid.GetIntegers().GetYMid(), 2.5f);
  EXPECT_EQ(grid.GetIntegers().GetSpacing(), 0.5f);
  int dim = 0;
  float number = 0;
  char name[80];
  EXPECT_TRUE(vx_get_grid_z_dimension(&dim, grid) == 1 && dim == 2);
  EXPECT_TRUE(vx_get_grid_y_midpoint(&number, grid) == 1 && number == 2.5f);
  EXPECT_TRUE(vx_get_grid_spacing(&number, grid) == 1 && number == 0.5f);
  EXPECT_EQ(vx_get_grid_name(name, grid), 1);
  EXPECT_STREQ(name, "a name");
  std::array<float, 6> cell{};
  EXPECT_FALSE(vx_is_grid_unitcell_set(grid) || vx_is_grid_spacegroup_set(grid));
  EXPECT_EQ(vx_grid_set_unitcell(10, 11, 12, 80, 90, 100, 20, 22, 24, grid), 1);
  EXPECT_EQ(vx_grid_get_unitcell(cell.data(), grid), 1);
  EXPECT_EQ(cell, (std::array<float, 6>{10, 11, 12, 80, 90, 100}));
  EXPECT_TRUE(vx_grid_set_spacegroup(19, grid) == 1 && vx_grid_get_spacegroup(grid) == 19);
  EXPECT_TRUE(vx_is_grid_unitcell_set(grid) && vx_is_grid_spacegroup_set(grid) &&
              vx_is_grid_orientation_set(grid));
}

TEST(BrioFlat, ReadsAndWritesTheSelectedField) {
  VXBrioGrid grid = two_field_grid();
  const std::array<float, 6> floats = {1, 2, 3, 4, 5, 6};
  const std::array<int, 6> integers = {-1, -2, -3, -4, -5, -6};
  EXPECT_EQ(vx_set_grid_floats(floats.data(), grid), 1);
  EXPECT_EQ(vx_set_grid_integers(integers.data(), grid), 1);
  EXPECT_EQ(vi_grid_floats(grid), grid.GetFloats()[1].GetValues());
  EXPECT_EQ(vi_grid_integers(grid)[5], -6);
  EXPECT_EQ(grid.GetFloats()[0][5], 0.0f);
  std::array<float, 6> back{};
  EXPECT_EQ(vx_get_grid_floats(back.data(), grid), 1);
  EXPECT_EQ(back, floats);
  EXPECT_EQ(vx_get_grid_floats_length(grid), 12);
  EXPECT_EQ(vx_get_grid_integers_length(grid), 12);

  EXPECT_EQ(vx_set_grid_floats_multiple(1, grid), 1);
  EXPECT_EQ(vx_get_grid_floats(back.data(), grid), 1);
  EXPECT_EQ(back[5], 0.0f);
  EXPECT_EQ(vx_set_grid_floats_multiple(0, grid), 1);
  EXPECT_EQ(vi_grid_floats(grid), nullptr);
  EXPECT_EQ(vx_get_grid_floats(back.data(), grid), 0);
  EXPECT_EQ(vx_set_grid_floats_multiple(-1, grid), 0);

  vx_clear_grid_integers(grid);
  EXPECT_EQ(grid.GetIntegers()[1][5], 0);
  vx_clear_grid_floats(grid);
  EXPECT_EQ(grid.GetFloats()[1][5], 0.0f);
}

TEST(BrioFlat, AllowsElementsUpToAndIncludingTheSize) {
  VXBrioGrid grid = two_field_grid();
  EXPECT_EQ(vx_set_grid_floats_element(7.0f, 5, grid), 1);
  EXPECT_EQ(vx_set_grid_integers_element(8, 0, grid), 1);
  float value = 0;
  int whole = 0;
  EXPECT_TRUE(vx_get_grid_floats_element(&value, 5, grid) == 1 && value == 7.0f);
  EXPECT_TRUE(vx_get_grid_integers_element(&whole, 0, grid) == 1 && whole == 8);
  for (const int beyond : {-1, 7}) {
    EXPECT_EQ(vx_get_grid_floats_element(&value, beyond, grid), 0);
    EXPECT_EQ(vx_set_grid_integers_element(1, beyond, grid), 0);
  }
  EXPECT_EQ(vx_get_grid_floats_element(&value, 6, grid), 1);
  EXPECT_EQ(value, 0.0f);
  EXPECT_EQ(vx_set_grid_floats_element(1.0f, 6, grid), 1);
}

TEST(BrioFlat, SwitchesAxesOnByTheirLetter) {
  VXBrioGrid grid;
  EXPECT_EQ(vx_set_grid_reentrant_direction('y', grid), 2);
  EXPECT_EQ(vx_set_grid_reentrant_direction('Z', grid), 6);
  EXPECT_EQ(vx_set_grid_reentrant_direction('q', grid), 6);
  EXPECT_TRUE(!vx_grid_x_reentrant(grid) && vx_grid_y_reentrant(grid) == 1 &&
              vx_grid_z_reentrant(grid) == 1);
  vx_set_grid_reentrant(grid);
  EXPECT_EQ(vx_grid_reentrant(grid), 7);
}

TEST(BrioFlat, TransformsFromTheLatticeToSpaceAndBack) {
  VXBrioGrid grid;
  grid.SetDim(4, 3, 2);
  grid.SetMid(5, 6, 7);
  std::array<float, 3> p = {1, 2, 3};
  EXPECT_EQ(vx_transform_coordinates_by_grid_orientation(p.data(), 1, grid), 0);
  EXPECT_EQ(vx_untransform_coordinates_by_grid_orientation(p.data(), 1, grid), 0);
  grid.SetUnitCell(31.5f, 42.25f, 57.75f, 78.5f, 97.25f, 112.0f, 30, 48, 50);

  // Unoriented lattice points go where the grid says that its elements lie.
  std::vector<float> regular, places;
  ASSERT_TRUE(grid.SpatialCoords(places));
  VXBrioGrid plain(grid);
  plain.SetOrientationSet(false);
  ASSERT_TRUE(plain.SpatialCoords(regular));
  std::vector<float> moved = regular;
  ASSERT_EQ(vx_transform_coordinates_by_grid_orientation(moved.data(), 24, grid), 1);
  EXPECT_EQ(moved, places);
  ASSERT_EQ(vx_untransform_coordinates_by_grid_orientation(moved.data(), 24, grid), 1);
  for (std::size_t i = 0; i < moved.size(); ++i)
    EXPECT_NEAR(moved[i], regular[i], 3e-6f);
}

TEST(BrioFlat, InvertsAnyMatrixThatHasAnInverse) {
  // Neither orthogonal nor symmetric; determinant -306.
  const float matrix[9] = {6, 1, 1, 4, -2, 5, 2, 8, 7};
  std::array<float, 6> p = {1, 0, 0, 0.5f, -2, 3};
  ASSERT_EQ(vx_transform_coordinates_by_orientation_matrix(p.data(), 2, matrix, nullptr), 1);
  EXPECT_EQ(p, (std::array<float, 6>{6, 4, 2, 4, 21, 6}));
  ASSERT_EQ(vx_untransform_coordinates_by_orientation_matrix(p.data(), 2, matrix, nullptr), 1);
  const std::array<float, 6> want = {1, 0, 0, 0.5f, -2, 3};
  for (unsigned int i = 0; i < 6; ++i)
    EXPECT_NEAR(p[i], want[i], 2e-6f);

  const float singular[9] = {1, 2, 3, 2, 4, 6, 0, 0, 1};
  EXPECT_EQ(vx_untransform_coordinates_by_orientation_matrix(p.data(), 2, singular, nullptr), 0);
  const float center[3] = {0.5f, -2, 3};
  ASSERT_EQ(vx_transform_coordinates_by_orientation_matrix(p.data() + 3, 1, singular, center), 1);
  for (unsigned int i = 0; i < 3; ++i)
    EXPECT_NEAR(p[3 + i], center[i], 2e-5f);
}

TEST(BrioFlat, ListsTheCornersXFastest) {
  VXBrioGrid grid;
  grid.SetDim(5, 3, 2);
  grid.SetMid(1, 2, 3);
  grid.SetSpacing(0.5f);
  std::array<float, 24> corners{};
  ASSERT_EQ(vx_get_corners_of_grid(corners.data(), grid), 1);
  EXPECT_EQ(corners, (std::array<float, 24>{0, 1.5f, 2.75f, 2, 1.5f, 2.75f, 0, 2.5f, 2.75f,
                                            2, 2.5f, 2.75f, 0, 1.5f, 3.25f, 2, 1.5f, 3.25f,
                                            0, 2.5f, 3.25f, 2, 2.5f, 3.25f}));
  const float quarter_turn[9] = {0, -1, 0, 1, 0, 0, 0, 0, 1};
  grid.SetOrientation(quarter_turn);
  ASSERT_EQ(vx_get_corners_of_grid(corners.data(), grid), 1);
  EXPECT_EQ((std::array{corners[3], corners[4], corners[5]}), (std::array{1.5f, 3.0f, 2.75f}));
}

std::string report_of(const VXBrioGrid& grid) {
  const MessageCapture capture;
  EXPECT_EQ(vx_print_grid_report(grid), 1);
  std::string lines;
  for (const auto& [level, text] : capture.messages)
    lines += text + "\n";
  return lines;
}

TEST(BrioFlat, ReportsWhichItemsAreSet) {
  const std::string stars(20, '*');
  const auto report = [&](const std::vector<std::string>& states) {
    const char* const items[] = {
        "\"name\" is an array of 80 elements of type char",
        "\"x_midpoint\" is a variable of type float",
        "\"y_midpoint\" is a variable of type float",
        "\"z_midpoint\" is a variable of type float",
        "\"spacing\" is a variable of type float",
        "\"x_dimension\" is a variable of type int",
        "\"y_dimension\" is a variable of type int",
        "\"z_dimension\" is a variable of type int",
        "\"floats\" is an array of x_dimension*y_dimension*z_dimension elements of type float",
        "\"integers\" is an array of x_dimension*y_dimension*z_dimension elements of type int",
        "\"orientation\" is a variable of type float*"};
    std::string text =
        "\n" + stars + stars + "\nGRID REPORT\n\nACCESSIBLE VARIABLES\n" + stars + "\n";
    for (std::size_t i = 0; i < states.size(); ++i)
      text += std::string(" ") + items[i] + " that " + states[i] + "\n";
    return text + stars + stars + "\n\n";
  };
  const std::string can = "can set", has = "has been set", to = "has been set to ";
  VXBrioGrid grid;
  EXPECT_EQ(report_of(grid),
            report({can, can, can, can, can, to + "0", to + "0", to + "0", can, can, can}));

  grid.SetTitle("50% t");
  vx_set_grid_y_midpoint(-1.25f, grid);
  grid.SetDim(3, 2, 1);
  grid.SetUnitCellFromSpacing(0.5f);
  EXPECT_EQ(report_of(grid), report({has, can, to + "-1.250000", can, to + "0.500000", to + "3",
                                     to + "2", to + "1", has, has, has}));
}

}  // namespace
}  // namespace VXCore
