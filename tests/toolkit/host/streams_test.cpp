// Streams over memory, plain files and gzip files give the same bytes by every way of reading.
#include "vxgrid/toolkit/host/streams.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <algorithm>  // for min
#include <memory>     // for unique_ptr
#include <numeric>    // for iota
#include <string>     // for string
#include <vector>     // for vector

#include "support/temp_dir.h"
#include "toolkit/host/bounded_read.h"

using namespace VXHost;
using vxgrid_test::TempDir;

namespace {

// Bytes with no period in common with any buffer size.
std::string some_bytes(std::size_t count) {
  std::string bytes(count, '\0');
  unsigned int state = 12345;
  for (char& byte : bytes) {
    state = state * 1664525u + 1013904223u;
    byte = static_cast<char>(state >> 24);
  }
  return bytes;
}

// Many bytes that pack quickly and still tell their place.
std::string many_bytes(std::size_t count) {
  std::string bytes(count, '\0');
  for (std::size_t i = 0; i < count; ++i)
    bytes[i] = static_cast<char>(1 + (i >> 14) % 251);
  return bytes;
}

std::string gzipped(const TempDir& folder, const std::string& bytes) {
  const std::string path = folder.file("packed.gz");
  vxofstream out(path);
  out.write(bytes.data(), bytes.size());
  EXPECT_TRUE(out.close());
  return vxgrid_test::read_file(path);
}

enum class Source { Memory, Plain, Gzip };

// The same bytes behind each kind of stream; the gzip one has a name that does not say so.
class EverySource : public testing::TestWithParam<Source> {
 protected:
  std::unique_ptr<vxistream> stream_over(const std::string& bytes) {
    if (GetParam() == Source::Memory) return std::make_unique<vxisstream>(bytes);
    const std::string path = folder.file("data.bin");
    vxgrid_test::write_file(path, GetParam() == Source::Plain ? bytes : gzipped(folder, bytes));
    return std::make_unique<vxifstream>(path);
  }
  TempDir folder;
};

TEST_P(EverySource, blocks_of_any_size_put_together_are_the_source) {
  const std::string bytes = some_bytes(300001);
  for (const std::size_t step : {1u, 7u, 4096u, 65535u, 65536u, 65537u, 400000u}) {
    const auto in = stream_over(bytes);
    std::string all;
    std::string block(step, '\0');
    while (const std::size_t got = in->read(block.data(), step)) {
      all.append(block, 0, got);
      EXPECT_EQ(in->tell(), all.size());
    }
    EXPECT_TRUE(all == bytes) << step;
    EXPECT_TRUE(in->eof());
    EXPECT_EQ(in->peekbyte(), -1);
    EXPECT_EQ(in->getbyte(), -1);
  }
}

TEST_P(EverySource, seeking_reaches_every_place_and_no_other) {
  const std::string bytes = some_bytes(200000);
  const auto in = stream_over(bytes);
  const auto here = [&] { return in->peekbyte(); };
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
  for (const std::size_t place : {0u, 150000u, 3u, 65536u, 65535u, 199999u, 1u}) {
    ASSERT_TRUE(in->seek(static_cast<std::int64_t>(place), vxstream::beg));
    EXPECT_EQ(here(), byte(place));
    EXPECT_EQ(in->tell(), place);
  }
  std::string block;
  EXPECT_EQ(in->read(block, 100000), 100000u);
  ASSERT_TRUE(in->seek(-99990, vxstream::cur));
  EXPECT_EQ(here(), byte(11));
  ASSERT_TRUE(in->seek(-10, vxstream::end));
  EXPECT_EQ(here(), byte(199990));
  EXPECT_FALSE(in->seek(-200001, vxstream::end) || in->seek(200001, vxstream::beg) ||
               in->seek(INT64_MAX, vxstream::cur) || in->seek(INT64_MIN, vxstream::cur));
  EXPECT_TRUE(in->seek(0, vxstream::end));
  EXPECT_TRUE(in->eof());
  EXPECT_TRUE(in->rewind());
  EXPECT_EQ(in->read(block, 500000), 200000u);
  EXPECT_TRUE(block == bytes);
}

TEST_P(EverySource, lines_lose_their_ends_and_the_last_needs_none) {
  const std::string long_line(70000, 'x');
  const auto in = stream_over("one\r\n\ntwo\rthree\n" + long_line + "\nlast");
  std::vector<std::string> lines;
  std::string line;
  while (in->getline(line))
    lines.push_back(line);
  EXPECT_EQ(lines, (std::vector<std::string>{"one", "", "two\rthree", long_line, "last"}));
  EXPECT_EQ(line, "");

  // Into characters: what does not fit comes next, what just fits takes its line end along.
  ASSERT_TRUE(in->rewind());
  char text[5];
  std::vector<std::string> pieces;
  while (pieces.size() < 6 && in->getline(text, sizeof text))
    pieces.emplace_back(text);
  EXPECT_EQ(pieces, (std::vector<std::string>{"one", "", "two\r", "thre", "e", "xxxx"}));
}

TEST_P(EverySource, an_empty_source_is_at_its_end_when_opened) {
  const auto in = stream_over("");
  EXPECT_TRUE(in->is_open() && in->eof() && !*in);
  std::string line = "old";
  char c = 'k';
  EXPECT_FALSE(in->getline(line) || in->get(c));
  EXPECT_EQ(c, 'k');
}

// A claim far above what is there must not be granted; one in proportion gets zeros.
TEST_P(EverySource, claimed_values_are_filled_with_zeros_or_refused) {
  const std::uint64_t mib = std::uint64_t{1} << 20;
  struct Case {
    std::uint64_t held, claimed;
    bool granted;
  };
  for (const Case& c : {Case{100, 64 * mib, true}, Case{100, 64 * mib + 4, false},
                        Case{0, 400, true}, Case{100, 1 * mib << 40, false},
                        Case{5 * mib, 80 * mib, true}, Case{5 * mib, 80 * mib + 4, false},
                        Case{70 * mib + 3, 71 * mib, true}, Case{400, 400, true}}) {
    const std::string bytes = many_bytes(c.held);
    const auto in = stream_over(bytes);
    std::vector<float> values;
    std::uint64_t arrived = 0;
    EXPECT_EQ(detail::read_claimed(*in, c.claimed / 4, values, &arrived), c.granted) << c.claimed;
    if (!c.granted) {
      EXPECT_TRUE(values.empty());
      continue;
    }
    ASSERT_EQ(values.size(), c.claimed / 4);
    EXPECT_EQ(arrived, std::min(c.held, c.claimed));
    const char* const got = reinterpret_cast<const char*>(values.data());
    EXPECT_TRUE(std::equal(got, got + arrived, bytes.data()));
    EXPECT_TRUE(std::all_of(got + arrived, got + c.claimed, [](char b) { return b == 0; }));
  }
  const auto in = stream_over("abcd");
  std::vector<double> values;
  EXPECT_FALSE(detail::read_claimed(*in, UINT64_MAX, values));
}

INSTANTIATE_TEST_SUITE_P(Streams, EverySource,
                         testing::Values(Source::Memory, Source::Plain, Source::Gzip));

TEST(FileStreams, a_name_in_gz_is_written_as_gzip_and_no_other) {
  const TempDir folder;
  const std::string bytes = "text\n" + some_bytes(100000);
  for (const char* name : {"a.map", "a.map.gz", "a.MAP.GZ", "gz"}) {
    const std::string path = folder.file(name);
    {
      const std::unique_ptr<vxostream> out(VXOpenOStream(path.c_str()));
      ASSERT_TRUE(out);
      *out << "text" << vxendl;
      EXPECT_TRUE(out->flush());
      out->write(reinterpret_cast<const unsigned char*>(bytes.data()) + 5, bytes.size() - 5);
    }
    const std::string file = vxgrid_test::read_file(path);
    const bool packed = file.substr(0, 2) == "\x1f\x8b";
    EXPECT_EQ(packed, std::string(name).size() > 5) << name;
    if (!packed) {
      EXPECT_TRUE(file == bytes);
    }
    vxistream* const in = VXOpenIStream(path.c_str());
    ASSERT_TRUE(in);
    std::string back;
    in->read(back, bytes.size() + 1);
    EXPECT_TRUE(back == bytes) << name;
    EXPECT_EQ(in->bytes_left().has_value(), !packed);
    VXCloseIStream(in);
  }
}

TEST(FileStreams, a_cut_gzip_file_gives_the_bytes_before_the_cut) {
  const TempDir folder;
  const std::string bytes = some_bytes(50000);
  const std::string packed = gzipped(folder, bytes);
  for (const std::size_t length : {3u, 10u, 11u, 1000u, 40000u}) {
    const std::string path = folder.file("cut");
    vxgrid_test::write_file(path, packed.substr(0, length));
    vxifstream in(path);
    std::string got;
    in.read(got, bytes.size());
    EXPECT_TRUE(got.size() <= length && bytes.compare(0, got.size(), got) == 0) << length;
    EXPECT_TRUE(in.eof());
  }
}

TEST(FileStreams, what_cannot_be_opened_gives_null_and_an_empty_stream) {
  const TempDir folder;
  EXPECT_FALSE(VXOpenIStream(nullptr) || VXOpenIStream(folder.file("missing").c_str()) ||
               VXOpenIStream(folder.file("").c_str()));
  EXPECT_FALSE(VXOpenOStream(nullptr) || VXOpenOStream(folder.file("no/such/folder").c_str()));
  VXCloseIStream(nullptr);
  vxifstream in(folder.file("missing"));
  EXPECT_FALSE(in.is_open() || !in.eof() || in.seek(0, vxstream::beg));
  EXPECT_EQ(in.getbyte(), -1);
  EXPECT_EQ(in.bytes_left(), 0u);
  vxofstream full("/dev/full");
  full << "lost";
  EXPECT_FALSE(full.flush() || full.good() || full.close());
  vxofstream never(folder.file("no/such/folder"));
  vxofstream closed(folder.file("closed"));
  EXPECT_TRUE(closed.close());
  for (vxofstream* out : {&never, &closed}) {
    EXPECT_EQ(out->write("lost", 4), 0u);
    EXPECT_FALSE(out->good() || out->flush());
  }
}

TEST(MemoryStreams, what_is_written_is_read_again) {
  vxosstream out;
  out << "a" << 'b' << std::string("c\0d", 3) << vxendl;
  EXPECT_EQ(out.str(), std::string("abc\0d\n", 6));
  EXPECT_FALSE(out.seek(0, vxstream::beg));

  char* const owned = new char[3]{'x', 'y', 'z'};
  vxisstream in(owned, 3, true);
  EXPECT_EQ(in.getbyte(), 'x');
  EXPECT_EQ(in.bytes_left(), 2u);
  in.set(out.str());
  std::string back;
  EXPECT_EQ(in.read(back, 100), 6u);
  EXPECT_EQ(back, out.str());
}

}  // namespace
