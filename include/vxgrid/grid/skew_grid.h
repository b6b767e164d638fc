/// \file
/// The grid of crystallography: a float lattice whose axes follow the edges of a crystal cell.
#ifndef VXGRID_GRID_SKEW_GRID_H
#define VXGRID_GRID_SKEW_GRID_H

#include <memory>  // for unique_ptr
#include <string>  // for string
#include <vector>  // for vector

#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/core/base_data.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/host_grids.h"

namespace VXCore {

class VXScalarGrid;

/// What a skew grid holds: a VXBrioGrid. Every operation is that of the VXBrioGrid by the same
/// name. Moving leaves an empty grid behind.
class VXGRID_API VXSkewGridImpl {
 public:
  VXSkewGridImpl();
  VXSkewGridImpl(const VXSkewGridImpl& other);
  VXSkewGridImpl(VXSkewGridImpl&& other) noexcept;
  VXSkewGridImpl(const VXFixedGrid<float>& grid);
  VXSkewGridImpl(const VXScalarGrid& grid);
  VXSkewGridImpl(const VXBrioGrid& grid);
  ~VXSkewGridImpl();

  VXSkewGridImpl& operator=(const VXSkewGridImpl& other);
  VXSkewGridImpl& operator=(VXSkewGridImpl&& other) noexcept;
  VXSkewGridImpl& operator=(const VXFixedGrid<float>& grid);
  VXSkewGridImpl& operator=(const VXScalarGrid& grid);
  VXSkewGridImpl& operator=(const VXBrioGrid& grid);

  operator bool() const { return static_cast<bool>(*brio_); }
  const VXFixedGrid<float>& AsRegularGrid() const;
  VXBrioGrid& GetImpl() const { return *brio_; }
  void Clear();

  std::string GetTitle() const;
  bool SetTitle(const std::string& title);
  bool IsTitleSet() const;
  bool ElementToGridIdx(unsigned int element, unsigned int& ix, unsigned int& iy,
                        unsigned int& iz) const;
  bool ElementToSpatialCoord(unsigned int element, float& x, float& y, float& z) const;
  bool GetDim(unsigned int& xdim, unsigned int& ydim, unsigned int& zdim) const;
  bool SetDim(unsigned int xdim, unsigned int ydim, unsigned int zdim);
  unsigned int GetSize() const;
  unsigned int GetXDim() const;
  unsigned int GetYDim() const;
  unsigned int GetZDim() const;
  bool GetMid(float& xmid, float& ymid, float& zmid) const;
  bool SetMid(float xmid, float ymid, float zmid);
  float GetXMid() const;
  float GetYMid() const;
  float GetZMid() const;
  float GetSpacing() const;
  bool SetSpacing(float spacing);
  bool IsSpacingSet() const;
  unsigned int GetReentrant() const;
  void SetReentrant(bool reentrant);
  unsigned int GetSpaceGroup() const;
  bool SetSpaceGroup(unsigned int number);
  bool HasSpaceGroup() const;
  bool GetUnitCell(float& a, float& b, float& c, float& alpha, float& beta, float& gamma) const;
  bool HasUnitCell() const;
  bool SetUnitCell(float a, float b, float c, float alpha, float beta, float gamma, unsigned int ua,
                   unsigned int ub, unsigned int uc);
  unsigned int GetType() const;
  void SetType(unsigned int type);
  float* GetValues();
  const float* GetValues() const;
  bool SetValues(const float* values, unsigned int count);
  bool GetFloatsSet() const;
  bool IsRegular() const;
  bool GetOrientation(float* matrix) const;
  bool GetOrientationSet() const;
  bool SetOrientation(const float* matrix);
  bool SetOrientationSet(bool set);
  bool PackingTransform(int ia, int ib, int ic, float& dx, float& dy, float& dz) const;
  bool SpatialCoordToPacking(float x, float y, float z, int& ia, int& ib, int& ic) const;

 private:
  std::unique_ptr<VXBrioGrid> brio_;
};

/// A float lattice along the edges of a crystal cell: its axes need not be orthogonal, nor the
/// steps along them equal. Electron-density maps live in it.
///
/// It is a VXBrioGrid seen through a narrower interface: the values stand in a plain lattice of one
/// spacing, which an orientation matrix about the midpoint bends into the crystal's frame (see
/// VXBrioGrid for the rule). Whoever needs the numbers alone takes AsRegularGrid. The usual order
/// of filling is SetDim, SetMid, SetUnitCell, SetSpaceGroup, SetValues. What is not said here is
/// said at VXBrioGrid.
class VXGRID_API VXSkewGrid : public VXGridAbstractBase {
 public:
  VXSkewGrid();
  VXSkewGrid(const VXSkewGrid& other);
  VXSkewGrid(VXSkewGrid&& other) noexcept;
  VXSkewGrid(const VXFixedGrid<float>& grid);
  /// Takes the grid's type too.
  VXSkewGrid(const VXScalarGrid& grid);
  VXSkewGrid(const VXSkewGridImpl& impl);
  ~VXSkewGrid() override;

  /// All assignments keep the implementation object and assign into it.
  VXSkewGrid& operator=(const VXSkewGrid& other);
  VXSkewGrid& operator=(VXSkewGrid&& other) noexcept;
  VXSkewGrid& operator=(const VXFixedGrid<float>& grid);
  VXSkewGrid& operator=(const VXScalarGrid& grid);
  VXSkewGrid& operator=(const VXSkewGridImpl& impl);

  /// True when there are values.
  operator bool() const { return static_cast<bool>(*impl_); }
  /// The values as a regular grid, as if no orientation were set.
  const VXFixedGrid<float>& AsRegularGrid() const { return impl_->AsRegularGrid(); }
  VXSkewGridImpl& GetImpl() const { return *impl_; }

  void Clear() override;
  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  VXBase* CreateCopy() const override;

  std::string GetTitle() const override;
  bool SetTitle(const std::string& title) override;
  float GetSpacing() const override;
  bool IsSpacingSet() const override;
  unsigned int GetSize() const override;
  bool GetDim(unsigned int& xdim, unsigned int& ydim, unsigned int& zdim) const override;
  unsigned int GetXDim() const override;
  unsigned int GetYDim() const override;
  unsigned int GetZDim() const override;
  bool GetMid(float& xmid, float& ymid, float& zmid) const override;
  float GetXMid() const override;
  float GetYMid() const override;
  float GetZMid() const override;

  bool IsTitleSet() const;
  bool SetDim(unsigned int xdim, unsigned int ydim, unsigned int zdim);
  bool SetMid(float xmid, float ymid, float zmid);
  bool SetSpacing(float spacing);

  bool ElementToGridIdx(unsigned int element, unsigned int& ix, unsigned int& iy,
                        unsigned int& iz) const;
  bool ElementToSpatialCoord(unsigned int element, float& x, float& y, float& z) const;

  unsigned int GetReentrant() const;
  void SetReentrant(bool reentrant);
  unsigned int GetSpaceGroup() const;
  bool SetSpaceGroup(unsigned int number);
  bool HasSpaceGroup() const;
  bool GetUnitCell(float& a, float& b, float& c, float& alpha, float& beta, float& gamma) const;
  bool HasUnitCell() const;
  /// The operation that makes a grid skew; ua, ub, uc are the grid intervals along the whole edges.
  bool SetUnitCell(float a, float b, float c, float alpha, float beta, float gamma, unsigned int ua,
                   unsigned int ub, unsigned int uc);
  /// A VXGridType, or whatever number was set.
  unsigned int GetType() const;
  void SetType(unsigned int type);
  float* GetValues();
  const float* GetValues() const;
  bool SetValues(const float* values, unsigned int count);
  bool IsRegular() const;

 private:
  std::unique_ptr<VXSkewGridImpl> impl_;
};

template <>
struct DataTypeId<VXSkewGrid> : FixedDataTypeId<data_ids::skew_grid> {};
template <>
struct DataTypeId<std::vector<VXSkewGrid>> : FixedDataTypeId<data_ids::vector_skew_grid> {};
extern template class VXBaseDataT<VXSkewGrid>;
extern template class VXBaseDataT<std::vector<VXSkewGrid>>;

}  // namespace VXCore

#endif
