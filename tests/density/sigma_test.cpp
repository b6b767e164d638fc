#include <gtest/gtest.h>

#include <cmath>   // for isnan, sqrt
#include <vector>  // for vector

#include "support/messages.h"
#include "vxgrid/density/sigma.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"

namespace {

using namespace VXCore;

// 1 to 24: mean 12.5, sample variance n (n + 1) / 12 = 50.
VXScalarGrid counting_grid() {
  std::vector<float> values(24);
  for (std::size_t i = 0; i < values.size(); ++i)
    values[i] = static_cast<float>(i + 1);
  return {2, 3, 4, 0, 0, 0, 1, "count", values.data()};
}

TEST(SigmaScale, divides_by_the_sample_deviation_and_leaves_the_mean_in_place) {
  VXScalarGrid scalar = counting_grid();
  VXSkewGrid skew(scalar);
  const float sigma = std::sqrt(50.0F);
  EXPECT_FLOAT_EQ(VXSigmaNormalizeGrid(scalar), sigma);
  EXPECT_FLOAT_EQ(VXSigmaNormalizeGrid(skew), sigma);
  for (unsigned int i = 0; i < 24; ++i) {
    const float expected = static_cast<float>(i + 1) / sigma;
    EXPECT_FLOAT_EQ(scalar[i], expected);
    EXPECT_EQ(skew.GetValues()[i], scalar[i]);
  }
  const VXBrioGrid& brio = skew.GetImpl().GetImpl();
  for (const VXBase* tagged :
       {static_cast<const VXBase*>(&scalar), static_cast<const VXBase*>(&skew),
        static_cast<const VXBase*>(&brio)}) {
    EXPECT_FLOAT_EQ(tagged->GetFloatData("SIGMA"), sigma);
    EXPECT_TRUE(tagged->GetBoolData("vx_no_norm"));
  }
}

TEST(SigmaScale, is_applied_once) {
  vxgrid_test::MessageCapture messages;
  VXSkewGrid grid(counting_grid());
  const float sigma = VXSigmaNormalizeGrid(grid);
  EXPECT_TRUE(messages.messages.empty());
  const float first = grid.GetValues()[0];
  EXPECT_EQ(VXSigmaNormalizeGrid(grid), sigma);
  EXPECT_EQ(grid.GetValues()[0], first);
  EXPECT_TRUE(
      messages.warned("VXSigmaNormalizeGrid: grid has been previously normalized, skipping..."));
  // A grid that says it is not normalised is, whatever its SIGMA.
  grid.SetBoolData("vx_no_norm", false);
  EXPECT_FLOAT_EQ(VXSigmaNormalizeGrid(grid), 1);
}

TEST(SigmaScale, takes_the_published_deviation_where_there_is_one) {
  VXScalarGrid grid = counting_grid();
  grid.SetFloatData("ARMS", 4);
  EXPECT_EQ(VXSigmaNormalizeGrid(grid), 4);
  EXPECT_EQ(grid[7], 2);
  EXPECT_EQ(grid.GetFloatData("SIGMA"), 4);
}

TEST(SigmaScale, of_a_grid_without_values_is_not_a_number) {
  VXSkewGrid grid;
  EXPECT_TRUE(std::isnan(VXSigmaNormalizeGrid(grid)));
  EXPECT_TRUE(grid.GetBoolData("vx_no_norm"));
}

}  // namespace
