#include <gtest/gtest.h>
#include <zlib.h>  // for gzopen

#include <cmath>   // for isnan, sqrt
#include <limits>  // for numeric_limits
#include <new>     // for bad_alloc
#include <random>  // for mt19937

#include "reflection/mtz_maker.h"
#include "support/messages.h"
#include "support/shared_data.h"
#include "support/temp_dir.h"
#include "vxgrid/reflection/mtz_file.h"
#include "vxgrid/reflection/reflection.h"

namespace {

using namespace VXCore;
using vxgrid_test::mtz_bytes;
using vxgrid_test::MtzColumn;
using vxgrid_test::MtzContent;
using vxgrid_test::other_byte_order;
using vxgrid_test::with_record;

const float nan_value = std::numeric_limits<float>::quiet_NaN();

// Every column that the reader knows, under its default label.
MtzContent full_content() {
  MtzContent content;
  content.hkl = {{1, 2, 3}, {0, 0, 4}, {-3, 5, 2}};
  const std::vector<std::pair<std::string, char>> labels = {
      {"FP", 'F'},  {"FC", 'F'},     {"PHI", 'P'},        {"PHIC", 'P'}, {"SIGFP", 'Q'},
      {"FOM", 'W'}, {"HLA", 'A'},    {"HLB", 'A'},        {"HLC", 'A'},  {"HLD", 'A'},
      {"FWT", 'F'}, {"DELFWT", 'F'}, {"FreeR_flag", 'I'}, {"PHWT", 'P'}, {"PHDELWT", 'P'}};
  float value = 10;
  for (const auto& [label, type] : labels) {
    content.columns.push_back({label, type, {value, value + 0.25F, value + 0.5F}});
    value += 1;
  }
  return content;
}

MtzContent fp_content(char type = 'F') {
  MtzContent content;
  content.hkl = {{1, 2, 3}, {2, 0, 4}};
  content.columns = {{"FP", type, {9, 16}}, {"SIGFP", 'Q', {4, 25}}};
  return content;
}

bool read(const std::string& bytes, VXReflection& set,
          const VXMTZColumnNames& names = VXMTZColumnNames()) {
  vxisstream stream(bytes.data(), bytes.size());
  return VXReadReflectionMTZ(stream, set, names);
}

// Every column of a set, indices first, as text that tells missing columns.
std::vector<std::vector<float>> columns_of(const VXReflection& set) {
  const unsigned int n = set.GetCount();
  std::vector<std::vector<float>> all;
  std::vector<int> h(n + 1), k(n + 1), l(n + 1);
  if (set.GetHKL(h.data(), k.data(), l.data())) {
    for (const auto& index : {h, k, l})
      all.emplace_back(index.begin(), index.begin() + n);
  }
  for (unsigned int column = 0; column <= VXReflectionColumn::Stolsq; ++column) {
    std::vector<float> values(n);
    if (!set.GetColumn(column, values.data())) values.clear();
    all.push_back(values);
  }
  std::vector<float> a(n), b(n), c(n), d(n);
  if (set.GetABCD(a.data(), b.data(), c.data(), d.data()))
    for (const auto& coefficient : {a, b, c, d})
      all.push_back(coefficient);
  return all;
}

TEST(MtzReader, takes_every_column_under_its_default_label) {
  VXReflection set;
  ASSERT_TRUE(read(mtz_bytes(full_content()), set));
  ASSERT_EQ(set.GetCount(), 3U);
  using F = std::vector<float>;
  const auto row = [](float first) { return F{first, first + 0.25F, first + 0.5F}; };
  const std::vector<F> expected = {{1, 0, -3}, {2, 0, 5}, {3, 4, 2},
                                   row(12),  // phase
                                   row(13),  // phase_calc
                                   row(10),  // fobs
                                   row(11),  // fcalc
                                   row(23),  // phiwt
                                   row(24),  // phidelwt
                                   row(20),  // fwt
                                   row(21),  // fdelwt
                                   row(14),  // sigma
                                   row(15),  // fom
                                   {},       // centric
                                   {},       // rfree: read and dropped
                                   {},       // stolsq
                                   row(16),    row(17),   row(18),   row(19)};
  EXPECT_EQ(columns_of(set), expected);
  EXPECT_EQ(set.GetSymmetry().GetNumber(), 19U);
  EXPECT_TRUE(set.GetSymmetry().cell().equalsCell(VXXtal::VXUnitCell(30, 40, 50, 90, 90, 90), 0));
  EXPECT_EQ(set.GetTitle(), "");
  // Of 0 0 4, -3 5 2 and 1 2 3 the second is finest.
  EXPECT_NEAR(set.GetResolution(), 1 / std::sqrt(9 / 900.0 + 25 / 1600.0 + 4 / 2500.0), 1e-6);
}

TEST(MtzReader, reads_a_file_of_the_other_byte_order_as_its_twin) {
  const std::string bytes = mtz_bytes(full_content());
  VXReflection set, twin;
  ASSERT_TRUE(read(bytes, set) && read(other_byte_order(bytes), twin));
  EXPECT_EQ(columns_of(set), columns_of(twin));
  EXPECT_EQ(set.GetResolution(), twin.GetResolution());
}

TEST(MtzReader, follows_the_labels_it_is_given) {
  VXMTZColumnNames names;
  EXPECT_EQ(names.GetColumnNames().size(), 18U);
  EXPECT_EQ(names.GetColumnName(VXMTZColumnIndex::PHWT), "PHWT");
  EXPECT_EQ(names.GetColumnName(18), "");
  EXPECT_FALSE(names.SetColumnName(18, "X"));
  ASSERT_TRUE(names.SetColumnName(VXMTZColumnIndex::FP, "SIGFP"));
  VXReflection set;
  ASSERT_TRUE(read(mtz_bytes(fp_content()), set, names));
  // One column may serve two fields.
  float fobs = 0, sigma = 0;
  EXPECT_TRUE(set.GetFobsElement(fobs, 1) && set.GetSigmaElement(sigma, 1));
  EXPECT_EQ(fobs, 25);
  EXPECT_EQ(sigma, 25);
}

TEST(MtzReader, takes_the_last_of_columns_with_one_label) {
  VXReflection set;
  ASSERT_TRUE(read(with_record(mtz_bytes(fp_content()), "COLUMN SIGFP", "COLUMN FP F"), set));
  std::vector<float> fobs(2);
  ASSERT_TRUE(set.GetFobs(fobs.data()));
  EXPECT_EQ(fobs, (std::vector<float>{4, 25}));
}

TEST(MtzReader, turns_intensities_into_amplitudes) {
  // fcalc: the square root of its column. fobs: of the amplitude column with the same label, and
  // with none of the word before the row, which is 0 for the first.
  MtzContent content = fp_content('J');
  content.columns.push_back({"FC", 'K', {36, 49}});
  VXReflection set;
  ASSERT_TRUE(read(mtz_bytes(content), set));
  std::vector<float> fobs(2), fcalc(2);
  ASSERT_TRUE(set.GetFobs(fobs.data()) && set.GetFcalc(fcalc.data()));
  EXPECT_EQ(fcalc, (std::vector<float>{6, 7}));
  EXPECT_EQ(fobs, (std::vector<float>{0, 6}));  // the word before the second row is 36

  const std::string both = with_record(mtz_bytes(fp_content('J')), "COLUMN SIGFP", "COLUMN FP F");
  ASSERT_TRUE(read(both, set));
  ASSERT_TRUE(set.GetFobs(fobs.data()));
  EXPECT_EQ(fobs, (std::vector<float>{2, 5}));
}

TEST(MtzReader, reads_long_files_plain_and_packed_alike) {
  // More words than are read at a time. An FP column of intensities takes the word before each row,
  // which shows that no row falls between two stretches.
  constexpr unsigned int n = 50000;
  MtzContent content;
  content.columns = {{"FP", 'J', std::vector<float>(n, 9)}, {"SIGFP", 'Q', {}}};
  for (unsigned int i = 0; i < n; ++i) {
    content.hkl.push_back({static_cast<int>(i), 2, -3});
    content.columns[1].values.push_back(static_cast<float>(i));
  }
  const vxgrid_test::TempDir dir;
  const std::string bytes = mtz_bytes(content);
  vxgrid_test::write_file(dir.file("long.mtz"), bytes);
  gzFile gz = gzopen(dir.file("long.mtz.gz").c_str(), "wb1");
  gzwrite(gz, bytes.data(), static_cast<unsigned int>(bytes.size()));
  gzclose(gz);
  for (const char* name : {"long.mtz", "long.mtz.gz"}) {
    vxifstream stream(dir.file(name));
    VXReflection set;
    ASSERT_TRUE(VXReadReflectionMTZ(stream, set, VXMTZColumnNames()));
    EXPECT_TRUE(stream.eof());
    ASSERT_EQ(set.GetCount(), n);
    std::vector<int> h(n), k(n), l(n);
    std::vector<float> fobs(n), sigma(n);
    ASSERT_TRUE(set.GetHKL(h.data(), k.data(), l.data()));
    ASSERT_TRUE(set.GetFobs(fobs.data()) && set.GetSigma(sigma.data()));
    for (unsigned int i = 0; i < n; ++i) {
      ASSERT_EQ(h[i], static_cast<int>(i));
      ASSERT_EQ(l[i], -3);
      ASSERT_EQ(sigma[i], static_cast<float>(i));
      ASSERT_EQ(fobs[i], i == 0 ? 0 : std::sqrt(static_cast<float>(i - 1)));
    }
  }
}

TEST(MtzReader, keeps_missing_values_and_wants_all_four_coefficients) {
  MtzContent content = full_content();
  content.columns[0].values[1] = nan_value;
  VXReflection set;
  ASSERT_TRUE(read(with_record(mtz_bytes(content), "COLUMN HLC", "COLUMN other A"), set));
  std::vector<float> fobs(3), a(3), b(3), c(3), d(3);
  ASSERT_TRUE(set.GetFobs(fobs.data()));
  EXPECT_TRUE(std::isnan(fobs[1]));
  EXPECT_FALSE(set.GetABCD(a.data(), b.data(), c.data(), d.data()));
}

// What a file says, what becomes of it. A cleared set has no reflections left.
enum class Outcome { read, untouched, cleared, refused };
struct BadFile {
  const char* what;
  std::string bytes;
  Outcome outcome;
};

void expect_outcome(const BadFile& file) {
  SCOPED_TRACE(file.what);
  VXReflection set;
  set.SetCount(7);
  const bool result = read(file.bytes, set);
  EXPECT_EQ(result, file.outcome == Outcome::read || file.outcome == Outcome::untouched);
  const unsigned int expected = file.outcome == Outcome::read      ? 2
                                : file.outcome == Outcome::cleared ? 0
                                                                   : 7;
  EXPECT_EQ(set.GetCount(), expected);
}

TEST(MtzReader, tells_what_it_can_read_from_what_it_cannot) {
  const std::string good = mtz_bytes(fp_content());
  std::string wrong_magic = good;
  wrong_magic[3] = 'X';
  MtzContent no_index = fp_content();
  std::string infinite = good;
  const float inf = std::numeric_limits<float>::infinity();
  std::memcpy(infinite.data() + 80, &inf, 4);
  std::string too_large = good;
  const float large = 2147483648.0F;
  std::memcpy(too_large.data() + 84, &large, 4);
  for (const BadFile& file : std::vector<BadFile>{
           {"good", good, Outcome::read},
           {"empty", "", Outcome::untouched},
           {"79 bytes", good.substr(0, 79), Outcome::untouched},
           {"another format", wrong_magic, Outcome::refused},
           {"no data block", vxgrid_test::with_header_words(good, 21), Outcome::untouched},
           {"no NCOL", with_record(good, "NCOL", ""), Outcome::untouched},
           {"no reflections", with_record(good, "NCOL", "NCOL 5 0 0"), Outcome::untouched},
           {"no columns", with_record(good, "NCOL", "NCOL 0 2 0"), Outcome::untouched},
           {"negative count", with_record(good, "NCOL", "NCOL 5 -2 0"), Outcome::untouched},
           {"no L", with_record(good, "COLUMN L", "COLUMN M H"), Outcome::cleared},
           {"an index that is infinite", infinite, Outcome::cleared},
           {"an index that fits no int", too_large, Outcome::cleared},
           {"more rows than data", with_record(good, "NCOL", "NCOL 5 4294967295 0"),
            Outcome::cleared},
           {"rows too wide", with_record(good, "NCOL", "NCOL 4294967295 4294967295 0"),
            Outcome::cleared},
           {"rows too narrow for their columns", with_record(good, "NCOL", "NCOL 4 2 0"),
            Outcome::cleared},
       })
    expect_outcome(file);
}

TEST(MtzReader, runs_out_of_memory_for_a_header_outside_of_the_file) {
  const std::string good = mtz_bytes(fp_content());
  const auto last = static_cast<std::int32_t>(good.size() / 4 + 1);
  VXReflection set;
  for (std::int32_t words :
       {-1, 0, 1, 20, last + 1, 1 << 29, std::numeric_limits<std::int32_t>::max(),
        std::numeric_limits<std::int32_t>::min()})
    EXPECT_THROW(read(vxgrid_test::with_header_words(good, words), set), std::bad_alloc) << words;
  EXPECT_TRUE(read(vxgrid_test::with_header_words(good, last), set));  // all data, no records
}

TEST(MtzReader, survives_a_cut_at_every_record_and_around_it) {
  const std::string good = mtz_bytes(full_content());
  std::vector<std::size_t> cuts;
  const std::size_t records = vxgrid_test::header_start(good);
  for (std::size_t at = 80; at < records; at += 4 * 18)
    cuts.push_back(at);
  for (std::size_t at = records; at <= good.size(); at += 80)
    cuts.push_back(at);
  std::size_t tried = 0;
  for (std::size_t cut : cuts) {
    for (std::size_t near = cut - 4; near <= std::min(cut + 4, good.size()); ++near, ++tried) {
      VXReflection set;
      const std::string bytes = good.substr(0, near);
      if (near >= 80 && near < records) {
        EXPECT_THROW(read(bytes, set), std::bad_alloc) << near;
        continue;
      }
      // Before NCOL there is nothing to read, before the index columns nothing that can be read.
      const bool counted = bytes.find("NCOL       18            3", records) != std::string::npos;
      const bool indexed = bytes.find("COLUMN L", std::min(records, near)) != std::string::npos;
      EXPECT_EQ(read(bytes, set), indexed || !counted) << near;
      EXPECT_EQ(set.GetCount(), indexed ? 3U : 0U) << near;
    }
  }
  EXPECT_GT(tried, 300U);
}

TEST(MtzReader, survives_random_bytes) {
  const vxgrid_test::MessageCapture silence;  // of cells that do not go with their group
  const std::string good = mtz_bytes(full_content());
  std::mt19937 random(11);
  for (int round = 0; round < 2000; ++round) {
    std::string bytes = good;
    for (int hit = 0; hit < 6; ++hit)
      bytes[random() % bytes.size()] = static_cast<char>(random());
    VXReflection set;
    try {
      read(bytes, set);
      EXPECT_LE(set.GetCount(), 16U << 20);
    } catch (const std::bad_alloc&) {
    }
    std::vector<std::string> names;
    std::vector<char> types;
    vxisstream stream(bytes.data(), bytes.size());
    VXGetMTZFileColumnNamesAndTypes(stream, names, types);
    EXPECT_EQ(names.size(), types.size());
  }
}

TEST(MtzColumnInventory, lists_labels_and_types_in_file_order_behind_what_is_there) {
  const std::string bytes = mtz_bytes(fp_content());
  for (const std::string& file : {bytes, other_byte_order(bytes)}) {
    vxisstream stream(file.data(), file.size());
    std::vector<std::string> names = {"before"};
    std::vector<char> types = {'?'};
    EXPECT_TRUE(VXGetMTZFileColumnNamesAndTypes(stream, names, types));
    EXPECT_EQ(names, (std::vector<std::string>{"before", "H", "K", "L", "FP", "SIGFP"}));
    EXPECT_EQ(std::string(types.begin(), types.end()), "?HHHFQ");
    EXPECT_TRUE(stream.eof());
  }
  for (const std::string& file : {std::string(), bytes.substr(0, 79), "XTZ " + bytes.substr(4),
                                  vxgrid_test::with_header_words(bytes, -40),
                                  bytes.substr(0, vxgrid_test::header_start(bytes))}) {
    vxisstream stream(file.data(), file.size());
    std::vector<std::string> names;
    std::vector<char> types;
    EXPECT_FALSE(VXGetMTZFileColumnNamesAndTypes(stream, names, types));
    EXPECT_TRUE(names.empty());
  }
}

TEST(MtzReader, agrees_with_gemmi_on_a_deposited_file) {
  const std::string path = vxgrid_test::shared_data("5wkd_phases.mtz");
  if (!vxgrid_test::has_shared_data("5wkd_phases.mtz"))
    GTEST_SKIP() << vxgrid_test::missing_data("5wkd_phases.mtz");
  vxifstream stream(path);
  VXReflection set;
  ASSERT_TRUE(VXReadReflectionMTZ(stream, set, VXMTZColumnNames()));
  const gemmi::Mtz mtz = gemmi::read_mtz_file(path);
  ASSERT_EQ(set.GetCount(), 367U);
  EXPECT_EQ(set.GetSymmetry().GetNumber(), 5U);
  EXPECT_NEAR(set.GetResolution(), mtz.resolution_high(), 1e-4);
  const std::vector<std::pair<const char*, unsigned int>> fields = {
      {"FP", VXReflectionColumn::Fobs},          {"FC", VXReflectionColumn::Fcalc},
      {"PHIC", VXReflectionColumn::PhaseCalc},   {"FWT", VXReflectionColumn::Fwt},
      {"PHWT", VXReflectionColumn::Phiwt},       {"DELFWT", VXReflectionColumn::Fdelwt},
      {"PHDELWT", VXReflectionColumn::Phidelwt}, {"SIGFP", VXReflectionColumn::Sigma},
      {"FOM", VXReflectionColumn::FOM}};
  for (const auto& [label, column] : fields) {
    std::vector<float> values(set.GetCount());
    ASSERT_TRUE(set.GetColumn(column, values.data())) << label;
    const gemmi::Mtz::Column& expected = *mtz.column_with_label(label);
    for (std::size_t i = 0; i < values.size(); ++i)
      EXPECT_TRUE(values[i] == expected[i] || (std::isnan(values[i]) && std::isnan(expected[i])));
  }
}

}  // namespace
