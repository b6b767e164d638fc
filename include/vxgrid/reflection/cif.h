/// \file
/// Reading reflections from a structure-factor file in mmCIF, line by line.
#ifndef VXGRID_REFLECTION_CIF_H
#define VXGRID_REFLECTION_CIF_H

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

class VXReflection;

/// Reads the first loop of "_refln." items: the indices and the columns fobs, fcalc, sigma, phase,
/// phase_calc and fom, as far as the file has them. Cell and space group are not read.
///
/// An item is known by a part of its tag: ".index_h", ".index_k", ".index_l"; ".F_meas" fobs;
/// ".F_squared_meas" an intensity whose square root becomes fobs where the row tells no amplitude;
/// ".F_calc" fcalc; ".phase_meas" phase; ".phase_calc" phase_calc; ".fom"; ".F_meas_sigma" sigma,
/// an F in either case. The last tag that matches counts, so that "_refln.F_meas_sigma_au" behind
/// "_refln.F_meas_au" is taken for fobs as well as for sigma: results have to stay comparable with
/// those on file.
///
/// A row is a line of up to 128 characters (the rest of a longer one is not looked at) with up to
/// 25 words. It counts when its indices and sigma are numbers; another value that is not a number
/// is 0. The set is filled at the end, from a clear one.
///
/// False with the set untouched when indices, sigma, or both amplitude and intensity have no tag,
/// and when no row counts. False with the reflection data cleared when an index does not fit an
/// int.
VXGRID_API bool VXReadReflectionCIF(vxistream& is, VXReflection& refl);

}  // namespace VXCore

#endif
