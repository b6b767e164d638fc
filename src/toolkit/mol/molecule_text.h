// The text of molecule files: readers and writers of the two formats, and what they share.
#ifndef VXGRID_TOOLKIT_MOL_MOLECULE_TEXT_H
#define VXGRID_TOOLKIT_MOL_MOLECULE_TEXT_H

#include <array>        // for array
#include <stdexcept>    // for runtime_error
#include <string>       // for string
#include <string_view>  // for string_view
#include <vector>       // for vector

#include "vxgrid/toolkit/mol/molecule.h"
#include "vxgrid/toolkit/mol/residue.h"

namespace VXMol::detail {

/// What is wrong with a molecule file; never leaves the toolkit.
class MoleculeFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Gathers the atoms of a file and gives their coordinates to the molecule in one go.
class AtomCollector {
 public:
  explicit AtomCollector(VXMolBase& mol) : mol_(mol) {}

  void add(unsigned int atomic_number, std::string name, int charge,
           const std::array<float, 3>& xyz, const VXResidue& residue);
  /// Hands over the coordinates; the molecule is complete then.
  void finish();

 private:
  VXMolBase& mol_;
  std::vector<float> coords_;
};

/// Fills an empty molecule from the first model of a PDB file. Throws MoleculeFileError.
void read_pdb_text(std::string_view text, VXMolBase& mol);
/// The PDB file of a molecule. Throws MoleculeFileError if a value does not fit its columns.
std::string write_pdb_text(const VXMolBase& mol);

/// True if a text starts as a CIF file does, with a data block after blanks and comments.
bool looks_like_cif(std::string_view text);
/// Fills an empty molecule from the first model of an mmCIF file. Throws MoleculeFileError, or what
/// the CIF parser throws (std::exception).
void read_mmcif_text(std::string_view text, VXMolBase& mol);
std::string write_mmcif_text(const VXMolBase& mol);

/// The residue data under which an atom is written: its own, or those of an unknown ligand.
VXResidue residue_to_write(const VXAtomBase& atom);

}  // namespace VXMol::detail

#endif
