// Colours, half floats, bit vectors, iterators and predicates.
#include <gtest/gtest.h>

#include <algorithm>  // for count_if
#include <array>      // for array
#include <cmath>      // for abs, isnan
#include <limits>     // for numeric_limits
#include <memory>     // for unique_ptr
#include <vector>     // for vector

#include "vxgrid/toolkit/core/bit_vector.h"
#include "vxgrid/toolkit/core/color.h"
#include "vxgrid/toolkit/core/half_float.h"
#include "vxgrid/toolkit/core/iterators.h"
#include "vxgrid/toolkit/core/stopwatch.h"
#include "vxgrid/toolkit/core/tracer.h"

namespace {

using namespace VXCore;

TEST(Color, KeepsItsPackedWord) {
  EXPECT_EQ(VXColor(0x12345678u).GetPackedColor(), 0x12345678u);
  EXPECT_EQ(VXColor(1, 2, 3, 4), VXColor(0x04030201u));
  EXPECT_EQ(VXColor(), VXColor(0, 0, 0));
}

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

TEST(BitVector, HasNoGivenEnd) {
  VXBitVector bits(3);
  EXPECT_FALSE(bits.IsBitOn(1) || bits.IsBitOn(1000000));
  bits.SetBitOn(1);
  bits.SetBitOn(5000);
  EXPECT_TRUE(bits.IsBitOn(1) && bits.IsBitOn(5000));
  EXPECT_FALSE(bits.IsBitOn(4999) || bits.IsBitOn(5001));
  bits.SetBitOff(1);
  EXPECT_FALSE(bits.IsBitOn(1));
}

TEST(Iterators, WalkInALoopAndByHand) {
  std::array<int, 3> numbers{1, 2, 3};
  std::vector<int*> pointers;
  for (int& number : numbers)
    pointers.push_back(&number);
  for (int& number : VXIter<int>(pointers))
    number *= 2;
  EXPECT_EQ(numbers, (std::array{2, 4, 6}));

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

TEST(Predicates, AreCopiedWithoutKnowingTheirClass) {
  const VXFunctionPredicate<int> even([](int number) { return number % 2 == 0; });
  const VXUnaryFunction<int, bool, 1, 1>& unknown = even;
  const std::unique_ptr<VXUnaryFunction<int, bool, true, true>> copy(unknown.CreateCopy());
  const std::array numbers{1, 2, 3, 4};
  EXPECT_EQ(std::count_if(numbers.begin(), numbers.end(), [&](int n) { return (*copy)(n); }), 2);
}

TEST(Stopwatch, CountsFromTheLastLap) {
  VXStopwatch watch;
  EXPECT_GE(watch.Lap(), 0.0f);
  EXPECT_LT(watch.Lap(), 60.0f);
  VXNullTracer().Report(1, 2);
}

}  // namespace
