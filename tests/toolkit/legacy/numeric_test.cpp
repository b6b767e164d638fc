// Rounding, numbers in a text, and the lines of the flat interface.
#include "vxgrid/toolkit/legacy/numeric.h"

#include <gtest/gtest.h>

#include <limits>   // for numeric_limits
#include <tuple>    // for tuple
#include <utility>  // for pair

#include "support/messages.h"
#include "vxgrid/toolkit/legacy/messages.h"

using namespace VXBrioMol;

namespace {

TEST(NearestInteger, rounds_halves_away_and_gives_zero_for_what_fits_no_int) {
  const std::pair<float, int> cases[] = {{0.5f, 1},  //
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
  for (const auto& [value, nearest] : cases)
    EXPECT_EQ(vi_nint(value), nearest) << value;
  EXPECT_TRUE(vi_IsZero(-1.0e-6f));
  EXPECT_FALSE(vi_IsZero(2.0e-6f));
  EXPECT_FALSE(vi_IsZero(std::numeric_limits<float>::quiet_NaN()));
}

TEST(NumbersInText, are_counted_outside_of_words_only) {
  const std::tuple<const char*, int, int> cases[] = {
      {"", 0, 0},
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
  for (const auto& [text, count, first_end] : cases) {
    EXPECT_EQ(vx_number_of_numbers_in_a_string(text), count) << text;
    EXPECT_EQ(vx_end_position_of_number_in_string(text), first_end) << text;
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

}  // namespace
