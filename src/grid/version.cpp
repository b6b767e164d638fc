/// \file
/// The library's version queries.
#include "vxgrid/grid/version.h"

namespace VXCore {

namespace {

constexpr const char* build_target =
#if defined(__linux__) && defined(__x86_64__)
    "linux-x86_64";
#elif defined(__linux__) && defined(__aarch64__)
    "linux-aarch64";
#elif defined(__linux__)
    "linux";
#elif defined(__APPLE__)
    "macos";
#else
    "unix";
#endif

}  // namespace

unsigned int VXGridGetVersion() {
  return 20260727;
}
const char* VXGridGetRelease() {
  return "5.0.0.0";
}
const char* VXGridGetArch() {
  return build_target;
}
const char* VXGridGetPlatform() {
  return build_target;
}
const char* VXGridGetConfigureArgs() {
  return "RELEASE";
}
VXHost::VXVersion VXGridVersion() {
  return {"vxtoolkit", "VXGrid", VXGridGetRelease()};
}

}  // namespace VXCore
