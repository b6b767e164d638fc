/// \file
/// A handle that takes a scalar or a skew grid as one thing.
#ifndef VXGRID_GRID_REF_GRID_PTR_H
#define VXGRID_GRID_REF_GRID_PTR_H

#include <string>  // for string

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/type_ids.h"

namespace VXCore {

class VXBase;
class VXGridAbstractBase;
class VXScalarGrid;
class VXSkewGrid;

/// Points to a scalar or skew grid without owning it; valid as long as that grid.
///
/// Queries go through the const pointers, changes through the mutable ones. A handle made from a
/// VXBase* that is not const knows the mutable grid alone: it is not valid, its queries answer
/// false, 0 or empty, and yet Clear, GetValues, SetTitle and SetType work. An object of any other
/// type leaves the handle empty.
class VXGRID_API VXRefGridPtr {
 public:
  VXRefGridPtr() = default;
  VXRefGridPtr(VXScalarGrid* grid);
  VXRefGridPtr(const VXScalarGrid* grid);
  VXRefGridPtr(VXSkewGrid* grid);
  VXRefGridPtr(const VXSkewGrid* grid);
  VXRefGridPtr(VXBase* grid);
  VXRefGridPtr(const VXBase* grid);
  VXRefGridPtr(const VXRefGridPtr&) = default;
  VXRefGridPtr& operator=(const VXRefGridPtr&) = default;
  virtual ~VXRefGridPtr();

  /// Clears the grid; nothing without a mutable one.
  virtual void Clear();
  /// The identifier of this class.
  virtual TypeId GetDataType() const;
  virtual bool GetDim(unsigned int& xdim, unsigned int& ydim, unsigned int& zdim) const;
  virtual bool GetMid(float& xmid, float& ymid, float& zmid) const;
  virtual float GetXMid() const;
  virtual float GetYMid() const;
  virtual float GetZMid() const;
  virtual float GetSpacing() const;
  virtual std::string GetTitle() const;
  /// The VXGridType of the grid, 0 without one.
  virtual unsigned int GetType() const;
  /// The values, null when there are none; the const form goes through the const pointers.
  virtual const float* GetValues() const;
  virtual float* GetValues();
  virtual unsigned int GetXDim() const;
  virtual unsigned int GetYDim() const;
  virtual unsigned int GetZDim() const;
  virtual unsigned int GetSize() const;
  /// Whether the grid is of that type.
  virtual bool IsDataType(TypeId type) const;
  virtual bool IsSkew() const;
  virtual bool IsValid() const;
  /// False without a mutable grid.
  virtual bool SetTitle(const std::string& title);
  virtual bool SetType(unsigned int type);
  virtual bool IsSpacingSet() const;

  /// Each pointer as it is, null where not set.
  operator VXBase*() const;
  operator const VXBase*() const;
  operator VXGridAbstractBase*() const { return base_; }
  operator const VXGridAbstractBase*() const { return const_base_; }
  operator VXScalarGrid*() const { return scalar_; }
  operator const VXScalarGrid*() const { return const_scalar_; }
  operator VXSkewGrid*() const { return skew_; }
  operator const VXSkewGrid*() const { return const_skew_; }

 private:
  VXGridAbstractBase* base_ = nullptr;
  const VXGridAbstractBase* const_base_ = nullptr;
  VXScalarGrid* scalar_ = nullptr;
  const VXScalarGrid* const_scalar_ = nullptr;
  VXSkewGrid* skew_ = nullptr;
  const VXSkewGrid* const_skew_ = nullptr;
};

}  // namespace VXCore

#endif
