// The VXB record of reflection sets.
#include "vxgrid/serial/reflection_vxb.h"

#include "vxgrid/reflection/vxx.h"
#include "vxgrid/toolkit/vxb/records.h"

namespace VXCore {

std::string VXReflectionWriteFxn::GetTag() const {
  return "VXVXBReflection";
}
VXReflectionWriteFxn* VXReflectionWriteFxn::CreateCopy() const {
  return new VXReflectionWriteFxn(*this);
}
bool VXReflectionWriteFxn::operator()(VXHost::vxostream& out, const VXBase& object,
                                      VXBinaryIOHandlerBase& /*handler*/) const {
  RecordWriter record(out, GetTag());
  return record && VXWriteReflectionVXX(record.payload(), cast(object)) && record.finish();
}

std::string VXReflectionReadFxn::GetTag() const {
  return "VXVXBReflection";
}
VXReflectionReadFxn* VXReflectionReadFxn::CreateCopy() const {
  return new VXReflectionReadFxn(*this);
}
unsigned int VXReflectionReadFxn::operator()(VXHost::vxistream& in, VXBase& object,
                                             unsigned int length,
                                             VXBinaryIOHandlerBase& /*handler*/) const {
  if (length == 0) return VXBStatus::Success;
  // A VXX stream has no end of its own.
  RecordReader payload(in, length);
  if (payload.status() != VXBStatus::Success) return payload.status();
  return VXReadReflectionVXX(payload, cast(object));
}

std::string VXReflectionPODWriteFxn::GetTag() const {
  return "VXBasePOD";
}
VXReflectionPODWriteFxn* VXReflectionPODWriteFxn::CreateCopy() const {
  return new VXReflectionPODWriteFxn(*this);
}
bool VXReflectionPODWriteFxn::operator()(VXHost::vxostream& out, const VXBase& object,
                                         VXBinaryIOHandlerBase& handler) const {
  return VXBWritePOD(out, object, GetTag(), handler);
}

void VXInitReflectionHandlers(VXBinaryIOHandler& handler) {
  handler.AddReadFxn(VXGroupReadFxn<VXReflection, VXReflection>("VXReflection"), 0);
  handler.AddReadFxn(VXReflectionReadFxn(), 0);
  handler.AddReadFxn(VXBasePODReadFxn<VXReflection>(), 0);
  VXCollectWriteFxn<VXReflection> group("VXReflection", false, "gz");
  group.Add(VXReflectionPODWriteFxn());
  group.Add(VXReflectionWriteFxn());
  handler.AddWriteFxn(group, 0);
}

}  // namespace VXCore
