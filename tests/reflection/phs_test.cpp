#include <gtest/gtest.h>

#include <cmath>   // for isnan
#include <string>  // for string
#include <vector>  // for vector

#include "reflection/set_content.h"
#include "support/bad_input.h"
#include "vxgrid/reflection/phs.h"

namespace {

using namespace VXCore;
using namespace vxgrid_test;
using Values = std::vector<float>;

bool read_phs(const std::string& text, VXReflection& set) {
  return read_text(VXReadReflectionPHS, text, set);
}
bool read_hkl(const std::string& text, VXReflection& set) {
  return read_text(VXReadReflectionHKL, text, set);
}

std::string written(VXReflection& set) {
  vxosstream out;
  EXPECT_TRUE(VXWriteReflectionPHS(out, set));
  return out.str();
}

const std::string hkl_lines =
    "a title\n"
    "HKL 1 -2 3 10.5 0.25 90 0.75\n"
    "hkl 9 9 9 9 9 9 9\n"
    "HKL 4 5 6 7 8 9\n"
    "HKL 1 2 x 4 5 6 7\n"
    "HKLM\t0 0 +4 20 1 1000.0 0.5 and more\n"
    " HKL 9 9 9 9 9 9 9\n";

SetContent two_of_hkl() {
  return {{"h", {1, 0}},         {"k", {-2, 0}},        {"l", {3, 4}},      {"fobs", {10.5F, 20}},
          {"sigma", {0.25F, 1}}, {"phase", {90, 1000}}, {"fom", {0.75F, 0}}};
}

TEST(HklReflections, are_the_lines_of_the_keyword_with_all_seven_numbers) {
  VXReflection set = marked_set();
  EXPECT_TRUE(read_hkl(hkl_lines, set));
  EXPECT_EQ(content_of(set), two_of_hkl());
  for (const char* text : {"", "1 2 3 4 5 6 7\n", "HKL 1 2 3 4 5 6\n"}) {
    set = marked_set();
    EXPECT_FALSE(read_hkl(text, set)) << text;
    EXPECT_TRUE(is_cleared(set)) << text;
  }
}

TEST(HklReflections, go_by_the_name_of_phases_too) {
  VXReflection set;
  EXPECT_TRUE(read_phs("REMARK\n#\n\n" + hkl_lines.substr(hkl_lines.find("HKL")), set));
  EXPECT_EQ(content_of(set), two_of_hkl());
  // Behind a line of numbers the keyword has no meaning.
  EXPECT_TRUE(read_phs("1 2 3 4 0.5 6\nHKL 1 2 3 4 5 6 7\n", set));
  EXPECT_EQ(set.GetCount(), 1U);
}

TEST(Phases, have_a_fifth_column_that_is_told_by_its_mean) {
  struct Case {
    const char* first;
    const char* second;
    const char* column;
  };
  for (const Case& c :
       {Case{"0.5", "1.5", "fom"}, Case{"0.5", "1.50001", "fcalc"}, Case{"0.1", "0.9", "fom"},
        Case{"30", "-40", "fom"}, Case{"nan", "30", "fom"}, Case{"1e9", "-3", "fcalc"}}) {
    VXReflection set;
    ASSERT_TRUE(read_phs(std::string("1 2 3 10 ") + c.first + " 20\n4 5 6 11 " + c.second +
                             " 21 and words\n7 8 9 10 11\n",
                         set));
    const SetContent content = content_of(set);
    EXPECT_EQ(content.size(), 6U);
    ASSERT_EQ(content.count(c.column), 1U) << c.first << ' ' << c.second;
    EXPECT_EQ(content.at(c.column).at(1), std::stof(c.second));
    EXPECT_EQ(content.at("fobs"), (Values{10, 11}));
    EXPECT_EQ(content.at("h"), (Values{1, 4}));
  }
}

TEST(Phases, below_zero_are_raised_and_mark_the_free_set) {
  VXReflection set;
  ASSERT_TRUE(read_phs("1 1 1 1 1 -10\n1 1 2 1 1 10\n1 1 3 1 1 -0.0\n1 1 4 1 1 -400\n", set));
  EXPECT_EQ(content_of(set)["phase"], (Values{350, 10, 0, -40}));
  EXPECT_EQ(content_of(set)["rfree"], (Values{0, 1, 1, 0}));
  ASSERT_TRUE(read_phs("1 1 1 1 1 nan\n1 1 2 1 1 10\n", set));
  EXPECT_TRUE(std::isnan(content_of(set)["phase"].at(0)));
  EXPECT_EQ(content_of(set)["rfree"], (Values{0, 1}));
  ASSERT_TRUE(read_phs("1 1 1 1 1 0\n1 1 2 1 1 10\n", set));
  EXPECT_EQ(content_of(set).count("rfree"), 0U);
}

TEST(Phases, keep_coefficients_that_every_reflection_has) {
  const std::string whole = "1 1 1 1 1 10 0.5 -1.5 2.5 3.5\n";
  VXReflection set;
  ASSERT_TRUE(read_phs(whole + "not a reflection\n" + whole, set));
  EXPECT_EQ(content_of(set)["hlb"], (Values{-1.5F, -1.5F}));
  EXPECT_EQ(content_of(set)["hld"], (Values{3.5F, 3.5F}));
  for (const char* other : {"1 1 1 1 1 10\n", "1 1 1 1 1 10 1 2 3\n", "1 1 1 1 1 10 1 2 x 4\n"}) {
    ASSERT_TRUE(read_phs(whole + other, set));
    EXPECT_EQ(content_of(set).count("hla"), 0U) << other;
  }
}

TEST(Phases, are_read_from_the_first_256_characters_of_a_line) {
  VXReflection set;
  const std::string start = "1 2 3 4 5 ";
  ASSERT_TRUE(read_phs(start + std::string(245, ' ') + "6789\n", set));
  EXPECT_EQ(set.GetCount(), 1U);
  EXPECT_EQ(content_of(set)["phase"], Values{6});
  EXPECT_FALSE(read_phs(start + std::string(246, ' ') + "6 1 2 3 4 5 6 7\n", set));
}

TEST(Phases, that_are_bad_leave_the_set_alone_or_clear_it) {
  for (const char* text : {"", "REMARK 1 2 3 4 5 6\n", "1 2 3 4 5\n", "a b c\n"}) {
    VXReflection set = marked_set();
    EXPECT_FALSE(read_phs(text, set)) << text;
    EXPECT_TRUE(is_untouched(set)) << text;
  }
  for (const char* text :
       {"1 2 3 4 5 6\n1 2147483648 3 4 5 6\n", "HKL 1 2 99999999999 4 5 6 7\n"}) {
    VXReflection set = marked_set();
    EXPECT_FALSE(read_phs(text, set)) << text;
    EXPECT_TRUE(is_cleared(set)) << text;
  }
  VXReflection made = full_set();
  for (const std::string& whole : {written(made), hkl_lines}) {
    for_every_cut(whole, [](const std::string& cut, std::size_t length) {
      VXReflection set = marked_set();
      const bool has_phases = read_phs(cut, set);
      EXPECT_EQ(is_untouched(set) || is_cleared(set), !has_phases) << length;
      const bool has_lines = read_hkl(cut, set);
      EXPECT_EQ(is_cleared(set), !has_lines) << length;
    });
  }
}

TEST(Phases, are_written_in_fields_and_read_back) {
  VXReflection set = full_set();
  const std::string text = written(set);
  EXPECT_EQ(text.substr(0, text.find('\n')),
            "   -4    0   12     40.500      0.500     20.500 "
            "   150.50000   160.50000   170.50000   180.50000");
  VXReflection back;
  ASSERT_TRUE(read_phs(text, back));
  SetContent kept = content_of(set);
  for (const char* lost : {"phase_calc", "fcalc", "phiwt", "phidelwt", "fwt", "fdelwt", "sigma",
                           "centric", "rfree", "stolsq"})
    kept.erase(lost);
  EXPECT_EQ(content_of(back), kept);
}

TEST(Phases, are_not_written_without_what_a_line_needs) {
  namespace columns = VXReflectionColumn;
  for (const unsigned int missing : {columns::Fobs, columns::Phase, columns::FOM}) {
    VXReflection set = full_set();
    set.SetColumn(missing, static_cast<const float*>(nullptr), 3);
    vxosstream out;
    EXPECT_FALSE(VXWriteReflectionPHS(out, set)) << missing;
    EXPECT_EQ(out.str(), "");
  }
  VXReflection empty;
  VXReflection unindexed;
  unindexed.SetCount(1);
  const float one = 1;
  for (const unsigned int column : {columns::Fobs, columns::Phase, columns::FOM})
    unindexed.SetColumn(column, &one, 1);
  vxosstream out;
  EXPECT_FALSE(VXWriteReflectionPHS(out, empty));
  EXPECT_FALSE(VXWriteReflectionPHS(out, unindexed));
  EXPECT_EQ(out.str(), "");
}

}  // namespace
