#include "vxgrid/grid/scalar_grid.h"

#include <gtest/gtest.h>

#include <utility>  // for move

namespace VXCore {
namespace {

VXScalarGrid sample_grid() {
  const float values[6] = {1, 2, 3, 4, 5, 6};
  VXScalarGrid grid(3, 2, 1, 10.0f, 20.0f, 30.0f, 0.5f, "sample", values);
  grid.SetType(VXGridType::DifferenceMap);
  grid.SetIntData("note", 7);
  return grid;
}

TEST(ScalarGrid, TakesTheTypeOfAScalarGridButNotFromAHostGrid) {
  VXScalarGrid grid = sample_grid();
  EXPECT_TRUE(grid.SetType(99));
  grid = static_cast<const VXScalarGrid&>(grid);
  const VXScalarGrid copy(grid);
  EXPECT_TRUE(copy.IsDataType(type_ids::fixed_grid_float) && !copy.IsDataType(type_ids::grid_int));
  EXPECT_TRUE(copy.GetType() == 99 && copy.GetTitle() == "sample" && copy.GetIntData("note") == 7);
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
    EXPECT_EQ(empty->GetSize() + empty->GetType(), 0u);
    EXPECT_FALSE(empty->GetValues() || empty->HasData("note") || empty->IsTitleSet() ||
                 empty->IsSpacingSet() || empty->IsXMidSet());
  }
}

}  // namespace
}  // namespace VXCore
