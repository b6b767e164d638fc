// GRASP maps byte by byte, and the word routines they are made of.
#include "vxgrid/gridio/grasp.h"

#include <gtest/gtest.h>

#include <array>   // for array
#include <string>  // for string
#include <vector>  // for vector

#include "support/bad_input.h"
#include "support/messages.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/toolkit/host/streams.h"

using namespace VXCore;
using vxgrid_test::MessageCapture;

namespace {

constexpr std::size_t size = 65 * 65 * 65;

std::string delphi_map() {
  std::vector<float> values(size);
  for (std::size_t i = 0; i < size; ++i)
    values[i] = static_cast<float>(i % 1000) * 0.25f;
  values[0] = 1.0f;
  const float mid[] = {1.0f, -2.0f, 3.5f};
  VXHost::vxosstream out;
  EXPECT_EQ(VXWriteDelphiMap(out, values.data(), 2.0f, mid), 1);
  return out.str();
}

bool read(const std::string& bytes, VXBrioGrid& grid) {
  VXHost::vxisstream in(bytes);
  return VXReadGrid(in, grid, VXGridFileType::GRASP);
}

TEST(DelphiMap, is_five_fortran_records_of_which_two_keep_the_hosts_length_words) {
  const std::string map = delphi_map();
  ASSERT_EQ(map.size(), 1098662u);
  EXPECT_EQ(map.substr(0, 114),
            std::string("\0\0\0\x14now starting phimap \0\0\0\x14\0\0\0\x46potential Phimap "
                        "written from within Grasp",
                        74) +
                std::string(28, ' ') + std::string("\0\0\0\x46\x04\xc3\x10\0\x3f\x80\0\0", 12));
  EXPECT_EQ(
      map.substr(110 + 4 * size),
      std::string("\x04\xc3\x10\0\0\0\0\x10 end of phimap  "
                  "\0\0\0\x10\x10\0\0\0\x40\0\0\0\x3f\x80\0\0\xc0\0\0\0\x40\x60\0\0\x10\0\0\0",
                  52));
}

TEST(DelphiMap, reads_back_and_a_short_one_as_zeros_where_it_ends) {
  const std::string map = delphi_map();
  const MessageCapture heard;
  // Every byte of the texts and of the last records, and some within the values.
  for (std::size_t cut = 0; cut < map.size(); cut += cut == 119 ? map.size() - 179 : 1) {
    VXBrioGrid grid;
    grid.SetTitle("old");
    ASSERT_TRUE(read(map.substr(0, cut), grid)) << cut;
    EXPECT_FALSE(grid.IsTitleSet());
    const std::size_t there = cut < 110 ? 0 : (cut - 110) / 4;
    if (there < size) {
      EXPECT_EQ(grid.GetValues()[there], 0.0f) << cut;
      EXPECT_EQ(grid.GetValues()[size - 1], 0.0f) << cut;
    } else {
      EXPECT_EQ(grid.GetValues()[size - 1], static_cast<float>((size - 1) % 1000) * 0.25f) << cut;
    }
    if (cut < map.size() - 8) {
      EXPECT_EQ(grid.GetZMid(), 0.0f) << cut;
    }
  }
  EXPECT_TRUE(heard.messages.empty());
  VXBrioGrid grid;
  ASSERT_TRUE(read(map, grid));
  EXPECT_EQ((std::array{grid.GetSpacing(), grid.GetYMid(), grid.GetZMid(), grid.GetValues()[0]}),
            (std::array{0.5f, -2.0f, 3.5f, 1.0f}));
  for (std::size_t i = 1; i < size; ++i)
    ASSERT_EQ(grid.GetValues()[i], static_cast<float>(i % 1000) * 0.25f);
}

TEST(DelphiMap, random_bytes_read_as_some_map) {
  const MessageCapture heard;
  vxgrid_test::for_random_bytes(std::string(400, '\x14'), 10, [](const std::string& bytes) {
    VXBrioGrid grid;
    EXPECT_TRUE(read(bytes, grid));
    EXPECT_EQ(grid.GetSize(), size);
  });
}

TEST(GraspLine, takes_lengths_of_either_byte_order_and_stops_at_a_zero) {
  const std::string text = "now starting phimap ";
  for (const std::string& word : {std::string("\x14\0\0\0", 4), std::string("\0\0\0\x14", 4)}) {
    VXHost::vxisstream in(word + text + word + "x");
    EXPECT_EQ(VXGraspIO::ReadGraspLine(in), text);
    EXPECT_EQ(in.getbyte(), 'x');
  }
  VXHost::vxisstream zero(
      std::string("\0\0\0\x04"
                  "ab\0c\0\0\0\x04x",
                  13));
  EXPECT_EQ(VXGraspIO::ReadGraspLine(zero), "ab");
  EXPECT_EQ(zero.getbyte(), 'x');

  const MessageCapture heard;
  VXHost::vxisstream negative(std::string("\x80\0\0\0abc", 7));
  EXPECT_EQ(VXGraspIO::ReadGraspLine(negative), "");
  EXPECT_TRUE(heard.warned("Invalid line length in Grasp grid file"));
  EXPECT_EQ(negative.getbyte(), 'a');
}

TEST(GraspWords, come_back_from_either_byte_order) {
  using namespace VXGraspIO;
  for (const bool reverse : {false, true}) {
    VXHost::vxosstream out;
    WriteGraspInt(-123456, out, reverse);
    WriteGraspFloat(-1.75f, out, reverse);
    WEndGraspBlock(7, out);
    WriteGraspLine(out, "abc", 3, reverse);
    VXHost::vxisstream in(out.str() + "\x01\x02");
    EXPECT_EQ(ReadGraspInt(in, reverse), -123456);
    EXPECT_EQ(ReadGraspFloat(in, reverse), -1.75f);
    EXPECT_EQ(ReadGraspInt(in, false), 7);
    EXPECT_EQ(ReadGraspLine(in), "abc");
    // Bytes that are missing are zero.
    EXPECT_EQ(ReadGraspInt(in, reverse), reverse ? 0x01020000 : 0x0201);
    EXPECT_EQ(ReadGraspInt(in, reverse), 0);
  }
  // A double is turned around by halves: 0.1 is 3f b9 99 99 99 99 99 9a in big-endian order.
  VXHost::vxisstream in(std::string("\x3f\xb9\x99\x99\x9a\x99\x99\x99", 8));
  const double half_turned = ReadGraspDouble(in, true);
  EXPECT_EQ(vxgrid_test::bytes_of(half_turned), std::string("\x99\x99\xb9\x3f\x9a\x99\x99\x99", 8));
  VXHost::vxisstream straight(vxgrid_test::bytes_of(0.1));
  EXPECT_EQ(ReadGraspDouble(straight, false), 0.1);
}

}  // namespace
