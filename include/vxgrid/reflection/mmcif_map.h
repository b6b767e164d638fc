/// \file
/// From the mmCIF file of deposited structure factors to an electron-density map.
#ifndef VXGRID_REFLECTION_MMCIF_MAP_H
#define VXGRID_REFLECTION_MMCIF_MAP_H

#include <string>  // for string

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

class VXSkewGrid;

/// Turns reflection data of an mmCIF file, plain or gzipped, into MTZ files with gemmi's default
/// columns: "FP" of F_meas and F_meas_au, "FC" and "PHIC" of F_calc and phase_calc, "FWT", "PHWT",
/// "DELFWT" and "PHDELWT" of the map coefficients, and others.
///
/// With `first_block_only` the first data block of the file, or of its first 1,073,741,824 bytes,
/// goes to `output`; otherwise every block of the file goes to a file of its own, `output` with its
/// last four characters, the extension, replaced by "_", the block's name and ".mtz". False, with
/// the Warning "Warning: %s." and the reason, when a file cannot be read, converted or written;
/// blocks before are on the disk then. gemmi notes values that are not numbers on standard error.
VXGRID_API bool vx_cif_to_mtz(const std::string& input, const std::string& output,
                              bool first_block_only);

/// Makes the map of a type (VXMTZMapType) from the first data block of an mmCIF reflection file,
/// plain or gzipped.
///
/// vx_cif_to_mtz turns the block into the MTZ file "convert.mtz" in the folder for temporary files
/// (VXFileTempDirectory), from which VXMTZ::MakeMap makes the map with the default VXMTZColumns.
/// That file stays there and the next call overwrites it, so that calls must not overlap; the
/// grid's tag "mtz_filename" names it.
///
/// False when the file cannot be converted, after a second Warning, "Warning: Failed to convert and
/// make map from the input file, %s."; otherwise as VXMTZ::MakeMap.
VXGRID_API bool VXReadCIFGridFile(const std::string& filename, VXSkewGrid& grid,
                                  unsigned int maptype);

}  // namespace VXCore

#endif
