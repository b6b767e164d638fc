// Reading the bytes of MTZ reflection files.
#include "vxgrid/reflection/mtz_file.h"

#include <algorithm>    // for all_of, max, min, transform
#include <array>        // for array
#include <bit>          // for bit_cast
#include <cmath>        // for sqrt
#include <cstddef>      // for size_t
#include <cstdint>      // for int64_t, uint32_t, uint64_t
#include <limits>       // for numeric_limits
#include <map>          // for map
#include <new>          // for bad_alloc
#include <optional>     // for optional
#include <span>         // for span
#include <string_view>  // for string_view
#include <vector>       // for vector

#include "reflection/field_scanner.h"
#include "reflection/mtz_records.h"
#include "toolkit/host/bounded_read.h"
#include "vxgrid/reflection/reflection.h"

namespace VXCore {
namespace {

using detail::FieldScanner;
using detail::mtz_record_size;
using detail::MtzStart;
namespace columns = VXMTZColumnIndex;

constexpr std::int64_t absent = -1;

// What the text records tell of the rows.
struct MtzHeader {
  unsigned int column_count = 0;      // NCOL
  unsigned int reflection_count = 0;  // NCOL
  std::array<float, 6> cell{};        // CELL
  unsigned int group_number = 0;      // SYMINF
  // Of the columns with the wanted labels. An amplitude may come as an intensity.
  std::array<std::int64_t, columns::count> positions{};
  std::int64_t fobs_intensity = absent;
  std::int64_t fcalc_intensity = absent;

  MtzHeader() { positions.fill(absent); }

  bool has(unsigned int index) const { return positions[index] != absent; }
  bool has_fobs() const { return has(columns::FP) || fobs_intensity != absent; }
  bool has_fcalc() const { return has(columns::FC) || fcalc_intensity != absent; }
  bool fits_rows() const {
    const auto in_row = [this](std::int64_t position) { return position < column_count; };
    return std::all_of(positions.begin(), positions.end(), in_row) && in_row(fobs_intensity) &&
           in_row(fcalc_intensity);
  }
};

void note_column(MtzHeader& header, const VXMTZColumnNames& names, std::int64_t position,
                 std::string_view label, char type) {
  const bool is_intensity = type == 'J' || type == 'K';
  for (unsigned int index = 0; index < columns::count; ++index) {
    if (names.GetColumnNames()[index] != label) continue;
    if (is_intensity && index == columns::FP)
      header.fobs_intensity = position;
    else if (is_intensity && index == columns::FC)
      header.fcalc_intensity = position;
    else
      header.positions[index] = position;
  }
}

MtzHeader read_header(vxistream& is, VXReflection& refl, const VXMTZColumnNames& names) {
  MtzHeader header;
  std::int64_t next_column = 0;
  std::array<char, mtz_record_size> buffer{};
  while (const auto record = detail::read_mtz_record(is, buffer)) {
    const auto scanner_behind = [&record](std::string_view prefix) {
      return record->substr(0, prefix.size()) == prefix
                 ? std::optional(FieldScanner(record->substr(prefix.size())))
                 : std::nullopt;
    };
    if (auto scanner = scanner_behind("NCOL")) {
      unsigned int batch_count = 0;
      static_cast<void>(scanner->number(header.column_count) &&
                        scanner->number(header.reflection_count) && scanner->number(batch_count));
    } else if (scanner = scanner_behind("CELL"); scanner) {
      for (float& parameter : header.cell) {
        if (!scanner->number(parameter)) break;
      }
    } else if (scanner = scanner_behind("SYMINF"); scanner) {
      int operators = 0;
      int primitive_operators = 0;
      std::string_view lattice;
      static_cast<void>(scanner->number(operators) && scanner->number(primitive_operators) &&
                        scanner->word(lattice) && scanner->number(header.group_number));
    } else if (scanner = scanner_behind("RESO"); scanner) {
      float low = 0;
      float high = 0;
      if (scanner->number(low) && scanner->number(high)) refl.SetRESO(low, high);
    } else if (scanner = scanner_behind("COLUMN"); scanner) {
      std::string_view label;
      char type = ' ';
      if (scanner->word(label)) {
        scanner->character(type);
        note_column(header, names, next_column, label, type);
      }
      ++next_column;
    }
  }
  return header;
}

// The columns of the data block that are wanted, as words, zero wherever the block has none.
class MtzRows {
 public:
  MtzRows(const MtzHeader& header, const MtzStart& start)
      : start_(start), width_(header.column_count), count_(header.reflection_count) {
    for (std::int64_t position : header.positions)
      want(position);
    want(header.fcalc_intensity);
    if (header.fobs_intensity != absent) columns_.try_emplace(header.positions[columns::FP]);
    for (auto& [position, words] : columns_)
      words.resize(count_);
  }

  /// Takes what a stretch of the block holds that begins with its word number `first`.
  void take(std::span<const std::uint32_t> stretch, std::int64_t first) {
    const std::int64_t end = first + static_cast<std::int64_t>(stretch.size());
    for (auto& [position, words] : columns_) {
      // The first row whose word lies in the stretch.
      const std::int64_t before = std::max(first - position, std::int64_t{0});
      const std::int64_t row = (before + width_ - 1) / width_;
      std::int64_t place = row * width_ + position;
      for (auto i = static_cast<std::size_t>(row); place < end && i < words.size(); ++i) {
        words[i] = stretch[static_cast<std::size_t>(place - first)];
        place += width_;
      }
    }
  }

  std::vector<float> reals(std::int64_t position) const {
    return converted<float>(position, start_.swap_reals, [](float value) { return value; });
  }

  std::vector<float> square_roots(std::int64_t position) const {
    return converted<float>(position, start_.swap_reals,
                            [](float value) { return std::sqrt(value); });
  }

  /// Empty when one does not fit an int.
  std::optional<std::vector<int>> indices(std::int64_t position) const {
    bool all_fit = true;
    auto values = converted<int>(position, start_.swap_integers, [&all_fit](float value) {
      const bool fits = value >= -2147483648.0F && value < 2147483648.0F;
      all_fit = all_fit && fits;
      return fits ? static_cast<int>(value) : 0;
    });
    if (!all_fit) return std::nullopt;
    return values;
  }

 private:
  void want(std::int64_t position) {
    if (position != absent) columns_.try_emplace(position);
  }

  template <class T, class Convert>
  std::vector<T> converted(std::int64_t position, bool swap, Convert&& convert) const {
    std::vector<T> values(count_);
    const std::vector<std::uint32_t>& words = columns_.at(position);
    std::transform(words.begin(), words.end(), values.begin(), [&](std::uint32_t word) {
      return convert(std::bit_cast<float>(swap ? __builtin_bswap32(word) : word));
    });
    return values;
  }

  const MtzStart& start_;
  std::int64_t width_;
  std::size_t count_;
  std::map<std::int64_t, std::vector<std::uint32_t>> columns_;  // by position in the row
};

bool set_indices(VXReflection& refl, const MtzHeader& header, const MtzRows& rows) {
  if (!header.has(columns::H) || !header.has(columns::K) || !header.has(columns::L)) return false;
  const auto h = rows.indices(header.positions[columns::H]);
  const auto k = rows.indices(header.positions[columns::K]);
  const auto l = rows.indices(header.positions[columns::L]);
  if (!h || !k || !l) return false;
  refl.SetCount(header.reflection_count);
  return refl.SetHKL(h->data(), k->data(), l->data(), header.reflection_count);
}

// An intensity in the place of fobs sends the reader to the amplitude column of that label, which
// is the word before the row when there is none; see the declaration.
bool set_amplitudes(VXReflection& refl, const MtzHeader& header, const MtzRows& rows) {
  const unsigned int n = header.reflection_count;
  if (header.has_fobs()) {
    const std::int64_t position = header.positions[columns::FP];
    const auto fobs =
        header.fobs_intensity != absent ? rows.square_roots(position) : rows.reals(position);
    if (!refl.SetFobs(fobs.data(), n)) return false;
  }
  if (header.has_fcalc()) {
    const auto fcalc = header.fcalc_intensity != absent ? rows.square_roots(header.fcalc_intensity)
                                                        : rows.reals(header.positions[columns::FC]);
    if (!refl.SetFcalc(fcalc.data(), n)) return false;
  }
  return true;
}

bool set_column(VXReflection& refl, unsigned int column, const MtzHeader& header,
                const MtzRows& rows, unsigned int index) {
  if (!header.has(index)) return true;
  return refl.SetColumn(column, rows.reals(header.positions[index]).data(),
                        header.reflection_count);
}

bool set_coefficients(VXReflection& refl, const MtzHeader& header, const MtzRows& rows) {
  for (unsigned int index = columns::HLA; index <= columns::HLD; ++index) {
    if (!header.has(index)) return true;
  }
  const auto column = [&](unsigned int index) { return rows.reals(header.positions[index]); };
  return refl.SetABCD(column(columns::HLA).data(), column(columns::HLB).data(),
                      column(columns::HLC).data(), column(columns::HLD).data(),
                      header.reflection_count);
}

void set_symmetry(VXReflection& refl, const MtzHeader& header) {
  if (header.group_number == 0 || header.cell[5] == 0) return;
  refl.SetSymmetry(VXXtal::VXSymmetry(header.group_number, VXXtal::VXUnitCell(header.cell.data())));
}

bool fill(VXReflection& refl, const MtzHeader& header, const MtzRows& rows) {
  const auto set = [&](unsigned int column, unsigned int index) {
    return set_column(refl, column, header, rows, index);
  };
  if (!set_indices(refl, header, rows) || !set_amplitudes(refl, header, rows) ||
      !set(VXReflectionColumn::Sigma, columns::SIGFP) || !set_coefficients(refl, header, rows) ||
      !set(VXReflectionColumn::Phase, columns::PHI) ||
      !set(VXReflectionColumn::PhaseCalc, columns::PHIC) ||
      !set(VXReflectionColumn::FOM, columns::FOM))
    return false;
  set_symmetry(refl, header);
  return set(VXReflectionColumn::Fwt, columns::FWT) &&
         set(VXReflectionColumn::Fdelwt, columns::DELFWT) &&
         set(VXReflectionColumn::Phiwt, columns::PHWT) &&
         set(VXReflectionColumn::Phidelwt, columns::PHDELWT);
}

// The block between the first one and the text records, which is whole or std::bad_alloc. The text
// records tell what is wanted of it and come behind it: where the stream knows its length they are
// read first and the block in stretches; otherwise the block is held.
class MtzData {
 public:
  MtzData(vxistream& is, std::int64_t size) : is_(is) {
    if (size < 0) throw std::bad_alloc();
    const auto bytes = static_cast<std::uint64_t>(size);
    words_ = bytes / sizeof(std::uint32_t);
    const std::optional<std::uint64_t> left = is.bytes_left();
    if (left && bytes > *left) throw std::bad_alloc();
    start_ = is.tell();
    if (left && is.seek(size, vxstream::cur)) return;
    std::uint64_t arrived = 0;
    if (!VXHost::detail::read_claimed(is, words_, held_, &arrived) || arrived < bytes)
      throw std::bad_alloc();
  }

  std::uint64_t word_count() const { return words_; }

  /// Leaves the stream where it was, which is behind the text records.
  void read_into(MtzRows& rows) {
    if (!held_.empty()) {
      rows.take({held_.data(), held_.size()}, 0);
      return;
    }
    const std::uint64_t end = is_.tell();
    if (!is_.seek(static_cast<std::int64_t>(start_), vxstream::beg)) return;
    std::vector<std::uint32_t> stretch(std::min(words_, std::uint64_t{1} << 16));
    for (std::uint64_t done = 0; done < words_; done += stretch.size()) {
      stretch.resize(std::min<std::uint64_t>(stretch.size(), words_ - done));
      is_.read(reinterpret_cast<char*>(stretch.data()), stretch.size() * sizeof(std::uint32_t));
      rows.take(stretch, static_cast<std::int64_t>(done));
    }
    is_.seek(static_cast<std::int64_t>(end), vxstream::beg);
  }

 private:
  vxistream& is_;
  std::uint64_t start_ = 0;
  std::uint64_t words_ = 0;
  ValueBuffer<std::uint32_t> held_;
};

std::optional<MtzStart> read_start(vxistream& is, std::size_t& arrived) {
  std::array<char, mtz_record_size> block{};
  arrived = is.read(block.data(), block.size());
  return arrived < block.size() ? std::nullopt : detail::parse_mtz_start(block);
}

}  // namespace

VXMTZColumnNames::VXMTZColumnNames()
    : names_{"H",   "K",   "L",   "FP",  "FC",         "PHI", "PHIC",   "SIGFP", "FOM",
             "HLA", "HLB", "HLC", "HLD", "FreeR_flag", "FWT", "DELFWT", "PHWT",  "PHDELWT"} {}

const std::string& VXMTZColumnNames::GetColumnName(unsigned int index) const {
  return index < names_.size() ? names_[index] : out_of_range_;
}

bool VXMTZColumnNames::SetColumnName(unsigned int index, const std::string& label) {
  if (index >= names_.size()) return false;
  names_[index] = label;
  return true;
}

bool VXReadReflectionMTZ(vxistream& is, VXReflection& refl, const VXMTZColumnNames& names) {
  std::size_t arrived = 0;
  const std::optional<MtzStart> start = read_start(is, arrived);
  if (arrived < mtz_record_size) return true;
  if (!start) return false;
  MtzData data(is, start->data_size());
  if (data.word_count() == 0) return true;

  const MtzHeader header = read_header(is, refl, names);
  if (header.reflection_count == 0 || header.column_count == 0) return true;
  const std::uint64_t row_bytes = std::uint64_t{header.column_count} * sizeof(std::uint32_t);
  if (header.fits_rows() &&
      row_bytes <= std::numeric_limits<std::uint64_t>::max() / header.reflection_count &&
      VXHost::detail::is_proportionate(row_bytes * header.reflection_count,
                                       data.word_count() * sizeof(std::uint32_t))) {
    MtzRows rows(header, *start);
    data.read_into(rows);
    if (fill(refl, header, rows)) return true;
  }
  refl.GetImpl()->Clear();
  return false;
}

bool VXGetMTZFileColumnNamesAndTypes(vxistream& is, std::vector<std::string>& names,
                                     std::vector<char>& types) {
  std::size_t arrived = 0;
  const std::optional<MtzStart> start = read_start(is, arrived);
  if (!start || !is.seek(start->data_size(), vxstream::cur)) return false;
  const std::size_t known = names.size();
  constexpr std::string_view keyword = "COLUMN";
  std::array<char, mtz_record_size> buffer{};
  while (const auto record = detail::read_mtz_record(is, buffer)) {
    const std::size_t found = record->find(keyword);
    if (found == std::string_view::npos) continue;
    FieldScanner scanner(record->substr(found + keyword.size()));
    std::string_view label;
    if (!scanner.word(label)) continue;
    char type = ' ';
    scanner.character(type);
    names.emplace_back(label);
    types.push_back(type);
  }
  return names.size() > known;
}

}  // namespace VXCore
