// Any bytes as a molecule file, PDB or mmCIF by their looks, and what a caller does with it.
#include <cstddef>  // for size_t
#include <cstdint>  // for uint8_t
#include <string>   // for string

#include "vxgrid/crystal/molecule_symmetry.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/mol/formal_charges.h"
#include "vxgrid/toolkit/mol/hydrogens.h"
#include "vxgrid/toolkit/mol/molecule.h"
#include "vxgrid/toolkit/mol/molecule_file.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  VXCore::VXThrow.SetSink([](VXCore::VXErrorLevel, const std::string&) {});
  const std::string text(reinterpret_cast<const char*>(data), size);
  VXMol::VXGraphMol mol;
  if (!VXMol::VXReadMoleculeText(text, mol)) return 0;
  VXCore::VXXtal::VXSetXtalSymmetryFromPDBData(mol);
  VXMol::VXGetResiduesImpl(mol);
  VXMol::VXAssignFormalCharges(mol);
  VXMol::VXSuppressHydrogens(mol, false, false, true);
  mol.Sweep();
  VXMol::VXWriteMolecule("/dev/null", mol);
  return 0;
}
