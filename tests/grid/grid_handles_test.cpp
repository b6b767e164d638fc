#include "vxgrid/grid/grid_handles.h"

#include <gtest/gtest.h>

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/version.h"

namespace VXCore {
namespace {

TEST(GridHandles, LeadToTheirGridUntilTheyAreFreed) {
  VXBrioGrid first, second;
  const int a = VXMakeGridHandle(&first);
  const int b = VXMakeGridHandle(&second);
  EXPECT_GT(a, 0);
  EXPECT_NE(a, b);
  EXPECT_EQ(VXDerefGridHandle(a), &first);
  VXFreeGridHandle(a);
  VXFreeGridHandle(a);
  EXPECT_EQ(VXDerefGridHandle(a), nullptr);
  EXPECT_EQ(VXDerefGridHandle(b), &second);
  EXPECT_NE(VXMakeGridHandle(&first), a);
  EXPECT_EQ(VXMakeGridHandle(nullptr), 0);
  EXPECT_EQ(VXDerefGridHandle(0), nullptr);
}

TEST(Version, AgreesWithItsRecord) {
  EXPECT_EQ(VXGridGetVersion(), 20260727u);
  EXPECT_STREQ(VXGridGetRelease(), "5.0.0.0");
  EXPECT_STREQ(VXGridGetConfigureArgs(), "RELEASE");
  const VXHost::VXVersion version = VXGridVersion();
  EXPECT_EQ(version.toolkit + " " + version.library + " " + version.version,
            "vxtoolkit VXGrid 5.0.0.0");
}

}  // namespace
}  // namespace VXCore
