#include <gtest/gtest.h>

#include <array>   // for array
#include <cmath>   // for isinf
#include <limits>  // for numeric_limits
#include <string>  // for string
#include <vector>  // for vector

#include "reflection/set_content.h"
#include "support/bad_input.h"
#include "vxgrid/reflection/xplor.h"

namespace {

using namespace VXCore;
using namespace vxgrid_test;
using Values = std::vector<float>;

bool read(const std::string& text, VXReflection& set) {
  return read_text(VXReadReflectionXPLOR, text, set);
}

std::string written(VXReflection& set) {
  vxosstream out;
  EXPECT_TRUE(VXWriteReflectionXPLOR(out, set));
  return out.str();
}

std::string first_line(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

// Drops everything but the indices and these columns.
void keep_columns(VXReflection& set, const std::vector<std::string>& kept) {
  for (const auto& [name, column] : named_columns()) {
    if (std::find(kept.begin(), kept.end(), name) != kept.end()) continue;
    set.SetColumn(column, static_cast<const float*>(nullptr), set.GetCount());
    set.SetColumn(column, static_cast<const int*>(nullptr), set.GetCount());
  }
  if (std::find(kept.begin(), kept.end(), "hla") == kept.end())
    set.SetABCD(nullptr, nullptr, nullptr, nullptr, set.GetCount());
}

TEST(XplorReflections, are_records_of_one_line_or_more) {
  const SetContent expected = {{"h", {1, 4}},         {"k", {-2, 5}},       {"l", {3, 6}},
                               {"fobs", {10.5F, 20}}, {"phase", {90, 180}}, {"fom", {0.5F, 0.25F}}};
  for (const char* text :
       {"INDE 1 -2 3 FOBS= 10.5 90 FOM= 0.5\nINDE 4 5 6 FOBS= 20 180 FOM= 0.25\n",
        "NREFlection= 2\nANOMalous=FALSe { equiv. to HERMitian=TRUE}\n"
        " index= 1 -2 3 fobs= 10.5 90\n   Fom= 0.5\n"
        "# inde 9 9 9\nINDE\t4 5 6\n\nFOBS= 2E+1\n1.8e2 FOM= 0.25 and more words",
        "inde 1 -2 3 phase= 90 fobs= 10.5 fom= 0.5\r\nINDE 4 5 6 x 180 x 20 x 0.25"}) {
    VXReflection set = marked_set();
    EXPECT_TRUE(read(text, set)) << text;
    EXPECT_EQ(content_of(set), expected) << text;
  }
}

TEST(XplorReflections, take_the_places_of_their_values_from_the_first_record) {
  VXReflection set;
  ASSERT_TRUE(
      read("INDE 1 2 3 FCALC= 7 SIGMA= 2 TEST= 1 FOM= 0.5\n"
           "INDE 4 5 6 FOM= 0.75 FCALC= 8 TEST= 1 SIGMA= 9\n"
           "INDE 4 5 x FCALC= 1 SIGMA= 2 TEST= 1 FOM= 0.5\n"
           "INDE 7 8 9\n",
           set));
  const SetContent expected = {{"h", {1, 4, 7}},        {"k", {2, 5, 8}},
                               {"l", {3, 6, 9}},        {"fcalc", {7, 0.75F, 0}},
                               {"sigma", {0.5F, 9, 0}}, {"fom", {0.5F, 9, 0}}};
  EXPECT_EQ(content_of(set), expected);
  // The phase stands behind fobs, as a number or not, unless it came before.
  ASSERT_TRUE(read("INDE 1 2 3 FOBS= 10 SIGMA= 2", set));
  EXPECT_EQ(content_of(set)["phase"], Values{0});
  EXPECT_EQ(content_of(set)["sigma"], Values{0});
  ASSERT_TRUE(read("INDE 1 2 3 FOBS= 10 40 PHASE= 50", set));
  EXPECT_EQ(content_of(set)["phase"], Values{50});
}

TEST(XplorReflections, repeat_fom_as_sigma_and_coefficients) {
  const std::string record = "INDE 1 2 3 SIGMA= 9 FOM= 0.5 HLA= 1 HLB= 2 HLC= 3";
  VXReflection set;
  ASSERT_TRUE(read(record + " HLD= 4", set));
  for (const char* column : {"sigma", "fom", "hla", "hlb", "hlc", "hld"})
    EXPECT_EQ(content_of(set)[column], Values{0.5F}) << column;
  ASSERT_TRUE(read(record, set));
  EXPECT_EQ(content_of(set).count("hla"), 0U);
}

TEST(XplorReflections, have_bounds_for_words_and_characters) {
  const auto fobs_of = [](const std::string& start) {
    VXReflection set;
    EXPECT_TRUE(read(start + " FOBS= 12345 0\n", set));
    return content_of(set)["fobs"];
  };
  std::string words = "INDE 1 2 3";
  for (int i = 0; i < 19; ++i)
    words += " x";
  EXPECT_EQ(fobs_of(words), Values{12345});  // word 25
  EXPECT_EQ(fobs_of(words + " x"), Values{0});
  const std::string record = "INDE 1 2 3";
  const auto padded = [&](std::size_t size) {
    return record + std::string(size - record.size(), ' ');
  };
  EXPECT_EQ(fobs_of(padded(1012)), Values{12345});  // ends with character 1024
  EXPECT_EQ(fobs_of(padded(1015)), Values{12});
}

TEST(XplorReflections, that_are_bad_leave_the_set_alone_or_clear_it) {
  for (const char* text :
       {"", "1 2 3\n", "# INDE 1 2 3\n", "INDE 1 2\n", "INDE\n", "FOBS= 1 2\n"}) {
    VXReflection set = marked_set();
    EXPECT_FALSE(read(text, set)) << text;
    EXPECT_TRUE(is_untouched(set)) << text;
  }
  VXReflection set = marked_set();
  EXPECT_FALSE(read("INDE 1 2 3\nINDE 1 2 -2147483649\n", set));
  EXPECT_TRUE(is_cleared(set));
  VXReflection made = full_set();
  for_every_cut(written(made), [](const std::string& cut, std::size_t length) {
    VXReflection cut_set = marked_set();
    const bool is_read = read(cut, cut_set);
    EXPECT_EQ(is_untouched(cut_set), !is_read) << length;
  });
}

TEST(XplorReflections, are_written_as_pieces_of_what_the_set_has) {
  const std::string inde = "INDE    -4    0   12 ";
  struct Case {
    std::vector<std::string> columns;
    const char* pieces;
  };
  for (const Case& c : std::vector<Case>{
           {{}, ""},
           {{"fobs"}, ""},
           {{"phase"}, ""},
           {{"fobs", "phase"}, "FOBS=    40.50000    20.50000 "},
           {{"fcalc"}, ""},
           {{"fcalc", "phase_calc"}, "FCALC=    50.50000    30.50000 "},
           {{"sigma"}, "SIGMa= 100.50000"},
           {{"fom"}, "FOM=  0.50000 "},
           {{"rfree"}, "TEST= 1 "},
           {{"stolsq"}, "RESO=     5.00000 "},
           {{"hla"}, "HLA=   150.50000 HLB=   160.50000 HLC=   170.50000 HLD=   180.50000 "},
           {{"fwt", "fdelwt", "phiwt", "phidelwt", "centric"}, ""}}) {
    VXReflection set = full_set();
    keep_columns(set, c.columns);
    EXPECT_EQ(first_line(written(set)), inde + c.pieces);
  }
}

TEST(XplorReflections, are_cut_to_the_width_of_a_piece) {
  VXReflection set = full_set();
  keep_columns(set, {"fobs", "phase", "rfree", "stolsq"});
  set.SetHKLElement(-123456, 1, 2, 0);
  set.SetFobsElement(-1234567, 0);
  set.SetRFreeElement(-15, 0);
  set.SetStolsqElement(0, 0);
  EXPECT_EQ(first_line(written(set)),
            "INDE -123456    1    "
            "FOBS= -1234567.00000    20.500"
            "TEST= -1"
            "RESO=         inf ");
}

TEST(XplorReflections, are_read_back_but_for_what_repeats_fom) {
  VXReflection set = full_set();
  set.SetSigma(std::array{1.5F, 2.5F, 3.5F}.data(), 3);
  VXReflection back;
  ASSERT_TRUE(read(written(set), back));
  SetContent kept = content_of(set);
  for (const char* repeating : {"sigma", "hla", "hlb", "hlc", "hld"})
    kept[repeating] = kept["fom"];
  for (const char* lost :
       {"phase_calc", "phiwt", "phidelwt", "fwt", "fdelwt", "centric", "rfree", "stolsq"})
    kept.erase(lost);
  EXPECT_EQ(content_of(back), kept);
}

TEST(XplorReflections, are_not_written_without_indices) {
  VXReflection empty;
  VXReflection unindexed;
  unindexed.SetCount(std::numeric_limits<unsigned int>::max());
  vxosstream out;
  EXPECT_FALSE(VXWriteReflectionXPLOR(out, empty));
  EXPECT_FALSE(VXWriteReflectionXPLOR(out, unindexed));
  EXPECT_EQ(out.str(), "");
}

}  // namespace
