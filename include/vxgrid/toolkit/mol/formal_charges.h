/// \file
/// Formal charges that explicit valences demand.
#ifndef VXGRID_TOOLKIT_MOL_FORMAL_CHARGES_H
#define VXGRID_TOOLKIT_MOL_FORMAL_CHARGES_H

#include "vxgrid/toolkit/core/export.h"

namespace VXMol {

class VXMolBase;

/// Adds the formal charges that explicit bonds leave no choice about: +1 on nitrogen with a valence
/// of four, +1 on oxygen with three, -1 on boron with four. Charges that are there stay. Bonds to
/// metals do not count, as they are mostly dative; hydrogens that the model lacks are not guessed,
/// and elements that take more than one valence (phosphorus, sulfur) are left alone. True if a
/// charge was added.
VXGRID_API bool VXAssignFormalCharges(VXMolBase& mol);

}  // namespace VXMol

#endif
