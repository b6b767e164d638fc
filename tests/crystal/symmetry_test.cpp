// A space group bound to a cell: which cells are taken, and where its operators send points.
#include "vxgrid/crystal/symmetry.h"

#include <gtest/gtest.h>

#include <cmath>               // for floor, round, nextafter
#include <gemmi/symmetry.hpp>  // for parse_triplet
#include <gemmi/unitcell.hpp>  // for UnitCell, Position, Fractional
#include <limits>              // for numeric_limits
#include <random>              // for mt19937, uniform_real_distribution
#include <string>              // for string
#include <tuple>               // for tuple
#include <utility>             // for as_const, pair
#include <vector>              // for vector

#include "support/messages.h"
#include "vxgrid/crystal/space_groups.h"

namespace {

using VXCore::VXXtal::VXSymmetry;
using VXCore::VXXtal::VXUnitCell;
using vxgrid_test::MessageCapture;

const char limit_text[] =
    "The specified cell does not meet the constraints for the given spacegroup";
const char unknown_text[] = "Error: Unknown space group number.";
const char c_unique_text[] = "Monoclinic cell in nonstandard C-unique setting";
const char a_unique_text[] = "Monoclinic cell in nonstandard A-unique setting";

const VXUnitCell monoclinic(51.3f, 62.7f, 44.1f, 90, 107.25f, 90);
const VXUnitCell hexagonal(78.9f, 78.9f, 37.2f, 90, 90, 120);
const VXUnitCell cubic(30, 30, 30, 90, 90, 90);

/// The operator k of a group as gemmi applies it, from its general position.
gemmi::Fractional apply(const char* general_position, const gemmi::Fractional& point) {
  const auto image =
      gemmi::parse_triplet(general_position).apply_to_xyz({point.x, point.y, point.z});
  return {image[0], image[1], image[2]};
}

gemmi::UnitCell to_gemmi(const VXUnitCell& cell) {
  return {cell.a, cell.b, cell.c, cell.alpha, cell.beta, cell.gamma};
}

TEST(Symmetry, a_cell_is_taken_or_refused_by_its_crystal_system) {
  const float next_90 = std::nextafter(90.0f, 91.0f);
  const std::tuple<unsigned int, VXUnitCell, bool, const char*> table[] = {
      {0, cubic, false, unknown_text},
      {1234, cubic, false, unknown_text},
      {1, {}, true, ""},
      {2, {10, 20, 30, 200, 0, -5}, true, ""},
      {4, monoclinic, true, ""},
      {4, {10, 20, 30, 90, 90, 107}, true, c_unique_text},
      {4, {10, 20, 30, 107, 90, 90}, true, a_unique_text},
      {4, {10, 20, 30, 90, 90, next_90}, true, c_unique_text},
      {4, {10, 20, 30, 107, 107, 90}, false, ""},
      {4, {10, 20, 30, 90, 107, 107}, false, ""},
      {1003, {10, 20, 30, 90, 90, 107}, true, c_unique_text},
      {19, {10, 20, 30, 90, 90, 90}, true, ""},
      {19, {10, 20, 30, next_90, 90, 90}, false, limit_text},
      {19, {10, 20, 30, 90, next_90, 90}, false, limit_text},
      {19, {10, 20, 30, 90, 90, 90.0001f}, false, limit_text},
      {96, {10, 10.0049f, 30, 90, 90, 90}, true, ""},
      {96, {10, 10.0051f, 30, 90, 90, 90}, false, limit_text},
      {96, {10, 10, 30, 90, 90, 91}, false, limit_text},
      {143, hexagonal, true, ""},
      {146, {10, 10, 10, 60, 60, 60}, false, limit_text},
      {168, {10, 10.006f, 30, 90, 90, 120}, false, limit_text},
      {168, {10, 10, 30, 90, 90, 119.99f}, false, limit_text},
      {168, {10, 10, 30, 90, 91, 120}, false, limit_text},
      {230, cubic, true, ""},
      // a and b as well as b and c agree, a and c do not.
      {230, {30, 30.004f, 30.008f, 90, 90, 90}, false, limit_text},
      {230, {30, 30, 30.006f, 90, 90, 90}, false, limit_text},
      {230, {30, 30, 30, 90, 91, 90}, false, limit_text},
  };
  for (const auto& [number, cell, bound, text] : table) {
    SCOPED_TRACE(testing::Message() << number << " " << cell.alpha << " " << cell.beta << " "
                                    << cell.gamma << " " << cell.b << " " << cell.c);
    MessageCapture capture;
    const VXSymmetry symmetry(number, cell);
    EXPECT_EQ(static_cast<bool>(symmetry), bound);
    EXPECT_EQ(symmetry.GetError(), text);
    EXPECT_EQ(symmetry.HasWarnings(), text[0] != '\0');
    // A refusal warns, even with nothing to say; the warning of a usable symmetry waits in it.
    EXPECT_EQ(capture.messages.size(), bound ? 0u : 1u);
    EXPECT_EQ(capture.warned(text), !bound);
    EXPECT_EQ(symmetry.GetNumber(), bound ? number : 0);
    EXPECT_EQ(symmetry.GetOpCount() > 0, bound);
    EXPECT_EQ(symmetry.GetMatrices() != nullptr, bound);
    EXPECT_EQ(symmetry.GetName().empty(), !bound);
    EXPECT_EQ(symmetry.cell().a, cell.a);
  }
}

TEST(Symmetry, a_bound_row_shows_its_number_operators_and_a_name_of_ten_letters_at_most) {
  const std::tuple<const char*, const char*, unsigned int, unsigned int> table[] = {
      {"P 2/m 2/m 2/m", "Pmmm", 47, 8},      {"I2", "I 1 2 1", 5, 4},
      {"Pmmn2", "Pmmn2", 1059, 8},           {"C 2 2 21a)", "C 2 2 21a)", 1020, 8},
      {"P 21 21 2 (a)", "P21212a", 1018, 4},
  };
  for (const auto& [given, name, number, op_count] : table) {
    const VXSymmetry symmetry(std::string(given), {10, 20, 30, 90, 90, 90});
    EXPECT_EQ(symmetry.GetName(), name);
    EXPECT_EQ(symmetry.GetNumber(), number);
    EXPECT_EQ(symmetry.GetOpCount(), op_count);
    EXPECT_EQ(symmetry.GetMatrices(),
              VXCore::sglib[VXCore::find_space_group(std::string(given))].matrices[0]);
  }
}

TEST(Symmetry, an_unknown_name_leaves_an_empty_symmetry_and_two_messages) {
  MessageCapture capture;
  const VXSymmetry symmetry(std::string("P 7"), cubic);
  EXPECT_FALSE(symmetry);
  EXPECT_EQ(symmetry.GetError(), unknown_text);
  ASSERT_EQ(capture.messages.size(), 2u);
  EXPECT_TRUE(capture.has(MessageCapture::Level::Info, "sgname |P 7|"));
  EXPECT_TRUE(capture.warned(unknown_text));
  EXPECT_TRUE(symmetry.cell().equalsCell(cubic, 0));
  // An empty one answers nothing and refuses to convert.
  VXSymmetry empty;
  std::vector<bool> flags(3);
  EXPECT_EQ(empty.GetName() + empty.GetError(), "");
  EXPECT_TRUE(empty.GetEnabled(flags) && flags.empty());
  EXPECT_FALSE(empty.SetEnabled({true}));
  float point[] = {1, 2, 3}, matrix[16];
  EXPECT_FALSE(empty.CartesianToFractional(point, 1, 0, true) ||
               empty.FractionalToCartesian(point, 1, 0, true));
  EXPECT_FALSE(empty.GetImpl()->GetCartesianOperator(matrix, 0, 0, 0, 0, nullptr));
  EXPECT_EQ(point[2], 3);
}

TEST(Symmetry, enabled_flags_are_one_per_operator_and_copies_have_their_own) {
  VXSymmetry symmetry(19, {10, 20, 30, 90, 90, 90});
  std::vector<bool> flags;
  EXPECT_TRUE(symmetry.GetEnabled(flags));
  EXPECT_EQ(flags, std::vector<bool>(4, true));
  EXPECT_FALSE(symmetry.SetEnabled(std::vector<bool>(5)) ||
               symmetry.SetEnabled(std::vector<bool>(3)));
  EXPECT_TRUE(symmetry.GetEnabled(flags));
  EXPECT_EQ(flags, std::vector<bool>(4, true));

  const std::vector<bool> half = {true, false, true, false};
  EXPECT_TRUE(symmetry.SetEnabled(half));
  const VXSymmetry copy(symmetry);
  VXSymmetry assigned(1, cubic);
  assigned = symmetry;
  EXPECT_TRUE(symmetry.SetEnabled(std::vector<bool>(4)));
  symmetry.cell() = cubic;
  for (const VXSymmetry* other : {&copy, &std::as_const(assigned)}) {
    EXPECT_TRUE(other->GetEnabled(flags));
    EXPECT_EQ(flags, half);
    EXPECT_EQ(other->cell().b, 20);
    EXPECT_EQ(other->GetMatrices(), symmetry.GetMatrices());
    EXPECT_EQ(other->GetName(), "P 21 21 21");
  }
  // A cell put in later is not compared with the group.
  EXPECT_TRUE(symmetry.GetNumber() == 19 && symmetry.GetError().empty());
}

TEST(Symmetry, conversions_go_through_the_operator_as_gemmi_does) {
  struct Case {
    unsigned int number;
    VXUnitCell cell;
    unsigned int op;
    const char* general_position;
  };
  const Case table[] = {
      {1, {10, 20, 30, 70, 80, 100}, 0, "x,y,z"},
      {4, monoclinic, 1, "-x,y+1/2,-z"},
      {146, hexagonal, 4, "-y+2/3,x-y+1/3,z+1/3"},
      {1146, hexagonal, 2, "y,z,x"},
      {198, cubic, 4, "z,x,y"},
      {198, cubic, 5, "z+1/2,-x+1/2,-y"},
  };
  std::mt19937 random(20);
  std::uniform_real_distribution<float> spread(-120, 120);
  for (const Case& c : table) {
    SCOPED_TRACE(c.general_position);
    const VXSymmetry symmetry(c.number, c.cell);
    ASSERT_TRUE(symmetry);
    const gemmi::UnitCell cell = to_gemmi(c.cell);
    std::vector<float> cartesian(30);
    for (float& x : cartesian)
      x = spread(random);

    std::vector<float> plain = cartesian, wrapped = cartesian;
    ASSERT_TRUE(symmetry.CartesianToFractional(plain.data(), 10, c.op, false));
    ASSERT_TRUE(symmetry.CartesianToFractional(wrapped.data(), 10, c.op, true));
    std::vector<float> back(30), home(30);
    for (std::size_t i = 0; i < 30; i += 3) {
      const gemmi::Fractional image = apply(
          c.general_position,
          cell.fractionalize(gemmi::Position(cartesian[i], cartesian[i + 1], cartesian[i + 2])));
      for (std::size_t j = 0; j < 3; ++j) {
        const double expected = image.at(static_cast<int>(j));
        EXPECT_NEAR(plain[i + j], expected, 1e-5);
        EXPECT_TRUE(wrapped[i + j] >= 0 && wrapped[i + j] < 1);
        const double off = wrapped[i + j] - expected;
        EXPECT_NEAR(off, std::round(off), 1e-5);
      }
    }

    back = home = plain;
    ASSERT_TRUE(symmetry.FractionalToCartesian(back.data(), 10, c.op, false));
    ASSERT_TRUE(symmetry.FractionalToCartesian(home.data(), 10, c.op, true));
    for (std::size_t i = 0; i < 30; i += 3) {
      const gemmi::Fractional point(plain[i], plain[i + 1], plain[i + 2]);
      for (const auto& [from, got] :
           {std::pair{point, &back[i]}, std::pair{point.wrap_to_unit(), &home[i]}}) {
        // The operator acts on the Cartesian values.
        const gemmi::Position position = cell.orthogonalize(from);
        const auto expected = apply(c.general_position, {position.x, position.y, position.z});
        for (int j = 0; j < 3; ++j)
          EXPECT_NEAR(got[j], expected.at(j), 1e-4);
      }
    }
    float point[] = {1, 2, 3};
    EXPECT_FALSE(symmetry.CartesianToFractional(point, 1, symmetry.GetOpCount(), false));
    EXPECT_FALSE(symmetry.FractionalToCartesian(point, 1, symmetry.GetOpCount(), true));
    EXPECT_EQ(point[0], 1);
  }
}

TEST(Symmetry, wrapping_brings_fractions_into_the_home_cell) {
  const VXSymmetry symmetry(1, {1, 1, 1, 90, 90, 90});
  const std::pair<float, float> table[] = {
      {-1.0f, 0.0f},  {-0.25f, 0.75f}, {1.0f, 0.0f},  {2.5f, 0.5f},    {0.0f, 0.0f},
      {0.75f, 0.75f}, {-2.5f, 0.5f},   {-3.0f, 0.0f}, {-1e-12f, 0.0f}, {7.0f, 0.0f}};
  for (const auto& [given, expected] : table) {
    float into[] = {given, given, given};
    ASSERT_TRUE(symmetry.FractionalToCartesian(into, 1, 0, true));
    EXPECT_FLOAT_EQ(into[2], expected) << given;
  }
  // Beyond 32-bit integers nothing is promised but that it is defined.
  float far[] = {1e20f, -1e20f, std::numeric_limits<float>::infinity()};
  EXPECT_TRUE(symmetry.FractionalToCartesian(far, 1, 0, true));
}

TEST(Symmetry, cartesian_operators_move_as_gemmi_does_and_bring_the_anchor_home) {
  struct Case {
    unsigned int number;
    VXUnitCell cell;
    std::vector<const char*> general_positions;
  };
  const Case table[] = {
      {5, monoclinic, {"x,y,z", "-x,y,-z", "x+1/2,y+1/2,z", "-x+1/2,y+1/2,-z"}},
      {152, hexagonal, {"x,y,z", "-y,x-y,z+1/3", "-x+y,-x,z+2/3"}},
      {2, {10, 20, 30, 70, 80, 100}, {"x,y,z", "-x,-y,-z"}},
  };
  const float anchor[] = {-131.5f, 47.25f, 88.0f};
  for (const Case& c : table) {
    const VXSymmetry symmetry(c.number, c.cell);
    const gemmi::UnitCell cell = to_gemmi(c.cell);
    for (unsigned int op = 0; op < c.general_positions.size(); ++op) {
      SCOPED_TRACE(c.general_positions[op]);
      // gemmi's own image of the anchor, shifted by cells as asked.
      const gemmi::Fractional image =
          apply(c.general_positions[op],
                cell.fractionalize(gemmi::Position(anchor[0], anchor[1], anchor[2])));
      const gemmi::Fractional home(image.x - std::floor(image.x), image.y - std::floor(image.y),
                                   image.z - std::floor(image.z));
      for (const bool anchored : {false, true}) {
        const gemmi::Fractional& start = anchored ? home : image;
        const gemmi::Position expected =
            cell.orthogonalize(gemmi::Fractional(start.x - 1, start.y + 2, start.z + 3));
        float m[16];
        ASSERT_TRUE(
            symmetry.GetImpl()->GetCartesianOperator(m, op, -1, 2, 3, anchored ? anchor : nullptr));
        for (int i = 0; i < 3; ++i) {
          EXPECT_NEAR(m[i] * anchor[0] + m[4 + i] * anchor[1] + m[8 + i] * anchor[2] + m[12 + i],
                      expected.at(i), 2e-4);
          // A rigid motion: orthonormal rows, no perspective.
          for (int j = 0; j < 3; ++j) {
            const float product =
                m[4 * i] * m[4 * j] + m[4 * i + 1] * m[4 * j + 1] + m[4 * i + 2] * m[4 * j + 2];
            EXPECT_NEAR(product, i == j, 2e-6);
          }
          EXPECT_EQ(m[4 * i + 3], 0);
        }
        EXPECT_EQ(m[15], 1);
      }
    }
  }
  // An anchor beyond all integers stays where it is; one that is nowhere harms nothing.
  const VXSymmetry unit(1, {1, 1, 1, 90, 90, 90});
  const float far[] = {3e9f, -3e9f, 0.25f};
  const float nowhere[] = {0, 0, std::numeric_limits<float>::quiet_NaN()};
  float m[16];
  ASSERT_TRUE(unit.GetImpl()->GetCartesianOperator(m, 0, 0, 0, 0, far));
  EXPECT_FLOAT_EQ(m[12], -3e9f);
  EXPECT_FLOAT_EQ(m[13], 3e9f);
  EXPECT_TRUE(unit.GetImpl()->GetCartesianOperator(m, 0, 0, 0, 0, nowhere));
  EXPECT_FALSE(unit.GetImpl()->GetCartesianOperator(m, unit.GetOpCount(), 0, 0, 0, nullptr));
}

}  // namespace
