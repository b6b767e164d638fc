/// \file
/// PHS phase files, and the HKL reflection lists that go by the same name at times.
#ifndef VXGRID_REFLECTION_PHS_H
#define VXGRID_REFLECTION_PHS_H

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

class VXReflection;

/// Reads lines of h, k, l, fobs, a fifth value, phase, and the Hendrickson-Lattman coefficients A,
/// B, C, D. Six values make a reflection; the coefficients are kept when every reflection has all
/// four. Lines that begin with "REM" or "#" are skipped, lines of less than six values do not
/// count, and of a line longer than 256 characters the rest is not looked at.
///
/// The fifth column is fcalc when its mean is above 1, else fom. A negative phase is raised by 360,
/// and when there is one the column rfree tells: 0 for such a reflection, 1 for the others. A phase
/// that is not a number counts as negative.
///
/// When the first line that holds anything begins with "HKL", the stream is taken back to its start
/// and read by VXReadReflectionHKL.
///
/// The set is filled at the end, from a clear one. False with the set untouched when there is no
/// reflection; false with the reflection data cleared when an index does not fit an int.
VXGRID_API bool VXReadReflectionPHS(vxistream& is, VXReflection& refl);

/// Reads lines that begin with "HKL", of which a first word is skipped: h, k, l, fobs, sigma,
/// phase, fom. All seven have to be there, lines of another shape are ignored, and of a line longer
/// than 128 characters the rest is not looked at. A phase of exactly 1000 means that it is unknown
/// and makes fom 0.
///
/// False with the reflection data cleared when there is no reflection, and when an index does not
/// fit an int.
VXGRID_API bool VXReadReflectionHKL(vxistream& is, VXReflection& refl);

/// Writes a line for each reflection in storage order: h, k, l in fields of 5, fobs, fom and phase
/// with three digits and, if the set has them, A, B, C, D with five. False, with nothing written,
/// without reflections, indices, fobs, phase or fom; false when not all of it arrives.
VXGRID_API bool VXWriteReflectionPHS(vxostream& os, VXReflection& refl);

}  // namespace VXCore

#endif
