/// \file
/// The records of a PDB file and the items of an mmCIF file that a molecule keeps beside its atoms.
#ifndef VXGRID_TOOLKIT_MOL_PDB_DATA_H
#define VXGRID_TOOLKIT_MOL_PDB_DATA_H

#include <string>   // for string
#include <utility>  // for move
#include <vector>   // for vector

#include "vxgrid/toolkit/core/export.h"

namespace VXMol {

class VXConfBase;
class VXMolBase;

/// One record of a PDB file: the tag is the text of the first six columns without trailing blanks
/// ("CRYST1"), the value the rest of the line as it stands. mmCIF items use it with the item's name
/// ("_cell.length_a") and its value without quotes.
class VXPDBDataPair {
 public:
  VXPDBDataPair(std::string tag, std::string value)
      : tag_(std::move(tag)), value_(std::move(value)) {}

  const std::string& GetTag() const { return tag_; }
  const std::string& GetValue() const { return value_; }
  void SetValue(std::string value) { value_ = std::move(value); }

 private:
  std::string tag_;
  std::string value_;
};

/// The value of the first record of this tag, empty if there is none. The records of a molecule are
/// those of its first conformer.
VXGRID_API std::string VXGetPDBData(const VXMolBase& mol, const std::string& tag);
VXGRID_API std::string VXGetPDBData(const VXConfBase& conformer, const std::string& tag);
/// Replaces the value of the first record of this tag, or adds the record. False for an empty tag.
VXGRID_API bool VXSetPDBData(VXMolBase& mol, const std::string& tag, const std::string& text);
VXGRID_API bool VXSetPDBData(VXConfBase& conformer, const std::string& tag,
                             const std::string& text);
/// Adds a record behind those that are there, whatever their tags. False for an empty tag.
VXGRID_API bool VXAddPDBData(VXMolBase& mol, const std::string& tag, const std::string& text);
VXGRID_API bool VXAddPDBData(VXConfBase& conformer, const std::string& tag,
                             const std::string& text);
/// All records in their order. The reference is good until records are set or the molecule goes.
VXGRID_API const std::vector<VXPDBDataPair>& VXGetPDBDataPairs(const VXMolBase& mol);
VXGRID_API const std::vector<VXPDBDataPair>& VXGetPDBDataPairs(const VXConfBase& conformer);

/// True if the molecule keeps items of an mmCIF file.
VXGRID_API bool VXHasMMCIFData(const VXMolBase& mol);
/// The value of an item such as "_cell.length_a", empty if there is none.
VXGRID_API std::string VXGetMMCIFData(const VXMolBase& mol, const std::string& item);
/// Replaces or adds an item. False for an empty name.
VXGRID_API bool VXSetMMCIFData(VXMolBase& mol, const std::string& item, const std::string& value);

/// The resolution in Angstrom that an mmCIF file states: the first of
/// _refine.ls_d_res_high, _em_3d_reconstruction.resolution and _reflns.d_resolution_high that is a
/// positive number. False, with `resolution` as it was, if there is none.
VXGRID_API bool VXGetResolutionCIF(double& resolution, const VXMolBase& mol);

/// The six cell parameters a, b, c (Angstrom), alpha, beta, gamma (degrees) and the Hermann-Mauguin
/// name of an mmCIF file; a group that the file does not name leaves `name` empty. False, with
/// `cell` and `name` as they were, unless all six are numbers.
VXGRID_API bool VXParseSymmetryCif(const VXMolBase& mol, float* cell, std::string& name);

}  // namespace VXMol

#endif
