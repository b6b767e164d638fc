/// \file
/// Gaussians and their containers as binary objects: the functors of their VXB records.
///
/// What each record holds is in docs/vxb_format.md. Reading gives 2 for a number without a valid
/// head, tagged data that cannot be read and a body that ends too early, 4 when the stream has not
/// the whole body.
#ifndef VXGRID_SERIAL_GAUSSIAN_VXB_H
#define VXGRID_SERIAL_GAUSSIAN_VXB_H

#include <string>  // for string

#include "vxgrid/gaussian/containers.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/vxb/handler.h"

namespace VXCore {

/// Gaussians of every implementation share one identifier, and so do containers.
template <>
struct VXBClassId<VXGaussianBase> : FixedDataTypeId<type_ids::gaussian> {};
template <>
struct VXBClassId<VXGaussianContainerBase> : FixedDataTypeId<type_ids::gaussian_container> {};

/// The record "VXGaussian".
class VXGRID_API VXGaussianWriteFxn : public VXWriteFxn<VXGaussianBase> {
 public:
  std::string GetTag() const override;
  VXGaussianWriteFxn* CreateCopy() const override;
  bool operator()(VXHost::vxostream& out, const VXBase& object,
                  VXBinaryIOHandlerBase& handler) const override;
};

class VXGRID_API VXGaussianReadFxn : public VXReadFxn<VXGaussianBase> {
 public:
  std::string GetTag() const override;
  VXGaussianReadFxn* CreateCopy() const override;
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override;
};

/// The record "VXGaussianCont". The container's own tagged data go behind its Gaussians.
class VXGRID_API VXGaussianContainerWriteFxn : public VXWriteFxn<VXGaussianContainerBase> {
 public:
  std::string GetTag() const override;
  VXGaussianContainerWriteFxn* CreateCopy() const override;
  bool operator()(VXHost::vxostream& out, const VXBase& object,
                  VXBinaryIOHandlerBase& handler) const override;
};

/// Adds the Gaussians of the record behind those that are there. Where one cannot be read, those
/// before it stay.
class VXGRID_API VXGaussianContainerReadFxn : public VXReadFxn<VXGaussianContainerBase> {
 public:
  std::string GetTag() const override;
  VXGaussianContainerReadFxn* CreateCopy() const override;
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override;
};

}  // namespace VXCore

#endif
