// Telling difference maps from ordinary ones.
#include "vxgrid/density/difference_map.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace VXCore {
namespace {

VXScalarGrid row_of(const std::vector<float>& values) {
  VXScalarGrid grid(static_cast<int>(values.size()), 1, 1, 0, 0, 0, 1, "");
  grid.SetValues(values.data(), static_cast<unsigned int>(values.size()));
  return grid;
}

TEST(DifferenceMap, is_told_by_type_and_else_by_its_negative_side) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const struct {
    unsigned int type;
    std::vector<float> values;
    bool expected;
  } cases[] = {
      {VXGridType::RegularMap, {-5, 1}, false}, {VXGridType::DifferenceMap, {0, 1}, true},
      {VXGridType::Generic, {-0.6f, 1}, false}, {VXGridType::Generic, {-0.7f, 1}, true},
      {VXGridType::Generic, {0, 0}, false},     {VXGridType::Ux, {nan, -0.7f, 1, nan}, true},
  };
  for (const auto& c : cases) {
    VXScalarGrid grid = row_of(c.values);
    grid.SetType(c.type);
    EXPECT_EQ(VXGridIsDifferenceMap(grid), c.expected) << c.type << ' ' << c.values[0];
    EXPECT_EQ(VXGridIsDifferenceMap(VXSkewGrid(grid)), c.expected) << c.type << ' ' << c.values[0];
  }
  EXPECT_TRUE(VXGridIsDifferenceMap(VXSkewGrid()));  // the two initial extremes
}

}  // namespace
}  // namespace VXCore
