/// \file
/// The images of a molecule in its crystal: as transformations, as atoms, as conformers.
#ifndef VXGRID_CRYSTAL_CRYSTAL_IMAGES_H
#define VXGRID_CRYSTAL_CRYSTAL_IMAGES_H

#include <vector>  // for vector

#include "vxgrid/crystal/symmetry.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

class VXSkewGrid;

namespace VXXtal {

/// A list of Cartesian transformations that take a molecule to images of it in its crystal, each
/// with the number of the group's operator behind it. Matrices are 4 by 4 for row vectors (see
/// VXUnitCell).
class VXGRID_API VXXtalSymmetry {
 public:
  /// No transformations, not valid.
  VXXtalSymmetry() = default;
  /// One image for each enabled operator, brought into the home cell by the image of the centre of
  /// the atoms and then moved by `ix`, `iy`, `iz` whole cells. The identity is marked only if no
  /// cell is added. Not valid if the molecule has no symmetry tags.
  VXXtalSymmetry(const VXMolBase& mol, int ix, int iy, int iz);
  /// All images whose box comes within `radius` (Angstrom) of a Cartesian point, over all cells.
  /// Images that coincide are listed once, except that the first of the list may come again. Not
  /// valid if the molecule has no symmetry tags or no atoms, or if more than 2^24 images would have
  /// to be looked at or more than 2^18 listed.
  VXXtalSymmetry(const VXMolBase& mol, const float* point, float radius);
  /// The same as (mol, 0, 0, 0); the flags are not used.
  VXXtalSymmetry(const VXMolBase& mol, bool, bool);
  VXXtalSymmetry(const VXXtalSymmetry& other) = default;
  VXXtalSymmetry& operator=(const VXXtalSymmetry& other) = default;
  virtual ~VXXtalSymmetry();

  /// Whether the constructor found what it needed. The list may be empty for all that, when no
  /// operator is enabled or no image is near.
  bool IsValid() const { return valid_; }
  unsigned int NumOps() const { return static_cast<unsigned int>(op_numbers_.size()); }
  /// 16 floats, null if `i` is out of range.
  const float* Matrix(unsigned int i) const;
  /// False if `i` is out of range.
  bool IsIdentity(unsigned int i) const;
  /// The number of the operator in the group's list, 0 if `i` is out of range.
  unsigned int GetOpNumber(unsigned int i) const;

  /// Appends the images to the molecule (`copy` false; returns the molecule), or to a new
  /// multi-conformer molecule that starts as a copy of it and is titled "Symmetry:" and the old
  /// title (`copy` true; the caller owns it). Conformers are carried along one by one. Atoms with
  /// residue data get the number of their image, from 1, as model number.
  ///
  /// Every entry of the list appends a copy, the identity included: the molecule as it was then
  /// stands there twice, once with its own model numbers and once as an image. Scores and densities
  /// that are made from the result count such atoms twice. With an `op` other than 0xFFFFFFFF only
  /// entry `op` is applied, yet a copy is still appended for every entry: those before it in the
  /// molecule's own coordinates, those behind it in the image's.
  ///
  /// Null if the list is empty or not valid, the molecule has no atoms, or more than 2^26 atoms
  /// would be appended.
  VXMolBase* Realize(VXMolBase& mol, bool copy, unsigned int op) const;
  /// Makes `out` a copy of the molecule with one conformer for each image, from the coordinates of
  /// its first conformer. False as above, or if the molecule has no conformer.
  bool Realize(const VXMolBase& mol, VXMCMolBase& out) const;

  /// Operators of the molecule's symmetry tags, 0 without them.
  static unsigned int NumOps(const VXMolBase& mol);
  /// The same as VXGetXtalSymmetry.
  static bool GetSymmetry(const VXMolBase& mol, VXSymmetry& out);
  /// Writes the symmetry tags, and the CRYST1 record of a graph or multi-conformer molecule; with
  /// `storeCenter` also the centre of the atoms. False for an empty symmetry or if a tag is taken
  /// by a datum of another type.
  static bool SetSymmetry(VXMolBase& mol, const VXSymmetry& symmetry, bool storeCenter);
  /// The flag of an operator; false beyond the last one and without symmetry tags.
  static bool GetOpEnabled(const VXMolBase& mol, unsigned int op);
  /// Changes the flag of an operator in the symmetry tags; false if there is no such operator.
  static bool SetOpEnabled(VXMolBase& mol, unsigned int op, bool enabled);
  /// The stored centre, or else the centre of the atoms; false if there is neither.
  static bool GetCenterOfMass(const VXMolBase& mol, float* xyz);
  /// The number of the tag of the stored centre.
  static unsigned int CenterOfMassTag();

 private:
  bool init(const VXMolBase& mol, int ix, int iy, int iz);
  bool init(const VXMolBase& mol, const float* point, float radius);
  void append(const float* matrix, bool identity, unsigned int op);

  bool valid_ = false;
  std::vector<float> matrices_;  // 16 for each transformation
  std::vector<bool> identities_;
  std::vector<unsigned int> op_numbers_;
};

}  // namespace VXXtal

/// Appends to the molecule all of its crystal images whose box comes within `radius` (Angstrom) of
/// a point, by default the middle of the molecule, as VXXtalSymmetry::Realize does: the home copy
/// comes again among them. The symmetry is that of the CRYST1 record or the mmCIF items, which is
/// also written to the molecule's symmetry tags; tags alone do not suffice. False, with no atom
/// added, without a usable record or if no image is near.
VXGRID_API bool VXExpandCrystalSymmetryImpl(VXMolBase& mol, float radius, const float* point);

/// Fills a map's grid with the crystal around it: appends the images within the grid's largest
/// extent of its centre, and deletes all atoms whose nearest lattice point is not one of the grid.
/// A molecule without a usable CRYST1 record takes the symmetry that map making left on the grid
/// (tag "vx_symm"). False, with no atom changed, if there is no symmetry to be found or the grid
/// has no dimensions.
VXGRID_API bool VXExpandCrystalSymmetry(const VXSkewGrid& grid, VXMolBase& mol);

}  // namespace VXCore

#endif
