#include <gtest/gtest.h>

#include <cmath>               // for cos, isnan, sin
#include <gemmi/unitcell.hpp>  // for UnitCell
#include <limits>              // for numeric_limits
#include <memory>              // for unique_ptr

#include "support/messages.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/reflection.h"

namespace {

using namespace VXCore;
namespace columns = VXReflectionColumn;

const float nan_value = std::numeric_limits<float>::quiet_NaN();
constexpr unsigned int last_column = columns::Stolsq;

bool holds_ints(unsigned int column) {
  return column == columns::Centric || column == columns::RFree;
}

VXReflection with_indices(const std::vector<int>& h, const std::vector<int>& k,
                          const std::vector<int>& l) {
  VXReflection set;
  const auto n = static_cast<unsigned int>(h.size());
  set.SetCount(n);
  EXPECT_TRUE(set.SetHKL(h.data(), k.data(), l.data(), n));
  return set;
}

TEST(Reflection, has_no_column_until_one_is_set) {
  VXReflection set;
  EXPECT_EQ(set.SetCount(3), 1);
  EXPECT_EQ(set.GetCount(), 3U);
  float values[3] = {};
  int flags[3] = {};
  for (unsigned int column = 0; column <= last_column + 1; ++column) {
    EXPECT_FALSE(set.GetColumn(column, values));
    EXPECT_FALSE(set.GetColumn(column, flags));
    EXPECT_FALSE(set.GetElement(column, values[0], 0));
    EXPECT_FALSE(set.SetElement(column, 1.0F, 0));
    EXPECT_FALSE(set.SetElement(column, 1, 0));
  }
  EXPECT_FALSE(set.GetHKL(flags, flags, flags));
  EXPECT_FALSE(set.GetABCD(values, values, values, values));
}

TEST(Reflection, keeps_each_column_under_its_own_number) {
  VXReflection set;
  set.SetCount(2);
  for (unsigned int column = 0; column <= last_column; ++column) {
    const auto number = static_cast<float>(column);
    const float values[2] = {number, number + 0.5F};
    const int flags[2] = {static_cast<int>(column), 100};
    EXPECT_EQ(set.SetColumn(column, values, 2), !holds_ints(column));
    EXPECT_EQ(set.SetColumn(column, flags, 2), holds_ints(column));
  }
  // By name, in the order of the numbers.
  float value = 0;
  int flag = 0;
  using Get = bool (VXReflection::*)(float&, unsigned int) const;
  const std::vector<std::pair<unsigned int, Get>> getters = {
      {0, &VXReflection::GetPhaseElement},  {1, &VXReflection::GetPhaseCalcElement},
      {2, &VXReflection::GetFobsElement},   {3, &VXReflection::GetFcalcElement},
      {4, &VXReflection::GetPhiwtElement},  {5, &VXReflection::GetPhidelwtElement},
      {6, &VXReflection::GetFwtElement},    {7, &VXReflection::GetFdelwtElement},
      {8, &VXReflection::GetSigmaElement},  {9, &VXReflection::GetFOMElement},
      {12, &VXReflection::GetStolsqElement}};
  for (const auto& [column, get] : getters) {
    EXPECT_TRUE((set.*get)(value, 1));
    EXPECT_EQ(value, static_cast<float>(column) + 0.5F);
  }
  EXPECT_TRUE(set.GetCentricElement(flag, 0));
  EXPECT_EQ(flag, 10);
  EXPECT_TRUE(set.GetRFreeElement(flag, 0));
  EXPECT_EQ(flag, 11);
  EXPECT_FALSE(set.GetColumn(columns::Fobs, static_cast<float*>(nullptr)));
}

TEST(Reflection, takes_columns_of_its_own_count_only_and_drops_one_for_null) {
  VXReflection set;
  set.SetCount(2);
  const float first[3] = {1, 2, 3};
  float out[2] = {};
  ASSERT_TRUE(set.SetFobs(first, 2));
  EXPECT_FALSE(set.SetFobs(first + 1, 1));
  EXPECT_FALSE(set.SetFobs(nullptr, 3));
  ASSERT_TRUE(set.GetFobs(out));
  EXPECT_EQ(out[0], 1);
  EXPECT_FALSE(set.SetFobs(nullptr, 2));
  EXPECT_FALSE(set.GetFobs(out));
}

TEST(Reflection, lets_the_element_behind_the_last_through) {
  VXReflection set = with_indices({1, 2}, {3, 4}, {5, 6});
  const float fobs[2] = {1, 2};
  set.SetFobs(fobs, 2);
  float value = -1;
  int h = 0, k = 0, l = 0;
  EXPECT_TRUE(set.GetFobsElement(value, 2));
  EXPECT_TRUE(set.SetFobsElement(9, 2));
  EXPECT_TRUE(set.GetHKLElement(h, k, l, 2));
  EXPECT_TRUE(set.SetHKLElement(7, 8, 9, 2));
  EXPECT_FALSE(set.GetFobsElement(value, 3));
  EXPECT_FALSE(set.GetHKLElement(h, k, l, 3));
  EXPECT_FALSE(set.SetHKLElement(1, 1, 1, 3));
  ASSERT_TRUE(set.Sort());
  EXPECT_TRUE(set.GetFobsElement(value, 2));
}

TEST(Reflection, resizes_the_columns_that_are_there) {
  VXReflection set = with_indices({1, 2, 3}, {0, 0, 0}, {0, 0, 0});
  const float fobs[3] = {1, 2, 3};
  set.SetFobs(fobs, 3);
  ASSERT_TRUE(set.Sort());
  set.SetCount(2);
  float out[5] = {};
  float value = 0;
  ASSERT_TRUE(set.GetFobs(out));
  EXPECT_EQ(out[1], 2);
  EXPECT_FALSE(set.GetFobsElement(value, 3));
  set.SetCount(5);
  ASSERT_TRUE(set.GetFobs(out));
  EXPECT_EQ(out[1], 2);
  EXPECT_EQ(out[4], 0);
  for (unsigned int i = 0; i <= 5; ++i)
    EXPECT_TRUE(set.GetFobsElement(value, i)) << i;
  EXPECT_FALSE(set.GetSigmaElement(value, 0));
}

TEST(Reflection, takes_indices_and_coefficients_of_any_length) {
  VXReflection set;
  const std::vector<int> index = {1, 2, 3, 4};
  const std::vector<float> part = {1, 2, 3, 4};
  EXPECT_TRUE(set.SetHKL(index.data(), index.data(), index.data(), 4));
  EXPECT_TRUE(set.SetABCD(part.data(), part.data(), part.data(), part.data(), 4));
  EXPECT_EQ(set.GetCount(), 0U);
  set.SetCount(4);
  int h = 0, k = 0, l = 0;
  float a = 0, b = 0, c = 0, d = 0;
  EXPECT_TRUE(set.GetHKLElement(h, k, l, 3));
  EXPECT_EQ(h, 4);
  EXPECT_TRUE(set.SetABCDElement(5, 6, 7, 8, 3));
  EXPECT_TRUE(set.GetABCDElement(a, b, c, d, 3));
  EXPECT_EQ(d, 8);
  // Shorter than the set: the rest is defined.
  EXPECT_TRUE(set.SetHKL(index.data(), index.data(), index.data(), 1));
  std::vector<int> out(4);
  EXPECT_TRUE(set.GetHKL(out.data(), out.data(), out.data()));
  EXPECT_EQ(out, (std::vector<int>{1, 0, 0, 0}));
  EXPECT_FALSE(set.SetHKL(index.data(), nullptr, index.data(), 4));
  EXPECT_FALSE(set.GetHKLElement(h, k, l, 0));
}

TEST(Reflection, sorts_by_h_then_k_then_l_for_the_element_calls_alone) {
  VXReflection set = with_indices({2, -1, 2, 2}, {0, 5, -3, 0}, {1, 0, 0, -4});
  const float fobs[4] = {10, 11, 12, 13};
  set.SetFobs(fobs, 4);
  ASSERT_TRUE(set.Sort());
  const std::vector<std::array<int, 3>> expected = {{-1, 5, 0}, {2, -3, 0}, {2, 0, -4}, {2, 0, 1}};
  const float amplitudes[4] = {11, 12, 13, 10};
  for (unsigned int i = 0; i < 4; ++i) {
    std::array<int, 3> hkl{};
    float value = 0;
    ASSERT_TRUE(set.GetHKLElement(hkl[0], hkl[1], hkl[2], i) && set.GetFobsElement(value, i));
    EXPECT_EQ(hkl, expected[i]);
    EXPECT_EQ(value, amplitudes[i]);
  }
  float out[4] = {};
  set.GetFobs(out);
  EXPECT_EQ(out[0], 10);
  set.SetFobsElement(99, 0);
  set.GetFobs(out);
  EXPECT_EQ(out[1], 99);
  EXPECT_FALSE(VXReflection().Sort());
}

TEST(Reflection, copies_deeply_and_clears_its_data) {
  VXReflection set = with_indices({1}, {2}, {3});
  const float fobs = 4;
  set.SetFobs(&fobs, 1);
  set.SetTitle("one");
  set.SetRESO(0.01, 0.16);
  const std::unique_ptr<VXBase> copy(set.CreateCopy());
  EXPECT_TRUE(copy->IsDataType(set.GetDataType()));
  EXPECT_FALSE(copy->IsDataType(0));
  auto& twin = dynamic_cast<VXReflection&>(*copy);
  VXReflection assigned;
  assigned = set;
  set.SetFobsElement(5, 0);
  set.SetTitle(nullptr);
  for (VXReflection* kept : {&twin, &assigned}) {
    float value = 0;
    EXPECT_TRUE(kept->GetFobsElement(value, 0));
    EXPECT_EQ(value, 4);
    EXPECT_EQ(kept->GetTitle(), "one");
    EXPECT_EQ(kept->GetResolution(), 2.5);
    EXPECT_NE(kept->GetImpl(), set.GetImpl());
  }
  twin.Clear();
  EXPECT_EQ(twin.GetCount(), 0U);
  EXPECT_EQ(twin.GetTitle(), "");
  int h = 0;
  EXPECT_FALSE(twin.GetHKLElement(h, h, h, 0));
}

TEST(Reflection, keeps_resolution_limits_as_tagged_data) {
  VXReflection set;
  EXPECT_EQ(set.GetResolution(), 0.0);
  set.SetRESO(0.0004, 0.25);
  EXPECT_EQ(set.GetDoubleData("reslo"), 0.0004);
  EXPECT_EQ(set.GetDoubleData("reshi"), 0.25);
  EXPECT_EQ(set.GetResolution(), 2.0);
  set.SetFloatData("reso", 3);
  EXPECT_EQ(set.GetResolution(), 0.0);
}

TEST(CalcResolution, gives_the_square_of_sin_theta_over_lambda) {
  const std::vector<std::array<double, 6>> cells = {{10, 10, 10, 90, 90, 90},
                                                    {31, 42, 53, 90, 104, 90},
                                                    {50, 50, 80, 90, 90, 120},
                                                    {21, 34, 55, 71, 83, 112}};
  std::vector<int> h, k, l;
  for (int i = -3; i <= 3; ++i)
    for (int j = -3; j <= 3; ++j)
      for (int m = -3; m <= 3; ++m) {
        h.push_back(7 * i);
        k.push_back(5 * j);
        l.push_back(3 * m);
      }
  for (const auto& c : cells) {
    VXReflection set = with_indices(h, k, l);
    float f[6];
    std::transform(c.begin(), c.end(), f, [](double v) { return static_cast<float>(v); });
    set.SetSymmetry(VXXtal::VXSymmetry(1, VXXtal::VXUnitCell(f)));
    ASSERT_TRUE(set.CalcResolution());
    const gemmi::UnitCell cell(c[0], c[1], c[2], c[3], c[4], c[5]);
    std::vector<float> values(h.size());
    ASSERT_TRUE(set.GetStolsq(values.data()));
    for (std::size_t i = 0; i < h.size(); ++i) {
      const double expected = cell.calculate_1_d2({{h[i], k[i], l[i]}}) / 4;
      EXPECT_NEAR(values[i], expected, 2e-7 * expected);
    }
  }
  VXReflection one = with_indices({1}, {0}, {0});
  EXPECT_FALSE(one.CalcResolution());  // no group
  one.SetSymmetry(VXXtal::VXSymmetry(1, VXXtal::VXUnitCell()));
  EXPECT_FALSE(one.CalcResolution());  // no cell
  one.SetSymmetry(VXXtal::VXSymmetry(1, VXXtal::VXUnitCell(10, 10, 10, 90, 90, 90)));
  ASSERT_TRUE(one.CalcResolution());
  float stolsq = 0;
  one.GetStolsqElement(stolsq, 0);
  EXPECT_FLOAT_EQ(stolsq, 0.0025F);
  EXPECT_FALSE(VXReflection().CalcResolution());
}

// One reflection with a different number in every column.
VXReflection one_of_everything() {
  VXReflection set = with_indices({1}, {2}, {3});
  const auto put = [&set](unsigned int column, float value) { set.SetColumn(column, &value, 1); };
  put(columns::Phase, 30);
  put(columns::PhaseCalc, 60);
  put(columns::Fobs, 7);
  put(columns::Fcalc, 2);
  put(columns::FOM, 0.5F);
  put(columns::Fwt, 11);
  put(columns::Fdelwt, 13);
  put(columns::Phiwt, 120);
  put(columns::Phidelwt, 240);
  const float abcd[4] = {17, 19, 23, 29};
  set.SetABCD(&abcd[0], &abcd[1], &abcd[2], &abcd[3], 1);
  return set;
}

TEST(MapCoefficients, come_from_the_columns_of_their_map_type) {
  const std::vector<std::pair<float, float>> expected = {
      {7, 30},  {2, 60},  {12, 60},   {5, 60},   {17, 60},  {29, 60}, {17, 30},
      {19, 30}, {49, 30}, {3.5F, 30}, {11, 120}, {13, 240}, {7, 30},  {7, 30}};
  const VXReflection set = one_of_everything();
  for (int type = 0; type < static_cast<int>(expected.size()); ++type) {
    float amplitude = 0, phase = 0, a = 0, b = 0;
    EXPECT_TRUE(set.GetImpl()->GetAmpPhase(amplitude, phase, 0, type));
    EXPECT_EQ(std::pair(amplitude, phase), expected[static_cast<std::size_t>(type)]) << type;
    EXPECT_TRUE(set.GetImpl()->GetAB(a, b, 0, type));
    const double turn = phase * 3.14159265358979 / 180;
    EXPECT_NEAR(a, amplitude * std::cos(turn), 1e-6 * amplitude);
    EXPECT_NEAR(b, amplitude * std::sin(turn), 1e-6 * amplitude);
    EXPECT_EQ(set.ValidateMaptype(type), type <= 11) << type;
  }
  EXPECT_FALSE(set.ValidateMaptype(-1));
}

TEST(MapCoefficients, that_are_not_numbers_are_left_out_of_maps_and_only_there) {
  for (unsigned int missing : {columns::Phase, columns::Fobs}) {
    VXReflection set = one_of_everything();
    set.SetElement(missing, nan_value, 0);
    float amplitude = 0, phase = 0, a = -1, b = -1;
    EXPECT_FALSE(set.GetImpl()->GetAB(a, b, 0, VXMTZMapType::Fo));
    EXPECT_EQ(a, -1);
    EXPECT_TRUE(set.GetImpl()->GetAmpPhase(amplitude, phase, 0, VXMTZMapType::Fo));
    EXPECT_TRUE(std::isnan(amplitude) || std::isnan(phase));
    EXPECT_TRUE(set.GetImpl()->GetAB(a, b, 0, VXMTZMapType::Fc));
  }
  // A SigmaA map passes validation without a phase column, and is then a map of nothing.
  VXReflection set = one_of_everything();
  set.SetPhase(nullptr, 1);
  EXPECT_TRUE(set.ValidateMaptype(VXMTZMapType::TwoFoFcSigmaA));
  float a = 0, b = 0;
  EXPECT_FALSE(set.GetImpl()->GetAB(a, b, 0, VXMTZMapType::TwoFoFcSigmaA));
}

TEST(MapCoefficients, are_refused_for_map_types_whose_columns_are_missing) {
  // For each column the map types that need it.
  const std::vector<std::pair<unsigned int, std::vector<int>>> needed = {
      {columns::Phase, {0, 8, 9}},
      {columns::PhaseCalc, {1, 2, 3, 4, 5}},
      {columns::Fobs, {0, 2, 3, 4, 5, 8, 9}},
      {columns::Fcalc, {1, 2, 3, 4, 5}},
      {columns::FOM, {9}},
      {columns::Fwt, {10}},
      {columns::Phiwt, {10}},
      {columns::Fdelwt, {11}},
      {columns::Phidelwt, {11}}};
  for (const auto& [column, types] : needed) {
    vxgrid_test::MessageCapture messages;
    VXReflection set = one_of_everything();
    set.SetColumn(column, static_cast<float*>(nullptr), 1);
    for (int type = 0; type <= 11; ++type) {
      const bool is_needed = std::find(types.begin(), types.end(), type) != types.end();
      EXPECT_EQ(set.ValidateMaptype(type), !is_needed) << column << " " << type;
    }
    const bool speaks = column == columns::Fcalc || column == columns::PhaseCalc;
    EXPECT_EQ(messages.messages.size(), speaks ? 1U : 0U);
  }
  vxgrid_test::MessageCapture messages;
  VXReflection empty;
  EXPECT_FALSE(empty.ValidateMaptype(VXMTZMapType::TwoFoFcSigmaA));
  EXPECT_FALSE(empty.ValidateMaptype(VXMTZMapType::FcAuto));
  EXPECT_TRUE(messages.messages.empty());
  EXPECT_FALSE(empty.ValidateMaptype(VXMTZMapType::Fc));
  ASSERT_EQ(messages.messages.size(), 2U);
  EXPECT_EQ(messages.messages[0], std::pair(VXErrorLevel::Error, std::string("fcalc missing.")));
  EXPECT_EQ(messages.messages[1],
            std::pair(VXErrorLevel::Error, std::string("phase calc missing.")));
}

}  // namespace
