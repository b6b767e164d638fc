/// \file
/// The grid file formats: their constants, names, extensions, and what can be done with them.
#ifndef VXGRID_GRIDIO_FORMATS_H
#define VXGRID_GRIDIO_FORMATS_H

#include <string>  // for string

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Constants of the grid file formats. Every function takes any number; one above Ascii behaves as
/// Undefined.
enum VXGridFileType : unsigned int {
  Undefined = 0,
  GRASP = 1,  ///< potential maps of 65^3 points, ".phi"
  GRD = 2,    ///< all that a VXBrioGrid holds, ".grd"
  CCP4 = 3,   ///< crystallographic maps, ".map", ".ccp4", ".mrc"
  XPLOR = 4,  ///< crystallographic maps, read only, ".xplor"
  Ascii = 5,  ///< one value a line, ".agd"
};

/// The format of a file name extension, without its dot and in any case; Undefined for one that is
/// not known and for null. An extension counts by how it begins: "mapped" and "map.gz" are maps.
VXGRID_API unsigned int VXGetGridFileType(const char* extension);

/// The display name of a format, such as "CCP4 Map"; "UNDEFINED" for none.
VXGRID_API const char* VXGetGridFormatString(unsigned int type);

/// The extensions of a format, parted by commas, such as "xplor,xplmap"; empty for none.
VXGRID_API const char* VXGetGridFormatExtension(unsigned int type);

/// \name Whether a format can be read or written
/// By its constant, or by a file name or bare extension.
/// @{
VXGRID_API bool VXIsReadableGrid(unsigned int type);
VXGRID_API bool VXIsReadableGrid(const std::string& name);
VXGRID_API bool VXIsWriteableGrid(unsigned int type);
VXGRID_API bool VXIsWriteableGrid(const std::string& name);
/// @}

}  // namespace VXCore

#endif
