// The table of formats, as told by constants, extensions and names.
#include "vxgrid/gridio/formats.h"

#include <gtest/gtest.h>

#include <string>  // for string

using namespace VXCore;

namespace {

TEST(FormatTable, numbers_outside_of_it_are_undefined) {
  const struct {
    unsigned int type;
    const char *name, *extensions;
    bool readable, writeable;
  } rows[] = {{0, "UNDEFINED", "", false, false},
              {1, "GRASP Grid", "phi", true, true},
              {2, "Zorvane Grid", "grd", true, true},
              {3, "CCP4 Map", "map,ccp,ccp4,mrc", true, true},
              {4, "XPLOR Map", "xplor,xplmap", true, false},
              {5, "Ascii Grid", "agd", true, true},
              {7, "UNDEFINED", "", false, false},
              {4294967295u, "UNDEFINED", "", false, false}};
  for (const auto& row : rows) {
    EXPECT_STREQ(VXGetGridFormatString(row.type), row.name);
    EXPECT_STREQ(VXGetGridFormatExtension(row.type), row.extensions);
    EXPECT_EQ(VXIsReadableGrid(row.type), row.readable);
    EXPECT_EQ(VXIsWriteableGrid(row.type), row.writeable);
  }
}

TEST(FormatOfAnExtension, is_told_by_how_it_begins_in_any_case) {
  const struct {
    const char* extension;
    unsigned int type;
  } cases[] = {{"phi", 1},    {"phimap", 1}, {"grd2", 2}, {"GRD", 2},    {"MRC", 3},
               {"mapped", 3}, {"ccp4", 3},   {"ccpx", 3}, {"map.gz", 3}, {"XPLor", 4},
               {"xplmap", 4}, {"agdx", 5},   {"xplo", 0}, {"ma", 0},     {"", 0},
               {"txt", 0},    {"amap", 0}};
  for (const auto& c : cases)
    EXPECT_EQ(VXGetGridFileType(c.extension), c.type) << c.extension;
  EXPECT_EQ(VXGetGridFileType(nullptr), 0u);
}

TEST(FormatOfAName, takes_a_bare_extension_too) {
  for (const char* name : {"grd", ".grd", "a.grd", "x.y/a.b.GRD", "a.grd.gz"}) {
    EXPECT_TRUE(VXIsReadableGrid(std::string(name))) << name;
    EXPECT_TRUE(VXIsWriteableGrid(std::string(name))) << name;
  }
  EXPECT_TRUE(VXIsReadableGrid(std::string("a.xplor")));
  EXPECT_FALSE(VXIsWriteableGrid(std::string("a.xplor")));
  for (const char* name : {"", "a.grd/b", "a.gz", "a.txt", "a.grd."})
    EXPECT_FALSE(VXIsReadableGrid(std::string(name))) << name;
}

}  // namespace
