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
  } cases[] = {{{}, "The commands are info convert map score"},
               {{"paint"}, "The commands are info convert map score"},
               {{"score", "a.pdb"}, "MAP is required"},
               {{"map", "a.mtz", "-o", "a.map", "--type", "Nope"}, "2Fo-Fc"},
               {{"convert", "a.map", "b.grd", "--spacing", "-1"}, "-1 is not a number above 0"},
               {{"score", "a.pdb", "a.map", "--radius", "nan"}, "nan is not a number above 0"},
               {{"score", "a.pdb", "a.mtz", "--calc", "fft"}, "sf"},
               {{"sf", "a.pdb", "a.mtz"}, "--output is required"},
               {{"gaussian", "a.pdb"}, "--output is required"},
               {{"gaussian", "a.pdb", "-o", "a.map", "-s", "0"}, "0 is not a number above 0"},
               {{"shape"}, "MODEL is required"},
               {{"contact", "a.pdb", "-o", "a.map"}, "B is required"},
               {{"mask", "a.map", "a.pdb", "-o", "b.map", "--keep", "all"}, "outside"},
               {{"thin", "a.map", "-o", "b.map", "-l", "0"}, "0 is not a number above 0"},
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
      {{"sf", folder.file("junk.pdb"), folder.file("junk.mtz"), "-o", folder.file("out.vxx")},
       "junk.pdb: cannot be read"},
      {{"sf", folder.file("junk.pdb"), folder.file("junk.mtz"), "-o", folder.file("out.mtz")},
       "out.mtz: the extension"},
      {{"gaussian", folder.file("junk.pdb"), "-o", folder.file("out.map")}, "junk.pdb: cannot be"},
      {{"gaussian", folder.file("junk.pdb"), "-o", folder.file("out.xyz")}, "out.xyz: the ext"},
      {{"shape", folder.file("junk.pdb")}, "junk.pdb: cannot be read"},
      {{"contact", folder.file("junk.pdb"), "b.pdb", "-o", folder.file("out.map")},
       "junk.pdb: can"},
      {{"mask", folder.file("empty.map"), "b.pdb", "-o", folder.file("out.map")}, "empty.map: can"},
      {{"thin", folder.file("empty.map"), "-o", folder.file("out.map")}, "empty.map: cannot be"},
      {{"thin", "a.map", "-o", folder.file("out.txt")}, "out.txt: the extension"},
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
  for (const char* command :
       {"info", "convert", "map", "score", "sf", "gaussian", "shape", "contact", "mask", "thin"})
    EXPECT_TRUE(contains(page, without_trailing_blanks(run({command, "--help"}).out))) << command;

  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(file(""));
  ASSERT_EQ(run({"map", "crystal.mtz", "-o", "crystal.map"}).status, 0);
  EXPECT_TRUE(contains(page, run({"info", "crystal.map"}).out));
  EXPECT_TRUE(contains(
      page, run({"score", "crystal.pdb", "crystal.map", "--per-residue", "--radius", "1.5"}).out));
  EXPECT_TRUE(contains(page, run({"shape", "crystal.pdb"}).out));
  EXPECT_TRUE(contains(page, run({"sf", "crystal.pdb", "crystal.mtz", "-o", "crystal.vxx"}).out));
  EXPECT_TRUE(contains(
      page, run({"score", "crystal.pdb", "crystal.mtz", "--calc", "sf", "--radius", "1.5"}).out));
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

TEST_F(ProgramOnACrystal, grid_documents_are_written_and_read) {
  ASSERT_EQ(run({"map", file("crystal.mtz"), "-o", file("e.map")}).status, 0);
  ASSERT_EQ(run({"convert", file("e.map"), file("e.json"), "-s", "0.8"}).status, 0);
  ASSERT_EQ(run({"convert", file("e.json"), file("e.grd")}).status, 0);
  VXCore::VXSkewGrid map;
  VXCore::VXScalarGrid regular;
  VXCore::VXBrioGrid back;
  ASSERT_TRUE(VXCore::VXReadGrid(file("e.map"), map));
  ASSERT_TRUE(VXCore::VXMakeRegularGrid(regular, map, 0.8f));
  ASSERT_TRUE(VXCore::VXReadGrid(file("e.grd"), back));
  ASSERT_EQ(back.GetSize(), regular.GetSize());
  EXPECT_NEAR(back.GetXMid(), regular.GetXMid(), 1e-5);
  for (unsigned int e = 0; e < back.GetSize(); ++e)
    ASSERT_NEAR(back.GetValues()[e], regular.GetValues()[e], 1e-6);

  // A crystal map comes back with cell, sampling and group, its values cut.
  ASSERT_EQ(run({"convert", file("e.map"), file("cell.json.gz")}).status, 0);
  ASSERT_EQ(run({"convert", file("cell.json.gz"), file("cell.map")}).status, 0);
  VXCore::VXSkewGrid cell;
  ASSERT_TRUE(VXCore::VXReadGrid(file("cell.map"), cell));
  ASSERT_EQ(cell.GetSize(), map.GetSize());
  for (unsigned int e = 0; e < map.GetSize(); ++e)
    ASSERT_EQ(cell.GetValues()[e],
              static_cast<float>(VXCore::VXTruncate(map.GetValues()[e], 100000000)));
  const auto described = [&](const char* name) {
    const std::string text = run({"info", file(name)}).out;
    return text.substr(text.find("Points:"), text.find("Values:") - text.find("Points:"));
  };
  EXPECT_EQ(described("cell.map"), described("e.map"));
  EXPECT_EQ(described("cell.json.gz"), described("e.map"));

  vxgrid_test::write_file(file("bad.json"), R"({"type":"grid","version":"0.91"})");
  EXPECT_TRUE(contains(run({"convert", file("bad.json"), file("f.map")}).err, "holds no grid"));
  EXPECT_TRUE(contains(run({"convert", file("none.json"), file("f.map")}).err, "cannot be read"));
  EXPECT_FALSE(std::filesystem::exists(file("f.map")));
}

TEST_F(ProgramOnACrystal, reflections_are_converted_and_described) {
  ASSERT_EQ(run({"convert", file("crystal.mtz"), file("whole.vxx.gz")}).status, 0);
  ASSERT_EQ(run({"convert", file("whole.vxx.gz"), file("part.fob")}).status, 0);
  const Outcome info = run({"info", file("whole.vxx.gz"), file("part.fob")});
  for (const char* part : {"Format:       VXX reflections\nReflections:  1062",
                           "Space group:  19 (P 21 21 21)", "Format:       XPLOR reflections"})
    EXPECT_TRUE(contains(info.out, part)) << part << '\n' << info.out;
  VXCore::VXReflection whole, part;
  ASSERT_TRUE(VXCore::VXReadReflection(file("whole.vxx.gz"), whole));
  ASSERT_TRUE(VXCore::VXReadReflection(file("part.fob"), part));
  for (unsigned int i = 0; i < 1062; ++i) {
    float a = 0, b = -1;
    ASSERT_TRUE(whole.GetFobsElement(a, i) && part.GetFobsElement(b, i));
    ASSERT_NEAR(a, b, 1e-5);
  }

  const Outcome no_cell = run({"map", file("part.fob"), "-o", file("refused.map"), "-t", "Fo"});
  EXPECT_TRUE(contains(no_cell.err, "part.fob tells no cell and space group")) << no_cell.err;
  vxgrid_test::write_file(file("none.vxx"), std::string(4, '\0'));
  const struct {
    std::vector<std::string> arguments;
    const char* says;
  } refused[] = {
      {{"convert", file("crystal.mtz"), file("refused.hkl")}, "refused.hkl: the extension"},
      {{"convert", file("crystal.mtz"), file("refused.map")}, "refused.map: the extension"},
      {{"convert", file("crystal.mtz"), file("refused.phs")}, "crystal.mtz: lacks"},
      {{"convert", file("crystal.mtz"), file("refused.vxx"), "-s", "1"}, "resampled"},
      {{"convert", file("crystal.pdb"), file("refused.vxx")}, "crystal.pdb: the extension"},
      {{"convert", file("none.vxx"), file("refused.fob")}, "none.vxx: holds no reflections"}};
  for (const auto& c : refused) {
    const Outcome result = run(c.arguments);
    EXPECT_EQ(result.status, 1) << c.says;
    EXPECT_TRUE(contains(result.err, c.says)) << result.err;
    EXPECT_FALSE(std::filesystem::exists(c.arguments[2])) << c.says;
  }
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

/// The number behind a label in the program's text.
double number_behind(const std::string& label, const std::string& text) {
  const std::size_t at = text.find(label);
  return at == std::string::npos ? NAN : std::atof(text.c_str() + at + label.size());
}

TEST_F(ProgramOnACrystal, structure_factors_of_its_model_agree_with_its_data) {
  const Outcome result =
      run({"sf", file("crystal.pdb"), file("crystal.mtz"), "-o", file("sf.vxx")});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(number_behind("Reflections:", result.out), 1062);
  EXPECT_LT(number_behind("R factor:", result.out), 0.04);
  EXPECT_GT(number_behind("Correlation:", result.out), 0.99);

  // The amplitudes of the file that is written, against those that gemmi has put into the other.
  VXCore::VXReflection ours, gemmis;
  ASSERT_TRUE(VXCore::VXReadReflection(file("sf.vxx"), ours));
  ASSERT_TRUE(VXCore::VXReadReflection(file("crystal.mtz"), gemmis));
  const unsigned int n = gemmis.GetCount();
  ASSERT_EQ(ours.GetCount(), n);
  std::vector<float> a(n), b(n);
  ASSERT_TRUE(ours.GetFcalc(a.data()) && gemmis.GetFcalc(b.data()));
  double sum = 0, difference = 0;
  for (unsigned int i = 0; i < n; ++i) {
    sum += b[i];
    difference += std::fabs(a[i] - b[i]);
  }
  EXPECT_LT(difference, 0.02 * sum);

  // Amplitudes without cell and group, of a format that has none, take the model's.
  ASSERT_EQ(run({"sf", file("crystal.pdb"), file("sf.vxx"), "-o", file("sf.fob")}).status, 0);
  const Outcome again = run({"sf", file("crystal.pdb"), file("sf.fob"), "-o", file("again.vxx")});
  EXPECT_TRUE(contains(again.err, "those of the model")) << again.err;
  EXPECT_NEAR(number_behind("R factor:", again.out), number_behind("R factor:", result.out), 2e-3);

  // Hydrogens have no form factor; without them the model is the same.
  std::string text = vxgrid_test::read_file(file("crystal.pdb"));
  text.insert(text.find("ATOM"),
              "ATOM     62  H   GLY A   1       1.000   1.000   1.000  1.00 12.00           H  \n");
  vxgrid_test::write_file(file("h.pdb"), text);
  const Outcome with_h = run({"sf", file("h.pdb"), file("crystal.mtz"), "-o", file("h.vxx")});
  EXPECT_TRUE(contains(with_h.err, "1 hydrogens left out")) << with_h.err;
  EXPECT_EQ(with_h.out, result.out);
}

TEST_F(ProgramOnACrystal, score_against_the_map_of_the_models_structure_factors) {
  const std::vector<std::string> by_sf = {"score",
                                          file("crystal.pdb"),
                                          file("crystal.mtz"),
                                          "-c",
                                          "sf",
                                          "--radius",
                                          "1.5",
                                          "-p",
                                          "--json",
                                          "--quiet"};
  const Outcome result = run(by_sf);
  rapidjson::Document document;
  document.Parse(result.out.c_str());
  ASSERT_FALSE(document.HasParseError()) << result.err;
  EXPECT_STREQ(document["calc"].GetString(), "sf");
  EXPECT_GT(document["rscc"].GetDouble(), 0.998);
  EXPECT_LT(document["rsr"].GetDouble(), 0.03);
  for (rapidjson::SizeType i = 0; i < 10; ++i)
    EXPECT_GT(document["residues"][i]["rscc"].GetDouble(), 0.995) << i;

  ASSERT_EQ(run({"map", file("crystal.mtz"), "-o", file("q.map")}).status, 0);
  const Outcome refused = run({"score", file("crystal.pdb"), file("q.map"), "-c", "sf"});
  EXPECT_EQ(refused.status, 1);
  EXPECT_TRUE(contains(refused.err, "q.map: --calc sf needs a reflection file")) << refused.err;
}

TEST_F(ProgramOnACrystal, map_of_mmcif_reflections_is_that_of_the_mtz_file) {
  gemmi::Mtz mtz = gemmi::read_mtz_file(file("crystal.mtz"));
  std::ostringstream cif;
  cif << "data_crystal\n_symmetry.space_group_name_H-M 'P 21 21 21'\n_cell.length_a 18\n"
         "_cell.length_b 20\n_cell.length_c 28\n_cell.angle_alpha 90\n_cell.angle_beta 90\n"
         "_cell.angle_gamma 90\nloop_\n_refln.index_h\n_refln.index_k\n_refln.index_l\n"
         "_refln.pdbx_FWT\n_refln.pdbx_PHWT\n";
  const auto* amplitude = mtz.column_with_label("FWT");
  const auto* phase = mtz.column_with_label("PHWT");
  for (std::size_t i = 0; i < static_cast<std::size_t>(mtz.nreflections); ++i) {
    const gemmi::Miller hkl = mtz.get_hkl(i * mtz.columns.size());
    cif << hkl[0] << ' ' << hkl[1] << ' ' << hkl[2] << ' ' << amplitude->at(i) << ' '
        << phase->at(i) << '\n';
  }
  vxgrid_test::write_file(file("crystal-sf.cif"), cif.str());
  const char* const tmpdir = std::getenv("TMPDIR");
  const std::string before = tmpdir ? tmpdir : "";
  setenv("TMPDIR", file("").c_str(), 1);
  const Outcome made = run({"map", file("crystal-sf.cif"), "-o", file("cif.map")});
  EXPECT_EQ(made.status, 0) << made.err;
  const Outcome info = run({"info", file("crystal-sf.cif")});
  EXPECT_TRUE(contains(info.out, "mmCIF structure factors\nReflections:  1062")) << info.out;
  if (tmpdir)
    setenv("TMPDIR", before.c_str(), 1);
  else
    unsetenv("TMPDIR");
  ASSERT_EQ(run({"map", file("crystal.mtz"), "-o", file("mtz.map")}).status, 0);
  VXCore::VXSkewGrid a, b;
  ASSERT_TRUE(VXCore::VXReadGrid(file("cif.map"), a) && VXCore::VXReadGrid(file("mtz.map"), b));
  ASSERT_EQ(a.GetSize(), b.GetSize());
  for (unsigned int i = 0; i < a.GetSize(); ++i)
    ASSERT_NEAR(a.GetValues()[i], b.GetValues()[i], 1e-3);
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

/// The integral of a map file over space, and its values.
struct MapIntegral {
  explicit MapIntegral(const std::string& path) {
    VXCore::VXBrioGrid grid;
    EXPECT_TRUE(VXCore::VXReadGrid(path, grid));
    values.assign(grid.GetValues(), grid.GetValues() + grid.GetSize());
    for (const float value : values)
      integral += value * std::pow(grid.GetSpacing(), 3);
  }
  std::vector<float> values;
  double integral = 0;
};

TEST_F(ProgramOnACrystal, gaussians_of_a_model_integrate_to_the_volumes_of_its_atoms) {
  const std::string model = file("crystal.pdb");
  for (const char* name : {"sum.map", "sum.grd"})
    ASSERT_EQ(run({"gaussian", model, "-o", file(name), "-s", "0.4"}).status, 0);
  ASSERT_EQ(run({"gaussian", model, "-o", file("product.map"), "--product"}).status, 0);
  VXCore::VXGraphMol mol;
  ASSERT_TRUE(VXCore::VXReadMolecule(model, mol));
  double spheres = 0;
  for (const VXCore::VXAtomBase* atom : mol.GetAtoms()) {
    const unsigned int z = atom->GetAtomicNum();
    const double radius = z == 6 ? 1.7 : z == 7 ? 1.65 : z == 8 ? 1.6 : 1.9;
    spheres += 4 * M_PI / 3 * std::pow(radius, 3);
  }
  const MapIntegral sum(file("sum.map")), product(file("product.map"));
  EXPECT_NEAR(sum.integral, spheres, 0.005 * spheres);

  // A map file holds the values of the lattice as they are, not interpolated ones.
  const MapIntegral grd(file("sum.grd"));
  ASSERT_EQ(sum.values.size(), grd.values.size());
  for (std::size_t i = 0; i < grd.values.size(); ++i)
    ASSERT_NEAR(sum.values[i], grd.values[i], 1e-4);

  // The overlap series and the product form measure one volume; the radii differ by up to 0.1 A.
  rapidjson::Document shape;
  shape.Parse(run({"shape", model, "--json"}).out.c_str());
  ASSERT_FALSE(shape.HasParseError());
  EXPECT_NEAR(shape["volume"].GetDouble(), product.integral, 0.08 * product.integral);
  EXPECT_EQ(run({"gaussian", model, "-o", file("fine.map"), "-s", "1e-4"}).status, 1);
  EXPECT_FALSE(std::filesystem::exists(file("fine.map")));
}

TEST_F(ProgramOnACrystal, shape_does_not_depend_on_where_a_model_lies) {
  VXCore::VXGraphMol mol;
  ASSERT_TRUE(VXCore::VXReadMolecule(file("crystal.pdb"), mol));
  const float turn[9] = {0, 0, 1, 1, 0, 0, 0, 1, 0}, step[3] = {203, -152, 105};
  VXCore::VXRotate(mol, turn);
  VXCore::VXTranslate(mol, step);
  ASSERT_TRUE(VXCore::VXWriteMolecule(file("turned.pdb"), mol));
  rapidjson::Document still, turned;
  still.Parse(run({"shape", file("crystal.pdb"), "-j"}).out.c_str());
  turned.Parse(run({"shape", file("turned.pdb"), "-j"}).out.c_str());
  ASSERT_FALSE(still.HasParseError() || turned.HasParseError());
  EXPECT_EQ(turned["model"].GetString(), file("turned.pdb"));
  for (rapidjson::SizeType i = 0; i < 3; ++i) {
    EXPECT_NEAR(turned["quadrupoles"][i].GetDouble(), still["quadrupoles"][i].GetDouble(), 1e-3);
    EXPECT_NEAR(turned["centre"][i].GetDouble(),
                still["centre"][(i + 2) % 3].GetDouble() + double{step[i]}, 1e-3);
    for (rapidjson::SizeType k = 0; k < 3; ++k)
      EXPECT_NEAR(turned["frame"][i][k].GetDouble(), still["frame"][i][(k + 2) % 3].GetDouble(),
                  1e-3);
  }
  ASSERT_EQ(still["octopoles"].Size(), 10u);
  for (rapidjson::SizeType i = 0; i < 10; ++i)
    EXPECT_NEAR(turned["octopoles"][i].GetDouble(), still["octopoles"][i].GetDouble(), 1e-2) << i;
}

TEST_F(ProgramOnACrystal, contact_is_high_between_models_and_nowhere_else) {
  // A model with itself is its own density; with one that is far away it has no contact.
  ASSERT_EQ(
      run({"contact", file("crystal.pdb"), file("crystal.pdb"), "-o", file("own.grd")}).status, 0);
  VXCore::VXBrioGrid own;
  ASSERT_TRUE(VXCore::VXReadGrid(file("own.grd"), own));
  VXCore::VXGraphMol model;
  ASSERT_TRUE(VXCore::VXReadMolecule(file("crystal.pdb"), model));
  VXCore::VXAssignBondiVdWRadii(model);
  VXCore::VXBrioGrid density = own;
  std::fill_n(density.GetValues(), density.GetSize(), 0.0f);
  ASSERT_TRUE(VXCore::VXMakeMolecularGaussianGrid(density, model));
  for (unsigned int e = 0; e < own.GetSize(); ++e)
    ASSERT_NEAR(own.GetValues()[e], density.GetValues()[e], 0.25f);

  const float far[3] = {100, 0, 0};
  VXCore::VXTranslate(model, far);
  ASSERT_TRUE(VXCore::VXWriteMolecule(file("far.pdb"), model));
  const Outcome apart =
      run({"contact", file("crystal.pdb"), file("far.pdb"), "-o", file("far.map"), "-s", "1"});
  EXPECT_EQ(apart.status, 0);
  EXPECT_TRUE(contains(apart.err, "no contact")) << apart.err;
  VXCore::VXBrioGrid none;
  ASSERT_TRUE(VXCore::VXReadGrid(file("far.map"), none));
  EXPECT_FALSE(VXCore::VXGridHasNonZeroValue(none));
}

TEST_F(ProgramOnACrystal, mask_splits_a_map_in_two_and_keeps_its_crystal) {
  ASSERT_EQ(run({"map", file("crystal.mtz"), "-o", file("whole.map")}).status, 0);
  const auto mask = [&](const std::string& input, const char* output,
                        const std::vector<std::string>& options) {
    std::vector<std::string> arguments = {"mask", input, file("crystal.pdb"), "-o", file(output)};
    arguments.insert(arguments.end(), options.begin(), options.end());
    EXPECT_EQ(run(arguments).status, 0);
    VXCore::VXBrioGrid grid;
    EXPECT_TRUE(VXCore::VXReadGrid(file(output), grid));
    return grid;
  };
  // On the lattice of the crystal, and on one along x, y, z.
  ASSERT_EQ(run({"convert", file("whole.map"), file("regular.grd"), "-s", "0.8"}).status, 0);
  for (const std::string& input : {file("whole.map"), file("regular.grd")}) {
    VXCore::VXBrioGrid whole;
    ASSERT_TRUE(VXCore::VXReadGrid(input, whole));
    const auto outside = mask(input, "outside.map", {});
    const auto inside = mask(input, "inside.map", {"--keep", "inside"});
    const auto fading = mask(input, "fading.grd", {"--smooth", "-t", "2"});
    const auto fading_inside =
        mask(input, "fading_in.grd", {"--smooth", "-t", "2", "-k", "inside"});
    if (input == file("whole.map")) {
      EXPECT_EQ(outside.GetSpaceGroup(), 19u);
      ASSERT_EQ(outside.GetSize(), whole.GetSize());
      int cleared = 0;
      for (unsigned int e = 0; e < whole.GetSize(); ++e) {
        ASSERT_TRUE(outside.GetValues()[e] == 0.0f || inside.GetValues()[e] == 0.0f);
        ASSERT_EQ(outside.GetValues()[e] + inside.GetValues()[e], whole.GetValues()[e]);
        cleared += outside.GetValues()[e] == 0.0f ? 1 : 0;
      }
      EXPECT_GT(cleared, 500);
    }
    ASSERT_EQ(fading.GetSize(), whole.GetSize());
    for (unsigned int e = 0; e < whole.GetSize(); ++e) {
      ASSERT_NEAR(fading.GetValues()[e] + fading_inside.GetValues()[e], whole.GetValues()[e], 1e-5);
    }
  }
}

TEST_F(ProgramOnACrystal, thin_leaves_a_skeleton_at_the_level) {
  ASSERT_EQ(run({"map", file("crystal.mtz"), "-o", file("fat.map")}).status, 0);
  const Outcome thin = run({"thin", file("fat.map"), "-o", file("thin.map"), "--level", "1"});
  ASSERT_EQ(thin.status, 0) << thin.err;
  VXCore::VXBrioGrid fat, skeleton;
  ASSERT_TRUE(VXCore::VXReadGrid(file("fat.map"), fat));
  ASSERT_TRUE(VXCore::VXReadGrid(file("thin.map"), skeleton));
  EXPECT_EQ(skeleton.GetSpaceGroup(), 19u);
  int object = 0, left = 0;
  for (unsigned int e = 0; e < fat.GetSize(); ++e) {
    object += fat.GetValues()[e] >= 1.0f;
    if (skeleton.GetValues()[e] == 0.0f) continue;
    ++left;
    ASSERT_EQ(skeleton.GetValues()[e], 1.0f);
    ASSERT_GE(fat.GetValues()[e], 1.0f);
  }
  EXPECT_GT(left, 50);
  EXPECT_LT(left, object / 2);
  EXPECT_TRUE(contains(thin.err, std::to_string(left) + " of them on the skeleton"));
  // The header tells of these values, not of the map's.
  const Outcome info = run({"info", file("thin.map")});
  EXPECT_TRUE(contains(info.out, "File says:    min 0.00000, max 1.00000")) << info.out;
}

}  // namespace
