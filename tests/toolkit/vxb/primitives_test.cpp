#include "vxgrid/toolkit/vxb/primitives.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace VXCore {
namespace {

using VXHost::vxisstream;
using VXHost::vxosstream;

TEST(VXBPrimitives, a_tag_is_a_length_byte_and_its_characters) {
  vxosstream out;
  EXPECT_TRUE(VXBWriteTag(out, "nref"));
  EXPECT_TRUE(VXBWriteTag(out, ""));
  EXPECT_EQ(out.str(), std::string("\4nref\0", 6));
  vxisstream in(out.str());
  std::string tag;
  unsigned char tag_byte = 7;
  EXPECT_TRUE(VXBReadTag(in, tag, tag_byte));
  EXPECT_EQ(tag, "nref");
  EXPECT_EQ(tag_byte, 4);
  EXPECT_TRUE(VXBReadTag(in, tag, tag_byte));
  EXPECT_EQ(tag, "");
  EXPECT_EQ(tag_byte, 0);
  EXPECT_FALSE(VXBReadTag(in, tag, tag_byte));
}

TEST(VXBPrimitives, tags_of_any_length_survive_and_no_cut_one_is_read) {
  for (const std::size_t length : {1u, 254u, 255u, 256u, 70000u}) {
    const std::string text(length, 'x');
    vxosstream out;
    ASSERT_TRUE(VXBWriteTag(out, text));
    EXPECT_EQ(out.str().size(), length + (length < 255 ? 1 : 5));
    vxisstream in(out.str());
    std::string tag;
    EXPECT_TRUE(VXBReadTag(in, tag));
    EXPECT_EQ(tag, text);
    for (const std::size_t left : {std::size_t{0}, length / 2, out.str().size() - 1}) {
      vxisstream cut(out.str().substr(0, left));
      EXPECT_FALSE(VXBReadTag(cut, tag)) << length << " cut to " << left;
      EXPECT_TRUE(tag.empty());
    }
  }
}

TEST(VXBPrimitives, a_length_is_four_bytes_with_the_lowest_first) {
  vxosstream out;
  EXPECT_TRUE(VXBWriteDataLength(out, 0x01020304));
  EXPECT_TRUE(VXBWriteDataLength(out, 0xffffffff));
  EXPECT_FALSE(VXBWriteDataLength(out, std::uint64_t{1} << 32));
  EXPECT_EQ(out.str(), "\4\3\2\1\xff\xff\xff\xff");
  vxisstream in(out.str() + "\1\2\3");
  EXPECT_EQ(VXBReadDataLength(in), 0x01020304u);
  EXPECT_EQ(VXBReadDataLength(in), 0xffffffffu);
  EXPECT_EQ(VXBReadDataLength(in), 0u);
}

TEST(VXBPrimitives, a_mark_of_this_machine_asks_for_no_turning_and_the_other_one_does) {
  const std::uint16_t probe = 1;
  const char expected = *reinterpret_cast<const char*>(&probe) == 1 ? 0 : 1;
  for (const char mark : {VXBIntEndian(), VXBFloatEndian(), VXBShortEndian()})
    EXPECT_EQ(mark, expected);
  EXPECT_FALSE(VXBIntEndian(expected) || VXBFloatEndian(expected) || VXBShortEndian(expected));
  const int other = 1 - expected;
  EXPECT_TRUE(VXBIntEndian(other) && VXBFloatEndian(other) && VXBShortEndian(other));
  std::vector<unsigned int> words{0x01020304, 0xff000000};
  ArraySwapBytes(words.data(), words.size());
  EXPECT_EQ(words, (std::vector<unsigned int>{0x04030201, 0x000000ff}));
}

}  // namespace
}  // namespace VXCore
