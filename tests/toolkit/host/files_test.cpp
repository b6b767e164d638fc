// Extensions, the temporary folder, and the list of versions.
#include "vxgrid/toolkit/host/files.h"

#include <gtest/gtest.h>

#include <cstdlib>  // for setenv
#include <utility>  // for pair

#include "support/temp_dir.h"
#include "vxgrid/toolkit/host/version.h"

namespace {

TEST(FileExtension, is_what_stands_behind_the_last_dot_of_the_last_component) {
  const std::pair<const char*, const char*> cases[] = {{"a.map", "map"},
                                                       {"a.b.GRD", "GRD"},
                                                       {"x/y.z/file", ""},
                                                       {".grd", "grd"},
                                                       {"a.map.gz", "map.gz"},
                                                       {"a.phi.GZ", "phi.GZ"},
                                                       {"a.gz", "gz"},
                                                       {"d.map/a.gz", "gz"},
                                                       {".gz", "gz"},
                                                       {"a.", ""},
                                                       {"", ""},
                                                       {"noext", ""}};
  for (const auto& [name, extension] : cases)
    EXPECT_STREQ(VXMol::VXGetFileExtension(name), extension) << name;
  EXPECT_STREQ(VXMol::VXGetFileExtension(nullptr), "");
}

TEST(TempDirectory, is_the_preferred_one_then_the_environments_then_the_systems) {
  const vxgrid_test::TempDir folder;
  const std::string path = folder.file("");
  const std::string bare = path.substr(0, path.size() - 1);
  const std::string before = VXHost::VXFileTempDirectory();
  setenv("TMPDIR", path.c_str(), 1);
  EXPECT_EQ(VXHost::VXFileTempDirectory(""), bare);
  EXPECT_EQ(VXHost::VXFileTempDirectory("/no/such/folder"), bare);
  EXPECT_EQ(VXHost::VXFileTempDirectory("/"), "/");
  setenv("TMPDIR", "/no/such/folder", 1);
  EXPECT_EQ(VXHost::VXFileTempDirectory(), "/tmp");
  setenv("TMPDIR", before.c_str(), 1);
}

VXHost::VXVersion test_version() {
  return {"kit", "library", "1.2.3.4"};
}

TEST(Versions, a_library_that_registers_twice_is_listed_once) {
  EXPECT_FALSE(VXHost::VXRegisterVersion(nullptr));
  EXPECT_TRUE(VXHost::VXRegisterVersion(test_version));
  EXPECT_TRUE(VXHost::VXRegisterVersion(test_version));
  int listed = 0;
  for (const VXHost::VXVersion& version : VXHost::VXGetRegisteredVersions()) {
    if (version.library == "library" && version.version == "1.2.3.4") ++listed;
  }
  EXPECT_EQ(listed, 1);
}

}  // namespace
