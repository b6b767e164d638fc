// Words of byte-order aware files, and the GRASP (DELPHI) potential map.
#include "vxgrid/gridio/grasp.h"

#include <algorithm>    // for min
#include <array>        // for array
#include <bit>          // for endian
#include <cstring>      // for memcpy
#include <string_view>  // for string_view
#include <utility>      // for swap

#include "gridio/grasp_reader.h"
#include "toolkit/host/byte_order.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXCore {

namespace {

constexpr int values_bytes = static_cast<int>(detail::grasp_size * sizeof(float));

template <class Word>
Word read_word(VXHost::vxistream& in, bool reverse) {
  Word word{};
  in.read(reinterpret_cast<char*>(&word), sizeof word);
  if (reverse) VXHost::detail::reverse_word(word);
  return word;
}

template <class Word>
void write_word(VXHost::vxostream& out, Word word, bool reverse) {
  if (reverse) VXHost::detail::reverse_word(word);
  out.write(reinterpret_cast<const char*>(&word), sizeof word);
}

}  // namespace

namespace VXGraspIO {

bool DetermineGraspByteOrder() {
  return std::endian::native == std::endian::little;
}

int ReadGraspInt(VXHost::vxistream& in, bool reverse) {
  return read_word<int>(in, reverse);
}

float ReadGraspFloat(VXHost::vxistream& in, bool reverse) {
  return read_word<float>(in, reverse);
}

double ReadGraspDouble(VXHost::vxistream& in, bool reverse) {
  std::array<char, sizeof(double)> bytes{};
  in.read(bytes.data(), bytes.size());
  if (reverse) {
    std::swap(bytes[0], bytes[3]);
    std::swap(bytes[1], bytes[2]);
  }
  double value = 0.0;
  std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

void WriteGraspInt(int value, VXHost::vxostream& out, bool reverse) {
  write_word(out, value, reverse);
}

void WriteGraspFloat(float value, VXHost::vxostream& out, bool reverse) {
  write_word(out, value, reverse);
}

std::string ReadGraspLine(VXHost::vxistream& in) {
  std::array<char, 4> word{};
  in.read(word.data(), word.size());
  int length = 0;
  for (const char byte : word) {
    if (length == 0) length = static_cast<signed char>(byte);
  }
  if (length < 0) {
    VXThrow.Warning("Invalid line length in Grasp grid file");
    return {};
  }
  std::string text;
  in.read(text, static_cast<std::size_t>(length));
  EndGraspBlock(in);
  text.resize(std::min(text.size(), text.find('\0')));
  return text;
}

void WriteGraspLine(VXHost::vxostream& out, const char* text, int length, bool reverse) {
  WriteGraspInt(length, out, reverse);
  for (int i = 0; i < length; ++i)
    out.put(text[i]);
  WriteGraspInt(length, out, reverse);
}

void EndGraspBlock(VXHost::vxistream& in) {
  read_word<int>(in, false);
}

void WEndGraspBlock(int length, VXHost::vxostream& out) {
  write_word(out, length, false);
}

}  // namespace VXGraspIO

int VXWriteDelphiMap(VXHost::vxostream& out, const float* values, float scale, const float* mid) {
  using namespace VXGraspIO;
  const bool reverse = DetermineGraspByteOrder();
  const auto write_text = [&](std::string_view text) {
    WriteGraspLine(out, text.data(), static_cast<int>(text.size()), reverse);
  };
  write_text("now starting phimap ");
  std::string description("potential Phimap written from within Grasp");
  description.resize(70, ' ');
  write_text(description);

  WEndGraspBlock(values_bytes, out);
  std::array<float, 4096> block;
  for (std::size_t done = 0; done < detail::grasp_size;) {
    const std::size_t count = std::min(block.size(), detail::grasp_size - done);
    std::memcpy(block.data(), values + done, count * sizeof(float));
    if (reverse) VXHost::detail::reverse_words(block.data(), count);
    out.write(reinterpret_cast<const char*>(block.data()), count * sizeof(float));
    done += count;
  }
  WEndGraspBlock(values_bytes, out);

  write_text(" end of phimap  ");
  constexpr int place_bytes = 4 * sizeof(float);
  WEndGraspBlock(place_bytes, out);
  WriteGraspFloat(scale, out, reverse);
  for (int axis = 0; axis < 3; ++axis)
    WriteGraspFloat(mid[axis], out, reverse);
  WEndGraspBlock(place_bytes, out);
  return 1;
}

namespace detail {

void read_grasp_map(VXHost::vxistream& in, float* values, float* scale, float* mid) {
  using namespace VXGraspIO;
  const bool reverse = DetermineGraspByteOrder();
  // The texts say nothing that a reader needs.
  ReadGraspLine(in);
  ReadGraspLine(in);
  EndGraspBlock(in);
  char* const bytes = reinterpret_cast<char*>(values);
  constexpr std::size_t size = grasp_size * sizeof(float);
  // A value of which only some bytes arrived is none.
  const std::size_t there = in.read(bytes, size) / sizeof(float) * sizeof(float);
  std::memset(bytes + there, 0, size - there);
  if (reverse) VXHost::detail::reverse_words(values, grasp_size);
  EndGraspBlock(in);
  ReadGraspLine(in);
  EndGraspBlock(in);
  *scale = ReadGraspFloat(in, reverse);
  for (int axis = 0; axis < 3; ++axis)
    mid[axis] = ReadGraspFloat(in, reverse);
  EndGraspBlock(in);
}

}  // namespace detail

}  // namespace VXCore
