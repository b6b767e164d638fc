// Reflection files of X-PLOR and CNS: keywords, each followed by its numbers.
#include "vxgrid/reflection/xplor.h"

#include <array>        // for array
#include <cmath>        // for sqrt
#include <cstddef>      // for size_t
#include <new>          // for bad_alloc
#include <string>       // for string
#include <string_view>  // for string_view
#include <vector>       // for vector

#include "reflection/field_scanner.h"
#include "reflection/text_rows.h"
#include "vxgrid/reflection/reflection.h"

namespace VXCore {
namespace {

using detail::contains;
using detail::FieldScanner;
using detail::ReflectionRow;
using detail::RowOutcome;
using detail::Words;
namespace columns = VXReflectionColumn;

constexpr std::size_t longest_record = 1024;
constexpr std::string_view record_keyword = "inde";

// Which word of a record holds what, as the first record of a file tells.
struct RecordLayout {
  static constexpr std::size_t absent = longest_record;  // behind every word

  std::size_t indices = absent;  // of h, before k and l
  std::size_t fobs = absent;
  std::size_t fcalc = absent;
  std::size_t phase = absent;
  std::size_t fom = absent;
  bool has_sigma = false;
  std::array<bool, 4> has_coefficient{};

  bool has_abcd() const {
    return has_coefficient[0] && has_coefficient[1] && has_coefficient[2] && has_coefficient[3];
  }
};

// A value stands behind its keyword.
RecordLayout find_layout(std::string_view record) {
  RecordLayout layout;
  FieldScanner scanner(record);
  std::string_view word;
  for (std::size_t next = 1; scanner.word(word); ++next) {
    if (contains(word, record_keyword)) layout.indices = next;
    if (contains(word, "fobs")) {
      layout.fobs = next;
      if (layout.phase == RecordLayout::absent) layout.phase = next + 1;
    }
    if (contains(word, "fcal")) layout.fcalc = next;
    if (contains(word, "phas")) layout.phase = next;
    if (contains(word, "fom")) layout.fom = next;
    if (contains(word, "sigm")) layout.has_sigma = true;
    constexpr std::array<std::string_view, 4> coefficients{"hla", "hlb", "hlc", "hld"};
    for (std::size_t i = 0; i < coefficients.size(); ++i) {
      if (contains(word, coefficients[i])) layout.has_coefficient[i] = true;
    }
  }
  return layout;
}

// The records of a file, in lower case and each in one line.
class RecordReader {
 public:
  explicit RecordReader(vxistream& is) : is_(is) {}

  bool next(std::string& record) {
    while (!starts_record_) {
      if (!next_line()) return false;
    }
    record.clear();
    do {
      record.append(line_, 0, longest_record - record.size());
    } while (next_line() && !starts_record_);
    return true;
  }

 private:
  bool next_line() {
    do {
      if (!is_.getline(line_)) {
        starts_record_ = false;
        return false;
      }
    } while (!line_.empty() && line_.front() == '#');
    for (char& c : line_) {
      if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    line_ += ' ';
    starts_record_ = contains(line_, record_keyword);
    return true;
  }

  vxistream& is_;
  std::string line_;
  bool starts_record_ = false;
};

RowOutcome scan_record(const RecordLayout& layout, const Words& words, ReflectionRow& row) {
  row = ReflectionRow();
  bool counts = true;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    FieldScanner field(words[layout.indices + axis]);
    if (!field.number(row.hkl[axis])) counts = false;
    if (field.overflowed()) return RowOutcome::index_overflow;
  }
  const auto scan = [&](std::size_t position, float& value) {
    FieldScanner(words[position]).number(value);
  };
  scan(layout.fobs, row.values[columns::Fobs]);
  scan(layout.fcalc, row.values[columns::Fcalc]);
  scan(layout.phase, row.values[columns::Phase]);
  scan(layout.fom, row.values[columns::FOM]);
  // Not the words of their own: see the declaration.
  row.values[columns::Sigma] = row.values[columns::FOM];
  row.abcd.fill(row.values[columns::FOM]);
  return counts ? RowOutcome::counts : RowOutcome::does_not_count;
}

std::vector<unsigned int> columns_of(const RecordLayout& layout) {
  std::vector<unsigned int> found;
  if (layout.fobs != RecordLayout::absent) found.push_back(columns::Fobs);
  if (layout.fcalc != RecordLayout::absent) found.push_back(columns::Fcalc);
  if (layout.has_sigma) found.push_back(columns::Sigma);
  if (layout.phase != RecordLayout::absent) found.push_back(columns::Phase);
  if (layout.fom != RecordLayout::absent) found.push_back(columns::FOM);
  return found;
}

// The columns of a set that a record is written of; empty when the set does not have them.
struct WrittenColumns {
  explicit WrittenColumns(const VXReflection& refl)
      : n(refl.GetCount()),
        fobs(get(refl, columns::Fobs)),
        phase(get(refl, columns::Phase)),
        fcalc(get(refl, columns::Fcalc)),
        phase_calc(get(refl, columns::PhaseCalc)),
        sigma(get(refl, columns::Sigma)),
        fom(get(refl, columns::FOM)),
        stolsq(get(refl, columns::Stolsq)),
        rfree(n) {
    if (!refl.GetRFree(rfree.data())) rfree.clear();
    for (std::vector<float>& coefficient : abcd)
      coefficient.resize(n);
    has_abcd = refl.GetABCD(abcd[0].data(), abcd[1].data(), abcd[2].data(), abcd[3].data());
  }

  std::vector<float> get(const VXReflection& refl, unsigned int column) const {
    std::vector<float> values(n);
    if (!refl.GetColumn(column, values.data())) values.clear();
    return values;
  }

  std::size_t n;
  std::vector<float> fobs, phase, fcalc, phase_calc, sigma, fom, stolsq;
  std::vector<int> rfree;
  std::array<std::vector<float>, 4> abcd;
  bool has_abcd = false;
};

// A piece of a record has its width whatever its numbers.
void put(vxostream& os, const std::string& piece, std::size_t width) {
  os << std::string_view(piece).substr(0, width);
}

float spacing(float stolsq) {
  const float root = std::sqrt(stolsq);
  return 1 / (root + root);
}

void write_values(vxostream& os, const WrittenColumns& set, std::size_t i) {
  if (!set.fobs.empty() && !set.phase.empty())
    put(os, format_text("FOBS= %11.5f %11.5f ", set.fobs[i], set.phase[i]), 30);
  if (!set.fcalc.empty() && !set.phase_calc.empty())
    put(os, format_text("FCALC= %11.5f %11.5f ", set.fcalc[i], set.phase_calc[i]), 31);
  if (!set.sigma.empty()) put(os, format_text("SIGMa= %8.5f ", set.sigma[i]), 16);
  if (!set.fom.empty()) put(os, format_text("FOM= %8.5f ", set.fom[i]), 14);
  if (!set.rfree.empty()) put(os, format_text("TEST= %1d ", set.rfree[i]), 8);
  if (!set.stolsq.empty()) put(os, format_text("RESO= %11.5f ", spacing(set.stolsq[i])), 18);
  if (set.has_abcd)
    put(os,
        format_text("HLA= %11.5f HLB= %11.5f HLC= %11.5f HLD= %11.5f ", set.abcd[0][i],
                    set.abcd[1][i], set.abcd[2][i], set.abcd[3][i]),
        68);
}

}  // namespace

bool VXReadReflectionXPLOR(vxistream& is, VXReflection& refl) {
  RecordReader reader(is);
  detail::ReflectionRows rows;
  ReflectionRow row;
  Words words;
  RecordLayout layout;
  std::string record;
  for (bool is_first = true; reader.next(record); is_first = false) {
    if (is_first) layout = find_layout(record);
    words.split(record);
    const RowOutcome outcome = scan_record(layout, words, row);
    if (outcome == RowOutcome::index_overflow) return detail::refuse(refl);
    if (outcome == RowOutcome::counts) rows.add(row);
  }
  return !rows.empty() && rows.fill(refl, columns_of(layout), layout.has_abcd());
}

bool VXWriteReflectionXPLOR(vxostream& os, VXReflection& refl) {
  try {
    const std::size_t n = refl.GetCount();
    if (n == 0 || !refl.GetImpl()->has_indices()) return false;
    std::vector<int> h(n), k(n), l(n);
    refl.GetHKL(h.data(), k.data(), l.data());
    const WrittenColumns set(refl);
    for (std::size_t i = 0; i < n; ++i) {
      put(os, format_text("INDE %5d%5d%5d ", h[i], k[i], l[i]), 21);
      write_values(os, set, i);
      os << '\n';
    }
    return os.good();
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace VXCore
