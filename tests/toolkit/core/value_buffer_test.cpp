// Zeros without cost, growth and copies of the buffer of values.
#include "vxgrid/toolkit/core/value_buffer.h"

#include <gtest/gtest.h>
#include <unistd.h>  // for sysconf

#include <algorithm>  // for all_of
#include <fstream>    // for ifstream
#include <utility>    // for move

namespace {

using VXCore::ValueBuffer;

std::size_t resident_bytes() {
  std::ifstream statm("/proc/self/statm");
  std::size_t total = 0, resident = 0;
  statm >> total >> resident;
  return resident * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
}

constexpr std::size_t mebi = 1 << 20;

template <class T>
bool all_zero(const ValueBuffer<T>& buffer, std::size_t from = 0) {
  return std::all_of(buffer.begin() + from, buffer.end(), [](T value) { return value == T(0); });
}

// Sizes below and above the borders where memory comes from elsewhere.
const std::size_t sizes[] = {1,        1000, mebi / 4 - 1, mebi / 4, mebi / 4 + 1,
                             mebi - 3, mebi, 3 * mebi + 5};

TEST(ValueBuffer, IsZeroWhenMadeAlsoInMemoryThatWasUsedBefore) {
  for (const std::size_t size : sizes) {
    for (int round = 0; round < 2; ++round) {
      ValueBuffer<float> buffer(size);
      ASSERT_EQ(buffer.size(), size);
      EXPECT_TRUE(all_zero(buffer)) << size;
      for (float& value : buffer)
        value = 1.0f;
    }
  }
  EXPECT_EQ(ValueBuffer<int>(0).data(), nullptr);
}

TEST(ValueBuffer, KeepsValuesAndAddsZerosWhenResized) {
  for (const std::size_t from : sizes) {
    for (const std::size_t to : sizes) {
      ValueBuffer<int> buffer(from);
      for (std::size_t i = 0; i < from; ++i)
        buffer[i] = static_cast<int>(i) + 1;
      buffer.resize(to);
      ASSERT_EQ(buffer.size(), to);
      const std::size_t kept = std::min(from, to);
      std::size_t same = 0;
      while (same < kept && buffer[same] == static_cast<int>(same) + 1)
        ++same;
      EXPECT_EQ(same, kept) << from << " to " << to;
      EXPECT_TRUE(all_zero(buffer, kept)) << from << " to " << to;
      // What was cut off must not come back.
      buffer.resize(from);
      EXPECT_TRUE(all_zero(buffer, kept)) << from << " to " << to << " and back";
    }
  }
}

TEST(ValueBuffer, CopiesDeepAndMovesWithoutCopying) {
  for (const std::size_t size : sizes) {
    ValueBuffer<int> buffer(size);
    buffer[0] = 4;
    buffer[size / 2] = 5;
    buffer[size - 1] = 6;
    const int* const place = buffer.data();
    ValueBuffer<int> copy(buffer);
    EXPECT_TRUE(std::equal(copy.begin(), copy.end(), buffer.begin(), buffer.end()));
    buffer[size / 2] = 7;
    EXPECT_NE(copy[size / 2], 7);
    const ValueBuffer<int> moved(std::move(buffer));
    EXPECT_EQ(moved.data(), place);
    copy = moved;
    EXPECT_EQ(copy[size / 2], 7);
  }
}

TEST(ValueBuffer, CostsNoMemoryUntilTouchedNotEvenWhenCopied) {
  const std::size_t before = resident_bytes();
  ValueBuffer<int> huge(std::size_t{1} << 28);  // 1 GiB
  EXPECT_LT(resident_bytes(), before + 16 * mebi);
  ValueBuffer<int> large(64 * mebi);
  large[32 * mebi] = 1;
  const ValueBuffer<int> copy(large);
  EXPECT_EQ(copy[32 * mebi], 1);
  EXPECT_LT(resident_bytes(), before + 32 * mebi);
}

TEST(ValueBuffer, RefusesWhatNoMachineHolds) {
  EXPECT_THROW(ValueBuffer<float>(~std::size_t{0} / 2), std::bad_alloc);
  EXPECT_THROW(ValueBuffer<float>(std::size_t{1} << 55), std::bad_alloc);
  ValueBuffer<float> buffer(10);
  buffer[9] = 1.0f;
  EXPECT_THROW(buffer.resize(std::size_t{1} << 55), std::bad_alloc);
  EXPECT_EQ(buffer[9], 1.0f);
}

}  // namespace
