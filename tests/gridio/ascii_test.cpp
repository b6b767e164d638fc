// Ascii grids: the exact text, what readers forgive, and what they say when they do not.
#include "vxgrid/gridio/ascii.h"

#include <gtest/gtest.h>

#include <array>    // for array
#include <string>   // for string
#include <utility>  // for pair
#include <vector>   // for vector

#include "support/bad_input.h"
#include "support/messages.h"
#include "vxgrid/toolkit/host/streams.h"

using namespace VXCore;
using vxgrid_test::MessageCapture;

namespace {

std::string written(const VXGrid<float>& grid) {
  VXHost::vxosstream out;
  EXPECT_TRUE(VXWriteAsciiGrid(out, grid));
  return out.str();
}

bool read(const std::string& text, VXGrid<float>& grid) {
  VXHost::vxisstream in(text);
  return VXReadAsciiGrid(in, grid);
}

TEST(AsciiGrid, is_written_in_fixed_columns_with_x_fastest) {
  float values[] = {0.0f, -1.5f, 1234567.0f, 1e-30f};
  const VXGrid<float> grid(2, 1, 2, 1.0f, -2.5f, 1000000.0f, 0.5f, "a title", values);
  EXPECT_EQ(written(grid),
            "Title: a title\n"
            "Mid:     1.000000    -2.500000 1000000.000000\n"
            "Dim:      2      1      2\n"
            "Spacing:     0.500000\n"
            "Values:\n"
            "0.000000e+00\n"
            "-1.500000e+00\n"
            "1.234567e+06\n"
            "1.000000e-30\n");
  EXPECT_EQ(written(VXGrid<float>()),
            "Title: \nMid:     0.000000     0.000000     0.000000\n"
            "Dim:      0      0      0\nSpacing:     0.000000\nValues:\n");
}

TEST(AsciiGrid, comes_back_with_seven_digits_and_a_tidied_title) {
  VXGrid<float> grid(3, 4, 5, 0.25f, 1.5f, -7.125f, 0.375f, " two\t  words ", nullptr);
  for (unsigned int i = 0; i < grid.GetSize(); ++i)
    grid[i] = 0.1f * static_cast<float>(i) - 3.0f;
  VXGrid<float> back;
  ASSERT_TRUE(read(written(grid), back));
  EXPECT_EQ(back.GetTitle(), "two words");
  EXPECT_EQ((std::array{back.GetXMid(), back.GetZMid(), back.GetSpacing()}),
            (std::array{0.25f, -7.125f, 0.375f}));
  ASSERT_EQ((std::array{back.GetXDim(), back.GetYDim(), back.GetZDim()}), (std::array{3u, 4u, 5u}));
  for (unsigned int i = 0; i < 60; ++i)
    EXPECT_NEAR(back[i], grid[i], 5e-7f);
}

const std::string head = "Title: t\nMid: 0 0 0\nDim: 2 1 1\nSpacing: 1\nValues:\n";

TEST(AsciiGrid, what_is_off_in_a_value_or_a_number_is_forgiven) {
  const MessageCapture heard;
  VXGrid<float> grid;
  ASSERT_TRUE(
      read("Title:\r\nMid: x 2 3e99\nDim: 2 1 1\nSpacing: ?\nValues:\n 1.5  \n1,5\nmore\n", grid));
  EXPECT_FALSE(grid.IsTitleSet());
  EXPECT_EQ((std::array{grid.GetXMid(), grid.GetYMid(), grid.GetZMid(), grid.GetSpacing(), grid[0],
                        grid[1]}),
            (std::array{0.0f, 2.0f, 0.0f, 0.0f, 1.5f, 0.0f}));
  ASSERT_EQ(heard.messages.size(), 1u);
  EXPECT_TRUE(heard.warned("Could not read floating point value from the text '1,5'"));

  EXPECT_TRUE(read("Title:\nMid: 0 0 0\nDim: 0 5 5\nSpacing: 1\nValues:\n", grid));
  EXPECT_EQ(grid.GetSize(), 0u);
}

TEST(AsciiGrid, a_line_that_is_not_as_it_should_be_is_named) {
  const std::pair<std::string, std::string> cases[] = {
      {"", "Title:"},
      {"title: t\n", "Title:"},
      {"Titles: t\n", "Title:"},
      {"Title: t\nMid: 0 0\n", "Mid:"},
      {"Title: t\nMid: 0 0 0\nDim: 1 2 3 4\n", "Dim:"},
      {"Title: t\nMid: 0 0 0\nDim: 1 2 3\nspacing: 1\n", "Spacing:"},
      {"Title: t\nMid: 0 0 0\nDim: 1 2 3\nSpacing: 1\nValues: 1\n", "Values:"}};
  for (const auto& [text, line] : cases) {
    const MessageCapture heard;
    VXGrid<float> grid;
    EXPECT_FALSE(read(text, grid));
    ASSERT_EQ(heard.messages.size(), 1u);
    EXPECT_TRUE(heard.warned("Problem reading " + line + " line in Ascii grid"));
  }
  const MessageCapture heard;
  VXGrid<float> grid;
  EXPECT_FALSE(read(head + "5\n", grid));
  ASSERT_EQ(heard.messages.size(), 2u);
  EXPECT_TRUE(heard.warned("Reached early end-of-file."));
  EXPECT_TRUE(heard.warned("Expected grid size: 2, found: 1"));
  EXPECT_EQ(grid.GetSize(), 2u);
  EXPECT_EQ(grid[0], 5.0f);
}

TEST(AsciiGrid, sizes_that_the_file_cannot_back_fail_at_its_end) {
  const std::pair<std::string, std::string> cases[] = {
      {"100000 100000 1", "Expected grid size: 0, found: 2"},  // no grid holds that many
      {"4294967295 4294967295 4294967295", "Expected grid size: 0, found: 2"},
      {"1000 1000 4000", "Expected grid size: 4000000000, found: 2"},
      {"-1 1 1", ""}};  // a dimension that does not convert is 0
  for (const auto& [dim, message] : cases) {
    const MessageCapture heard;
    VXGrid<float> grid;
    const std::string text = "Title: t\nMid: 0 0 0\nDim: " + dim + "\nSpacing: 1\nValues:\n1\n2\n";
    EXPECT_EQ(read(text, grid), message.empty()) << dim;
    EXPECT_EQ(grid.GetSize(), 0u) << dim;
    if (!message.empty()) {
      EXPECT_TRUE(heard.warned(message)) << dim;
    }
  }
}

TEST(AsciiGrid, no_input_does_harm) {
  const MessageCapture heard;
  const std::string valid = head + "-1.500000e+00\n2.500000e+00\n";
  vxgrid_test::for_every_cut(valid, [&](const std::string& cut, std::size_t length) {
    VXGrid<float> grid;
    // The last line is there as soon as its first character is.
    EXPECT_EQ(read(cut, grid), length > head.size() + 14) << length;
  });
  vxgrid_test::for_random_bytes(valid, 500, [&](const std::string& bytes) {
    VXGrid<float> grid;
    if (!read(bytes, grid)) return;
    EXPECT_LE(grid.GetSize(), bytes.size());
  });
}

}  // namespace
