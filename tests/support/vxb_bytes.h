// VXB records as another program would take them apart, to make what a machine of the other byte
// order writes.
#ifndef VXGRID_TESTS_SUPPORT_VXB_BYTES_H
#define VXGRID_TESTS_SUPPORT_VXB_BYTES_H

#include <algorithm>  // for reverse
#include <cstddef>    // for size_t
#include <map>        // for map
#include <stdexcept>  // for runtime_error
#include <string>     // for string

namespace vxgrid_test {

/// A record as it stands in a file.
inline std::string vxb_record(const std::string& tag, const std::string& payload) {
  std::string bytes(1, static_cast<char>(tag.size()));
  bytes += tag;
  for (int shift = 0; shift < 32; shift += 8)
    bytes += static_cast<char>(payload.size() >> shift & 255);
  return bytes + payload;
}

/// The record of tagged data of these records.
inline std::string vxb_tagged_data(const std::string& records) {
  return vxb_record("VXBasePOD", std::string(1, '\1').append(records));
}

/// Turns the numbers and marks in a row of records around. Records that it does not know stay as
/// they are; on bytes that are no records it throws.
class VXBTurner {
 public:
  static std::string turned(const std::string& records) {
    VXBTurner turner(records);
    while (!turner.at_end())
      turner.record();
    return turner.out_;
  }

 private:
  explicit VXBTurner(const std::string& in) : in_(in) {}

  bool at_end() const { return at_ == in_.size(); }
  std::string take(std::size_t count) {
    if (count > in_.size() - at_) throw std::runtime_error("not a record");
    at_ += count;
    return in_.substr(at_ - count, count);
  }
  std::string take_tag() {
    const std::size_t length = static_cast<unsigned char>(take(1)[0]);
    return take(length < 255 ? length : take_word());
  }
  unsigned int take_word() {
    unsigned int word = 0;
    const std::string bytes = take(4);
    for (int i = 3; i >= 0; --i)
      word = word << 8 | static_cast<unsigned char>(bytes[static_cast<std::size_t>(i)]);
    return word;
  }
  void copy(std::size_t count) { out_ += take(count); }
  void copy_tag() {
    const std::size_t start = at_;
    take_tag();
    out_ += in_.substr(start, at_ - start);
  }
  void mark() { out_ += static_cast<char>(take(1)[0] ^ 1); }
  void numbers(std::size_t count, std::size_t width = 4) {
    for (std::size_t i = 0; i < count; ++i) {
      std::string bytes = take(width);
      std::reverse(bytes.begin(), bytes.end());
      out_ += bytes;
    }
  }
  void numbers_to_end(std::size_t width) { numbers((in_.size() - at_) / width, width); }
  unsigned int count() {
    const std::size_t before = at_;
    const unsigned int number = take_word();
    at_ = before;
    numbers(1);
    return number;
  }

  void record() {
    const std::string tag = take_tag();
    const unsigned int length = take_word();
    const std::string payload = take(length);
    VXBTurner turner(payload);
    turner.payload_of(tag);
    out_ += vxb_record(tag, turner.out_);
  }

  void lattice() {
    copy(1);
    mark();
    mark();
    copy(1);
    copy_tag();
    numbers(7);
  }
  void gaussian() {
    for (int i = 0; i < 6; ++i)
      headed_number();
    if (!at_end() && in_[at_] == 9) record();
  }
  void headed_number() {
    out_ += static_cast<char>(take(1)[0] ^ 64);
    numbers(1);
  }

  void payload_of(const std::string& tag) {
    static const std::map<std::string, std::size_t> plain{
        {"bool", 1}, {"int", 4},   {"uint", 4},   {"float", 4},   {"double", 8}, {"text", 1},
        {"ints", 4}, {"uints", 4}, {"floats", 4}, {"doubles", 8}, {"float3", 4}, {"float6", 4}};
    if (const auto type = plain.find(tag); type != plain.end()) {
      mark();
      copy_tag();
      numbers_to_end(type->second);
    } else if (tag == "VXBasePOD") {
      copy(1);
    } else if (tag.rfind("VXBaseVX", 0) == 0) {
      copy_tag();
    } else if (tag == "VXBrioGridData") {
      mark();
      mark();
      const bool is_oriented = in_.at(at_) != 0;
      copy(1);
      numbers(is_oriented ? 11 : 2);
      copy(1);
      numbers_to_end(4);
    } else if (tag == "VXBrioGridFloatMultiGrid" || tag == "VXBrioGridIntMultiGrid" ||
               tag == "VXGridFloat" || tag == "VXGridInt" || tag == "VXMultiGridFloat" ||
               tag == "VXMultiGridInt") {
      mark();
    } else if (tag == "VXFixedGridFloat" || tag == "VXFixedGridInt") {
      lattice();
      numbers(count());
    } else if (tag == "VXFixedMultiGridFloat" || tag == "VXFixedMultiGridInt") {
      lattice();
      for (unsigned int fields = count(); fields > 0; --fields) {
        numbers(count());
        if (in_.at(at_) == 0)
          copy(1);
        else
          record();
      }
    } else if (tag == "VXScalarGrid") {
      record();
      mark();
      mark();
      copy(1);
      numbers(1);
    } else if (tag == "VXGaussian") {
      gaussian();
    } else if (tag == "VXGaussianCont") {
      std::size_t before = at_ + 1;
      headed_number();
      at_ = before;
      for (unsigned int left = take_word(); left > 0; --left)
        gaussian();
      if (!at_end()) copy(1);
    } else if (tag == "VXVXBReflection") {
      copy(1);
      mark();
      mark();
      mark();
      while (!at_end())
        column();
      return;
    } else if (tag != "VXBrioGrid" && tag != "VXSkewGrid" && tag != "VXReflection") {
      copy(in_.size());
    }
    while (!at_end())
      record();
  }

  void column() {
    const std::string tag = take_tag();
    const std::string payload = take(take_word());
    VXBTurner turner(payload);
    if (tag == "title")
      turner.copy(payload.size());
    else
      turner.numbers_to_end(4);
    out_ += vxb_record(tag, turner.out_);
  }

  const std::string& in_;
  std::size_t at_ = 0;
  std::string out_;
};

}  // namespace vxgrid_test

#endif
