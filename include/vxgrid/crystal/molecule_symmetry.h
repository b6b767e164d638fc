/// \file
/// The crystal symmetry that a molecule carries: as tagged data, and as a CRYST1 record.
#ifndef VXGRID_CRYSTAL_MOLECULE_SYMMETRY_H
#define VXGRID_CRYSTAL_MOLECULE_SYMMETRY_H

#include <string>  // for string

#include "vxgrid/crystal/symmetry.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {
namespace VXXtal {

/// \name Tags
/// What an object with crystal symmetry holds, all written together.
/// @{
inline constexpr const char* unit_cell_tag = "VX_unit_cell";              ///< std::array<float, 6>
inline constexpr const char* spacegroup_tag = "VX_spacegroup";            ///< unsigned int
inline constexpr const char* spacegroup_name_tag = "VX_spacegroup_name";  ///< std::string
inline constexpr const char* symm_enabled_tag = "VX_symm_enabled";        ///< std::vector<bool>
inline constexpr const char* symm_com_tag = "VX_symm_com";  ///< std::array<float, 3>, on request
/// The VXSymmetry that map making leaves on a grid.
inline constexpr const char* grid_symmetry_tag = "vx_symm";
/// @}

/// True if the object holds the tags of a cell and of operator flags, and of a group's number or
/// name.
VXGRID_API bool VXHasXtalSymmetry(const VXBase& object);

/// Builds the symmetry that the tags describe; the group's name wins over its number. Operator
/// flags count only if there is one for each operator. False without the tags, with `out` as it
/// was, and for a group that cannot be bound to the cell, with `out` then being the failed symmetry
/// (and the warning of VXSymmetry).
VXGRID_API bool VXGetXtalSymmetry(const VXBase& object, VXSymmetry& out);

/// Cell (six floats, Angstrom and degrees), group name and Z of a molecule: from its mmCIF items if
/// it has any (Z is then 0), else from its CRYST1 record, whose name is cut to ten characters and
/// may end in blanks. A record that ends early leaves name empty or Z 0. False if there is no
/// record or it has less than six numbers.
VXGRID_API bool VXExtractCRYST1(const VXMolBase& mol, float* cell, std::string& name,
                                unsigned int& z);

/// Writes the molecule's symmetry tags into its CRYST1 record (of the first conformer if the
/// molecule may hold several), keeping the record's Z. False without symmetry tags.
VXGRID_API bool VXSetPDBDataFromXtalSymmetry(VXMolBase& mol);

/// Writes the symmetry tags from CRYST1 record or mmCIF items. False if there is neither or the
/// group does not go with the cell.
VXGRID_API bool VXSetXtalSymmetryFromPDBData(VXMolBase& mol);

}  // namespace VXXtal

/// True if the molecule has symmetry tags, or a CRYST1 record or mmCIF cell other than the dummy
/// 1 x 1 x 1 with right angles that entries without a crystal carry.
VXGRID_API bool VXHasCrystalSymmetryImpl(const VXMolBase& mol);

}  // namespace VXCore

#endif
