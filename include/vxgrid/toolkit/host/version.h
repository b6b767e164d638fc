/// \file
/// The record by which a library tells its version, and the list of those that did.
#ifndef VXGRID_TOOLKIT_HOST_VERSION_H
#define VXGRID_TOOLKIT_HOST_VERSION_H

#include <string>  // for string
#include <vector>  // for vector

#include "vxgrid/toolkit/core/export.h"

namespace VXHost {

/// What a library says about itself.
struct VXVersion {
  std::string toolkit;  ///< the family, such as "vxtoolkit"
  std::string library;  ///< the library's name, such as "VXGrid"
  std::string version;  ///< dotted numbers, such as "5.0.0.0"
};

/// A function that gives a library's version.
using VXVersionFunction = VXVersion (*)();

/// Adds a library's version function to the list of this process, once however often it is called;
/// false for null. Safe from any thread and during start-up.
VXGRID_API bool VXRegisterVersion(VXVersionFunction function);

/// The versions of all registered libraries, in the order of their registration.
VXGRID_API std::vector<VXVersion> VXGetRegisteredVersions();

}  // namespace VXHost

#endif
