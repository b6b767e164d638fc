// The map types and their names.
#include "vxgrid/reflection/map_types.h"

#include <algorithm>    // for find
#include <array>        // for array
#include <string_view>  // for string_view

namespace VXCore {
namespace {

constexpr std::array<std::string_view, 12> names_to_read = {
    "Fo",    "Fc",     "2Fo-Fc", "Fo-Fc", "3Fo-2Fc", "5Fo-3Fc", "2Fo-Fc(SigmaA)", "Fo-Fc(SigmaA)",
    "Fo*Fo", "Fo*FOM", "Fwt",    "Fdelwt"};

}  // namespace

unsigned int VXMTZMapTypeFromString(const std::string& name) {
  const auto found = std::find(names_to_read.begin(), names_to_read.end(), name);
  if (found == names_to_read.end()) return VXMTZMapType::None;
  return static_cast<unsigned int>(found - names_to_read.begin());
}

std::string VXMTZMapTypeToString(unsigned int maptype) {
  if (maptype == VXMTZMapType::FoFcSigmaA) return "Fo-Fc (SigmaA)";
  if (maptype == VXMTZMapType::None) return "None";
  return maptype < names_to_read.size() ? std::string(names_to_read[maptype]) : std::string();
}

}  // namespace VXCore
