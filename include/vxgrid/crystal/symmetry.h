/// \file
/// A space group bound to a unit cell: which operators there are, and whether group and cell agree.
#ifndef VXGRID_CRYSTAL_SYMMETRY_H
#define VXGRID_CRYSTAL_SYMMETRY_H

#include <memory>  // for unique_ptr
#include <string>  // for string
#include <vector>  // for vector

#include "vxgrid/crystal/unit_cell.h"
#include "vxgrid/toolkit/core/export.h"

namespace VXCore::VXXtal {

class VXSymmetryImpl;

/// One row of the space-group table bound to one unit cell, or empty.
///
/// Binding fails for a group that the table does not know and for a cell that the group's crystal
/// system does not allow; then the symmetry is empty (number 0, no operators) apart from the cell
/// and the error text, and that text goes out as one warning through VXThrow. Group and cell are
/// compared as follows, angles exactly and edges to 0.005 Angstrom:
///
/// - triclinic: the cell is not looked at;
/// - monoclinic: alpha = gamma = 90. A single other angle that is not 90 is taken too, with a
///   warning about the nonstandard setting in the error text; two such angles with alpha or gamma
///   among them are refused without a text;
/// - orthorhombic: all angles 90; tetragonal: also a = b; cubic: also b = c and a = c;
/// - trigonal and hexagonal: alpha = beta = 90, gamma = 120, a = b. This holds for the "R" rows
///   as well, which are thus of no use with a cell on rhombohedral axes.
///
/// A plain value: copies share nothing but the constant table.
class VXGRID_API VXSymmetry {
 public:
  /// The empty symmetry: default cell, no group, no error.
  VXSymmetry();
  /// Binds the row that find_space_group(number) gives.
  VXSymmetry(unsigned int number, const VXUnitCell& cell);
  /// Binds the row that find_space_group(name) gives.
  VXSymmetry(const std::string& name, const VXUnitCell& cell);
  VXSymmetry(const VXSymmetry& other);
  VXSymmetry& operator=(const VXSymmetry& other);
  ~VXSymmetry();

  /// True if a group is bound.
  operator bool() const;

  /// The group's long name, or its short name if the long one has more than 10 characters.
  std::string GetName() const;
  /// The number of the bound row, 0 if there is none.
  unsigned int GetNumber() const;
  /// Operators of the bound row, 0 if there is none.
  unsigned int GetOpCount() const;

  /// The operators of the bound row for fractional coordinates, operator k at 16 k floats from the
  /// start (see sglibT), whether enabled or not. Null if no group is bound. Lives as long as the
  /// library.
  const float* GetMatrices() const;

  /// The last message of the comparison of group and cell; empty if there was none.
  std::string GetError() const;
  /// True if there is an error text: after a warning on a usable symmetry as well as after a failed
  /// binding.
  bool HasWarnings() const;

  /// One flag per operator, all true after binding. Always true.
  bool GetEnabled(std::vector<bool>& flags) const;
  /// False, with no change, unless there is one flag per operator.
  bool SetEnabled(const std::vector<bool>& flags);

  /// Takes `count` points, stored as x, y, z triples, from Cartesian to fractional coordinates and
  /// then through operator `op`, in place. With `wrap` the results are brought into [0, 1). False,
  /// with no change, if no group is bound or there is no such operator.
  bool CartesianToFractional(float* coords, unsigned int count, unsigned int op, bool wrap) const;

  /// Takes `count` points from fractional to Cartesian coordinates, in place. The operator is
  /// applied after the conversion, to the Cartesian values, so that this is a plain conversion for
  /// operator 0 and no inverse of CartesianToFractional for any other. With `wrap` the fractional
  /// coordinates are brought into [0, 1) first. False, with no change, if no group is bound or
  /// there is no such operator.
  bool FractionalToCartesian(float* coords, unsigned int count, unsigned int op, bool wrap) const;

  /// The cell as it was given. A change through the reference does not repeat the comparison with
  /// the group.
  VXUnitCell& cell();
  const VXUnitCell& cell() const;

  /// The implementation record, owned by this object; never null.
  VXSymmetryImpl* GetImpl();
  const VXSymmetryImpl* GetImpl() const;

 private:
  std::unique_ptr<VXSymmetryImpl> impl_;
};

/// What a VXSymmetry holds. The operations of the same names are those of VXSymmetry.
class VXGRID_API VXSymmetryImpl {
 public:
  VXSymmetryImpl() = default;
  VXSymmetryImpl(unsigned int number, const VXUnitCell& cell);
  VXSymmetryImpl(const std::string& name, const VXUnitCell& cell);

  const std::string& GetName() const { return name_; }
  unsigned int GetNumber() const { return number_; }
  unsigned int GetOpCount() const { return op_count_; }
  const float* GetMatrices() const { return matrices_; }
  const std::string& GetError() const { return error_; }
  bool HasWarnings() const { return !error_.empty(); }
  bool GetEnabled(std::vector<bool>& flags) const;
  bool SetEnabled(const std::vector<bool>& flags);
  bool CartesianToFractional(float* coords, unsigned int count, unsigned int op, bool wrap) const;
  bool FractionalToCartesian(float* coords, unsigned int count, unsigned int op, bool wrap) const;
  VXUnitCell& cell() { return cell_; }
  const VXUnitCell& cell() const { return cell_; }

  /// Writes to `out` (16 floats) the matrix that takes a Cartesian point to fractional space,
  /// through operator `op`, by `ix`, `iy`, `iz` whole cells along the axes, and back to Cartesian
  /// space. With an `anchor` (Cartesian, may be null) the operator's translation is first shifted
  /// by whole cells so that the anchor's image comes to lie in the home cell. False if no group is
  /// bound or there is no such operator.
  bool GetCartesianOperator(float* out, unsigned int op, int ix, int iy, int iz,
                            const float* anchor) const;

 private:
  void bind(int row, const VXUnitCell& cell);
  bool check_cell(int row);
  const float* find_operator(unsigned int op) const;

  VXUnitCell cell_;
  unsigned int number_ = 0;
  std::string name_;
  unsigned int op_count_ = 0;
  const float* matrices_ = nullptr;
  std::vector<bool> enabled_;
  std::string error_;
};

}  // namespace VXCore::VXXtal

#endif
