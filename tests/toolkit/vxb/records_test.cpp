#include "vxgrid/toolkit/vxb/records.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>

#include "support/temp_dir.h"
#include "support/vxb_bytes.h"
#include "vxgrid/toolkit/vxb/primitives.h"

namespace VXCore {
namespace {

using vxgrid_test::vxb_record;
using VXHost::vxisstream;
using VXHost::vxosstream;

bool write(VXHost::vxostream& out, const std::string& bytes) {
  return out.write(bytes.data(), bytes.size()) == bytes.size();
}

TEST(RecordWriter, puts_records_into_one_another_and_leaves_out_what_is_not_finished) {
  for (const bool in_payload : {false, true}) {
    vxosstream text;
    RecordPayload payload;
    VXHost::vxostream& out = in_payload ? static_cast<VXHost::vxostream&>(payload) : text;
    {
      RecordWriter outer(out, "outer");
      ASSERT_TRUE(outer);
      EXPECT_TRUE(outer.empty());
      write(outer.payload(), "head");
      {
        RecordWriter inner(outer.payload(), "in");
        write(inner.payload(), std::string(300, 'i'));
        EXPECT_TRUE(inner.finish());
      }
      {
        RecordWriter dropped(outer.payload(), "dropped");
        write(dropped.payload(), "x");
      }
      {
        RecordWriter empty(outer.payload(), "empty");
        EXPECT_TRUE(empty.finish());
      }
      write(outer.payload(), "tail");
      EXPECT_TRUE(outer.finish());
    }
    {
      RecordWriter half(out, "half", RecordWriter::Unfinished::Tag);
      write(half.payload(), "x");
    }
    const std::string expected =
        vxb_record("outer", "head" + vxb_record("in", std::string(300, 'i')) + "tail") + "\4half";
    EXPECT_EQ(in_payload ? std::string(payload.data(), payload.size()) : text.str(), expected);
  }
}

TEST(RecordWriter, refuses_a_payload_of_four_gigabytes_before_it_is_stored) {
  RecordPayload payload;
  RecordWriter record(payload, "r");
  // Nobody reads these zeros, so that they cost no memory.
  const ValueBuffer<char> zeros((std::size_t{1} << 32) + (1 << 20));
  EXPECT_EQ(record.payload().write(zeros.data(), zeros.size()), 0u);
  EXPECT_FALSE(record.finish());
}

TEST(RecordWriter, refuses_records_that_lie_too_deep) {
  vxosstream out;
  std::function<unsigned int(VXHost::vxostream&)> nest = [&](VXHost::vxostream& to) {
    RecordWriter record(to, "r");
    if (!record) return 0u;
    const unsigned int inside = nest(record.payload());
    write(record.payload(), "x");
    EXPECT_TRUE(record.finish());
    return inside + 1;
  };
  EXPECT_EQ(nest(out), VXBDeepestRecord);
  EXPECT_EQ(nest(out), VXBDeepestRecord) << "the count starts anew";
}

TEST(RecordReader, takes_its_bytes_from_memory_from_files_and_from_another_reader) {
  const vxgrid_test::TempDir folder;
  vxgrid_test::write_file(folder.file("bytes"), "abcdefghij");
  VXHost::vxifstream file(folder.file("bytes"));
  vxisstream memory("abcdefghij");
  for (VXHost::vxistream* in :
       {static_cast<VXHost::vxistream*>(&file), static_cast<VXHost::vxistream*>(&memory)}) {
    RecordReader outer(*in, 8);
    EXPECT_EQ(outer.status(), VXBStatus::Success);
    EXPECT_EQ(in->peekbyte(), 'i');
    EXPECT_EQ(outer.getbyte(), 'a');
    RecordReader inner(outer, 3);
    std::string text;
    EXPECT_EQ(inner.read(text, 10), 3u);
    EXPECT_EQ(text, "bcd");
    EXPECT_EQ(outer.left(), 4u);
    RecordReader beyond(outer, 0xffffffff);
    EXPECT_EQ(beyond.status(), VXBStatus::ShortRecord);
    EXPECT_EQ(beyond.left(), 4u);
    EXPECT_TRUE(outer.eof());
    RecordReader rest(*in, 0xffffffff);
    EXPECT_EQ(rest.status(), VXBStatus::ShortRecord);
    EXPECT_EQ(rest.read(text, 10), 2u);
  }
}

}  // namespace
}  // namespace VXCore
