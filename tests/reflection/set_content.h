// What a reflection set holds, as values that tests compare, and a set with every column.
#ifndef VXGRID_TESTS_REFLECTION_SET_CONTENT_H
#define VXGRID_TESTS_REFLECTION_SET_CONTENT_H

#include <array>    // for array
#include <map>      // for map
#include <string>   // for string
#include <utility>  // for pair
#include <vector>   // for vector

#include "vxgrid/reflection/reflection.h"

namespace vxgrid_test {

/// The columns that a set has, by name.
using SetContent = std::map<std::string, std::vector<float>>;

inline const std::vector<std::pair<std::string, unsigned int>>& named_columns() {
  namespace columns = VXCore::VXReflectionColumn;
  static const std::vector<std::pair<std::string, unsigned int>> names = {
      {"phase", columns::Phase},     {"phase_calc", columns::PhaseCalc},
      {"fobs", columns::Fobs},       {"fcalc", columns::Fcalc},
      {"phiwt", columns::Phiwt},     {"phidelwt", columns::Phidelwt},
      {"fwt", columns::Fwt},         {"fdelwt", columns::Fdelwt},
      {"sigma", columns::Sigma},     {"fom", columns::FOM},
      {"centric", columns::Centric}, {"rfree", columns::RFree},
      {"stolsq", columns::Stolsq}};
  return names;
}

inline SetContent content_of(const VXCore::VXReflection& set) {
  const unsigned int n = set.GetCount();
  SetContent content;
  std::array<std::vector<int>, 3> hkl;
  std::array<std::vector<float>, 4> abcd;
  for (auto& index : hkl)
    index.resize(n);
  for (auto& coefficient : abcd)
    coefficient.resize(n);
  if (n > 0 && set.GetHKL(hkl[0].data(), hkl[1].data(), hkl[2].data())) {
    for (std::size_t axis = 0; axis < 3; ++axis)
      content[std::string(1, "hkl"[axis])].assign(hkl[axis].begin(), hkl[axis].end());
  }
  for (const auto& [name, column] : named_columns()) {
    std::vector<float> floats(n);
    std::vector<int> ints(n);
    if (n > 0 && set.GetColumn(column, floats.data()))
      content[name] = floats;
    else if (n > 0 && set.GetColumn(column, ints.data()))
      content[name].assign(ints.begin(), ints.end());
  }
  if (n > 0 && set.GetABCD(abcd[0].data(), abcd[1].data(), abcd[2].data(), abcd[3].data())) {
    for (std::size_t i = 0; i < 4; ++i)
      content[std::string("hl") + "abcd"[i]] = abcd[i];
  }
  return content;
}

/// A set of three reflections with every column, a title, and a group with its cell. The values
/// have few digits, so that text formats keep them.
inline VXCore::VXReflection full_set() {
  const std::array<std::array<int, 3>, 3> hkl{{{-4, 0, 7}, {0, 3, 5}, {12, -1, 2}}};
  VXCore::VXReflection set;
  set.SetCount(3);
  set.SetHKL(hkl[0].data(), hkl[1].data(), hkl[2].data(), 3);
  float value = 10.5F;
  const auto next_three = [&value] {
    value += 10;
    return std::array<float, 3>{value, value + 1.25F, value + 2.125F};
  };
  for (const auto& [name, column] : named_columns())
    set.SetColumn(column, next_three().data(), 3);
  set.SetCentric(std::array{0, 1, 0}.data(), 3);
  set.SetRFree(std::array{1, 0, 1}.data(), 3);
  set.SetFOM(std::array{0.5F, 0.125F, 1.0F}.data(), 3);
  set.SetStolsq(std::array{0.01F, 0.04F, 0.0025F}.data(), 3);
  std::array<std::array<float, 3>, 4> abcd{};
  for (auto& coefficient : abcd)
    coefficient = next_three();
  set.SetABCD(abcd[0].data(), abcd[1].data(), abcd[2].data(), abcd[3].data(), 3);
  set.SetTitle("every column");
  const std::array<float, 6> cell{18, 20, 28, 90, 90, 90};
  set.SetSymmetry(VXCore::VXXtal::VXSymmetry(19, VXCore::VXXtal::VXUnitCell(cell.data())));
  return set;
}

/// A set of one reflection that a failed read either leaves or clears.
inline VXCore::VXReflection marked_set() {
  VXCore::VXReflection set;
  set.SetCount(1);
  set.SetTitle("before");
  return set;
}

/// Has a failed read left the set of marked_set() alone?
inline bool is_untouched(const VXCore::VXReflection& set) {
  return set.GetCount() == 1 && set.GetTitle() == "before";
}
inline bool is_cleared(const VXCore::VXReflection& set) {
  return set.GetCount() == 0 && set.GetTitle().empty();
}

/// Calls a reader on a text.
template <class Reader>
auto read_text(Reader reader, const std::string& text, VXCore::VXReflection& set) {
  VXCore::vxisstream stream(text);
  return reader(stream, set);
}

}  // namespace vxgrid_test

#endif
