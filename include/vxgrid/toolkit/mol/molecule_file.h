/// \file
/// Reading and writing of molecule files.
#ifndef VXGRID_TOOLKIT_MOL_MOLECULE_FILE_H
#define VXGRID_TOOLKIT_MOL_MOLECULE_FILE_H

#include <string>  // for string

#include "vxgrid/toolkit/core/export.h"

namespace VXMol {

class VXMolBase;

/// Reads the first model of a PDB or mmCIF file into `mol`, which is emptied first. The format is
/// told from the content, as is gzip compression.
///
/// Every atom gets its element, name, formal charge, coordinates in Angstrom and residue data with
/// B-factor and occupancy; all alternate locations are read. Of a PDB file the CRYST1, REMARK,
/// HEADER, TITLE, EXPDTA, SCALE and ORIGX records are kept word for word (VXGetPDBDataPairs), of an
/// mmCIF file cell, space-group name, resolution, entry, title and method (VXGetMMCIFData). The
/// title is the entry's identifier, or the file's name where it has none. Bonds, all of order 1,
/// join atoms whose distance is above 0.4 Angstrom and at most the sum of their covalent radii plus
/// 0.45, unless both are hydrogens, both are metals, or they belong to different alternate
/// locations; a hydrogen is bonded to its nearest partner only.
///
/// False, with an empty molecule and a Warning that says what was wrong, for a file that cannot be
/// opened, is damaged or holds no atom.
VXGRID_API bool VXReadMolecule(const std::string& filename, VXMolBase& mol);

/// The same for the text of such a file (not compressed). `name` stands for the file in messages
/// and gives the title where the text has none.
VXGRID_API bool VXReadMoleculeText(const std::string& text, VXMolBase& mol,
                                   const std::string& name = "molecule");

/// Writes the molecule's first conformer, as mmCIF if the extension is "cif" or "mmcif" and as PDB
/// otherwise, compressed if the name ends in ".gz". PDB files carry the molecule's PDB records word
/// for word before the atoms; mmCIF files carry its mmCIF items, or the cell and space group of its
/// CRYST1 record. Atoms without residue data are written as residue "UNL" 1 of chain "A" with
/// occupancy 1.
///
/// False, with a Warning, if the file cannot be written, or a value does not fit the columns of a
/// PDB file.
VXGRID_API bool VXWriteMolecule(const std::string& filename, const VXMolBase& mol);

}  // namespace VXMol

#endif
