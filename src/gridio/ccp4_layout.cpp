// The layout of CCP4 map files: header record, axis order and block of values.
#include "gridio/ccp4_layout.h"

#include <algorithm>  // for copy_n, fill, max, min
#include <bit>        // for bit_cast
#include <cstring>    // for memcpy
#include <vector>     // for vector

#include "toolkit/host/bounded_read.h"
#include "toolkit/host/byte_order.h"
#include "vxgrid/gridio/grasp.h"

namespace VXCore::detail {

namespace {

// Columns beyond this are taken for the other byte order.
constexpr std::int64_t most_columns = 131072;

// Takes fields out of a header record, front to back.
class HeaderDecoder {
 public:
  HeaderDecoder(const CCP4HeaderBytes& bytes, bool reversed)
      : next_(bytes.data()), reversed_(reversed) {}

  void operator()(int& field) { field = static_cast<int>(word()); }
  void operator()(float& field) { field = std::bit_cast<float>(word()); }
  void operator()(unsigned char& field) { field = static_cast<unsigned char>(word() & 0xff); }
  template <std::size_t N>
  void operator()(std::array<char, N>& text) {
    std::memcpy(text.data(), next_, N);
    next_ += N;
  }

 private:
  std::uint32_t word() {
    std::uint32_t value = 0;
    std::memcpy(&value, next_, sizeof value);
    next_ += sizeof value;
    return reversed_ ? VXHost::detail::reversed(value) : value;
  }

  const unsigned char* next_;
  bool reversed_;
};

// Puts fields into a header record.
class HeaderEncoder {
 public:
  HeaderEncoder(CCP4HeaderBytes& bytes, bool reversed) : next_(bytes.data()), reversed_(reversed) {}

  void operator()(int field) { word(static_cast<std::uint32_t>(field)); }
  void operator()(float field) { word(std::bit_cast<std::uint32_t>(field)); }
  void operator()(unsigned char field) { word(field); }
  template <std::size_t N>
  void operator()(const std::array<char, N>& text) {
    std::memcpy(next_, text.data(), N);
    next_ += N;
  }

 private:
  void word(std::uint32_t value) {
    if (reversed_) value = VXHost::detail::reversed(value);
    std::memcpy(next_, &value, sizeof value);
    next_ += sizeof value;
  }

  unsigned char* next_;
  bool reversed_;
};

// The fields in the order of the file, each a word but for the texts.
template <class Header, class Codec>
void visit_header(Header& h, Codec&& codec) {
  const auto each = [&](auto&... fields) { (codec(fields), ...); };
  each(h.NC, h.NR, h.NS, h.MODE, h.NCSTART, h.NRSTART, h.NSSTART, h.NX, h.NY, h.NZ);
  each(h.A, h.B, h.C, h.Alpha, h.Beta, h.Gamma, h.MAPC, h.MAPR, h.MAPS);
  each(h.AMIN, h.AMAX, h.AMEAN, h.ISPG, h.NSYMBT, h.LSKFLG);
  for (auto& element : h.SKWMAT)
    codec(element);
  for (auto& element : h.SKWTRN)
    codec(element);
  for (auto& byte : h.reserved)
    codec(byte);
  each(h.MAP, h.MACHST, h.ARMS, h.NLABL);
  for (auto& label : h.labels)
    codec(label);
}

// Values of a file one after the other: bytes from the stream (or from its beginning, where that
// had to be read ahead) turned into floats.
class ValueSource {
 public:
  ValueSource(VXHost::vxistream& in, const VXCCP4Header& header, bool reversed,
              std::vector<char> head)
      : in_(in), head_(std::move(head)), is_bytes_(header.MODE == 0), reversed_(reversed) {
    if (!is_bytes_) return;
    // The step is 1/255 to three digits and bytes are taken for signed ones, so that the range
    // tops out above AMAX; files are read that way by convention.
    for (std::size_t byte = 0; byte < scale_.size(); ++byte) {
      scale_[byte] = (header.AMAX - header.AMIN) * 0.00392f * (static_cast<float>(byte) + 128.0f) +
                     header.AMIN;
    }
  }

  // Reads the next values and returns how many were there. What follows them in `to` is as it was,
  // or 0 where it had to be used.
  std::size_t read(float* to, std::size_t count) {
    return is_bytes_ ? read_bytes(to, count) : read_reals(to, count);
  }

 private:
  std::size_t read_reals(float* to, std::size_t count) {
    const std::size_t bytes = take(reinterpret_cast<char*>(to), count * sizeof(float));
    const std::size_t there = bytes / sizeof(float);
    if (there < count) to[there] = 0.0f;  // part of a value may stand there
    if (reversed_) VXHost::detail::reverse_words(to, there);
    return there;
  }

  // Bytes go to the last quarter of the block and become floats from the front on: a float never
  // reaches a byte that has not been used.
  std::size_t read_bytes(float* to, std::size_t count) {
    const char* const bytes = reinterpret_cast<char*>(to) + 3 * count;
    const std::size_t there = take(reinterpret_cast<char*>(to) + 3 * count, count);
    for (std::size_t i = 0; i < there; ++i) {
      to[i] = scale_[static_cast<unsigned char>(bytes[i])];
    }
    std::fill(to + there, to + count, 0.0f);
    return there;
  }

  std::size_t take(char* to, std::size_t count) {
    const std::size_t ahead = std::min(count, head_.size() - head_used_);
    std::copy_n(head_.data() + head_used_, ahead, to);
    head_used_ += ahead;
    return ahead + (ahead < count ? in_.read(to + ahead, count - ahead) : 0);
  }

  VXHost::vxistream& in_;
  std::vector<char> head_;
  std::size_t head_used_ = 0;
  bool is_bytes_;
  bool reversed_;
  std::array<float, 256> scale_{};
};

// A run of whole rows of a file: rows of one section, or all rows of several.
struct Block {
  std::size_t section, row;    // where it begins
  std::size_t sections, rows;  // how many of them
};

// Cuts a file into blocks and calls `visit` for each until it answers false. A block holds enough
// neighbours in the array to fill cache lines, and never a large part of the file.
template <class Visit>
bool for_each_block(const CCP4Layout& layout, Visit&& visit) {
  constexpr std::size_t cached = std::size_t{1} << 16;  // values, 256 KiB
  constexpr std::size_t granted = std::size_t{1} << 21;
  constexpr std::size_t line = 16;  // floats in 64 bytes
  const std::size_t most = std::max(granted, layout.size() / 16);
  const std::size_t most_rows = std::max<std::size_t>(1, most / layout.columns);
  const std::size_t section_size = layout.columns * layout.rows;
  const std::size_t wanted = layout.section_stride == 1 && layout.column_stride != 1
                                 ? line
                                 : std::max<std::size_t>(1, cached / section_size);
  const std::size_t sections = std::min({wanted, most_rows / layout.rows, layout.sections});
  if (sections == 0) {
    for (std::size_t section = 0; section < layout.sections; ++section) {
      for (std::size_t row = 0; row < layout.rows; row += most_rows) {
        const std::size_t rows = std::min(most_rows, layout.rows - row);
        if (!visit(Block{section, row, 1, rows})) return false;
      }
    }
    return true;
  }
  for (std::size_t section = 0; section < layout.sections; section += sections) {
    const std::size_t count = std::min(sections, layout.sections - section);
    if (!visit(Block{section, 0, count, layout.rows})) return false;
  }
  return true;
}

std::size_t largest_block(const CCP4Layout& layout) {
  std::size_t largest = 0;
  for_each_block(layout, [&](const Block& block) {
    largest = block.sections * block.rows * layout.columns;
    return false;
  });
  return largest;
}

// to[j * to_stride + i] = from[i * from_stride + j], in tiles that stay in the nearest cache.
void transpose(const float* from, std::size_t from_stride, std::size_t count_i, float* to,
               std::size_t to_stride, std::size_t count_j) {
  constexpr std::size_t tile = 16;
  for (std::size_t j0 = 0; j0 < count_j; j0 += tile) {
    const std::size_t j1 = std::min(j0 + tile, count_j);
    for (std::size_t i0 = 0; i0 < count_i; i0 += tile) {
      const std::size_t i1 = std::min(i0 + tile, count_i);
      for (std::size_t j = j0; j < j1; ++j) {
        for (std::size_t i = i0; i < i1; ++i)
          to[j * to_stride + i] = from[i * from_stride + j];
      }
    }
  }
}

// Puts a block in file order in its place in the array.
void scatter(const float* from, const Block& block, const CCP4Layout& layout, float* array) {
  const std::size_t columns = layout.columns;
  float* const to = array + block.section * layout.section_stride + block.row * layout.row_stride;
  if (layout.column_stride == 1) {
    for (std::size_t s = 0; s < block.sections; ++s) {
      for (std::size_t r = 0; r < block.rows; ++r, from += columns) {
        std::copy_n(from, columns, to + s * layout.section_stride + r * layout.row_stride);
      }
    }
  } else if (layout.row_stride == 1) {
    for (std::size_t s = 0; s < block.sections; ++s, from += block.rows * columns) {
      transpose(from, columns, block.rows, to + s * layout.section_stride, layout.column_stride,
                columns);
    }
  } else {
    for (std::size_t r = 0; r < block.rows; ++r, from += columns) {
      transpose(from, block.rows * columns, block.sections, to + r * layout.row_stride,
                layout.column_stride, columns);
    }
  }
}

// The reverse of scatter.
void gather(const float* array, const Block& block, const CCP4Layout& layout, float* to) {
  const std::size_t columns = layout.columns;
  const float* const from =
      array + block.section * layout.section_stride + block.row * layout.row_stride;
  if (layout.column_stride == 1) {
    for (std::size_t s = 0; s < block.sections; ++s) {
      for (std::size_t r = 0; r < block.rows; ++r, to += columns) {
        std::copy_n(from + s * layout.section_stride + r * layout.row_stride, columns, to);
      }
    }
  } else if (layout.row_stride == 1) {
    for (std::size_t s = 0; s < block.sections; ++s, to += block.rows * columns) {
      transpose(from + s * layout.section_stride, layout.column_stride, columns, to, columns,
                block.rows);
    }
  } else {
    for (std::size_t r = 0; r < block.rows; ++r, to += columns) {
      transpose(from + r * layout.row_stride, layout.column_stride, columns, to,
                block.rows * columns, block.sections);
    }
  }
}

}  // namespace

bool read_ccp4_header(VXHost::vxistream& in, VXCCP4Header& header) {
  CCP4HeaderBytes bytes{};
  in.read(bytes.data(), bytes.size());
  int columns = 0;
  std::memcpy(&columns, bytes.data(), sizeof columns);
  const std::int64_t wide = columns;  // the most negative int has no absolute value
  const bool reversed = (wide < 0 ? -wide : wide) > most_columns;
  visit_header(header, HeaderDecoder(bytes, reversed));
  return reversed;
}

CCP4HeaderBytes ccp4_header_record(const VXCCP4Header& header) {
  CCP4HeaderBytes bytes{};
  visit_header(header, HeaderEncoder(bytes, !VXGraspIO::DetermineGraspByteOrder()));
  return bytes;
}

bool has_ccp4_axes(const VXCCP4Header& header) {
  return std::min({header.MAPC, header.MAPR, header.MAPS}) >= 1 &&
         std::max({header.MAPC, header.MAPR, header.MAPS}) <= 3;
}

std::optional<std::size_t> ccp4_value_count(const VXCCP4Header& header) {
  const std::int64_t nc = header.NC, nr = header.NR, ns = header.NS;
  if (nc < 0 || nr < 0 || ns < 0) return std::nullopt;
  if (nc == 0 || nr == 0 || ns == 0) return 0;
  if (nc * nr > ccp4_most_values || nc * nr * ns > ccp4_most_values) return std::nullopt;
  return static_cast<std::size_t>(nc * nr * ns);
}

bool CCP4Layout::is_array_order() const {
  return (columns == 1 || column_stride == 1) && (rows == 1 || row_stride == columns) &&
         (sections == 1 || section_stride == columns * rows);
}

std::optional<CCP4Layout> ccp4_layout(const VXCCP4Header& header) {
  const int mapc = header.MAPC - 1;
  const int mapr = header.MAPR - 1;
  if (mapc == mapr || std::min(mapc, mapr) < 0 || std::max(mapc, mapr) > 2) return std::nullopt;
  const auto c = static_cast<std::size_t>(mapc);
  const auto r = static_cast<std::size_t>(mapr);
  const std::size_t s = 3 - c - r;

  CCP4Layout layout;
  layout.columns = static_cast<std::size_t>(header.NC);
  layout.rows = static_cast<std::size_t>(header.NR);
  layout.sections = static_cast<std::size_t>(header.NS);
  std::array<std::size_t, 3> points{};
  points[c] = layout.columns;
  points[r] = layout.rows;
  points[s] = layout.sections;
  const std::array<std::size_t, 3> strides{1, points[0], points[0] * points[1]};
  layout.column_stride = strides[c];
  layout.row_stride = strides[r];
  layout.section_stride = strides[s];
  return layout;
}

bool read_ccp4_values(VXHost::vxistream& in, const VXCCP4Header& header, const CCP4Layout& layout,
                      bool reversed, ValueBuffer<float>& values) {
  values.clear();
  const std::size_t size = layout.size();
  if (size == 0) return true;
  const std::uint64_t claimed = std::uint64_t{size} * sizeof(float);
  if (!VXHost::detail::may_back(in, claimed)) return false;
  std::vector<char> head;
  if (!in.bytes_left() && claimed > VXHost::detail::granted_claim) {
    // The length is not known: enough has to come in to grant the claim before memory is taken.
    const std::uint64_t enough = claimed / VXHost::detail::granted_ratio + 1;
    std::uint64_t arrived = 0;
    if (!VXHost::detail::read_claimed(in, enough, head, &arrived) || arrived < enough) return false;
  }
  ValueSource source(in, header, reversed, std::move(head));

  values = ValueBuffer<float>(size);
  if (layout.is_array_order()) {
    // Values that need no work go straight from the system to their place.
    const std::size_t step = header.MODE == 2 && !reversed ? size : std::size_t{1} << 16;
    for (std::size_t done = 0; done < size; done += step) {
      const std::size_t count = std::min(step, size - done);
      if (source.read(values.data() + done, count) < count) break;
    }
    return true;
  }
  auto staged = ValueBuffer<float>::uninitialized(largest_block(layout));
  for_each_block(layout, [&](const Block& block) {
    const std::size_t count = block.sections * block.rows * layout.columns;
    const std::size_t there = source.read(staged.data(), count);
    std::fill(staged.data() + there, staged.data() + count, 0.0f);
    scatter(staged.data(), block, layout, values.data());
    return there == count;
  });
  return true;
}

bool write_ccp4_values(VXHost::vxostream& out, const CCP4Layout& layout,
                       std::span<const float> values) {
  const bool reversed = !VXGraspIO::DetermineGraspByteOrder();
  const auto write = [&](const float* from, std::size_t count) {
    const std::size_t bytes = count * sizeof(float);
    return out.write(reinterpret_cast<const char*>(from), bytes) == bytes;
  };
  if (layout.size() == 0) return true;
  if (layout.is_array_order() && !reversed) return write(values.data(), layout.size());
  auto staged = ValueBuffer<float>::uninitialized(largest_block(layout));
  return for_each_block(layout, [&](const Block& block) {
    const std::size_t count = block.sections * block.rows * layout.columns;
    gather(values.data(), block, layout, staged.data());
    if (reversed) VXHost::detail::reverse_words(staged.data(), count);
    return write(staged.data(), count);
  });
}

}  // namespace VXCore::detail
