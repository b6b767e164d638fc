// What the library makes known to the toolkit when it is loaded; the order does not matter.
#include "vxgrid/grid/version.h"
#include "vxgrid/serial/grid_fields.h"
#include "vxgrid/serial/grid_json.h"
#include "vxgrid/serial/grid_vxb.h"
#include "vxgrid/toolkit/host/version.h"
#include "vxgrid/toolkit/vxb/handler.h"

namespace VXCore {

namespace {

struct Registration {
  Registration() {
    VXHost::VXRegisterVersion(VXGridVersion);
    VXRegisterVXBInitializer(VXInitGridHandlers);
    VXRegisterJSONHandler(VXInitScalarGridJSONHandler());
    VXRegisterJSONHandler(VXInitSkewGridJSONHandler());
    auto& field_types = VXFieldTypeHandlerRegistry::GetInstance();
    field_types.RegisterHandler(VXInitGridFieldHandler(), 0);
    field_types.RegisterHandler(VXInitGridVecFieldHandler(), 0);
    field_types.RegisterHandler(VXInitSkewGridFieldHandler(), 0);
    field_types.RegisterHandler(VXInitSkewGridVecFieldHandler(), 0);
  }
};

const Registration at_load;

}  // namespace

}  // namespace VXCore
