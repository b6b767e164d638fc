// What the library makes known to the toolkit when it is loaded; the order does not matter.
#include "vxgrid/grid/version.h"
#include "vxgrid/toolkit/host/version.h"

namespace VXCore {

namespace {

struct Registration {
  Registration() { VXHost::VXRegisterVersion(VXGridVersion); }
};

const Registration at_load;

}  // namespace

}  // namespace VXCore
