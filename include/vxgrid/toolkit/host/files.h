/// \file
/// File names: extensions, and the folder for temporary files.
#ifndef VXGRID_TOOLKIT_HOST_FILES_H
#define VXGRID_TOOLKIT_HOST_FILES_H

#include <string>  // for string

#include "vxgrid/toolkit/core/export.h"

namespace VXHost {

/// The folder for temporary files, with no slash at its end: `preferred` when that names an
/// existing folder, else the environment's TMPDIR when that does, else "/tmp".
VXGRID_API std::string VXFileTempDirectory(const std::string& preferred = std::string());

}  // namespace VXHost

namespace VXMol {

/// The extension of a file name, as a pointer into that name: what stands behind the last dot of
/// its last path component, or behind the dot before when the name ends in ".gz" in any case. So
/// "a.map" gives "map", "b.c/a.map.gz" gives "map.gz", and ".grd" gives "grd". Without a dot, and
/// for a null name, the text is empty. Folders' dots do not count.
VXGRID_API const char* VXGetFileExtension(const char* name);

}  // namespace VXMol

#endif
