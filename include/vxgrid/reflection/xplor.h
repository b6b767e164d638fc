/// \file
/// Reflection files of X-PLOR and CNS: keywords, each followed by its numbers.
#ifndef VXGRID_REFLECTION_XPLOR_H
#define VXGRID_REFLECTION_XPLOR_H

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

class VXReflection;

/// Reads records that begin at a line with "INDE" and go up to the next such line, in any case.
/// Lines that begin with "#" are skipped. Of a record 1024 characters and 25 words are looked at.
///
/// The first record tells where the values stand for all of them, by keywords that may be parts of
/// a word: "INDE" h, k and l; "FOBS" fobs and, unless "PHAS" came before, phase; "FCAL" fcalc;
/// "PHAS" phase; "FOM", "SIGM", "HLA", "HLB", "HLC" and "HLD". Sigma and the four coefficients
/// take the value of fom: results have to stay comparable with those on file. rfree, phase_calc
/// and stolsq are not read.
///
/// A record counts when its indices are numbers; another value that is not a number is 0. The set
/// is filled at the end, from a clear one. False with the set untouched when no record counts;
/// false with the reflection data cleared when an index does not fit an int.
VXGRID_API bool VXReadReflectionXPLOR(vxistream& is, VXReflection& refl);

/// Writes a line for each reflection in storage order: "INDE" with h, k, l; "FOBS=" with fobs and
/// phase; "FCALC=" with fcalc and phase_calc; "SIGMa="; "FOM="; "TEST=" with rfree; "RESO=" with
/// the spacing 1 / (2 sqrt(stolsq)) in Angstrom; "HLA=", "HLB=", "HLC=", "HLD=". What the set lacks
/// is left out. Every piece has a fixed width, to which a number that is too wide is cut.
///
/// False, with nothing written, without reflections or indices; false when not all of it arrives.
VXGRID_API bool VXWriteReflectionXPLOR(vxostream& os, VXReflection& refl);

}  // namespace VXCore

#endif
