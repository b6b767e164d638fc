/// \file
/// VXX: a whole reflection set as binary records, in the byte order of the machine that writes.
#ifndef VXGRID_REFLECTION_VXX_H
#define VXGRID_REFLECTION_VXX_H

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

class VXReflection;

/// Reads what VXWriteReflectionVXX writes, from a machine of either byte order, into the set:
/// columns that the stream does not have stay as they are. Records of unknown tags are not skipped;
/// the next tag is looked for in their data.
///
/// Returns 0 for success; 4 for a record of the wrong length, for indices or coefficients of which
/// one is missing (the count is 0 then), for a count that changes within the stream or is out of
/// proportion to it, and for want of memory; 6 for a tag that cannot be read; 8 when the stream
/// ends too early; 9 for a length of 0. On failure the set holds what was read up to there.
VXGRID_API unsigned int VXReadReflectionVXX(vxistream& is, VXReflection& refl);

/// Writes four stamp bytes (a zero and the byte orders of floats, integers and short integers) and
/// then tag, length and bytes of "nref", "title", "sg", "cell" (when it is valid), and of every
/// column there is, in storage order. A set without reflections is the four bytes alone. Tagged
/// data are not written. False when not all of it arrives.
VXGRID_API bool VXWriteReflectionVXX(vxostream& os, const VXReflection& refl);

}  // namespace VXCore

#endif
