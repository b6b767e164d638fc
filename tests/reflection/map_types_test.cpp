#include <gtest/gtest.h>

#include "vxgrid/reflection/map_types.h"

namespace {

using namespace VXCore;

TEST(MapTypes, have_names_that_read_back_but_for_one) {
  const std::vector<std::string> names = {
      "Fo",    "Fc",     "2Fo-Fc", "Fo-Fc", "3Fo-2Fc", "5Fo-3Fc", "2Fo-Fc(SigmaA)", "Fo-Fc(SigmaA)",
      "Fo*Fo", "Fo*FOM", "Fwt",    "Fdelwt"};
  for (unsigned int type = 0; type < names.size(); ++type) {
    EXPECT_EQ(VXMTZMapTypeFromString(names[type]), type);
    EXPECT_EQ(VXMTZMapTypeToString(type),
              type == VXMTZMapType::FoFcSigmaA ? "Fo-Fc (SigmaA)" : names[type]);
  }
  for (const char* other : {"None", "", "fo", "FWT", "Fo ", "Fo-Fc (SigmaA)"})
    EXPECT_EQ(VXMTZMapTypeFromString(other), VXMTZMapType::None) << other;
  EXPECT_EQ(VXMTZMapTypeToString(VXMTZMapType::FcAuto), "");
  EXPECT_EQ(VXMTZMapTypeToString(VXMTZMapType::None), "None");
  EXPECT_EQ(VXMTZMapTypeToString(14), "");
  EXPECT_EQ(VXMTZMapTypeToString(4294967295U), "");
}

}  // namespace
