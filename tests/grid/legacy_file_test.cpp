#include "vxgrid/grid/legacy_file.h"

#include <gtest/gtest.h>

#include <cstring>  // for memcmp
#include <random>   // for mt19937
#include <string>   // for string
#include <tuple>    // for tie

#include "support/bad_input.h"
#include "support/messages.h"
#include "support/temp_dir.h"

namespace VXCore {
namespace {

using vxgrid_test::MessageCapture;
using vxgrid_test::read_file;
using vxgrid_test::TempDir;
using vxgrid_test::write_file;

/// A record of 2 x 3 x 2 points that lets go of what it holds.
struct OwnedGrid : GridStruct {
  OwnedGrid() = default;
  OwnedGrid(const OwnedGrid&) = delete;
  OwnedGrid& operator=(const OwnedGrid&) = delete;
  ~OwnedGrid() { vx_deallocate_grid_struct(*this, true, true); }
};

void fill(GridStruct& grid) {
  std::tie(grid.xmid, grid.ymid, grid.zmid) = std::tuple(1.5f, -2.0f, 3.0f);
  std::tie(grid.spacing, grid.inverse_spacing) = std::tuple(0.5f, 2.0f);
  std::tie(grid.xdim, grid.ydim, grid.zdim) = std::tuple(2, 3, 2);
  vx_allocate_grid_struct(grid, true, true, 0);
  for (int i = 0; i < 12; ++i) {
    grid.floats[i] = 0.25f * static_cast<float>(i);
    grid.integers[i] = 100 - i;
  }
}

std::string header(int xdim, int ydim, int zdim, int selector) {
  using vxgrid_test::bytes_of;
  return bytes_of(1.0f) + bytes_of(2.0f) + bytes_of(3.0f) + bytes_of(0.5f) + bytes_of(2.0f) +
         bytes_of(xdim) + bytes_of(ydim) + bytes_of(zdim) + bytes_of(selector);
}

TEST(LegacyFile, GivesEachFieldBackUnlessItHoldsBothWhenTheySwap) {
  const TempDir dir;
  MessageCapture messages;
  OwnedGrid grid;
  fill(grid);
  for (const int selector : {1, 2, 3, 7}) {
    const std::string name = dir.file("grid");
    messages.messages.clear();
    ASSERT_EQ(vi_write_grid(0, grid, 1, name.c_str(), selector), 1);
    ASSERT_EQ(messages.messages.size(), 1u);
    EXPECT_EQ(messages.messages[0].second.substr(0, 24), "writing BINARY grid file");
    const std::size_t blocks = selector == 3 ? 2 : selector == 7 ? 0 : 1;
    EXPECT_EQ(read_file(name).size(), 36u + 48u * blocks);

    OwnedGrid back;
    char title[] = "kept";
    back.name = title;
    ASSERT_EQ(vi_read_grid(0, &back, name.c_str()), 1);
    EXPECT_EQ(back.name, title);
    EXPECT_TRUE(back.xmid == 1.5f && back.inverse_spacing == 2 && back.ydim == 3);
    const void* floats = selector == 1 ? static_cast<void*>(grid.floats) : grid.integers;
    const void* integers = selector == 2 ? static_cast<void*>(grid.integers) : grid.floats;
    ASSERT_EQ(back.floats != nullptr, selector == 1 || selector == 3);
    ASSERT_EQ(back.integers != nullptr, selector == 2 || selector == 3);
    EXPECT_TRUE(!back.floats || std::memcmp(back.floats, floats, 48) == 0);
    EXPECT_TRUE(!back.integers || std::memcmp(back.integers, integers, 48) == 0);
  }
}

TEST(LegacyFile, ListsFloatsInBatchesAfterABlankLine) {
  const TempDir dir;
  OwnedGrid grid;
  fill(grid);
  grid.floats[0] = -1.0f;
  ASSERT_EQ(vi_write_grid(0, grid, 2, dir.file("list").c_str(), 5), 1);
  const std::string blank(13 * 5, ' ');
  EXPECT_EQ(read_file(dir.file("list")),
            "Ascii Grid file\n\n"
            "Grid spacing =    0.50000\n"
            "Grid center  =    1.50000   -2.00000    3.00000\n"
            "Grid size    = 2 3 2\n"
            "\n"
            "Grid values in batches of 5\n" +
                blank +
                "\n"
                "-1.00000e+00  2.50000e-01  5.00000e-01  7.50000e-01  1.00000e+00 \n"
                " 1.25000e+00  1.50000e+00  1.75000e+00  2.00000e+00  2.25000e+00 \n"
                " 2.50000e+00  2.75000e+00 \n");
  EXPECT_EQ(vi_write_grid(0, grid, 3, dir.file("none").c_str(), 5), 1);
  EXPECT_EQ(read_file(dir.file("none")), "");
}

TEST(LegacyFile, SaysWhichFileItCannotOpen) {
  const TempDir dir;
  const std::string name = dir.file("no/such");
  OwnedGrid grid;
  fill(grid);
  const MessageCapture messages;
  GridStruct back;
  EXPECT_EQ(vi_read_grid(0, &back, name.c_str()), 0);
  EXPECT_TRUE(messages.warned("Cannot open file " + name));
  EXPECT_EQ(vi_read_grid(0, &back, dir.file(".").c_str()), 0);  // a folder opens, but has no bytes
  EXPECT_EQ(vi_write_grid(0, grid, 2, name.c_str(), 5), 0);
  EXPECT_TRUE(messages.warned("Cannot open file " + name + "\n"));
  const std::size_t before = messages.messages.size();
  EXPECT_EQ(vi_write_grid(0, grid, 1, name.c_str(), 1), 0);
  ASSERT_EQ(messages.messages.size(), before + 2);
  EXPECT_EQ(messages.messages.back().first, VXErrorLevel::Info);
  // What cannot be written leaves no file.
  vx_deallocate_grid_struct(grid, true, false);
  EXPECT_EQ(vi_write_grid(0, grid, 1, dir.file("x").c_str(), 3), 0);
  EXPECT_EQ(vi_write_grid(0, grid, 2, dir.file("x").c_str(), 0), 0);
  EXPECT_EQ(read_file(dir.file("x")), "");
}

TEST(LegacyFile, FillsWhatAShortFileLacksWithZeros) {
  const TempDir dir;
  OwnedGrid grid;
  fill(grid);
  const std::string name = dir.file("cut");
  MessageCapture quiet;
  ASSERT_EQ(vi_write_grid(0, grid, 1, name.c_str(), 3), 1);
  const std::string whole = read_file(name);
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    write_file(name, whole.substr(0, length));
    std::string padded = whole.substr(0, length);
    padded.resize(whole.size(), '\0');
    OwnedGrid back;
    ASSERT_EQ(vi_read_grid(0, &back, name.c_str()), 1) << length;
    EXPECT_EQ(0, std::memcmp(&back.xmid, padded.data(), 12));
    EXPECT_EQ(0, std::memcmp(&back.xdim, padded.data() + 20, 12));
    if (length < 36) continue;
    EXPECT_EQ(0, std::memcmp(back.floats, padded.data() + 36, 48)) << length;
    EXPECT_EQ(0, std::memcmp(back.integers, padded.data() + 84, 48)) << length;
  }
}

TEST(LegacyFile, RefusesSizesThatCannotBe) {
  const TempDir dir;
  const std::string name = dir.file("bad");
  struct Case {
    int xdim, ydim, zdim, selector;
    int result;
  };
  for (const Case& c : {Case{-2, 3, 4, 1, 0}, Case{-2, -3, 4, 1, 0}, Case{2, 3, -4, 9, 0},
                        Case{65536, 65536, 65536, 1, 0}, Case{2000, 1000, 1000, 1, 0},
                        Case{16777216, 1, 1, 1, 1},  // 64 MiB may be claimed for nothing,
                        Case{16777217, 1, 1, 1, 0},  // but no more,
                        Case{16777216, 1, 1, 3, 0},  // both blocks together
                        Case{0, 3, 4, 3, 1}}) {
    write_file(name, header(c.xdim, c.ydim, c.zdim, c.selector));
    OwnedGrid grid;
    grid.xdim = 77;
    const MessageCapture messages;
    EXPECT_EQ(vi_read_grid(0, &grid, name.c_str()), c.result) << c.xdim << ' ' << c.selector;
    EXPECT_EQ(messages.warned("Cannot open file " + name), c.result == 0);
    EXPECT_EQ(grid.xdim, c.result == 1 ? c.xdim : 77);
  }
  // A claim of 128 MiB stands on an eighth of it.
  write_file(name, header(32, 1024, 1024, 1) + std::string(std::size_t{8} << 20, '\x01'));
  OwnedGrid grid;
  ASSERT_EQ(vi_read_grid(0, &grid, name.c_str()), 1);
  EXPECT_NE(grid.floats[(2 << 20) - 1], 0.0f);
  EXPECT_EQ(grid.floats[2 << 20], 0.0f);
  EXPECT_EQ(grid.floats[(32 << 20) - 1], 0.0f);
}

TEST(LegacyFile, LivesThroughRandomBytes) {
  const TempDir dir;
  const std::string name = dir.file("random");
  std::mt19937 generator(11);
  MessageCapture quiet;
  int read = 0;
  for (int round = 0; round < 500; ++round) {
    std::string bytes(generator() % 200, '\0');
    for (char& byte : bytes)
      byte = static_cast<char>(generator() % 3 == 0 ? generator() : 0);
    write_file(name, bytes);
    OwnedGrid grid;
    read += vi_read_grid(0, &grid, name.c_str());
    EXPECT_TRUE(!grid.floats || grid.xdim > 0);
  }
  EXPECT_GT(read, 0);
}

}  // namespace
}  // namespace VXCore
