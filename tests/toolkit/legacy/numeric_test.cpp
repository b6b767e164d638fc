// Rounding, numbers in a text, boxes, and the lines of the flat interface.
#include "vxgrid/toolkit/legacy/numeric.h"

#include <gtest/gtest.h>

#include <array>    // for array
#include <cstring>  // for memset
#include <limits>   // for numeric_limits

#include "support/messages.h"
#include "support/temp_dir.h"
#include "vxgrid/toolkit/legacy/messages.h"

using namespace VXBrioMol;

namespace {

TEST(NearestInteger, rounds_halves_away_and_gives_zero_for_what_fits_no_int) {
  const struct {
    float value;
    int nearest;
  } cases[] = {{0.5f, 1},
               {-0.5f, -1},
               {0.49999997f, 0},
               {2.4f, 2},
               {-2.6f, -3},
               {2147483520.0f, 2147483520},
               {2147483648.0f, 0},
               {-2147483648.0f, std::numeric_limits<int>::min()},
               {-2147483904.0f, 0},
               {std::numeric_limits<float>::infinity(), 0},
               {std::numeric_limits<float>::quiet_NaN(), 0}};
  for (const auto& c : cases)
    EXPECT_EQ(vi_nint(c.value), c.nearest) << c.value;
  EXPECT_TRUE(vi_IsZero(-1.0e-6f));
  EXPECT_FALSE(vi_IsZero(2.0e-6f));
  EXPECT_FALSE(vi_IsZero(std::numeric_limits<float>::quiet_NaN()));
}

TEST(NumbersInText, are_counted_outside_of_words_only) {
  const struct {
    const char* text;
    int count, first_end;
  } cases[] = {{"", 0, 0},
               {"  no numbers, -.e5 here", 0, 0},
               {"       2 !NTITLE", 1, 8},
               {"map1 x2.5 _3", 0, 0},
               {" 1 2 3 4", 4, 2},
               {"100-10-12", 3, 3},
               {" 0.40960E+02 0.18650E+02-0.22520E+02", 3, 12},
               {".5 5. +5 -5e3 1e", 5, 2},
               {"1.0D+02 7", 2, 3},
               {"nan inf 0x1F", 1, 9},
               {"--5", 1, 3}};
  for (const auto& c : cases) {
    EXPECT_EQ(vx_number_of_numbers_in_a_string(c.text), c.count) << c.text;
    EXPECT_EQ(vx_end_position_of_number_in_string(c.text), c.first_end) << c.text;
  }
  EXPECT_EQ(vx_number_of_numbers_in_a_string(nullptr), 0);
  EXPECT_EQ(vx_end_position_of_number_in_string(nullptr), 0);
}

TEST(LabelPosition, counts_from_one) {
  EXPECT_EQ(vi_sindex("accessible surface", "accessible"), 1);
  EXPECT_EQ(vi_sindex("an accessible", "accessible"), 4);
  EXPECT_EQ(vi_sindex("access", "accessible"), 0);
  EXPECT_EQ(vi_sindex(nullptr, "a"), 0);
}

TEST(BoxOfPoints, spans_all_of_them) {
  const std::array<float, 9> points{1, 5, -2, 3, -1, 0, 2, 2, 2};
  std::array<float, 3> low, high;
  vx_get_box_size(points.data(), 3, low.data(), high.data());
  EXPECT_EQ(low, (std::array<float, 3>{1, -1, -2}));
  EXPECT_EQ(high, (std::array<float, 3>{3, 5, 2}));
  vx_get_box_size(nullptr, 0, low.data(), high.data());
  EXPECT_EQ(low, (std::array<float, 3>{}));
  EXPECT_EQ(high, low);
}

TEST(Lines, reach_the_error_handler_once_without_their_line_end) {
  using Level = VXCore::VXErrorLevel;
  const vxgrid_test::MessageCapture heard;
  EXPECT_EQ(vx_printf(" runs from: x=%d to %d\n", 3, 7), 21);
  vi_warning("grid as a zero %s\n", "spacing");
  vi_warning("%s", "100%d of it");
  vi_warning_print("100%d of it\n");
  ASSERT_EQ(heard.messages.size(), 4u);
  EXPECT_TRUE(heard.has(Level::Info, " runs from: x=3 to 7"));
  EXPECT_TRUE(heard.warned("grid as a zero spacing"));
  EXPECT_EQ(heard.messages[2].second, "100%d of it");
  EXPECT_EQ(heard.messages[3].second, "100%d of it");
}

TEST(PlainHandles, open_close_and_free_take_null) {
  const vxgrid_test::TempDir folder;
  std::FILE* const file = vi_fopen(folder.file("x").c_str(), "wb");
  ASSERT_TRUE(file);
  EXPECT_EQ(vi_fclose(file), 0);
  EXPECT_EQ(vi_fopen(nullptr, "rb"), nullptr);
  EXPECT_EQ(vi_fclose(nullptr), 0);
  void* const block = vx_malloc(100);
  ASSERT_TRUE(block);
  std::memset(block, 1, 100);
  vx_free(block);
  vx_free(nullptr);
}

}  // namespace
