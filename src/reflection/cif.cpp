// Reading reflections from a structure-factor file in mmCIF, line by line.
#include "vxgrid/reflection/cif.h"

#include <array>        // for array
#include <cmath>        // for sqrt
#include <cstddef>      // for size_t
#include <limits>       // for numeric_limits
#include <string>       // for string
#include <string_view>  // for string_view
#include <vector>       // for vector

#include "reflection/field_scanner.h"
#include "reflection/text_rows.h"
#include "vxgrid/reflection/reflection.h"

namespace VXCore {
namespace {

using detail::begins_with;
using detail::contains;
using detail::FieldScanner;
using detail::ReflectionRow;
using detail::RowOutcome;
using detail::Words;

constexpr std::size_t longest_line = 128;
constexpr std::size_t longest_word = 79;

enum Item : std::size_t {
  index_h,
  index_k,
  index_l,
  f_meas,
  f_calc,
  f_squared_meas,
  phase_meas,
  phase_calc,
  fom,
  f_meas_sigma,
  item_count
};

// The part of a tag that tells its item, by Item; F_meas is spelled with either F.
struct TagPart {
  std::string_view text;
  std::string_view other_spelling;
};
constexpr std::array<TagPart, item_count> tag_parts{{{".index_h", ".index_h"},
                                                     {".index_k", ".index_k"},
                                                     {".index_l", ".index_l"},
                                                     {".f_meas", ".F_meas"},
                                                     {".f_calc", ".F_calc"},
                                                     {".f_squared_meas", ".F_squared_meas"},
                                                     {".phase_meas", ".phase_meas"},
                                                     {".phase_calc", ".phase_calc"},
                                                     {".fom", ".fom"},
                                                     {".f_meas_sigma", ".F_meas_sigma"}}};

// Which word of a row holds which item.
class RowLayout {
 public:
  RowLayout() { positions_.fill(absent); }

  void add_tag(std::string_view tag) {
    for (std::size_t item = 0; item < item_count; ++item) {
      if (contains(tag, tag_parts[item].text) || contains(tag, tag_parts[item].other_spelling))
        positions_[item] = tag_count_;
    }
    ++tag_count_;
  }

  bool has(Item item) const { return positions_[item] != absent; }
  bool suffices() const {
    return has(index_h) && has(index_k) && has(index_l) && has(f_meas_sigma) &&
           (has(f_meas) || has(f_squared_meas));
  }
  FieldScanner field(const Words& words, Item item) const {
    return FieldScanner(words[positions_[item]].substr(0, longest_word));
  }

 private:
  static constexpr std::size_t absent = std::numeric_limits<std::size_t>::max();

  std::array<std::size_t, item_count> positions_{};
  std::size_t tag_count_ = 0;
};

RowOutcome scan_row(const RowLayout& layout, const Words& words, ReflectionRow& row) {
  row = ReflectionRow();
  bool counts = true;
  for (const Item axis : {index_h, index_k, index_l}) {
    FieldScanner field = layout.field(words, axis);
    if (!field.number(row.hkl[axis])) counts = false;
    if (field.overflowed()) return RowOutcome::index_overflow;
  }
  const auto scan = [&](Item item, unsigned int column) {
    return layout.field(words, item).number(row.values[column]);
  };
  // An amplitude stands over an intensity.
  float& fobs = row.values[VXReflectionColumn::Fobs];
  if (scan(f_squared_meas, VXReflectionColumn::Fobs)) fobs = std::sqrt(fobs);
  scan(f_meas, VXReflectionColumn::Fobs);
  scan(f_calc, VXReflectionColumn::Fcalc);
  scan(phase_meas, VXReflectionColumn::Phase);
  scan(phase_calc, VXReflectionColumn::PhaseCalc);
  scan(fom, VXReflectionColumn::FOM);
  counts = scan(f_meas_sigma, VXReflectionColumn::Sigma) && counts;
  return counts ? RowOutcome::counts : RowOutcome::does_not_count;
}

std::vector<unsigned int> columns_of(const RowLayout& layout) {
  std::vector<unsigned int> columns{VXReflectionColumn::Fobs};
  const auto add = [&](Item item, unsigned int column) {
    if (layout.has(item)) columns.push_back(column);
  };
  add(f_calc, VXReflectionColumn::Fcalc);
  add(f_meas_sigma, VXReflectionColumn::Sigma);
  add(phase_meas, VXReflectionColumn::Phase);
  add(phase_calc, VXReflectionColumn::PhaseCalc);
  add(fom, VXReflectionColumn::FOM);
  return columns;
}

}  // namespace

bool VXReadReflectionCIF(vxistream& is, VXReflection& refl) {
  enum { before_tags, among_tags, in_data } state = before_tags;
  RowLayout layout;
  detail::ReflectionRows rows;
  ReflectionRow row;
  Words words;
  std::string buffer;
  std::string_view line;
  while (detail::read_line(is, buffer, longest_line, line)) {
    if (begins_with(line, "#")) continue;
    if (state == in_data && (begins_with(line, "_") || begins_with(line, "loop_"))) break;
    if (begins_with(line, "_refln.")) {
      layout.add_tag(line);
      state = among_tags;
      continue;
    }
    if (state == before_tags) continue;
    if (state == among_tags) {
      if (!layout.suffices()) return false;
      state = in_data;
    }
    words.split(line);
    const RowOutcome outcome = scan_row(layout, words, row);
    if (outcome == RowOutcome::index_overflow) return detail::refuse(refl);
    if (outcome == RowOutcome::counts) rows.add(row);
  }
  return !rows.empty() && rows.fill(refl, columns_of(layout));
}

}  // namespace VXCore
