#include "vxgrid/grid/scalar_grid.h"

#include <gtest/gtest.h>

#include <memory>   // for unique_ptr
#include <utility>  // for move

#include "vxgrid/toolkit/core/base.h"

namespace VXCore {
namespace {

VXScalarGrid sample_grid() {
  const float values[6] = {1, 2, 3, 4, 5, 6};
  VXScalarGrid grid(3, 2, 1, 10.0f, 20.0f, 30.0f, 0.5f, "sample", values);
  grid.SetType(VXGridType::DifferenceMap);
  grid.SetIntData("note", 7);
  return grid;
}

TEST(ScalarGrid, CopiesCarryValuesGeometryTagsAndType) {
  const VXScalarGrid grid = sample_grid();
  const std::unique_ptr<VXBase> made(grid.CreateCopy());
  ASSERT_EQ(made->GetDataType(), grid.GetDataType());
  const auto& copy = static_cast<const VXScalarGrid&>(*made);
  EXPECT_EQ(copy.GetType(), VXGridType::DifferenceMap);
  EXPECT_EQ(copy.GetTitle(), "sample");
  EXPECT_EQ(copy.GetZMid(), 30.0f);
  EXPECT_EQ(copy(2, 1, 0), 6.0f);
  EXPECT_NE(copy.GetValues(), grid.GetValues());
  EXPECT_EQ(copy.GetIntData("note"), 7);
}

TEST(ScalarGrid, TakesTheTypeOfAScalarGridButNotFromAHostGrid) {
  VXScalarGrid grid = sample_grid();
  EXPECT_TRUE(grid.SetType(99));
  EXPECT_EQ(grid.GetType(), 99u);
  grid = static_cast<const VXScalarGrid&>(grid);
  EXPECT_EQ(grid.GetType(), 99u);
  grid = static_cast<const VXFixedGrid<float>&>(sample_grid());
  EXPECT_EQ(grid.GetType(), VXGridType::Generic);
  EXPECT_EQ(grid[5], 6.0f);
  EXPECT_EQ(VXScalarGrid(static_cast<const VXFixedGrid<float>&>(sample_grid())).GetType(), 0u);
}

TEST(ScalarGrid, IsEmptyAgainAfterClearAndAfterBeingMovedFrom) {
  VXScalarGrid grid = sample_grid();
  const float* values = grid.GetValues();
  const VXScalarGrid moved(std::move(grid));
  EXPECT_EQ(moved.GetValues(), values);
  VXScalarGrid cleared = sample_grid();
  cleared.Clear();
  for (const VXScalarGrid* empty : {&grid, &cleared}) {
    EXPECT_EQ(empty->GetSize(), 0u);
    EXPECT_EQ(empty->GetType(), 0u);
    EXPECT_EQ(empty->GetValues(), nullptr);
    EXPECT_FALSE(empty->HasData("note"));
    EXPECT_FALSE(empty->IsTitleSet() || empty->IsSpacingSet() || empty->IsXMidSet());
  }
}

TEST(ScalarGrid, IsOfItsOwnTypeAndOfAllHostTypesBelow) {
  const VXScalarGrid grid;
  for (const TypeId type : {type_ids::scalar_grid, type_ids::grid_float, type_ids::fixed_grid_float,
                            type_ids::grid_base, type_ids::grid_abstract_base, type_ids::base})
    EXPECT_TRUE(grid.IsDataType(type)) << type;
  for (const TypeId type : {type_ids::skew_grid, type_ids::brio_grid, type_ids::grid_int})
    EXPECT_FALSE(grid.IsDataType(type)) << type;
}

TEST(ScalarGrid, CoversABoxGivenByItsCorners) {
  const float box[6] = {-1, -2, -3, 3, 2, 1};
  const VXScalarGrid grid(box, 0.5f, "");
  EXPECT_EQ(grid.GetXDim(), 9u);
  EXPECT_EQ(grid.GetXMid(), 1.0f);
  EXPECT_EQ(grid.GetZMid(), -1.0f);
  float x = 0, y = 0, z = 0;
  EXPECT_TRUE(grid.GridIdxToSpatialCoord(0, 8, 0, x, y, z));
  EXPECT_EQ(x, -1.0f);
  EXPECT_EQ(y, 2.0f);
  EXPECT_EQ(z, -3.0f);
}

}  // namespace
}  // namespace VXCore
