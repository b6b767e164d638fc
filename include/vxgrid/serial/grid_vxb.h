/// \file
/// The grids as binary objects: the functors of their VXB records, and of grids as tagged data.
///
/// What each record holds is in docs/vxb_format.md. Read functors of a whole grid that are given a
/// length of 0 read nothing, which counts as success.
#ifndef VXGRID_SERIAL_GRID_VXB_H
#define VXGRID_SERIAL_GRID_VXB_H

#include <memory>   // for make_unique, unique_ptr
#include <string>   // for string
#include <utility>  // for move

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/vxb/handler.h"
#include "vxgrid/toolkit/vxb/records.h"

namespace VXMol {
class vxmolstreambase;
}

namespace VXCore {

template <>
struct VXBClassId<VXScalarGrid> : FixedDataTypeId<type_ids::scalar_grid> {};
template <>
struct VXBClassId<VXSkewGrid> : FixedDataTypeId<type_ids::skew_grid> {};
template <>
struct VXBClassId<VXBrioGrid> : FixedDataTypeId<type_ids::brio_grid> {};

/// Registers the functors of the grids, of grids as tagged data, and of Gaussians and their
/// containers. Always true. Every VXBinaryIOHandler has them from the start.
VXGRID_API bool VXInitGridHandlers(VXBinaryIOHandlerBase& handler);
/// The same for the handler of a molecule stream.
VXGRID_API void VXInitGridHandlers(VXMol::vxmolstreambase& stream);

/// \name The record "VXBrioGrid" and those inside it
/// @{
class VXGRID_API VXBrioGridWriteFxn : public VXWriteFxn<VXBrioGrid> {
 public:
  std::string GetTag() const override;
  VXBrioGridWriteFxn* CreateCopy() const override;
  bool operator()(VXHost::vxostream& out, const VXBase& object,
                  VXBinaryIOHandlerBase& handler) const override;
};

class VXGRID_API VXBrioGridReadFxn : public VXReadFxn<VXBrioGrid> {
 public:
  std::string GetTag() const override;
  VXBrioGridReadFxn* CreateCopy() const override;
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override;
};

/// All that is neither values nor tagged data. A record that ends behind the reentrant flags is
/// one of an older writer, and leaves the cell as it is.
class VXGRID_API VXBrioGridDataReadFxn : public VXReadFxn<VXBrioGrid> {
 public:
  std::string GetTag() const override;
  VXBrioGridDataReadFxn* CreateCopy() const override;
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override;
};

/// The float fields.
class VXGRID_API VXBrioGridFloatReadFxn : public VXReadFxn<VXBrioGrid> {
 public:
  std::string GetTag() const override;
  VXBrioGridFloatReadFxn* CreateCopy() const override;
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override;
};

/// The integer fields.
class VXGRID_API VXBrioGridIntReadFxn : public VXReadFxn<VXBrioGrid> {
 public:
  std::string GetTag() const override;
  VXBrioGridIntReadFxn* CreateCopy() const override;
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override;
};
/// @}

/// \name The record "VXSkewGrid"
/// @{
class VXGRID_API VXSkewGridWriteFxn : public VXWriteFxn<VXSkewGrid> {
 public:
  std::string GetTag() const override;
  VXSkewGridWriteFxn* CreateCopy() const override;
  bool operator()(VXHost::vxostream& out, const VXBase& object,
                  VXBinaryIOHandlerBase& handler) const override;
};

class VXGRID_API VXSkewGridReadFxn : public VXReadFxn<VXSkewGrid> {
 public:
  std::string GetTag() const override;
  VXSkewGridReadFxn* CreateCopy() const override;
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override;
};

/// Takes a "VXBrioGrid" record where a skew grid is wanted. Always gives 0.
class VXGRID_API VXSkewGridBrioGridReadFxn : public VXReadFxn<VXSkewGrid> {
 public:
  std::string GetTag() const override;
  VXSkewGridBrioGridReadFxn* CreateCopy() const override;
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override;
};
/// @}

/// \name The record "VXScalarGrid"
/// @{
class VXGRID_API VXScalarGridWriteFxn : public VXWriteFxn<VXScalarGrid> {
 public:
  std::string GetTag() const override;
  VXScalarGridWriteFxn* CreateCopy() const override;
  bool operator()(VXHost::vxostream& out, const VXBase& object,
                  VXBinaryIOHandlerBase& handler) const override;
};

class VXGRID_API VXScalarGridReadFxn : public VXReadFxn<VXScalarGrid> {
 public:
  std::string GetTag() const override;
  VXScalarGridReadFxn* CreateCopy() const override;
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override;
};
/// @}

/// \name An object of class T as a datum
/// The payload is the name of the datum as a tag, and the record of the value.
/// @{

/// Writes a record for every datum of type T that the object has, and none for others. When a value
/// cannot be written the result is false, and the record's tag stands there without a length.
template <class T>
class VXGRID_API VXBaseVXBWriteFxn : public VXWriteFxn<VXBase> {
 public:
  explicit VXBaseVXBWriteFxn(std::string tag)
      : tag_(std::move(tag)), data_type_(DataTypeId<T>::get()) {}

  std::string GetTag() const override { return tag_; }
  /// The identifier of the type of the data.
  TypeId GetStoredType() const { return data_type_; }
  VXBaseVXBWriteFxn* CreateCopy() const override { return new VXBaseVXBWriteFxn(*this); }
  bool operator()(VXHost::vxostream& out, const VXBase& object,
                  VXBinaryIOHandlerBase& handler) const override;

 private:
  std::string tag_;
  TypeId data_type_;
};

/// Reads such a record and attaches the value under its name. Values without a name are attached
/// only when the record ends there, empty and under the empty tag.
template <class T>
class VXGRID_API VXBaseVXBReadFxn : public VXReadFxn<VXBase> {
 public:
  explicit VXBaseVXBReadFxn(std::string tag)
      : tag_(std::move(tag)), data_type_(DataTypeId<T>::get()) {}

  std::string GetTag() const override { return tag_; }
  /// The identifier of the type of the data.
  TypeId GetStoredType() const { return data_type_; }
  VXBaseVXBReadFxn* CreateCopy() const override { return new VXBaseVXBReadFxn(*this); }
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override;

 private:
  std::string tag_;
  TypeId data_type_;
};
/// @}

template <class T>
bool VXBaseVXBWriteFxn<T>::operator()(VXHost::vxostream& out, const VXBase& object,
                                      VXBinaryIOHandlerBase& handler) const {
  if (!object.GetBaseImpl()) return true;
  for (const auto& datum : object.GetBaseImpl()->GetAllData()) {
    if (datum->GetDataType() != data_type_) continue;
    const T& value = static_cast<const VXBaseDataT<T>&>(*datum).GetData();
    RecordWriter record(out, tag_, RecordWriter::Unfinished::Tag);
    if (!record || !VXBWriteTag(record.payload(), VXGetTag(datum->GetTag())) ||
        !handler.WriteAs(record.payload(), value, VXBClassId<T>::get()) || !record.finish()) {
      return false;
    }
  }
  return true;
}

template <class T>
unsigned int VXBaseVXBReadFxn<T>::operator()(VXHost::vxistream& in, VXBase& object,
                                             unsigned int length,
                                             VXBinaryIOHandlerBase& handler) const {
  if (length == 0) return VXBStatus::Success;
  RecordReader payload(in, length);
  if (payload.status() != VXBStatus::Success) return payload.status();
  std::string name;
  const bool is_named = VXBReadTag(payload, name);
  auto datum = std::make_unique<VXBaseDataT<T>>(VXGetTag(name.c_str()));
  if (is_named && !payload.eof()) {
    const unsigned int status = handler.ReadAs(payload, datum->GetData(), VXBClassId<T>::get());
    if (status != VXBStatus::Success) return status;
  }
  if (is_named || payload.eof()) object.AttachBaseData(std::move(datum));
  return VXBStatus::Success;
}

extern template class VXBaseVXBWriteFxn<VXScalarGrid>;
extern template class VXBaseVXBWriteFxn<VXSkewGrid>;
extern template class VXBaseVXBWriteFxn<VXBrioGrid>;
extern template class VXBaseVXBReadFxn<VXScalarGrid>;
extern template class VXBaseVXBReadFxn<VXSkewGrid>;
extern template class VXBaseVXBReadFxn<VXBrioGrid>;

}  // namespace VXCore

#endif
