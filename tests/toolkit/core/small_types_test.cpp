// Half floats and iterators.
#include <gtest/gtest.h>

#include <array>   // for array
#include <cmath>   // for abs, isnan
#include <limits>  // for numeric_limits
#include <vector>  // for vector

#include "vxgrid/toolkit/core/half_float.h"
#include "vxgrid/toolkit/core/iterators.h"

namespace {

using namespace VXCore;

TEST(HalfFloat, IsTheNearestToEveryFloatBetweenTwoHalves) {
  int checked = 0;
  for (unsigned int bits = 0; bits < 0x7bff; ++bits) {
    const auto low = static_cast<std::uint16_t>(bits);
    const auto high = static_cast<std::uint16_t>(bits + 1);
    const float below = VXHalfFloat::FromBits(low);
    const float above = VXHalfFloat::FromBits(high);
    ASSERT_LT(below, above);
    ASSERT_EQ(VXHalfFloat(below).GetBits(), low);
    ASSERT_EQ(VXHalfFloat(-above).GetBits(), high | 0x8000);
    const float half_way = below + (above - below) / 2.0f;
    ASSERT_EQ(VXHalfFloat(half_way).GetBits(), bits % 2 ? high : low) << half_way;
    ASSERT_EQ(VXHalfFloat(std::nextafter(half_way, 1e9f)).GetBits(), high) << half_way;
    ASSERT_EQ(VXHalfFloat(std::nextafter(half_way, -1.0f)).GetBits(), low) << half_way;
    ++checked;
  }
  EXPECT_EQ(checked, 0x7bff);
  EXPECT_EQ(float(VXHalfFloat(1.0f)), 1.0f);
  EXPECT_EQ(float(VXHalfFloat(65519.0f)), 65504.0f);
  EXPECT_EQ(float(VXHalfFloat(65520.0f)), std::numeric_limits<float>::infinity());
  EXPECT_TRUE(std::isnan(float(VXHalfFloat(std::numeric_limits<float>::quiet_NaN()))));
}

TEST(Iterators, WalkInALoopAndByHand) {
  std::array<int, 3> numbers{1, 2, 3};
  std::vector<int*> pointers;
  for (int& number : numbers)
    pointers.push_back(&number);
  for (int& number : VXIter<int>(pointers))
    number *= 2;

  VXIter<int> walk(new VXPointerIter<int>(pointers));
  ++walk;
  const VXIter<int> copy(walk);
  ++walk;
  EXPECT_EQ(*walk, 6);
  EXPECT_EQ(*copy, 4);
  ++walk;
  EXPECT_FALSE(walk);
  walk.ToFirst();
  EXPECT_EQ(*walk, 2);
  EXPECT_FALSE(VXIter<int>());
}

}  // namespace
