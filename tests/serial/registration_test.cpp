// What a program finds registered once it has loaded the library.
#include <gtest/gtest.h>

#include <algorithm>

#include "vxgrid/grid/version.h"
#include "vxgrid/toolkit/host/version.h"

namespace VXCore {
namespace {

TEST(Registration, at_load_makes_the_version_known_once) {
  const std::vector<VXHost::VXVersion> versions = VXHost::VXGetRegisteredVersions();
  EXPECT_EQ(std::count_if(versions.begin(), versions.end(),
                          [](const VXHost::VXVersion& v) {
                            return v.toolkit == "vxtoolkit" && v.library == "VXGrid" &&
                                   v.version == "5.0.0.0";
                          }),
            1);
}

}  // namespace
}  // namespace VXCore
