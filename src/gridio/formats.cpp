// The table of grid file formats and the questions asked of it.
#include "vxgrid/gridio/formats.h"

#include <array>        // for array
#include <string_view>  // for string_view

#include "vxgrid/toolkit/host/files.h"

namespace VXCore {

namespace {

struct Format {
  const char* name;
  const char* extensions;
  bool readable;
  bool writeable;
};

// By VXGridFileType.
constexpr std::array<Format, 6> formats{{{"UNDEFINED", "", false, false},
                                         {"GRASP Grid", "phi", true, true},
                                         {"Zorvane Grid", "grd", true, true},
                                         {"CCP4 Map", "map,ccp,ccp4,mrc", true, true},
                                         {"XPLOR Map", "xplor,xplmap", true, false},
                                         {"Ascii Grid", "agd", true, true}}};

const Format& format_of(unsigned int type) {
  return formats[type < formats.size() ? type : VXGridFileType::Undefined];
}

bool begins_with(std::string_view text, std::string_view lower_case_prefix) {
  if (text.size() < lower_case_prefix.size()) return false;
  for (std::size_t i = 0; i < lower_case_prefix.size(); ++i) {
    const char c = text[i];
    const char lower = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    if (lower != lower_case_prefix[i]) return false;
  }
  return true;
}

unsigned int type_of_name(const std::string& name) {
  // The dot lets a bare extension through.
  return VXGetGridFileType(VXMol::VXGetFileExtension(("." + name).c_str()));
}

}  // namespace

unsigned int VXGetGridFileType(const char* extension) {
  if (!extension) return VXGridFileType::Undefined;
  struct Prefix {
    std::string_view text;
    unsigned int type;
  };
  static constexpr std::array<Prefix, 8> prefixes{{{"phi", VXGridFileType::GRASP},
                                                   {"grd", VXGridFileType::GRD},
                                                   {"map", VXGridFileType::CCP4},
                                                   {"mrc", VXGridFileType::CCP4},
                                                   {"ccp", VXGridFileType::CCP4},
                                                   {"xplor", VXGridFileType::XPLOR},
                                                   {"xplmap", VXGridFileType::XPLOR},
                                                   {"agd", VXGridFileType::Ascii}}};
  for (const Prefix& prefix : prefixes) {
    if (begins_with(extension, prefix.text)) return prefix.type;
  }
  return VXGridFileType::Undefined;
}

const char* VXGetGridFormatString(unsigned int type) {
  return format_of(type).name;
}
const char* VXGetGridFormatExtension(unsigned int type) {
  return format_of(type).extensions;
}

bool VXIsReadableGrid(unsigned int type) {
  return format_of(type).readable;
}
bool VXIsReadableGrid(const std::string& name) {
  return VXIsReadableGrid(type_of_name(name));
}
bool VXIsWriteableGrid(unsigned int type) {
  return format_of(type).writeable;
}
bool VXIsWriteableGrid(const std::string& name) {
  return VXIsWriteableGrid(type_of_name(name));
}

}  // namespace VXCore
