#include <gtest/gtest.h>

#include <algorithm>       // for remove
#include <cmath>           // for isnan, sqrt
#include <gemmi/cif.hpp>   // for read_file
#include <gemmi/numb.hpp>  // for as_number
#include <string>          // for string, to_string
#include <vector>          // for vector

#include "reflection/set_content.h"
#include "support/bad_input.h"
#include "support/shared_data.h"
#include "vxgrid/reflection/cif.h"

namespace {

using namespace VXCore;
using namespace vxgrid_test;

bool read(const std::string& text, VXReflection& set) {
  return read_text(VXReadReflectionCIF, text, set);
}

std::string loop_of(const std::vector<std::string>& items, const std::string& rows) {
  std::string text = "data_made\n_cell.length_a 10\n#\nloop_\n";
  for (const std::string& item : items)
    text += "_refln." + item + "\n";
  return text + rows;
}

const std::vector<std::string> all_items = {"index_h",      "index_k",    "index_l",
                                            "F_meas_sigma", "F_meas",     "F_calc",
                                            "phase_meas",   "phase_calc", "fom"};
const std::string two_rows =
    "1 -2 3 0.5 10.25 9.5 90 -45 0.75\n"
    "4\t0  0 1.5 20 19 180.0 30 1e-1\n";

SetContent both_rows() {
  return {{"h", {1, 4}},          {"k", {-2, 0}},
          {"l", {3, 0}},          {"sigma", {0.5F, 1.5F}},
          {"fobs", {10.25F, 20}}, {"fcalc", {9.5F, 19}},
          {"phase", {90, 180}},   {"phase_calc", {-45, 30}},
          {"fom", {0.75F, 0.1F}}};
}

TEST(CifReflections, are_read_with_every_item_up_to_the_end_of_their_loop) {
  std::vector<std::string> other_spelling = all_items;
  for (std::string& item : other_spelling) {
    if (item.front() == 'F') item.front() = 'f';
  }
  const std::string other_loop = "1 1 1 1 1 1 1 1 1\n";
  const std::vector<std::string> texts = {
      loop_of(all_items, two_rows),
      loop_of(other_spelling, two_rows),
      loop_of(all_items, "# 9 9 9 9 9 9 9 9 9\n" + two_rows + "\n#END\n"),
      loop_of(all_items, "_refln_of.another_kind\n" + two_rows),
      loop_of(all_items, two_rows + "loop_\n" + other_loop),
      loop_of(all_items, two_rows + "_refln.details x\n" + other_loop),
      loop_of(all_items, two_rows + "data_other\nwords that are not numbers at all\n")};
  for (const std::string& text : texts) {
    VXReflection set = marked_set();
    EXPECT_TRUE(read(text, set)) << text;
    EXPECT_EQ(content_of(set), both_rows()) << text;
    EXPECT_EQ(set.GetTitle(), "");
  }
}

TEST(CifReflections, take_the_last_tag_that_matches_for_the_amplitude) {
  const auto fobs_of = [](const std::vector<std::string>& items, const std::string& row) {
    VXReflection set;
    EXPECT_TRUE(read(loop_of(items, row + "\n"), set));
    return content_of(set)["fobs"];
  };
  using Values = std::vector<float>;
  const std::string hkl = "1 2 3 ";
  const auto items = [](std::vector<std::string> others) {
    others.insert(others.begin(), {"index_h", "index_k", "index_l"});
    return others;
  };
  EXPECT_EQ(fobs_of(items({"F_meas_au", "F_meas_sigma_au"}), hkl + "10 2"), Values{2});
  EXPECT_EQ(fobs_of(items({"F_meas_sigma_au", "F_meas_au"}), hkl + "2 10"), Values{10});
  // An intensity serves where there is no amplitude, tag or number.
  const auto squared = items({"F_meas_sigma", "F_squared_meas", "F_meas"});
  EXPECT_EQ(fobs_of(squared, hkl + "2 49 ?"), Values{7});
  EXPECT_EQ(fobs_of(squared, hkl + "2 49 10"), Values{10});
  EXPECT_EQ(fobs_of(squared, hkl + "2 . ?"), Values{0});
  EXPECT_TRUE(std::isnan(fobs_of(squared, hkl + "2 -49 ?").at(0)));
}

TEST(CifReflections, count_when_indices_and_sigma_are_numbers) {
  VXReflection set;
  ASSERT_TRUE(read(loop_of(all_items,
                           "? 1 1 1 1 1 1 1 1\n"
                           "1 1 1 ? 1 1 1 1 1\n"
                           "1 1\n"
                           "5 6.5 7x 0.25 ? . abc nan\n"
                           "\n"
                           "8 9 +10 1e99 1e99 12.5(3)\n"),
                   set));
  SetContent content = content_of(set);
  EXPECT_TRUE(std::isnan(content["phase_calc"].at(0)));
  content["phase_calc"][0] = -1;
  const SetContent expected = {
      {"h", {5, 8}},         {"k", {6, 9}},           {"l", {7, 10}},
      {"sigma", {0.25F, 0}}, {"fobs", {0, 0}},        {"fcalc", {0, 12.5F}},
      {"phase", {0, 0}},     {"phase_calc", {-1, 0}}, {"fom", {0, 0}}};
  EXPECT_EQ(content, expected);
}

TEST(CifReflections, have_bounds_for_lines_and_words) {
  const auto count_of = [](std::size_t sigma_at, const std::string& filler) {
    std::vector<std::string> items = {"index_h", "index_k", "index_l", "F_squared_meas"};
    std::string row = "1 2 3 4";
    while (items.size() < sigma_at) {
      items.push_back("filler_" + std::to_string(items.size()));
      row += filler;
    }
    items.push_back("F_meas_sigma");
    VXReflection set;
    read(loop_of(items, row + " 5\n6 7 8 9" + std::string(300, ' ') + "1 2 3 4 5\n"), set);
    return set.GetCount();
  };
  EXPECT_EQ(count_of(24, " 0"), 1U);
  EXPECT_EQ(count_of(25, " 0"), 0U);
  EXPECT_EQ(count_of(5, " " + std::string(118, '0')), 1U);  // sigma is character 128
  EXPECT_EQ(count_of(5, " " + std::string(119, '0')), 0U);
}

std::vector<std::string> items_without(const std::string& item) {
  std::vector<std::string> items = all_items;
  items.erase(std::remove(items.begin(), items.end(), item), items.end());
  return items;
}

TEST(CifReflections, need_indices_sigma_and_an_amplitude) {
  for (const char* missing : {"index_h", "index_k", "index_l", "F_meas_sigma"}) {
    VXReflection set = marked_set();
    EXPECT_FALSE(read(loop_of(items_without(missing), two_rows), set)) << missing;
    EXPECT_TRUE(is_untouched(set)) << missing;
  }
  // A tag of sigma alone stands for an amplitude as well.
  VXReflection set;
  EXPECT_TRUE(read(loop_of(items_without("F_meas"), two_rows), set));
  for (const std::string& text : {std::string(), std::string("data_x\n"), loop_of(all_items, ""),
                                  loop_of(all_items, "? ? ?\n"), loop_of({}, two_rows)}) {
    set = marked_set();
    EXPECT_FALSE(read(text, set)) << text;
    EXPECT_TRUE(is_untouched(set)) << text;
  }
}

TEST(CifReflections, are_refused_with_an_index_beyond_an_int) {
  VXReflection set = marked_set();
  EXPECT_TRUE(read(loop_of(all_items, "2147483647 -2147483648 0 1 1 1 1 1 1\n"), set));
  EXPECT_FALSE(read(loop_of(all_items, two_rows + "1 2147483648 0 1 1 1 1 1 1\n"), set));
  EXPECT_TRUE(is_cleared(set));
}

TEST(CifReflections, cut_anywhere_leave_no_half_row) {
  const std::string text = loop_of(all_items, two_rows);
  for_every_cut(text, [](const std::string& cut, std::size_t length) {
    VXReflection set = marked_set();
    if (!read(cut, set)) {
      EXPECT_TRUE(is_untouched(set)) << length;
      return;
    }
    EXPECT_EQ(content_of(set).size(), 9U) << length;
    EXPECT_EQ(content_of(set)["h"].at(0), 1) << length;
  });
}

TEST(CifReflections, of_a_deposited_file_are_those_that_gemmi_finds) {
  if (!has_shared_data("5wkd-sf.cif")) GTEST_SKIP() << missing_data("5wkd-sf.cif");
  VXReflection set;
  vxifstream stream(shared_data("5wkd-sf.cif"));
  ASSERT_TRUE(VXReadReflectionCIF(stream, set));

  gemmi::cif::Document document = gemmi::cif::read_file(shared_data("5wkd-sf.cif"));
  const std::vector<std::pair<std::string, std::string>> tags = {
      {"h", "index_h"},
      {"k", "index_k"},
      {"l", "index_l"},
      {"sigma", "F_meas_sigma_au"},
      {"fobs", "F_meas_sigma_au"},  // stands behind F_meas_au
      {"fcalc", "F_calc_au"},
      {"phase_calc", "phase_calc"},
      {"fom", "fom"}};
  SetContent expected;
  for (const auto row : document.sole_block().find(
           "_refln.", {tags[0].second, tags[1].second, tags[2].second, tags[3].second,
                       tags[4].second, tags[5].second, tags[6].second, tags[7].second})) {
    if (std::isnan(gemmi::cif::as_number(row[3]))) continue;
    for (std::size_t i = 0; i < tags.size(); ++i)
      expected[tags[i].first].push_back(static_cast<float>(gemmi::cif::as_number(row[i])));
  }
  EXPECT_GT(expected["h"].size(), 300U);
  EXPECT_EQ(content_of(set), expected);
}

}  // namespace
