#include "vxgrid/grid/grid_functions.h"

#include <gtest/gtest.h>

#include <algorithm>  // for fill_n
#include <array>      // for array
#include <limits>     // for numeric_limits

#include "support/grid_probes.h"
#include "support/messages.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace VXCore {
namespace {

using Triple = std::array<float, 3>;
using vxgrid_test::MessageCapture;

TEST(GridFunctions, TellGridsAndSeeNonZeroValuesOfEitherSignButNoNaN) {
  EXPECT_TRUE(VXIsGrid(VXScalarGrid()) && VXIsGrid(VXSkewGrid()) && VXIsGrid(VXBrioGrid()));
  EXPECT_FALSE(VXIsGrid(VXContainer()) || VXIsGrid(VXGrid<float>()));
  EXPECT_FALSE(VXGridHasNonZeroValue(VXScalarGrid()) || VXGridHasNonZeroValue(VXBrioGrid()) ||
               VXGridHasNonZeroValue(VXSkewGrid()));
  VXScalarGrid grid(3, 3, 3, 0, 0, 0, 1, "");
  grid[0] = std::numeric_limits<float>::quiet_NaN();
  grid[1] = -0.0f;
  EXPECT_FALSE(VXGridHasNonZeroValue(grid) || VXGridHasNonZeroValue(VXBrioGrid(grid)));
  grid[26] = -1e-30f;
  EXPECT_TRUE(VXGridHasNonZeroValue(grid) && VXGridHasNonZeroValue(VXBrioGrid(grid)) &&
              VXGridHasNonZeroValue(VXSkewGrid(grid)));
}

TEST(GridFunctions, ClearTheSixOuterPlanesAndNothingElse) {
  VXScalarGrid grid(5, 4, 3, 0, 0, 0, 1, "");
  std::fill_n(grid.GetValues(), 60, 1.0f);
  VXBrioGrid brio(grid);
  ASSERT_TRUE(VXClearGridBoundary(grid) && VXClearGridBoundary(brio));
  for (unsigned int e = 0; e < 60; ++e) {
    unsigned int x = 0, y = 0, z = 0;
    grid.ElementToGridIdx(e, x, y, z);
    const bool inside = x > 0 && x < 4 && y > 0 && y < 3 && z == 1;
    EXPECT_EQ(grid[e], inside ? 1.0f : 0.0f);
    EXPECT_EQ(brio.GetValues()[e], grid[e]);
  }
  VXScalarGrid point(1, 1, 1, 0, 0, 0, 1, "");
  point[0] = 3.0f;
  EXPECT_TRUE(VXClearGridBoundary(point));
  EXPECT_EQ(point[0], 0.0f);
  VXScalarGrid empty;
  VXBrioGrid empty_brio;
  EXPECT_FALSE(VXClearGridBoundary(empty));
  EXPECT_TRUE(VXClearGridBoundary(empty_brio));
}

TEST(GridFunctions, BoxAnUnorientedGridHalfASpacingBeyondItsPoints) {
  VXBrioGrid grid;
  grid.SetDim(5, 4, 3);
  grid.SetMid(1, 2, 3);
  Triple center{}, extents = {-1, -1, -1};
  VXGetCenterAndExtents(grid, center.data(), extents.data());
  EXPECT_EQ(extents, (Triple{-1, -1, -1}));
  grid.SetSpacing(0.5f);
  VXGetCenterAndExtents(grid, center.data(), extents.data());
  EXPECT_EQ(center, (Triple{1, 2, 3}));
  EXPECT_EQ(extents, (Triple{2.5f, 2.0f, 1.5f}));
}

TEST(GridFunctions, BoxAnOrientedGridByItsCornersShiftedByOneSpacing) {
  // A lattice sheared by half of y into x: over 4 steps of y the box grows by 2 steps on x.
  const float sheared[9] = {1, 0.5f, 0, 0, 1, 0, 0, 0, 1};
  VXSkewGrid skew;
  skew.SetDim(3, 5, 2);
  skew.SetMid(10, 20, 30);
  skew.SetSpacing(0.5f);
  skew.GetImpl().SetOrientation(sheared);
  Triple center{}, extents{};
  VXGetCenterAndExtents(skew, center.data(), extents.data());
  EXPECT_EQ(extents, (Triple{2.0f, 2.0f, 0.5f}));
  EXPECT_EQ(center, (Triple{10.5f, 20.5f, 30.5f}));

  skew.SetDim(3, 0, 2);
  center = {-1, -1, -1};
  VXGetCenterAndExtents(skew, center.data(), extents.data());
  EXPECT_EQ(center, (Triple{-1, -1, -1}));
}

TEST(GridFunctions, MakeGridsThatCoverTheirExtents) {
  const Triple center = {1, 2, 3};
  const Triple extents = {10, 5, 0.2f};
  VXBrioGrid brio;
  ASSERT_TRUE(VXMakeGridFromCenterAndExtents(brio, center.data(), extents.data(), 0.5f));
  EXPECT_EQ(vxgrid_test::dims_of(brio), (std::array{21u, 11u, 1u}));
  EXPECT_EQ(brio.GetIntegers().GetSize(), brio.GetSize());
  EXPECT_EQ(brio.GetIntegers().GetYMid(), 2.0f);
  EXPECT_FALSE(brio.GetOrientationSet());

  VXScalarGrid scalar;
  scalar.SetType(VXGridType::Dorn);
  ASSERT_TRUE(VXMakeGridFromCenterAndExtents(scalar, center.data(), extents.data(), 0.5f));
  EXPECT_TRUE(scalar.GetSize() == 231 && scalar.GetXMid() == 1 && scalar.GetSpacing() == 0.5f);
  EXPECT_EQ(scalar.GetType(), 0u);

  EXPECT_FALSE(VXMakeGridFromCenterAndExtents(brio, nullptr, extents.data(), 0.5f));
  EXPECT_FALSE(VXMakeGridFromCenterAndExtents(brio, center.data(), nullptr, 0.5f));
  EXPECT_FALSE(VXMakeGridFromCenterAndExtents(brio, center.data(), extents.data(), 0.0f));

  const MessageCapture quiet;
  const Triple huge = {1e9f, 1, 1};
  EXPECT_FALSE(VXMakeGridFromCenterAndExtents(scalar, center.data(), huge.data(), 1.0f));
}

}  // namespace
}  // namespace VXCore
