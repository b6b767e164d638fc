/// \file
/// Reflection sets as binary objects: the functors of their VXB record.
///
/// The record is a group: the tagged data ("VXBasePOD"), and the set itself as a VXX stream
/// ("VXVXBReflection").
#ifndef VXGRID_SERIAL_REFLECTION_VXB_H
#define VXGRID_SERIAL_REFLECTION_VXB_H

#include <string>  // for string

#include "vxgrid/reflection/reflection.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/vxb/group.h"
#include "vxgrid/toolkit/vxb/handler.h"

namespace VXCore {

template <>
struct VXBClassId<VXReflection> : FixedDataTypeId<type_ids::reflection> {};

/// Registers what reads and writes reflection sets. No handler has it from the start.
VXGRID_API void VXInitReflectionHandlers(VXBinaryIOHandler& handler);

/// Writes the set as a VXX stream in a record of its own; false when VXWriteReflectionVXX is.
class VXGRID_API VXReflectionWriteFxn : public VXWriteFxn<VXReflection> {
 public:
  std::string GetTag() const override;
  VXReflectionWriteFxn* CreateCopy() const override;
  bool operator()(VXHost::vxostream& out, const VXBase& object,
                  VXBinaryIOHandlerBase& handler) const override;
};

/// The result is that of VXReadReflectionVXX, and 0 for a length of 0.
class VXGRID_API VXReflectionReadFxn : public VXReadFxn<VXReflection> {
 public:
  std::string GetTag() const override;
  VXReflectionReadFxn* CreateCopy() const override;
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override;
};

/// Writes the tagged data of the set in a record of their own.
class VXGRID_API VXReflectionPODWriteFxn : public VXWriteFxn<VXReflection> {
 public:
  std::string GetTag() const override;
  VXReflectionPODWriteFxn* CreateCopy() const override;
  bool operator()(VXHost::vxostream& out, const VXBase& object,
                  VXBinaryIOHandlerBase& handler) const override;
};

}  // namespace VXCore

#endif
