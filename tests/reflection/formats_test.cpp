#include <gtest/gtest.h>

#include <filesystem>  // for exists
#include <string>      // for string

#include "reflection/mtz_maker.h"
#include "reflection/set_content.h"
#include "support/messages.h"
#include "support/temp_dir.h"
#include "vxgrid/reflection/formats.h"

namespace {

using namespace VXCore;
using namespace vxgrid_test;

std::string small_mtz() {
  MtzContent content;
  content.hkl = {{1, 2, 3}, {2, 0, 4}};
  content.columns = {{"FP", 'F', {9, 16}}};
  return mtz_bytes(content);
}

const std::string hkl_text = "HKL 1 2 3 9 1 2 3\nHKL 2 0 4 16 1 2 3\n";
const std::string phs_text = "1 2 3 9 0.5 10\n2 0 4 16 0.5 10\n";
const std::string xplor_text = "INDE 1 2 3 FOBS= 9 10\nINDE 2 0 4 FOBS= 16 10\n";
const std::string cif_text =
    "_refln.index_h\n_refln.index_k\n_refln.index_l\n_refln.F_meas_sigma\n_refln.F_meas\n"
    "1 2 3 0.5 9\n2 0 4 0.5 16\n";

TEST(ReflectionFiles, are_read_by_their_extension_and_named_when_they_have_no_title) {
  const TempDir folder;
  struct Case {
    const char* name;
    std::string bytes;
  };
  const MessageCapture messages(MessageCapture::Level::Verbose);
  for (const Case& c :
       {Case{"a.mtz", small_mtz()}, Case{"a.cif", cif_text}, Case{"a.phs", phs_text},
        Case{"b.phs", hkl_text}, Case{"a.fob", xplor_text}, Case{"a.cv", xplor_text},
        Case{"a.b.hkl", hkl_text}, Case{"c.phs.gz", hkl_text}, Case{"a.cif.gz", cif_text}}) {
    const std::string path = folder.file(c.name);
    vxofstream out(path);
    out << c.bytes;
    ASSERT_TRUE(out.close());
    VXReflection set;
    EXPECT_TRUE(VXReadReflection(path, set)) << c.name;
    SetContent content = content_of(set);
    EXPECT_EQ(content["h"], (std::vector<float>{1, 2})) << c.name;
    EXPECT_EQ(content["fobs"], (std::vector<float>{9, 16})) << c.name;
    EXPECT_EQ(set.GetTitle(), path);
    ASSERT_NE(find_reflection_format(path), nullptr);
  }
  for (const char* name : {"a.MTZ", "a.Phs", "hkl", "a", "a.map", "a.cifs", "a.hkl.bz2"}) {
    write_file(folder.file(name), hkl_text);
    VXReflection set = marked_set();
    EXPECT_FALSE(VXReadReflection(folder.file(name), set)) << name;
    EXPECT_TRUE(is_untouched(set)) << name;
    EXPECT_EQ(find_reflection_format(name), nullptr) << name;
  }
  EXPECT_TRUE(messages.messages.empty());
}

TEST(ReflectionFiles, that_fail_do_so_in_silence) {
  const TempDir folder;
  const MessageCapture messages(MessageCapture::Level::Verbose);
  for (const char* extension : {"mtz", "cif", "phs", "fob", "cv", "hkl", "vxx"}) {
    VXReflection set = marked_set();
    const std::string path = folder.file(std::string("a.") + extension);
    EXPECT_FALSE(VXReadReflection(path, set)) << path;
    EXPECT_TRUE(is_untouched(set)) << path;
    write_file(path, std::string(200, 'x'));
    EXPECT_FALSE(VXReadReflection(path, set)) << path;
  }
  // The header of this one lies before its data.
  std::string mtz = small_mtz();
  mtz.replace(4, 4, 4, '\0');
  write_file(folder.file("b.mtz"), mtz);
  VXReflection set;
  EXPECT_FALSE(VXReadReflection(folder.file("b.mtz"), set));
  EXPECT_TRUE(messages.messages.empty());
}

TEST(ReflectionFiles, are_written_when_the_set_has_what_they_need) {
  struct Case {
    const char* extension;
    bool full;
    bool without_fom;
  };
  for (const Case& c :
       {Case{"vxx", true, true}, Case{"vxx.gz", true, true}, Case{"cv", true, true},
        Case{"fob", true, true}, Case{"phs", true, false}, Case{"phs.gz", true, false},
        Case{"mtz", false, false}, Case{"cif", false, false}, Case{"hkl", false, false},
        Case{"VXX", false, false}, Case{"", false, false}}) {
    const TempDir folder;
    const std::string path = folder.file(std::string("a.") + c.extension);
    for (const bool with_fom : {true, false}) {
      VXReflection set = full_set();
      if (!with_fom) set.SetFOM(nullptr, 3);
      const bool expected = with_fom ? c.full : c.without_fom;
      EXPECT_EQ(VXIsWritableReflection(path, set), expected) << path;
      EXPECT_EQ(VXWriteReflection(path, set), expected) << path;
      EXPECT_EQ(std::filesystem::exists(path), expected) << path;
      if (!expected) continue;
      VXReflection back;
      EXPECT_TRUE(VXReadReflection(path, back)) << path;
      EXPECT_EQ(content_of(back)["fobs"], content_of(set)["fobs"]) << path;
      EXPECT_EQ(read_file(path).substr(0, 2) == "\x1f\x8b", path.back() == 'z') << path;
      std::filesystem::remove(path);
    }
    for (VXReflection set : {VXReflection(), marked_set()})
      EXPECT_FALSE(VXWriteReflection(path, set)) << path;
    EXPECT_FALSE(std::filesystem::exists(path)) << path;
  }
  VXReflection set = full_set();
  EXPECT_FALSE(VXWriteReflection("/no/such/folder/a.vxx", set));
}

TEST(ReflectionFiles, keep_a_title_of_their_own) {
  const TempDir folder;
  VXReflection set = full_set();
  ASSERT_TRUE(VXWriteReflection(folder.file("a.vxx"), set));
  VXReflection back;
  ASSERT_TRUE(VXReadReflection(folder.file("a.vxx"), back));
  EXPECT_EQ(back.GetTitle(), "every column");
}

}  // namespace
