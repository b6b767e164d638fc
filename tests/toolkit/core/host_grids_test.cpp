// Geometry and values of the host grids.
#include "vxgrid/toolkit/core/host_grids.h"

#include <gtest/gtest.h>

#include <array>        // for array
#include <limits>       // for numeric_limits
#include <memory>       // for unique_ptr
#include <numeric>      // for iota
#include <string>       // for string
#include <tuple>        // for tuple
#include <type_traits>  // for is_nothrow_move_constructible
#include <utility>      // for move
#include <vector>       // for vector

#include "support/grid_probes.h"
#include "support/messages.h"
#include "vxgrid/toolkit/core/dimension.h"

namespace {

using namespace VXCore;
using vxgrid_test::MessageCapture;

std::vector<float> ramp(std::size_t count) {
  std::vector<float> values(count);
  std::iota(values.begin(), values.end(), 1.0f);
  return values;
}

VXGrid<float> small_grid() {
  const auto values = ramp(2 * 3 * 4);
  return VXGrid<float>(2, 3, 4, 1.0f, -2.0f, 3.0f, 0.5f, "small", values.data());
}

TEST(HostGrid, RemembersWhatWasSetEvenWhenZeroOrEmpty) {
  VXGrid<float> grid;
  EXPECT_FALSE(grid.IsTitleSet() || grid.IsSpacingSet() || grid.IsYMidSet());
  EXPECT_TRUE(grid.SetTitle("") && grid.SetSpacing(0.0f) && grid.SetYMid(0.0f));
  EXPECT_TRUE(grid.IsTitleSet() && grid.IsSpacingSet() && grid.IsYMidSet());
  EXPECT_FALSE(grid.IsXMidSet() || grid.IsZMidSet());
}

TEST(HostGrid, RunsXFastestAndCentresTheLatticeOnItsMid) {
  VXGrid<float> grid = small_grid();
  unsigned int element = 0;
  for (unsigned int z = 0; z < 4; ++z)
    for (unsigned int y = 0; y < 3; ++y)
      for (unsigned int x = 0; x < 2; ++x, ++element) {
        EXPECT_EQ(&grid(x, y, z), &grid[element]);
        EXPECT_EQ(grid(x, y, z), static_cast<float>(element + 1));
        unsigned int i = 9, j = 9, k = 9;
        EXPECT_TRUE(grid.ElementToGridIdx(element, i, j, k));
        EXPECT_EQ((std::array{i, j, k}), (std::array{x, y, z}));
        std::array<float, 3> p{};
        EXPECT_TRUE(grid.GridIdxToSpatialCoord(x, y, z, p[0], p[1], p[2]));
        EXPECT_EQ(p, vxgrid_test::place_of(grid, element));
        // Worked by hand: all numbers here are exact.
        EXPECT_EQ(p, (std::array<float, 3>{0.75f + 0.5f * static_cast<float>(x),
                                           -2.5f + 0.5f * static_cast<float>(y),
                                           2.25f + 0.5f * static_cast<float>(z)}));
      }
  float x = 5.0f, y = 6.0f, z = 7.0f;
  EXPECT_FALSE(grid.ElementToSpatialCoord(24, x, y, z));
  EXPECT_EQ(x, 5.0f);
  EXPECT_FALSE(grid.GridIdxToSpatialCoord(2, 0, 0, x, y, z));
  EXPECT_EQ(x, 1.75f);
}

TEST(HostGrid, FormsCoordinatesInSinglePrecision) {
  VXGrid<float> grid;
  grid.SetDim(1000, 1, 1);
  grid.SetMid(0.1f, 0.0f, 0.0f);
  grid.SetSpacing(0.1f);
  float x, y, z;
  ASSERT_TRUE(grid.GridIdxToSpatialCoord(7, 0, 0, x, y, z));
  const float offset = (7.0f - 499.5f) * 0.1f;
  EXPECT_EQ(x, 0.1f + offset);
}

TEST(HostGrid, GetsZerosFromEveryChangeOfDimension) {
  VXGrid<float> grid = small_grid();
  ASSERT_TRUE(grid.SetDim(2, 3, 4));
  for (unsigned int e = 0; e < grid.GetSize(); ++e)
    EXPECT_EQ(grid[e], 0.0f);
  grid[5] = 1.0f;
  ASSERT_TRUE(grid.SetZDim(2));
  EXPECT_EQ(grid.GetSize(), 12u);
  EXPECT_EQ(grid[5], 0.0f);
  ASSERT_TRUE(grid.SetDim(0, 3, 4));
  EXPECT_EQ(grid.GetValues(), nullptr);
  EXPECT_EQ(grid.GetYDim(), 3u);
}

TEST(HostGrid, RefusesDimensionsBeyondItsSizeAndStaysAsItWas) {
  constexpr unsigned int most = std::numeric_limits<unsigned int>::max();
  const std::array<unsigned int, 3> refused[] = {{65536, 65536, 1},
                                                 {1, 65536, 65536},
                                                 {most, 2, 1},
                                                 {most, most, most},
                                                 {4194304, 2097152, 2097152}};
  for (const auto& dim : refused) {
    VXGrid<float> grid = small_grid();
    EXPECT_FALSE(grid.SetDim(dim[0], dim[1], dim[2]));
    EXPECT_EQ(grid.GetSize(), 24u);
    EXPECT_EQ(grid[23], 24.0f);
  }
  VXGrid<float> flat;
  EXPECT_TRUE(flat.SetDim(most, 0, most));
  EXPECT_EQ(flat.GetSize(), 0u);
}

TEST(HostGrid, TakesValuesThatFit) {
  VXGrid<float> grid = small_grid();
  const auto other = ramp(25);
  EXPECT_FALSE(grid.SetValues(other.data(), 25));
  EXPECT_FALSE(grid.SetValues(nullptr, 1));
  const std::array<float, 2> two{-1.0f, -2.0f};
  EXPECT_TRUE(grid.SetValues(two.data(), 2));
  EXPECT_EQ(grid[0], -1.0f);
  EXPECT_EQ(grid[2], 3.0f);
  EXPECT_TRUE(grid.SetValues(grid.GetValues() + 2, 3));
  EXPECT_EQ(grid[0], 3.0f);
}

TEST(HostGrid, AdoptsAndGivesAwayABufferWithoutACopy) {
  VXMultiGrid<float> fields;
  fields.SetNumGrids(2);
  fields.SetDim(2, 3, 4);
  VXGrid<float> grid = small_grid();
  ValueBuffer<float> buffer = grid.TakeValues();
  EXPECT_EQ(grid[23], 0.0f);
  const float* const place = buffer.data();
  EXPECT_TRUE(fields[1].AdoptValues(std::move(buffer)));
  EXPECT_EQ(fields.GetValues(1), place);
  EXPECT_EQ(fields[1](1, 2, 3), 24.0f);
  EXPECT_FALSE(fields[1].AdoptValues(ValueBuffer<float>(23)));
  EXPECT_EQ(fields.GetValues(1), place);
}

TEST(HostGrid, CoversABox) {
  const std::array<float, 6> box{-1.0f, 0.0f, 2.0f, 9.0f, 10.0f, 2.0f};
  const VXGrid<float> single(box.data(), 0.5f, "box");
  // Ten over a half is twenty intervals, and rounding must not lose the last point.
  EXPECT_EQ(vxgrid_test::dims_of(single), (std::array{21u, 21u, 1u}));
  EXPECT_EQ(vxgrid_test::place_of(single, 0), (std::array{-1.0f, 0.0f, 2.0f}));
  EXPECT_EQ(vxgrid_test::place_of(single, 440), (std::array{9.0f, 10.0f, 2.0f}));
  EXPECT_EQ(single.GetTitle(), "box");
  const std::array<double, 6> same{-1, 0, 2, 9, 10, 2};
  const VXGrid<int> twice(same.data(), 0.5, nullptr);
  EXPECT_EQ(vxgrid_test::place_of(twice, 440), (std::array{9.0f, 10.0f, 2.0f}));
  EXPECT_FALSE(twice.IsTitleSet());

  std::array<float, 3> center{}, extents{};
  VXGetCenterAndExtents(single, center.data(), extents.data());
  EXPECT_EQ(center, (std::array{4.0f, 5.0f, 2.0f}));
  EXPECT_EQ(extents, (std::array{10.5f, 10.5f, 0.5f}));
}

TEST(DimensionFromExtent, WarnsOutsideTheWholeNumbersOfAFloat) {
  const std::tuple<float, float, std::int64_t> made[] = {
      {10.0f, 0.5f, 21}, {10.0f, 0.3f, 34}, {-3.0f, 1.0f, -1}, {16777215.0f, 1.0f, 16777216}};
  for (const auto& [extent, spacing, expected] : made) {
    MessageCapture messages;
    std::int64_t dimension = -7;
    EXPECT_TRUE(dimension_from_extent(extent, spacing, dimension));
    EXPECT_EQ(dimension, expected) << extent;
    EXPECT_TRUE(messages.messages.empty());
  }
  constexpr float infinity = std::numeric_limits<float>::infinity();
  const std::tuple<float, float, std::string> refused[] = {
      {1e9f, 1.0f, "1000000000.000000 is greater than the maximum allowed 16777216"},
      {-1e9f, 1.0f, "-1000000000.000000 is less than the minimum allowed -16777216"},
      {1.0f, 0.0f, "inf is greater than the maximum allowed 16777216"},
      {infinity, infinity, ""}};
  for (const auto& [extent, spacing, reason] : refused) {
    MessageCapture messages;
    std::int64_t dimension = -7;
    EXPECT_FALSE(dimension_from_extent(extent, spacing, dimension));
    EXPECT_EQ(dimension, -7) << extent;
    ASSERT_EQ(messages.messages.size(), 1u);
    const std::string text =
        "Unable to make dimension from extent because of " + reason +
        " when performing conversions between integers and floating point types";
    EXPECT_TRUE(reason.empty() || messages.warned(text)) << extent;
  }
  MessageCapture capture;
  const std::array<float, 6> endless{0, 0, 0, 1e9f, 1, 1};
  const VXGrid<float> grid(endless.data(), 1.0f, "endless");
  EXPECT_EQ(grid.GetSize(), 0u);
  EXPECT_EQ(grid.GetTitle(), "endless");
}

TEST(HostGrid, CopiesAndMovesGeometryValuesAndTags) {
  VXGrid<float> grid = small_grid();
  grid.SetFloatData("level", 1.5f);
  VXGrid<float> copy(grid);
  grid[0] = 100.0f;
  EXPECT_EQ(copy[0], 1.0f);
  EXPECT_EQ(copy.GetTitle(), "small");
  EXPECT_EQ(copy.GetFloatData("level"), 1.5f);

  const float* const place = copy.GetValues();
  VXGrid<float> moved(std::move(copy));
  EXPECT_EQ(moved.GetValues(), place);
  static_assert(std::is_nothrow_move_constructible_v<VXGrid<float>>);

  VXMultiGrid<float> fields;
  fields.SetDim(5, 1, 1);
  fields.SetTitle("fields");
  fields[0].SetFloatData("level", 2.5f);
  fields[0][4] = 9.0f;
  moved = fields[0];
  EXPECT_EQ(moved[4], 9.0f);
  EXPECT_EQ(moved.GetTitle(), "fields");
  EXPECT_EQ(moved.GetFloatData("level"), 2.5f);
  const std::unique_ptr<VXBase> clone(fields[0].CreateCopy());
  EXPECT_EQ(clone->GetDataType(), type_ids::grid_float);
  EXPECT_TRUE(clone->IsDataType(type_ids::fixed_grid_float) &&
              !clone->IsDataType(type_ids::fixed_grid_int));
  moved.Clear();
  EXPECT_FALSE(moved.GetSize() > 0 || moved.IsTitleSet() || moved.HasData("level"));
}

TEST(MultiGrid, SharesItsGeometryWithItsFields) {
  VXMultiGrid<int> fields;
  ASSERT_EQ(fields.GetNumGrids(), 1u);
  EXPECT_EQ(fields.GetValues(0), nullptr);
  EXPECT_TRUE(fields[0].SetDim(2, 2, 2));
  EXPECT_EQ(fields.GetSize(), 8u);
  fields[0][7] = 5;
  ASSERT_TRUE(fields.SetNumGrids(3));
  EXPECT_EQ(fields[0][7], 5);
  EXPECT_EQ(fields[2][7], 0);
  fields[2].SetSpacing(0.25f);
  fields[1].SetTitle("shared");
  EXPECT_EQ(fields.GetSpacing(), 0.25f);
  EXPECT_EQ(fields[0].GetTitle(), "shared");

  const std::array<int, 2> two{8, 9};
  EXPECT_TRUE(fields.SetValues(2, two.data(), 2) && fields.GetValues(2)[1] == 9);
  EXPECT_FALSE(fields.SetValues(3, two.data(), 2));
  EXPECT_EQ(fields.GetValues(3), nullptr);

  fields.SetXDim(3);
  EXPECT_EQ(fields[0].GetSize(), 12u);
  EXPECT_EQ(fields[2][1], 0);
  EXPECT_FALSE(fields.SetNumGrids(4000000000u));
  EXPECT_EQ(fields.GetNumGrids(), 3u);
}

TEST(MultiGrid, KeepsFieldsApartWhenCopiedAndTogetherWhenMoved) {
  VXMultiGrid<float> source;
  source.SetNumGrids(2);
  source.SetDim(2, 1, 1);
  source[1][1] = 3.0f;
  source[1].SetIntData("n", 4);

  VXMultiGrid<float> copy(source);
  source.SetDim(7, 1, 1);
  EXPECT_EQ(copy[1][1], 3.0f);
  EXPECT_EQ(copy[1].GetIntData("n"), 4);

  const VXFixedGrid<float>* const first = &source[0];
  source = copy;
  EXPECT_EQ(&source[0], first) << "assignment moved a field that stays";
  EXPECT_EQ(source[1][1], 3.0f);

  VXMultiGrid<float> moved(std::move(copy));
  moved[1].SetDim(4, 1, 1);
  EXPECT_EQ(moved[0].GetSize(), 4u);
  source = std::move(moved);
  source[0].SetTitle("moved");
  EXPECT_EQ(source.GetTitle(), "moved");
  source.Clear();
  EXPECT_EQ(source.GetNumGrids(), 1u);
  EXPECT_EQ(source[0].GetSize(), 0u);
}

}  // namespace
