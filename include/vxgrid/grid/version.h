/// \file
/// What this build of the library is.
#ifndef VXGRID_GRID_VERSION_H
#define VXGRID_GRID_VERSION_H

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/host/version.h"

namespace VXCore {

VXGRID_API unsigned int VXGridGetVersion();       ///< the build's date as a number, yyyymmdd
VXGRID_API const char* VXGridGetRelease();        ///< "5.0.0.0"
VXGRID_API const char* VXGridGetArch();           ///< the build target, as in "linux-x86_64"
VXGRID_API const char* VXGridGetPlatform();       ///< the same
VXGRID_API const char* VXGridGetConfigureArgs();  ///< "RELEASE"

/// The record that the library registers with the toolkit at load.
VXGRID_API VXHost::VXVersion VXGridVersion();

}  // namespace VXCore

#endif
