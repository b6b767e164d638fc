// Every row of the space-group table: that it is a group, in the stated order of its operators, and
// the one that gemmi knows by the same number.
#include "vxgrid/crystal/space_groups.h"

#include <gtest/gtest.h>

#include <array>               // for array
#include <cmath>               // for lround
#include <cstring>             // for memcmp
#include <gemmi/symmetry.hpp>  // for Op, spacegroup_tables
#include <iterator>            // for begin, end, size
#include <map>                 // for map
#include <set>                 // for set
#include <string>              // for string
#include <utility>             // for pair
#include <vector>              // for vector

#include "support/messages.h"

namespace {

using VXCore::find_space_group;
using VXCore::sglib;
using VXCore::sglibT;
using VXCore::space_group_count;
using vxgrid_test::MessageCapture;

using Vector = std::array<int, 3>;  // in twelfths

/// Rotation row by row for column vectors, then the translation in twelfths of an edge.
using Operator = std::array<int, 12>;

Operator to_operator(const float* m) {
  Operator op{};
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      op[static_cast<std::size_t>(3 * i + j)] = static_cast<int>(m[4 * j + i]);
    }
    op[static_cast<std::size_t>(9 + i)] = static_cast<int>(std::lround(m[12 + i] * 12));
  }
  return op;
}

Operator to_operator(const gemmi::Op& other) {
  Operator op{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j)
      op[3 * i + j] = other.rot[i][j] / gemmi::Op::DEN;
    op[9 + i] = (other.tran[i] * 12 / gemmi::Op::DEN % 12 + 12) % 12;
  }
  return op;
}

Operator to_operator(const std::string& general_position) {
  return to_operator(gemmi::parse_triplet(general_position));
}

/// First `first`, then `second`, modulo lattice translations.
Operator combine(const Operator& second, const Operator& first) {
  Operator out{};
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t j = 0; j < 3; ++j) {
      for (std::size_t k = 0; k < 3; ++k)
        out[3 * i + j] += second[3 * i + k] * first[3 * k + j];
    }
    int shift = second[9 + i];
    for (std::size_t k = 0; k < 3; ++k)
      shift += second[3 * i + k] * first[9 + k];
    out[9 + i] = (shift % 12 + 12) % 12;
  }
  return out;
}

std::vector<Operator> operators_of(const sglibT& group) {
  std::vector<Operator> out;
  for (int k = 0; k < group.op_count; ++k)
    out.push_back(to_operator(group.matrices[k]));
  return out;
}

std::string label(const sglibT& group) {
  return std::to_string(group.number) + " " + group.long_name;
}

std::vector<Vector> centring_of(const sglibT& group) {
  if (group.number == 1008) return {{6, 6, 0}};
  switch (group.long_name[0]) {
    case 'A':
      return {{0, 6, 6}};
    case 'B':
      return {{6, 0, 6}};
    case 'C':
      return {{6, 6, 0}};
    case 'I':
      return {{6, 6, 6}};
    case 'F':
      return {{0, 6, 6}, {6, 0, 6}, {6, 6, 0}};
    case 'H':
      return {{8, 4, 4}, {4, 8, 8}};
    default:
      return {};
  }
}

TEST(SpaceGroups, matrices_are_exact_and_only_the_used_ones_are_filled) {
  for (const sglibT& group : sglib) {
    SCOPED_TRACE(label(group));
    ASSERT_GE(group.op_count, 1);
    ASSERT_LE(group.op_count, 192);
    for (int k = 0; k < 268; ++k) {
      const float* m = group.matrices[k];
      float expected[16] = {};
      if (k < group.op_count) {
        const Operator op = to_operator(m);
        for (int i = 0; i < 3; ++i) {
          for (int j = 0; j < 3; ++j) {
            expected[4 * j + i] = static_cast<float>(op[static_cast<std::size_t>(3 * i + j)]);
          }
          expected[12 + i] = static_cast<float>(op[static_cast<std::size_t>(9 + i)] / 12.0);
          EXPECT_TRUE(m[12 + i] >= 0 && m[12 + i] < 1);
        }
        expected[15] = 1;
      }
      ASSERT_EQ(std::memcmp(m, expected, sizeof expected), 0) << k;
    }
  }
}

TEST(SpaceGroups, every_row_is_a_group_that_begins_with_the_identity) {
  for (const sglibT& group : sglib) {
    SCOPED_TRACE(label(group));
    const std::vector<Operator> list = operators_of(group);
    const std::set<Operator> set(list.begin(), list.end());
    EXPECT_EQ(list[0], to_operator("x,y,z"));
    ASSERT_EQ(set.size(), list.size());
    std::size_t outside = 0;
    for (const Operator& a : list) {
      for (const Operator& b : list)
        outside += set.count(combine(a, b)) == 0;
    }
    EXPECT_EQ(outside, 0u);
  }
}

TEST(SpaceGroups, the_first_block_is_repeated_for_each_centring_vector_in_order) {
  for (const sglibT& group : sglib) {
    if (group.number == 1023) continue;
    SCOPED_TRACE(label(group));
    const std::vector<Operator> list = operators_of(group);
    const std::vector<Vector> vectors = centring_of(group);
    const std::size_t block = list.size() / (vectors.size() + 1);
    ASSERT_EQ(list.size(), block * (vectors.size() + 1));
    for (std::size_t n = 0; n < vectors.size(); ++n) {
      for (std::size_t k = 0; k < block; ++k) {
        Operator expected = list[k];
        for (std::size_t i = 0; i < 3; ++i) {
          expected[9 + i] = (expected[9 + i] + vectors[n][i]) % 12;
        }
        EXPECT_EQ(list[(n + 1) * block + k], expected) << n << " " << k;
      }
    }
  }
}

TEST(SpaceGroups, operators_are_those_of_the_group_that_gemmi_numbers_the_same) {
  std::map<std::set<Operator>, const gemmi::SpaceGroup*> known;
  for (const gemmi::SpaceGroup& other : gemmi::spacegroup_tables::main) {
    std::set<Operator> set;
    for (const gemmi::Op& op : other.operations())
      set.insert(to_operator(op));
    known.emplace(set, &other);
  }
  // gemmi keeps the CCP4 numbers, from which ours differ in three rows.
  const std::map<std::string, unsigned int> ccp4_numbers = {
      {"I 1 2 1", 4005}, {"P 1 21/n 1", 2014}, {"I 1 21 1", 5005}};
  for (const sglibT& group : sglib) {
    SCOPED_TRACE(label(group));
    const std::vector<Operator> list = operators_of(group);
    const auto found = known.find({list.begin(), list.end()});
    if (group.number == 1008) {
      EXPECT_TRUE(found == known.end());
      continue;
    }
    ASSERT_TRUE(found != known.end());
    const gemmi::SpaceGroup& other = *found->second;
    EXPECT_EQ(group.system, static_cast<int>(other.crystal_system()) + 1);
    if (group.number <= 230) {
      EXPECT_EQ(other.short_name(), group.short_name);
    }
    const auto renumbered = ccp4_numbers.find(group.long_name);
    EXPECT_EQ(static_cast<unsigned int>(other.ccp4),
              renumbered == ccp4_numbers.end() ? group.number : renumbered->second);
  }
}

TEST(SpaceGroups, telling_rows_have_their_operators_in_order) {
  struct Case {
    unsigned int number;
    const char* long_name;
    std::vector<const char*> operators;
  };
  const Case table[] = {
      {4, "P 1 21 1", {"x,y,z", "-x,y+1/2,-z"}},
      {5, "C 1 2 1", {"x,y,z", "-x,y,-z", "x+1/2,y+1/2,z", "-x+1/2,y+1/2,-z"}},
      {146,
       "H 3",
       {"x,y,z", "-y,x-y,z", "-x+y,-x,z", "x+2/3,y+1/3,z+1/3", "-y+2/3,x-y+1/3,z+1/3",
        "-x+y+2/3,-x+1/3,z+1/3", "x+1/3,y+2/3,z+2/3", "-y+1/3,x-y+2/3,z+2/3",
        "-x+y+1/3,-x+2/3,z+2/3"}},
      {1146, "R 3", {"x,y,z", "z,x,y", "y,z,x"}},
      {1018, "P 21 21 2 (a)", {"x,y,z", "-x+1/2,-y+1/2,z", "x+1/2,-y,-z", "-x,y+1/2,-z"}},
      {1008, "B 1 1 m", {"x,y,z", "x,y,-z", "x+1/2,y+1/2,z", "x+1/2,y+1/2,-z"}},
      {1023,
       "I 2 2 2a",
       {"x,y,z", "-x+1/2,-y+1/2,z", "x+1/2,-y,-z", "-x,y+1/2,-z", "x+1/2,y+1/2,z+1/2",
        "-x,-y,z+1/2", "-x+1/2,y,-z+1/2", "x,-y+1/2,-z+1/2"}},
      {2005, "A 2 1 1", {"x,y,z", "-x,y,-z", "x,y+1/2,z+1/2", "-x,y+1/2,-z+1/2"}},
      {3004, "I 1 21 1", {"x,y,z", "-x,y+1/2,-z", "x+1/2,y+1/2,z+1/2", "-x+1/2,y,-z+1/2"}},
  };
  for (const Case& c : table) {
    SCOPED_TRACE(c.long_name);
    const int row = find_space_group(c.number);
    ASSERT_GE(row, 0);
    EXPECT_STREQ(sglib[row].long_name, c.long_name);
    std::vector<Operator> expected;
    for (const char* position : c.operators)
      expected.push_back(to_operator(position));
    EXPECT_EQ(operators_of(sglib[row]), expected);
  }
}

TEST(SpaceGroups, rows_stand_in_the_order_that_lookups_rely_on) {
  const unsigned int settings[] = {1003, 1004, 3004, 1005, 2005, 3005, 1006, 1007, 1008, 1009,
                                   1010, 1011, 1012, 1013, 1014, 1015, 1017, 2017, 1018, 2018,
                                   3018, 1020, 1021, 1022, 1023, 1059, 1094, 1197};
  std::vector<unsigned int> expected;
  for (unsigned int number = 1; number <= 230; ++number) {
    expected.push_back(number);
    if (number == 2 || number == 5 || number == 14) expected.push_back(number);
    for (unsigned int rhombohedral : {146u, 148u, 155u, 160u, 161u, 166u, 167u}) {
      if (number == rhombohedral) expected.push_back(1000 + number);
    }
  }
  expected.insert(expected.end(), std::begin(settings), std::end(settings));
  ASSERT_EQ(expected.size(), std::size(sglib));
  for (std::size_t row = 0; row < expected.size(); ++row) {
    EXPECT_EQ(sglib[row].number, expected[row]) << row;
  }
}

TEST(SpaceGroups, a_number_finds_its_first_row_or_that_of_the_standard_group) {
  const std::pair<unsigned int, const char*> table[] = {
      {2, "P -1"},      {5, "C 1 2 1"},          {14, "P 1 21/c 1"},          {146, "H 3"},
      {1146, "R 3"},    {1003, "P 1 1 2"},       {2003, "P 1 2 1"},           {2019, "P 21 21 21"},
      {1197, "I 2 3a"}, {59, "P 21/m 21/m 2/n"}, {4294000019u, "P 21 21 21"},
  };
  for (const auto& [number, name] : table) {
    const int row = find_space_group(number);
    ASSERT_GE(row, 0) << number;
    EXPECT_STREQ(sglib[row].long_name, name) << number;
  }
  for (unsigned int number : {0u, 231u, 1000u, 1234u, 4294967295u}) {
    EXPECT_EQ(find_space_group(number), -1) << number;
  }
}

TEST(SpaceGroups, a_name_finds_its_first_row_whatever_its_case_and_blanks) {
  MessageCapture capture;
  struct Case {
    const char* name;
    unsigned int number;
    const char* long_name;
  };
  const Case table[] = {
      {"P 1 21 1", 4, "P 1 21 1"},
      {"p1211", 4, "P 1 21 1"},
      {"p21", 4, "P 1 21 1"},
      {" P  21  21  21 ", 19, "P 21 21 21"},
      {"p212121", 19, "P 21 21 21"},
      {"P2", 3, "P 1 2 1"},
      {"P 1 1 2", 1003, "P 1 1 2"},
      {"P-1", 2, "P -1"},
      {"P 1-", 2, "P 1-"},
      {"I 1 2 1", 5, "I 1 2 1"},
      {"i2", 5, "I 1 2 1"},
      {"P21/n", 14, "P 1 21/n 1"},
      {"P 21/m 21/m 2/n", 59, "P 21/m 21/m 2/n"},
      {"PMMN2", 1059, "P 21/m 21/m 2/n"},
      {"C 2 2 21a)", 1020, "C 2 2 21a)"},
      {"P 21 21 2 (a)", 1018, "P 21 21 2 (a)"},
      {"r3", 1146, "R 3"},
  };
  for (const Case& c : table) {
    const int row = find_space_group(std::string(c.name));
    ASSERT_GE(row, 0) << c.name;
    EXPECT_EQ(sglib[row].number, c.number) << c.name;
    EXPECT_STREQ(sglib[row].long_name, c.long_name) << c.name;
  }
  EXPECT_TRUE(capture.messages.empty());
}

TEST(SpaceGroups, an_unknown_name_is_reported_and_finds_nothing) {
  for (const std::string name : {"", "  ", "P 5", "P 21 21 21x", "P 21 21 21 21"}) {
    MessageCapture capture;
    EXPECT_EQ(find_space_group(name), -1) << name;
    ASSERT_EQ(capture.messages.size(), 1u) << name;
    EXPECT_TRUE(capture.has(MessageCapture::Level::Info, "sgname |" + name + "|"));
  }
}

}  // namespace
