// What the readers of reflection text files share: lines, words, and the rows gathered of them.
#include "reflection/text_rows.h"

#include <algorithm>  // for transform
#include <limits>     // for numeric_limits

#include "reflection/field_scanner.h"
#include "vxgrid/reflection/reflection.h"

namespace VXCore::detail {

bool read_line(vxistream& is, std::string& buffer, std::size_t longest, std::string_view& line) {
  if (!is.getline(buffer)) return false;
  line = std::string_view(buffer).substr(0, longest);
  return true;
}

void Words::split(std::string_view text) {
  FieldScanner scanner(text);
  count_ = 0;
  while (count_ < most && scanner.word(words_[count_]))
    ++count_;
}

template <class Get>
auto ReflectionRows::gathered(Get&& get) const {
  std::vector<decltype(get(rows_.front()))> values(rows_.size());
  std::transform(rows_.begin(), rows_.end(), values.begin(), get);
  return values;
}

bool ReflectionRows::set_indices(VXReflection& refl) const {
  const auto index = [this](std::size_t axis) {
    return gathered([axis](const ReflectionRow& row) { return row.hkl[axis]; });
  };
  return refl.SetHKL(index(0).data(), index(1).data(), index(2).data(), refl.GetCount());
}

bool ReflectionRows::set_column(VXReflection& refl, unsigned int column) const {
  const auto values = gathered([column](const ReflectionRow& row) { return row.values[column]; });
  return refl.SetColumn(column, values.data(), refl.GetCount());
}

bool ReflectionRows::set_abcd(VXReflection& refl) const {
  const auto coefficient = [this](std::size_t i) {
    return gathered([i](const ReflectionRow& row) { return row.abcd[i]; });
  };
  return refl.SetABCD(coefficient(0).data(), coefficient(1).data(), coefficient(2).data(),
                      coefficient(3).data(), refl.GetCount());
}

bool ReflectionRows::fill(VXReflection& refl, const std::vector<unsigned int>& columns,
                          bool with_abcd) const {
  refl.Clear();
  if (rows_.size() > std::numeric_limits<unsigned int>::max()) return false;
  refl.SetCount(static_cast<unsigned int>(rows_.size()));
  bool is_set = set_indices(refl);
  for (const unsigned int column : columns)
    is_set = is_set && set_column(refl, column);
  if (with_abcd) is_set = is_set && set_abcd(refl);
  if (!is_set) refl.Clear();
  return is_set;
}

bool refuse(VXReflection& refl) {
  refl.Clear();
  return false;
}

}  // namespace VXCore::detail
