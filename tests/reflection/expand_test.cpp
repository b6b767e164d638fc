#include <gtest/gtest.h>

#include <cmath>  // for fmod, cos
#include <limits>
#include <set>  // for set

#include "reflection/made_crystal.h"
#include "vxgrid/reflection/reflection.h"

namespace {

using namespace VXCore;
using vxgrid_test::CrystalCase;
using vxgrid_test::Hkl;
using vxgrid_test::MadeCrystal;

Hkl hkl_of(const VXReflection& set, unsigned int i) {
  Hkl hkl{};
  EXPECT_TRUE(set.GetHKLElement(hkl[0], hkl[1], hkl[2], i));
  return hkl;
}

std::complex<double> polar_degrees(double amplitude, double degrees) {
  return std::polar(amplitude, degrees * vxgrid_test::two_pi / 360);
}

class ExpansionOf : public testing::TestWithParam<CrystalCase> {};

INSTANTIATE_TEST_SUITE_P(EverySystem, ExpansionOf, testing::ValuesIn(vxgrid_test::crystal_cases()));

TEST_P(ExpansionOf, an_asymmetric_unit_gives_every_reflection_of_the_sphere_once_up_to_friedel) {
  const MadeCrystal crystal(GetParam(), 2.2);
  VXReflection set = crystal.reflections(crystal.unique);
  ASSERT_TRUE(set.Expand());

  std::set<Hkl> seen;
  for (unsigned int i = 0; i < set.GetCount(); ++i) {
    const Hkl hkl = hkl_of(set, i);
    EXPECT_TRUE(seen.insert(hkl).second);
    EXPECT_TRUE(seen.insert({-hkl[0], -hkl[1], -hkl[2]}).second);
  }
  EXPECT_EQ(seen, std::set<Hkl>(crystal.sphere.begin(), crystal.sphere.end()));
}

TEST_P(ExpansionOf, every_mate_has_the_structure_factor_of_its_own_index) {
  const MadeCrystal crystal(GetParam(), 2.2);
  VXReflection set = crystal.reflections(crystal.unique);
  ASSERT_TRUE(set.Expand());
  float amplitude = 0;
  float phase = 0;
  for (unsigned int i = 0; i < set.GetCount(); ++i) {
    ASSERT_TRUE(set.GetFcalcElement(amplitude, i) && set.GetPhaseCalcElement(phase, i));
    const auto expected = crystal.structure_factor(hkl_of(set, i));
    // Phases go in steps of 1/32 degree.
    EXPECT_LT(std::abs(polar_degrees(amplitude, phase) - expected),
              1e-3 * std::abs(expected) + 1e-3)
        << i;
    EXPECT_TRUE(i < crystal.unique.size() || (phase >= 0 && phase < 360)) << phase;
  }
}

TEST_P(ExpansionOf, hendrickson_lattman_coefficients_turn_with_the_phase) {
  const MadeCrystal crystal(GetParam(), 3.0);
  VXReflection set = crystal.reflections(crystal.unique);
  const unsigned int n = set.GetCount();
  std::vector<float> a(n), b(n), c(n), d(n);
  for (unsigned int i = 0; i < n; ++i) {
    float phase = 0;
    set.GetPhaseCalcElement(phase, i);
    const auto one = polar_degrees(3, phase);
    const auto two = polar_degrees(2, 2 * phase);
    a[i] = static_cast<float>(one.real());
    b[i] = static_cast<float>(one.imag());
    c[i] = static_cast<float>(two.real());
    d[i] = static_cast<float>(two.imag());
  }
  set.SetABCD(a.data(), b.data(), c.data(), d.data(), n);
  ASSERT_TRUE(set.Expand());
  for (unsigned int i = 0; i < set.GetCount(); ++i) {
    float A = 0, B = 0, C = 0, D = 0, phase = 0;
    ASSERT_TRUE(set.GetABCDElement(A, B, C, D, i) && set.GetPhaseCalcElement(phase, i));
    EXPECT_LT(std::abs(std::complex<double>(A, B) - polar_degrees(3, phase)), 5e-3);
    EXPECT_LT(std::abs(std::complex<double>(C, D) - polar_degrees(2, 2 * phase)), 5e-3);
  }
}

VXReflection one_reflection(unsigned int group, const VXXtal::VXUnitCell& cell, Hkl hkl) {
  VXReflection set;
  set.SetCount(1);
  set.SetHKL(&hkl[0], &hkl[1], &hkl[2], 1);
  set.SetSymmetry(VXXtal::VXSymmetry(group, cell));
  return set;
}

TEST(Expand, puts_phases_into_the_circle_with_and_without_a_flip) {
  const VXXtal::VXUnitCell trigonal(10, 10, 12, 90, 90, 120);
  const float phase = 350;
  // P 31 shifts l by a third of a turn per operator: h k l, then -h-k h l or the like.
  VXReflection set = one_reflection(144, trigonal, {1, 2, 1});
  set.SetPhase(&phase, 1);
  ASSERT_TRUE(set.Expand());
  ASSERT_EQ(set.GetCount(), 3U);
  float turned = 0;
  set.GetPhaseElement(turned, 1);
  EXPECT_NEAR(turned, 350 - 120, 0.04);
  // With l below 0 both mates come as Friedel mates: shift - phase, the shift being -120.
  set = one_reflection(144, trigonal, {1, 2, -1});
  set.SetPhase(&phase, 1);
  ASSERT_TRUE(set.Expand());
  ASSERT_EQ(set.GetCount(), 3U);
  set.GetPhaseElement(turned, 1);
  EXPECT_NEAR(turned, -120 - 350 + 2 * 360, 0.04);
}

TEST(Expand, makes_no_copy_of_what_an_operator_leaves_in_place) {
  const VXXtal::VXUnitCell cell(10, 11, 12, 90, 100, 90);
  EXPECT_TRUE(one_reflection(4, cell, {0, 2, 0}).Expand());
  VXReflection special = one_reflection(4, cell, {0, 2, 0});
  ASSERT_TRUE(special.Expand());
  EXPECT_EQ(special.GetCount(), 1U);
  VXReflection general = one_reflection(4, cell, {1, 2, 3});
  ASSERT_TRUE(general.Expand());
  EXPECT_EQ(general.GetCount(), 2U);
  EXPECT_EQ(hkl_of(general, 1), (Hkl{1, -2, 3}));  // -1 2 -3, turned into the upper half
}

TEST(Expand, refuses_what_it_has_no_symmetry_or_indices_for) {
  const VXXtal::VXUnitCell cell(10, 11, 12, 90, 100, 90);
  VXReflection empty;
  EXPECT_FALSE(empty.Expand());
  VXReflection no_group = one_reflection(4, cell, {1, 2, 3});
  no_group.SetSymmetry(VXXtal::VXSymmetry());
  EXPECT_FALSE(no_group.Expand());
  VXReflection no_indices;
  no_indices.SetCount(3);
  no_indices.SetSymmetry(VXXtal::VXSymmetry(4, cell));
  EXPECT_FALSE(no_indices.Expand());
  // h + k of the trigonal mate has no place in an int.
  const int huge = std::numeric_limits<int>::max();
  VXReflection overflow =
      one_reflection(144, VXXtal::VXUnitCell(10, 10, 12, 90, 90, 120), {huge, huge, 1});
  EXPECT_FALSE(overflow.Expand());
  EXPECT_EQ(overflow.GetCount(), 1U);
}

TEST(Expand, takes_the_calculated_phase_for_a_missing_one_but_not_in_p1) {
  const VXXtal::VXUnitCell cell(10, 11, 12, 90, 90, 90);
  const float phase = 33;
  VXReflection triclinic = one_reflection(1, cell, {1, 2, 3});
  triclinic.SetPhaseCalc(&phase, 1);
  EXPECT_TRUE(triclinic.Expand());
  EXPECT_EQ(triclinic.GetCount(), 1U);
  float value = 0;
  EXPECT_FALSE(triclinic.GetPhaseElement(value, 0));

  VXReflection monoclinic = one_reflection(3, cell, {1, 2, 3});
  monoclinic.SetPhaseCalc(&phase, 1);
  EXPECT_TRUE(monoclinic.Expand());
  ASSERT_TRUE(monoclinic.GetPhaseElement(value, 0));
  EXPECT_EQ(value, 33.0F);
  ASSERT_TRUE(monoclinic.GetPhaseElement(value, 1));
  EXPECT_NEAR(value, 327, 0.04);
}

TEST(Expand, copies_the_columns_that_symmetry_leaves_alone) {
  VXReflection set = one_reflection(19, VXXtal::VXUnitCell(10, 11, 12, 90, 90, 90), {1, 2, 3});
  const float fobs = 5, sigma = 0.5F, fom = 0.8F, fwt = 6, fdelwt = 7;
  const int rfree = 1, centric = 2;
  set.SetFobs(&fobs, 1);
  set.SetSigma(&sigma, 1);
  set.SetFOM(&fom, 1);
  set.SetFwt(&fwt, 1);
  set.SetFdelwt(&fdelwt, 1);
  set.SetRFree(&rfree, 1);
  set.SetCentric(&centric, 1);
  ASSERT_TRUE(set.CalcResolution());
  ASSERT_TRUE(set.Expand());
  ASSERT_EQ(set.GetCount(), 4U);
  for (unsigned int column = 0; column <= VXReflectionColumn::Stolsq; ++column) {
    float first = 0, last = 0;
    if (set.GetElement(column, first, 0)) {
      set.GetElement(column, last, 3);
      EXPECT_EQ(first, last) << column;
    }
    int first_flag = 0, last_flag = 0;
    if (set.GetElement(column, first_flag, 0)) {
      set.GetElement(column, last_flag, 3);
      EXPECT_EQ(first_flag, last_flag) << column;
    }
  }
}

}  // namespace
