/// \file
/// The plain atom record of the flat routines.
#ifndef VXGRID_GRID_PDB_STRUCT_H
#define VXGRID_GRID_PDB_STRUCT_H

namespace VXCore {

/// One atom: 36 bytes, of which most routines read the coordinates alone.
struct PdbStruct {
  float x = 0;  ///< Angstrom
  float y = 0;
  float z = 0;
  char label[20] = {};  ///< as in a PDB line; the atom name starts at byte 14 of the record
  int type = 0;         ///< code of the atom, filled by vx_make_docking_grid
};
static_assert(sizeof(PdbStruct) == 36, "arrays of the record are read as packed words");

}  // namespace VXCore

#endif
