// The tagged data in which an object keeps crystal symmetry: reading and writing them.
#ifndef VXGRID_SRC_CRYSTAL_SYMMETRY_TAGS_H
#define VXGRID_SRC_CRYSTAL_SYMMETRY_TAGS_H

#include "vxgrid/crystal/symmetry.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore::detail {

/// The numbers of the tags, asked for once.
struct SymmetryTags {
  unsigned int unit_cell;
  unsigned int spacegroup;
  unsigned int spacegroup_name;
  unsigned int symm_enabled;
  unsigned int symm_com;
};
const SymmetryTags& symmetry_tags();

/// Replaces or adds a datum. False, with no change, if the tag is taken by a datum of another type
/// that the toolkit does not let pass for this one.
template <class T>
bool store_datum(VXBase& object, unsigned int tag, const T& value) {
  if (object.HasData(tag) && !object.FindDataValue<T>(tag)) return false;
  return object.SetData(tag, value);
}

/// Writes cell, group and operator flags to the molecule's tags, and to its CRYST1 record if it is
/// a graph or multi-conformer molecule.
bool write_symmetry(VXMolBase& mol, const VXXtal::VXSymmetry& symmetry);

}  // namespace VXCore::detail

#endif
