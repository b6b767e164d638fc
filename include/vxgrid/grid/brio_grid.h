/// \file
/// The hub grid: float and integer fields on one lattice, with orientation and crystal data.
#ifndef VXGRID_GRID_BRIO_GRID_H
#define VXGRID_GRID_BRIO_GRID_H

#include <array>   // for array
#include <string>  // for string
#include <vector>  // for vector

#include "vxgrid/toolkit/core/base_data.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/host_grids.h"

namespace VXCore {

class VXScalarGrid;

/// Any number of float and of integer fields on one lattice, which an orientation may tilt and
/// shear, with the unit cell that it samples, a space group and marks for periodic directions.
/// All file formats pass through it, and it is what stands behind VXSkewGrid.
///
/// Values run x fastest: element = i + xdim*(j + ydim*k). Lattice point (i, j, k) has the
/// unoriented place r = mid + ((i, j, k) - (dim - 1)/2)*spacing, and lies in space at
/// M(r - mid) + mid with the orientation M, or at r when none is set. All in Angstrom and single
/// precision. Title, mid, spacing and dimensions are those of the float store; the integer store
/// is kept in step.
class VXGRID_API VXBrioGrid : public VXGridAbstractBase {
 public:
  /// One float and one integer field of no size, no orientation, no cell.
  VXBrioGrid();
  /// Everything, tags included; then the title is set from the source, so that the copy of an
  /// untitled grid has an empty title that counts as set.
  VXBrioGrid(const VXBrioGrid& other);
  /// Leaves an empty grid behind, as the assignment does.
  VXBrioGrid(VXBrioGrid&& other) noexcept;
  /// Tags, type, title, geometry and values of a scalar grid as float field 0; a lattice of cubes
  /// as its cell (SetUnitCellFromSpacing).
  VXBrioGrid(const VXScalarGrid& grid);
  /// The two stores as given, all their fields in use; a lattice of cubes as the cell.
  VXBrioGrid(const VXFixedMultiGrid<float>& floats, const VXFixedMultiGrid<int>& integers);
  ~VXBrioGrid() override;

  VXBrioGrid& operator=(const VXBrioGrid& other);
  VXBrioGrid& operator=(VXBrioGrid&& other) noexcept;
  /// Lays the source's tags over those here, takes its type, title, geometry and values (as float
  /// field 0), and makes a lattice of cubes of the cell. Reentrant flags, space group and the
  /// counts of fields stay.
  VXBrioGrid& operator=(const VXScalarGrid& grid);
  /// The same without the type.
  VXBrioGrid& operator=(const VXFixedGrid<float>& grid);
  /// The same with all fields of the source, which are then all in use.
  VXBrioGrid& operator=(const VXFixedMultiGrid<float>& grid);

  /// True when there are float or integer values.
  operator bool() const { return GetFloatsSet() || GetIntegersSet(); }

  /// Back to a default-made grid: tags, stores and all fields go.
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
  /// Reallocates both stores, integers first; the result is that of the floats.
  bool SetDim(unsigned int xdim, unsigned int ydim, unsigned int zdim);
  /// On both stores, integers first; the result is that of the floats.
  bool SetMid(float xmid, float ymid, float zmid);
  bool SetSpacing(float spacing);

  /// \name Values
  ///@{
  /// Float field 0, null unless GetFloatsSet. Valid until the grid is resized or assigned to.
  float* GetValues();
  const float* GetValues() const;
  /// Copies `count` values into float field 0; false when there are more than GetSize.
  bool SetValues(const float* values, unsigned int count);
  /// Takes a buffer of GetSize values over as float field 0, without a copy; false, and nothing
  /// changed, for another size.
  bool AdoptValues(ValueBuffer<float>&& values);

  /// The store itself: every field, and per-store geometry.
  VXMultiGrid<float>& GetFloats() { return floats_; }
  const VXMultiGrid<float>& GetFloats() const { return floats_; }
  VXMultiGrid<int>& GetIntegers() { return integers_; }
  const VXMultiGrid<int>& GetIntegers() const { return integers_; }

  /// True if the store has a field and one of the three dimensions is above 1: a grid of a single
  /// point has no values in this sense.
  bool GetFloatsSet() const;
  bool GetIntegersSet() const;
  /// The count of fields in use; number multiple-1 is the selected field of the flat accessors.
  int GetFloatsMultiple() const { return settings_.floats_multiple; }
  int GetIntegersMultiple() const { return settings_.integers_multiple; }
  /// Grows the store to `count` fields if it has fewer (it never shrinks) and records the count;
  /// false if that cannot be done.
  bool SetFloatsMultiple(unsigned int count);
  bool SetIntegersMultiple(unsigned int count);
  ///@}

  /// \name Orientation: nine floats, row by row, from lattice steps in units of the spacing
  ///@{
  /// False, `matrix` untouched, when none is set.
  bool GetOrientation(float* matrix) const;
  /// Copies the matrix and marks it as set; false on null.
  bool SetOrientation(const float* matrix);
  bool GetOrientationSet() const { return settings_.orientation_set; }
  /// The mark alone; always true.
  bool SetOrientationSet(bool set);
  /// True if no orientation is set or its three diagonal elements are exactly 1. The others are not
  /// looked at: a lattice sheared with a diagonal of ones counts as regular.
  bool IsRegular() const;
  ///@}

  /// \name Periodic directions: bit 0 x, bit 1 y, bit 2 z
  ///@{
  unsigned int GetReentrant() const { return settings_.reentrant; }
  /// All three on or off.
  void SetReentrant(bool reentrant) { settings_.reentrant = reentrant ? 7u : 0u; }
  bool GetXReentrant() const { return (settings_.reentrant & 1u) != 0; }
  bool GetYReentrant() const { return (settings_.reentrant & 2u) != 0; }
  bool GetZReentrant() const { return (settings_.reentrant & 4u) != 0; }
  void SetXReentrant() { settings_.reentrant |= 1u; }
  void SetYReentrant() { settings_.reentrant |= 2u; }
  void SetZReentrant() { settings_.reentrant |= 4u; }
  ///@}

  /// \name Crystal: cell in Angstrom and degrees, grid intervals along its edges, space group
  ///@{
  /// Always true; zeros when no cell is set.
  bool GetUnitCell(float& a, float& b, float& c, float& alpha, float& beta, float& gamma) const;
  /// True if any of the six is not zero.
  bool HasUnitCell() const;
  /// False only if all three are 0.
  bool GetUnitSpacing(unsigned int& nx, unsigned int& ny, unsigned int& nz) const;
  /// Stores the cell and its sampling, makes the spacing the smallest of a/nx, b/ny, c/nz, and sets
  /// the orientation that takes one lattice step to a/nx along x, b/ny in the xy plane and c/nz.
  /// Nothing is checked: a zero interval gives an infinite step. Always true.
  bool SetUnitCell(float a, float b, float c, float alpha, float beta, float gamma, unsigned int nx,
                   unsigned int ny, unsigned int nz);
  /// The identity as orientation, this spacing, and the box dim*spacing with right angles as cell,
  /// sampled at every point. Always true.
  bool SetUnitCellFromSpacing(float spacing);
  /// The number of the space group, 0 for none.
  unsigned int GetSpaceGroup() const { return settings_.space_group; }
  /// Always true.
  bool SetSpaceGroup(unsigned int number);
  bool HasSpaceGroup() const { return settings_.space_group != 0; }
  ///@}

  /// A VXGridType, or whatever number was set.
  unsigned int GetType() const { return settings_.type; }
  void SetType(unsigned int type) { settings_.type = type; }

  /// \name Places
  ///@{
  /// The index of an element; true if the element is below GetSize. Without dimensions false, the
  /// index untouched.
  bool ElementToGridIdx(unsigned int element, unsigned int& x, unsigned int& y,
                        unsigned int& z) const;
  /// Where an element lies in space; false, nothing written, at GetSize and beyond.
  bool ElementToSpatialCoord(unsigned int element, float& x, float& y, float& z) const;
  /// Replaces `coords` by the places of all elements in order, three floats each.
  bool SpatialCoords(std::vector<float>& coords) const;
  /// The shift in space of the image that lies i, j, k whole grids (dim points each) away along the
  /// lattice directions. False when no spacing is set.
  bool PackingTransform(int i, int j, int k, float& dx, float& dy, float& dz) const;
  /// In which image of the grid a point lies, by t = (d . v)/(|v| dim) with the offset d from the
  /// first lattice point and the row v of the orientation: trunc(t), less 1 if t is not above 0.
  /// So 0 gives -1 and -2 gives -3. The spacing does not enter: t counts Angstrom over points.
  /// A t that fits no int counts as 0. False when no spacing is set.
  bool SpatialCoordToPacking(float x, float y, float z, int& i, int& j, int& k) const;
  ///@}

 private:
  /// All that is neither tags nor stores.
  struct Settings {
    std::array<float, 9> orientation{};
    bool orientation_set = false;
    int floats_multiple = 1;
    int integers_multiple = 1;
    unsigned int reentrant = 0;
    std::array<float, 6> cell{};                 // a, b, c, alpha, beta, gamma
    std::array<unsigned int, 3> unit_spacing{};  // nx, ny, nz
    unsigned int space_group = 0;
    unsigned int type = 0;
  };

  void match_integers_to_floats();

  Settings settings_;
  VXMultiGrid<float> floats_;
  VXMultiGrid<int> integers_;
};

template <>
struct DataTypeId<VXBrioGrid> : FixedDataTypeId<data_ids::brio_grid> {};
template <>
struct DataTypeId<std::vector<VXBrioGrid>> : FixedDataTypeId<data_ids::vector_brio_grid> {};
extern template class VXBaseDataT<VXBrioGrid>;
extern template class VXBaseDataT<std::vector<VXBrioGrid>>;

}  // namespace VXCore

#endif
