#include "vxgrid/grid/contours.h"

#include <gtest/gtest.h>

#include <vector>  // for vector

#include "support/messages.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace VXCore {
namespace {

using vxgrid_test::MessageCapture;

TEST(Contours, RideOnAnyGridAndGoAlongWithItsCopies) {
  const MessageCapture messages;
  VXSkewGrid grid;
  EXPECT_EQ(VXNumContours(grid), 0u);
  VXAddContour(grid, 1.5f, VXColor(255, 0, 0));
  VXAddContour(grid, -3.0f, VXColor(0, 255, 0));
  const VXSkewGrid copy(grid);
  VXAddContour(grid, 9.0f, VXColor());
  ASSERT_EQ(VXNumContours(copy), 2u);
  EXPECT_EQ(VXGetContourLevel(copy, 0), 1.5f);
  EXPECT_EQ(VXGetContourLevel(copy, 1), -3.0f);
  EXPECT_EQ(VXGetContourColor(copy, 1), VXColor(0, 255, 0));
  EXPECT_EQ(VXGetContourLevel(copy, 5), 0.0f);
  EXPECT_EQ(VXGetContourColor(copy, 5), VXColor());
  EXPECT_TRUE(messages.messages.empty());
}

TEST(Contours, LieInTheirTwoTagsOfWhichTheLevelsCount) {
  VXScalarGrid grid;
  VXAddContour(grid, 2.0f, VXColor(17u));
  const auto* levels = grid.FindDataValue<std::vector<float>>("VX_grid_contour_levels");
  const auto* colors = grid.FindDataValue<std::vector<unsigned int>>("VX_grid_contour_colors");
  ASSERT_TRUE(levels && colors);
  EXPECT_EQ(*levels, std::vector<float>{2.0f});
  EXPECT_EQ(*colors, std::vector<unsigned int>{17u});

  grid.SetData("VX_grid_contour_levels", std::vector<float>{1, 2, 3});
  EXPECT_EQ(VXNumContours(grid), 3u);
  EXPECT_EQ(VXGetContourColor(grid, 2), VXColor());
  grid.SetIntData("VX_grid_contour_levels", 4);
  EXPECT_EQ(VXNumContours(grid), 0u);
  VXAddContour(grid, 5.0f, VXColor(18u));
  EXPECT_EQ(VXNumContours(grid), 1u);
  EXPECT_EQ(VXGetContourColor(grid, 1), VXColor(18u));
}

}  // namespace
}  // namespace VXCore
