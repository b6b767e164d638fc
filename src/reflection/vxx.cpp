// VXX: a whole reflection set as binary records, in the byte order of the machine that writes.
#include "vxgrid/reflection/vxx.h"

#include <array>        // for array
#include <cstddef>      // for size_t
#include <cstdint>      // for uint32_t, uint64_t
#include <new>          // for bad_alloc
#include <string>       // for string
#include <string_view>  // for string_view
#include <type_traits>  // for is_floating_point_v
#include <vector>       // for vector

#include "toolkit/host/bounded_read.h"
#include "toolkit/host/byte_order.h"
#include "vxgrid/reflection/reflection.h"
#include "vxgrid/toolkit/vxb/primitives.h"

namespace VXCore {
namespace {

namespace columns = VXReflectionColumn;

enum Status : unsigned int {
  success = 0,
  wrong_record = 4,  // or no memory for it
  no_tag = 6,
  stream_ended = 8,
  no_length = 9,
};

constexpr std::uint64_t word_size = 4;

struct TaggedColumn {
  std::string_view tag;
  unsigned int column;
};
// In the order of writing.
constexpr std::array<TaggedColumn, 13> plain_columns{{{"phase", columns::Phase},
                                                      {"phase_calc", columns::PhaseCalc},
                                                      {"fobs", columns::Fobs},
                                                      {"fcalc", columns::Fcalc},
                                                      {"sigma", columns::Sigma},
                                                      {"fom", columns::FOM},
                                                      {"centric", columns::Centric},
                                                      {"rfree", columns::RFree},
                                                      {"stolsq", columns::Stolsq},
                                                      {"fwt", columns::Fwt},
                                                      {"fdelwt", columns::Fdelwt},
                                                      {"phiwt", columns::Phiwt},
                                                      {"phidelwt", columns::Phidelwt}}};
constexpr std::array<std::string_view, 3> index_tags{"H", "K", "L"};
constexpr std::array<std::string_view, 4> coefficient_tags{"HLA", "HLB", "HLC", "HLD"};

bool is_int_column(unsigned int column) {
  return column == columns::Centric || column == columns::RFree;
}

bool has_any_column(const VXReflectionImpl& refl) {
  for (unsigned int column = 0; column <= columns::Stolsq; ++column) {
    if (refl.has_column(column)) return true;
  }
  return refl.has_indices() || refl.has_abcd();
}

// Writes records up to the first that does not arrive.
class Writer {
 public:
  explicit Writer(vxostream& os) : os_(os) {}

  bool good() const { return good_; }

  void stamp(char byte) { good_ = good_ && os_.put(byte); }

  void bytes(std::string_view tag, const void* data, std::uint64_t size) {
    good_ = good_ && VXBWriteTag(os_, std::string(tag)) && VXBWriteDataLength(os_, size) &&
            os_.write(static_cast<const char*>(data), size) == size;
  }

  template <class T>
  void values(std::string_view tag, const std::vector<T>& array) {
    bytes(tag, array.data(), word_size * array.size());
  }

  void column(const VXReflection& refl, const TaggedColumn& tagged) {
    if (!refl.GetImpl()->has_column(tagged.column)) return;
    if (is_int_column(tagged.column))
      column_of<int>(refl, tagged);
    else
      column_of<float>(refl, tagged);
  }

 private:
  template <class T>
  void column_of(const VXReflection& refl, const TaggedColumn& tagged) {
    std::vector<T> array(refl.GetCount());
    refl.GetColumn(tagged.column, array.data());
    values(tagged.tag, array);
  }

  vxostream& os_;
  bool good_ = true;
};

void write_indices(Writer& writer, const VXReflection& refl) {
  if (!refl.GetImpl()->has_indices()) return;
  std::array<std::vector<int>, 3> hkl;
  for (std::vector<int>& index : hkl)
    index.resize(refl.GetCount());
  refl.GetHKL(hkl[0].data(), hkl[1].data(), hkl[2].data());
  for (std::size_t i = 0; i < hkl.size(); ++i)
    writer.values(index_tags[i], hkl[i]);
}

void write_coefficients(Writer& writer, const VXReflection& refl) {
  if (!refl.GetImpl()->has_abcd()) return;
  std::array<std::vector<float>, 4> abcd;
  for (std::vector<float>& coefficient : abcd)
    coefficient.resize(refl.GetCount());
  refl.GetABCD(abcd[0].data(), abcd[1].data(), abcd[2].data(), abcd[3].data());
  for (std::size_t i = 0; i < abcd.size(); ++i)
    writer.values(coefficient_tags[i], abcd[i]);
}

void write_all(Writer& writer, const VXReflection& refl) {
  const std::uint32_t count = refl.GetCount();
  writer.bytes("nref", &count, word_size);
  const std::string title = refl.GetTitle();
  if (!title.empty()) writer.bytes("title", title.data(), title.size());
  const VXXtal::VXSymmetry symmetry = refl.GetSymmetry();
  const std::uint32_t group = symmetry.GetNumber();
  writer.bytes("sg", &group, word_size);
  const VXXtal::VXUnitCell& cell = symmetry.cell();
  if (cell.isValid())
    writer.values("cell",
                  std::vector<float>{cell.a, cell.b, cell.c, cell.alpha, cell.beta, cell.gamma});
  write_indices(writer, refl);
  for (const TaggedColumn& tagged : plain_columns) {
    if (tagged.column == columns::Fwt) write_coefficients(writer, refl);
    writer.column(refl, tagged);
  }
}

class Reader {
 public:
  Reader(vxistream& is, VXReflection& refl) : is_(is), refl_(refl) {}

  Status read() {
    std::array<int, 4> stamps{};
    for (int& stamp : stamps) {
      stamp = is_.getbyte();
      if (stamp < 0) return stream_ended;
    }
    swap_floats_ = VXBFloatEndian(stamps[1]);
    swap_integers_ = VXBIntEndian(stamps[2]);
    while (!is_.eof()) {
      if (const Status status = read_record(); status != success) return status;
    }
    return success;
  }

 private:
  Status read_record() {
    std::string tag;
    if (!VXBReadTag(is_, tag) || tag.empty()) return no_tag;
    if (is_.eof()) return stream_ended;
    const std::uint64_t length = VXBReadDataLength(is_);
    if (length == 0) return is_.eof() ? stream_ended : no_length;
    if (tag == "nref") return read_count(length);
    if (tag == "title") return read_title(length);
    if (tag == "sg") return read_group(length);
    if (tag == "cell") return read_cell(length);
    return read_array(tag, length);
  }

  /// So many words of a record that has to have as many.
  template <class T>
  Status read_words(std::uint64_t length, std::uint64_t count, std::vector<T>& words) {
    static_assert(sizeof(T) == word_size);
    if (length != word_size * count) return wrong_record;
    std::uint64_t arrived = 0;
    if (!VXHost::detail::read_claimed(is_, count, words, &arrived) || arrived < length)
      return stream_ended;
    if (std::is_floating_point_v<T> ? swap_floats_ : swap_integers_)
      VXHost::detail::reverse_words(words.data(), words.size());
    return success;
  }

  // Columns that are there grow with the count, so that it has to stand in proportion to the
  // stream.
  Status read_count(std::uint64_t length) {
    std::vector<unsigned int> count;
    if (const Status status = read_words(length, 1, count); status != success) return status;
    constexpr std::uint64_t most_columns = 20;
    const std::uint64_t bytes = is_.tell() + is_.bytes_left().value_or(0);
    const bool is_safe =
        count[0] <= refl_.GetCount() || !has_any_column(*refl_.GetImpl()) ||
        VXHost::detail::is_proportionate(most_columns * word_size * count[0], bytes);
    if (!is_safe || (has_count_ && count[0] != refl_.GetCount())) return wrong_record;
    refl_.SetCount(count[0]);
    has_count_ = true;
    return success;
  }

  Status read_title(std::uint64_t length) {
    std::string title;
    if (is_.read(title, length) < length) return stream_ended;
    refl_.SetTitle(title);
    return success;
  }

  Status read_group(std::uint64_t length) {
    std::vector<unsigned int> group;
    const Status status = read_words(length, 1, group);
    if (status == success) group_ = group[0];
    return status;
  }

  Status read_cell(std::uint64_t length) {
    std::vector<float> cell;
    const Status status = read_words(length, 6, cell);
    if (status == success && group_ != 0)
      refl_.SetSymmetry(VXXtal::VXSymmetry(group_, VXXtal::VXUnitCell(cell.data())));
    return status;
  }

  // Data of an unknown tag are left where they are: the next tag is looked for in them.
  Status read_array(std::string_view tag, std::uint64_t length) {
    for (std::size_t i = 0; i < index_tags.size(); ++i) {
      if (tag == index_tags[i]) return read_index(i, length);
    }
    for (std::size_t i = 0; i < coefficient_tags.size(); ++i) {
      if (tag == coefficient_tags[i]) return read_coefficient(i, length);
    }
    for (const TaggedColumn& tagged : plain_columns) {
      if (tag != tagged.tag) continue;
      return is_int_column(tagged.column) ? read_column<int>(tagged.column, length)
                                          : read_column<float>(tagged.column, length);
    }
    return success;
  }

  template <class T>
  Status read_column(unsigned int column, std::uint64_t length) {
    std::vector<T> values;
    const Status status = read_words(length, refl_.GetCount(), values);
    if (status != success) return status;
    return refl_.SetColumn(column, values.data(), refl_.GetCount()) ? success : wrong_record;
  }

  // The last of the three sets them all.
  Status read_index(std::size_t i, std::uint64_t length) {
    const Status status = read_words(length, refl_.GetCount(), hkl_[i]);
    if (status != success || i + 1 < hkl_.size()) return status;
    if (hkl_[0].empty() || hkl_[1].empty()) return miss_companion();
    const bool is_set =
        refl_.SetHKL(hkl_[0].data(), hkl_[1].data(), hkl_[2].data(), refl_.GetCount());
    return is_set ? success : wrong_record;
  }

  Status read_coefficient(std::size_t i, std::uint64_t length) {
    const Status status = read_words(length, refl_.GetCount(), abcd_[i]);
    if (status != success || i + 1 < abcd_.size()) return status;
    if (abcd_[0].empty() || abcd_[1].empty() || abcd_[2].empty()) return miss_companion();
    const bool is_set = refl_.SetABCD(abcd_[0].data(), abcd_[1].data(), abcd_[2].data(),
                                      abcd_[3].data(), refl_.GetCount());
    return is_set ? success : wrong_record;
  }

  Status miss_companion() {
    refl_.SetCount(0);
    return wrong_record;
  }

  vxistream& is_;
  VXReflection& refl_;
  bool swap_floats_ = false;
  bool swap_integers_ = false;
  bool has_count_ = false;
  unsigned int group_ = 0;
  std::array<std::vector<int>, 3> hkl_;
  std::array<std::vector<float>, 4> abcd_;
};

}  // namespace

unsigned int VXReadReflectionVXX(vxistream& is, VXReflection& refl) {
  try {
    return Reader(is, refl).read();
  } catch (const std::bad_alloc&) {
    return wrong_record;
  }
}

bool VXWriteReflectionVXX(vxostream& os, const VXReflection& refl) {
  Writer writer(os);
  // The reader takes one byte more than there are byte orders, before them.
  for (const char byte : {'\0', VXBFloatEndian(), VXBIntEndian(), VXBShortEndian()})
    writer.stamp(byte);
  if (refl.GetCount() > 0) write_all(writer, refl);
  return writer.good() && os.good();
}

}  // namespace VXCore
