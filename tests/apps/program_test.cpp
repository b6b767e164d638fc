// The program as a user runs it: exit status, what goes to which stream, files written.
#include "program.h"

#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#define GEMMI_WRITE_IMPLEMENTATION
#include <gemmi/mtz.hpp>

#include "support/temp_dir.h"
#include "vxgrid/vxgrid.h"

namespace {

using vxgrid_test::TempDir;

struct Outcome {
  int status;
  std::string out, err;
};

Outcome run(const std::vector<std::string>& arguments) {
  std::ostringstream out, err;
  const int status = vxgrid_app::run_program(arguments, {out, err});
  return {status, out.str(), err.str()};
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

/// A folder with the crystal that examples/make_crystal makes.
class ProgramOnACrystal : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    folder = new TempDir;
    const std::string command =
        std::string(VXGRID_MAKE_CRYSTAL) + " " + folder->file("") + " >" + folder->file("log");
    ASSERT_EQ(std::system(command.c_str()), 0);
  }
  static void TearDownTestSuite() {
    delete folder;
    folder = nullptr;
  }
  static std::string file(const std::string& name) { return folder->file(name); }

 private:
  static TempDir* folder;
};
TempDir* ProgramOnACrystal::folder = nullptr;

TEST(Program, wrong_use_exits_with_2_and_says_what_is_allowed) {
  const struct {
    std::vector<std::string> arguments;
    const char* says;
  } cases[] = {{{}, "The commands are info convert map score."},
               {{"paint"}, "The commands are info convert map score."},
               {{"score", "a.pdb"}, "MAP is required"},
               {{"map", "a.mtz", "-o", "a.map", "--type", "Nope"}, "2Fo-Fc"},
               {{"convert", "a.map", "b.grd", "--spacing", "-1"}, "-1 is not a number above 0"},
               {{"score", "a.pdb", "a.map", "--radius", "nan"}, "nan is not a number above 0"},
               {{"info", "--verbose", "--quiet", "a"}, "--verbose"}};
  for (const auto& c : cases) {
    const Outcome result = run(c.arguments);
    EXPECT_EQ(result.status, 2) << c.says;
    EXPECT_TRUE(contains(result.err, c.says)) << result.err;
    EXPECT_EQ(result.out, "");
  }
  EXPECT_EQ(run({"--help"}).status, 0);
  EXPECT_TRUE(contains(run({"score", "--help"}).out, "--per-residue"));
  EXPECT_EQ(run({"--version"}).out, "5.0.0.0\n");
}

TEST(Program, unusable_files_exit_with_1_and_say_which) {
  const TempDir folder;
  vxgrid_test::write_file(folder.file("empty.map"), "");
  vxgrid_test::write_file(folder.file("junk.mtz"), "not a reflection file");
  vxgrid_test::write_file(folder.file("junk.pdb"), std::string(2000, '\x07'));
  const struct {
    std::vector<std::string> arguments;
    std::string says;
  } cases[] = {
      {{"info", folder.file("missing.map")}, "missing.map: no such file"},
      {{"info", folder.file("empty.map")}, "empty.map: cannot be read"},
      {{"info", folder.file("junk.mtz")}, "junk.mtz: not an MTZ file"},
      {{"info", folder.file("junk.pdb")}, "junk.pdb: cannot be read"},
      {{"convert", folder.file("empty.map"), folder.file("out.grd")}, "empty.map: cannot be read"},
      {{"convert", folder.file("empty.map"), folder.file("out.txt")}, "out.txt: the extension"},
      {{"map", folder.file("junk.mtz"), "-o", folder.file("out.map")}, "junk.mtz: not an MTZ"},
      {{"score", folder.file("junk.pdb"), folder.file("empty.map")}, "junk.pdb: cannot be read"},
  };
  for (const auto& c : cases) {
    const Outcome result = run(c.arguments);
    EXPECT_EQ(result.status, 1) << c.says;
    EXPECT_TRUE(contains(result.err, c.says)) << result.err;
  }
  EXPECT_FALSE(std::filesystem::exists(folder.file("out.map")));
}

/// The text without blanks at the ends of lines and empty lines at its end, which the documentation
/// does not keep.
std::string without_trailing_blanks(const std::string& text) {
  std::istringstream in(text);
  std::string line, trimmed;
  while (std::getline(in, line))
    trimmed += line.substr(0, line.find_last_not_of(' ') + 1) + '\n';
  return trimmed.substr(0, trimmed.find_last_not_of('\n') + 1);
}

TEST_F(ProgramOnACrystal, documentation_shows_what_the_program_prints) {
  const std::string page = vxgrid_test::read_file(VXGRID_PROGRAM_PAGE);
  for (const char* command : {"info", "convert", "map", "score"})
    EXPECT_TRUE(contains(page, without_trailing_blanks(run({command, "--help"}).out))) << command;

  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(file(""));
  ASSERT_EQ(run({"map", "crystal.mtz", "-o", "crystal.map"}).status, 0);
  EXPECT_TRUE(contains(page, run({"info", "crystal.map"}).out));
  EXPECT_TRUE(contains(
      page, run({"score", "crystal.pdb", "crystal.map", "--per-residue", "--radius", "1.5"}).out));
  std::filesystem::current_path(before);
}

TEST_F(ProgramOnACrystal, map_is_written_described_and_converted) {
  ASSERT_EQ(run({"map", file("crystal.mtz"), "-o", file("a.map")}).status, 0);
  const Outcome info = run({"info", file("a.map"), file("crystal.mtz"), file("crystal.pdb")});
  EXPECT_EQ(info.status, 0) << info.err;
  for (const char* part : {"CCP4 Map", "18.000 20.000 28.000 A", "19 (P 21 21 21)", "FWT (F)",
                           "Atoms:        61", "Resolution:   1.80 A"})
    EXPECT_TRUE(contains(info.out, part)) << part << '\n' << info.out;

  ASSERT_EQ(run({"convert", file("a.map"), file("b.grd")}).status, 0);
  ASSERT_EQ(run({"convert", file("b.grd"), file("c.map.gz")}).status, 0);
  VXCore::VXSkewGrid a, c;
  ASSERT_TRUE(VXCore::VXReadGrid(file("a.map"), a) && VXCore::VXReadGrid(file("c.map.gz"), c));
  ASSERT_EQ(a.GetSize(), c.GetSize());
  for (unsigned int e = 0; e < a.GetSize(); ++e)
    ASSERT_EQ(a.GetValues()[e], c.GetValues()[e]);
  EXPECT_EQ(c.GetSpaceGroup(), 19u);

  ASSERT_EQ(run({"convert", file("a.map"), file("d.agd"), "--spacing", "0.8"}).status, 0);
  EXPECT_TRUE(contains(vxgrid_test::read_file(file("d.agd")), "Spacing:     0.800000"));
}

TEST_F(ProgramOnACrystal, score_tells_the_same_in_text_and_json) {
  const Outcome text = run({"score", file("crystal.pdb"), file("crystal.mtz"), "--per-residue"});
  ASSERT_EQ(text.status, 0) << text.err;
  EXPECT_TRUE(contains(text.err, "radius 0.633 A, from a resolution of 1.80 A"));
  EXPECT_FALSE(contains(text.err, "residue"));  // progress is for terminals

  const Outcome json = run({"--quiet", "score", file("crystal.pdb"), file("crystal.mtz"),
                            "--per-residue", "--json", "--radius", "1.5"});
  ASSERT_EQ(json.status, 0) << json.err;
  EXPECT_EQ(json.err, "");
  rapidjson::Document document;
  document.Parse(json.out.c_str());
  ASSERT_FALSE(document.HasParseError());
  EXPECT_GT(document["rscc"].GetDouble(), 0.9);
  ASSERT_EQ(document["residues"].Size(), 10u);
  EXPECT_STREQ(document["residues"][1]["name"].GetString(), "ALA");
  EXPECT_EQ(document["residues"][1]["atoms"].GetUint(), 5u);

  // The map that a file holds scores as the one made from the reflections.
  ASSERT_EQ(run({"map", file("crystal.mtz"), "-o", file("s.map")}).status, 0);
  const Outcome from_map =
      run({"score", file("crystal.pdb"), file("s.map"), "-r", "1.5", "-p", "-j"});
  rapidjson::Document other;
  other.Parse(from_map.out.c_str());
  ASSERT_FALSE(other.HasParseError());
  EXPECT_NEAR(other["rscc"].GetDouble(), document["rscc"].GetDouble(), 1e-5);
  for (rapidjson::SizeType i = 0; i < 10; ++i)
    EXPECT_NEAR(other["residues"][i]["rscc"].GetDouble(),
                document["residues"][i]["rscc"].GetDouble(), 1e-5);
}

TEST_F(ProgramOnACrystal, score_asks_for_a_radius_when_nothing_tells_a_resolution) {
  std::string model = vxgrid_test::read_file(file("crystal.pdb"));
  model.erase(0, model.find("CRYST1"));
  vxgrid_test::write_file(file("bare.pdb"), model);
  ASSERT_EQ(run({"map", file("crystal.mtz"), "-o", file("r.map")}).status, 0);
  const Outcome result = run({"score", file("bare.pdb"), file("r.map")});
  EXPECT_EQ(result.status, 1);
  EXPECT_TRUE(contains(result.err, "--radius")) << result.err;
  EXPECT_EQ(run({"score", file("bare.pdb"), file("r.map"), "--radius", "1.5"}).status, 0);
}

TEST_F(ProgramOnACrystal, atoms_without_a_bfactor_get_one_and_the_user_is_told) {
  std::string model = vxgrid_test::read_file(file("crystal.pdb"));
  const std::size_t at = model.find(" 12.00");
  model.replace(at, 6, "  0.00");
  vxgrid_test::write_file(file("sharp.pdb"), model);
  const Outcome result = run({"score", file("sharp.pdb"), file("crystal.mtz"), "--radius", "1.5"});
  EXPECT_EQ(result.status, 0);
  EXPECT_TRUE(contains(result.err, "1 atoms had no B-factor or no occupancy")) << result.err;
}

TEST_F(ProgramOnACrystal, map_of_calculated_amplitudes_needs_no_other_columns) {
  gemmi::Mtz mtz = gemmi::read_mtz_file(file("crystal.mtz"));
  for (const char* label : {"FP", "SIGFP", "FWT", "PHWT", "DELFWT", "PHDELWT"})
    mtz.remove_column(static_cast<std::size_t>(mtz.column_with_label(label)->idx));
  mtz.write_to_file(file("fc.mtz"));
  const Outcome result = run({"map", file("fc.mtz"), "-o", file("fc.map"), "--type", "Fc"});
  EXPECT_EQ(result.status, 0) << result.err;
  VXCore::VXSkewGrid map;
  ASSERT_TRUE(VXCore::VXReadGrid(file("fc.map"), map));
  EXPECT_TRUE(VXCore::VXGridHasNonZeroValue(map));
  EXPECT_EQ(run({"map", file("fc.mtz"), "-o", file("no.map")}).status, 1);
}

}  // namespace
