// GRD files: the words in their order, everything a Brio grid holds through a round trip, and files
// that no writer made.
#include <gtest/gtest.h>

#include <array>             // for array
#include <bit>               // for bit_cast
#include <cmath>             // for sin
#include <cstdint>           // for uint32_t
#include <initializer_list>  // for initializer_list
#include <string>            // for string
#include <utility>           // for pair
#include <vector>            // for vector

#include "support/bad_input.h"
#include "support/messages.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/toolkit/host/streams.h"

using namespace VXCore;
using vxgrid_test::bytes_of;
using vxgrid_test::MessageCapture;
using vxgrid_test::number_at;

namespace {

std::string written(const VXBrioGrid& grid) {
  VXHost::vxosstream out;
  EXPECT_TRUE(VXWriteGrid(out, grid, VXGridFileType::GRD));
  return out.str();
}

bool read(const std::string& bytes, VXBrioGrid& grid) {
  VXHost::vxisstream in(bytes);
  return VXReadGrid(in, grid, VXGridFileType::GRD);
}

// A crystal grid of three float and two integer fields.
VXBrioGrid full_grid() {
  VXBrioGrid grid;
  grid.SetTitle("everything");
  grid.SetDim(3, 4, 5);
  grid.SetMid(1.0f, -2.0f, 3.5f);
  grid.SetUnitCell(30.0f, 41.0f, 52.0f, 80.0f, 95.0f, 107.0f, 60, 80, 100);
  grid.SetSpaceGroup(19);
  grid.SetType(4);
  grid.SetReentrant(true);
  grid.SetFloatsMultiple(3);
  grid.SetIntegersMultiple(2);
  for (unsigned int i = 0; i < grid.GetSize(); ++i) {
    for (unsigned int field = 0; field < 3; ++field)
      grid.GetFloats()[field][i] = std::sin(static_cast<float>(i + 100 * field));
    for (unsigned int field = 0; field < 2; ++field)
      grid.GetIntegers()[field][i] = static_cast<int>(i * 65537u) - static_cast<int>(field);
  }
  return grid;
}

// Words of the host; a text stands for its own bytes.
struct Piece {
  Piece(int word) : bytes(bytes_of(word)) {}
  Piece(float word) : bytes(bytes_of(word)) {}
  Piece(const char* text) : bytes(text) {}
  Piece(std::string text) : bytes(std::move(text)) {}
  std::string bytes;
};

std::string file_of(std::initializer_list<Piece> pieces) {
  std::string file;
  for (const Piece& piece : pieces)
    file += piece.bytes;
  return file;
}

std::string swapped(const std::string& words) {
  std::string result = words;
  for (std::size_t i = 0; i < words.size(); ++i)
    result[i] = words[i / 4 * 4 + 3 - i % 4];
  return result;
}

TEST(GrdFile, keeps_everything_a_brio_grid_holds) {
  const VXBrioGrid grid = full_grid();
  VXBrioGrid back;
  back.SetUnitCellFromSpacing(1.0f);
  ASSERT_TRUE(read(written(grid), back));
  EXPECT_EQ(back.GetTitle(), "everything");
  EXPECT_EQ((std::array{back.GetReentrant(), back.GetSpaceGroup(), back.GetType(), back.GetZDim(),
                        back.GetIntegers().GetZDim()}),
            (std::array{7u, 19u, 4u, 5u, 5u}));
  EXPECT_EQ((std::array{back.GetFloatsMultiple(), back.GetIntegersMultiple()}), (std::array{3, 2}));
  EXPECT_EQ(back.GetIntegers().GetZMid(), 3.5f);
  EXPECT_EQ(back.GetSpacing(), grid.GetSpacing());
  std::array<float, 9> there{}, here{};
  grid.GetOrientation(there.data());
  ASSERT_TRUE(back.GetOrientation(here.data()));
  EXPECT_EQ(here, there);
  // The file says all there is to say: the copy makes the same one.
  EXPECT_TRUE(written(back) == written(grid));
}

TEST(GrdFile, is_words_in_a_fixed_order) {
  VXBrioGrid grid;
  grid.SetTitle("t");
  grid.SetDim(2, 1, 1);
  grid.GetFloats().SetXMid(1.5f);
  grid.GetFloats().SetSpacing(0.5f);
  grid.GetValues()[1] = 7.0f;
  const std::string crystal(36, '\0');
  const std::string title = "t" + std::string(77, ' ') + std::string(2, '\0');
  const std::string expected = file_of({1, title, 1, 1.5f, 0, 0, 1, 0.5f}) +
                               file_of({1, 2, 1, 1, 1, 1, 1, 0.0f, 7.0f}) +
                               file_of({1, 0, 0, 0, 1, 1, 1, 1, crystal, 0, 0});
  EXPECT_TRUE(written(grid) == expected);

  grid.SetTitle(std::string(100, 'x'));
  EXPECT_EQ(written(grid).substr(4, 80), std::string(78, 'x') + std::string(2, '\0'));
  EXPECT_EQ(written(grid).size(), expected.size());
  EXPECT_EQ(number_at<int>(written(VXBrioGrid()), 0), 0);
}

TEST(GrdFile, reentrant_flags_pass_through_the_signs_of_dimensions) {
  for (const auto& [flags, back_flags] :
       {std::pair{0u, 0u}, {1u, 5u}, {2u, 6u}, {3u, 7u}, {4u, 0u}, {5u, 5u}, {7u, 7u}}) {
    VXBrioGrid grid;
    grid.SetDim(2, 3, 4);
    if (flags & 1u) grid.SetXReentrant();
    if (flags & 2u) grid.SetYReentrant();
    if (flags & 4u) grid.SetZReentrant();
    VXBrioGrid back;
    ASSERT_TRUE(read(written(grid), back));
    EXPECT_EQ(back.GetReentrant(), back_flags) << flags;
    EXPECT_EQ(back.GetZDim(), 4u);
  }
}

TEST(GrdFile, titles_lose_the_blanks_behind_them_and_stay_when_there_is_nothing_else) {
  const std::string zeros(2, '\0');
  const auto rest = file_of({0, 0, 0, 0, 1, 2, 1, 1, 1, 1, 1, 3.0f, 4.0f, 0, 0, 0, 1, 0, 1});
  const std::pair<std::string, std::string> cases[] = {
      {"a b \t\r\n" + std::string(71, ' ') + zeros, "a b"},
      {std::string(78, ' ') + zeros, std::string(78, ' ')},
      {std::string(78, 'x') + zeros, std::string(78, 'x')},
      {std::string("ab\0cd", 5) + std::string(75, ' '), "ab"},
      {std::string(80, '\0'), ""}};
  for (const auto& [block, title] : cases) {
    VXBrioGrid grid;
    ASSERT_TRUE(read(file_of({1, block}) + rest, grid));
    EXPECT_EQ(grid.GetTitle(), title);
    EXPECT_EQ(grid.GetValues()[1], 4.0f);
    EXPECT_FALSE(grid.HasUnitCell());
  }
}

TEST(GrdFile, numbers_are_turned_around_when_the_state_of_xmid_says_so) {
  const auto n = [](auto... values) { return (swapped(bytes_of(values)) + ...); };
  const std::string other =
      file_of({0, 2}) + n(1.5f) + file_of({0, 2}) + n(2.5f) + bytes_of(1) + n(0.5f) + bytes_of(2) +
      n(2) + bytes_of(1) + n(-1) + bytes_of(2) + n(1) + bytes_of(2) + n(3.0f, 4.0f) + bytes_of(1) +
      n(-5, 6) + file_of({0, 1}) + n(2) + bytes_of(7) +
      n(1, 8.0f, 9.0f, 10.0f, 11.0f, 12.0f, 90.0f, 90.0f, 90.0f, 5, 6, 8, 19, 3);
  VXBrioGrid grid;
  ASSERT_TRUE(read(other, grid));
  EXPECT_EQ(grid.GetXMid(), 1.5f);
  EXPECT_EQ(grid.GetZMid(), 2.5f);
  EXPECT_EQ(grid.GetReentrant(), 2u);
  EXPECT_EQ(grid.GetFloats()[0][1], 4.0f);
  EXPECT_EQ(grid.GetFloats()[1][0], 8.0f);
  EXPECT_EQ(grid.GetIntegers()[0][0], -5);
  EXPECT_EQ(grid.GetSpaceGroup(), 19u);
  EXPECT_EQ(grid.GetType(), 3u);
  // The cell of 10 over 5 and so on sets the spacing anew.
  EXPECT_EQ(grid.GetSpacing(), 1.5f);

  // Without an xmid nothing is turned, whatever the other states say.
  ASSERT_TRUE(read(
      file_of({0, 0, 2, 2.5f, 0, 0, 1, 2, 1, 1, 1, 1, 2, 3.0f, 4.0f, 0, 0, 0, 1, 0, 1}), grid));
  EXPECT_EQ(grid.GetYMid(), 2.5f);
  EXPECT_EQ(grid.GetValues()[0], 3.0f);
}

TEST(GrdFile, cut_anywhere_it_fails_but_for_the_place_where_old_files_end) {
  const std::string whole = written(full_grid());
  const std::size_t crystal_bytes = 36 + 8;
  vxgrid_test::for_every_cut(whole, [&](const std::string& cut, std::size_t length) {
    const MessageCapture heard;
    VXBrioGrid grid;
    const bool is_old_file = length == whole.size() - crystal_bytes;
    ASSERT_EQ(read(cut, grid), is_old_file) << length;
    ASSERT_EQ(heard.messages.size(), is_old_file ? 0u : 1u) << length;
    EXPECT_EQ(heard.warned("Problem reading GRD grid file"), !is_old_file);
  });
}

TEST(GrdFile, bad_states_dimensions_and_counts_are_refused) {
  const std::string start = file_of({0, 0, 0, 0, 0});
  const std::string field = file_of({1, 3.0f, 4.0f});
  const struct {
    std::string file;
    std::vector<std::string> warnings;
  } cases[] = {
      {file_of({3}), {"Corrupt state read from GRD file: 3"}},
      {file_of({0, 2147483647}), {"Corrupt state read from GRD file: 2147483647"}},
      {start + file_of({1, 100000, 1, 100000, 1, 1, 1}),
       {"Grid dimensions too large for memory size: 100000 x 100000",
        "Attempting to read a grid with bad dimensions: 100000 x 100000 x 1"}},
      {start + file_of({1, 50000, 1, 40000, 1, 40000, 1}),
       {"Grid dimensions too large for memory size: 2000000000 x 40000",
        "Attempting to read a grid with bad dimensions: 50000 x 40000 x 40000"}},
      {start + file_of({1, 0, 1, 2, 1, 2, 1}),
       {"Attempting to read a grid with bad dimensions: 0 x 2 x 2"}},
      {start + file_of({1, -2147483647 - 1, 1, 1, 1, 1, 1}),
       {"Attempting to read a grid with bad dimensions: -2147483648 x 1 x 1"}},
      // A sign counts only where floats follow.
      {start + file_of({1, -2, 1, 1, 1, 1, 0, 1, 5, 6}),
       {"Attempting to read a grid with bad dimensions: -2 x 1 x 1"}},
      // A gigabyte that is not there.
      {start + file_of({1, 1024, 1, 1024, 1, 256, 1, 1.0f}), {}},
      // No fields of a kind, more than any grid has, and more than the file has.
      {start + file_of({1, 2, 1, 1, 1, 1}) + field + file_of({0, 0, 0, 0, 0, 1}), {}},
      {start + file_of({1, 2, 1, 1, 1, 1}) + field + file_of({0, 0, 0, -1, 0, 1}), {}},
      {start + file_of({1, 2, 1, 1, 1, 1}) + field + file_of({0, 0, 0, 60000, 0, 1, 1.0f}), {}},
      {start + file_of({1, 2, 1, 1, 1, 1}) + field + file_of({0, 0, 0, 1, 0, 0}), {}},
      {start + file_of({1, 0, 1, 0, 1, 0, 0, 0, 0, 0, 2, 0, 1}),
       {"Attempting to read a grid with bad dimensions: 0 x 0 x 0"}}};
  for (const auto& c : cases) {
    const MessageCapture heard;
    VXBrioGrid grid;
    EXPECT_FALSE(read(c.file, grid));
    ASSERT_EQ(heard.messages.size(), c.warnings.size() + 1);
    for (std::size_t i = 0; i < c.warnings.size(); ++i)
      EXPECT_EQ(heard.messages[i].second, c.warnings[i]);
    EXPECT_EQ(heard.messages.back().second, "Problem reading GRD grid file");
  }
}

TEST(GrdFile, a_grid_without_points_comes_back_with_a_warning) {
  VXBrioGrid grid;
  grid.SetTitle("empty");
  grid.SetMid(1.0f, 2.0f, 3.0f);
  grid.SetSpacing(0.5f);
  grid.SetType(2);
  const MessageCapture heard;
  VXBrioGrid back;
  ASSERT_TRUE(read(written(grid), back));
  ASSERT_EQ(heard.messages.size(), 1u);
  EXPECT_TRUE(heard.warned("Attempting to read a grid with bad dimensions: 0 x 0 x 0"));
  EXPECT_TRUE(written(back) == written(grid));
}

TEST(GrdFile, random_bytes_do_no_harm) {
  const MessageCapture heard;
  vxgrid_test::for_random_bytes(written(full_grid()), 2000, [](const std::string& bytes) {
    VXBrioGrid grid;
    read(bytes, grid);
    EXPECT_LE(grid.GetFloatsMultiple(), 65536);
  });
}

}  // namespace
