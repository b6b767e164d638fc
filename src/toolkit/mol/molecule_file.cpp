// Molecule files by name: what they are, and how failures are reported.
#include "vxgrid/toolkit/mol/molecule_file.h"

#include <exception>  // for exception

#include "toolkit/mol/bonds.h"
#include "toolkit/mol/molecule_text.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/core/text.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXMol {
namespace {

// Far beyond the largest entry of the archives; text that goes on after this is refused.
constexpr std::size_t max_text = std::size_t{1} << 31;

bool fail(const char* function, const std::string& name, const std::string& reason) {
  VXCore::VXThrow.Warning(std::string(function) + ": " + name + ": " + reason);
  return false;
}

// "dir/5wkd.pdb.gz" gives "5wkd".
std::string stem(const std::string& filename) {
  const auto slash = filename.find_last_of('/');
  const std::string name = slash == std::string::npos ? filename : filename.substr(slash + 1);
  return name.substr(0, name.find('.', 1));
}

}  // namespace

namespace detail {

void AtomCollector::add(unsigned int atomic_number, std::string name, int charge,
                        const std::array<float, 3>& xyz, const VXResidue& residue) {
  VXAtomBase* atom = mol_.NewAtom(atomic_number);
  atom->SetName(std::move(name));
  atom->SetFormalCharge(charge);
  VXAtomSetResidue(atom, residue);
  coords_.insert(coords_.end(), xyz.begin(), xyz.end());
}

void AtomCollector::finish() {
  mol_.SetCoords(coords_.data());
}

VXResidue residue_to_write(const VXAtomBase& atom) {
  if (VXHasResidue(&atom)) return VXAtomGetResidue(&atom);
  VXResidue unknown;
  unknown.SetName("UNL");
  unknown.SetResidueNumber(1);
  unknown.SetChainID("A");
  unknown.SetOccupancy(1);
  unknown.SetHetAtom(true);
  return unknown;
}

}  // namespace detail

bool VXReadMoleculeText(const std::string& text, VXMolBase& mol, const std::string& name) {
  mol.Clear();
  try {
    if (detail::looks_like_cif(text)) {
      detail::read_mmcif_text(text, mol);
    } else {
      detail::read_pdb_text(text, mol);
    }
    detail::add_bonds_by_distance(mol);
  } catch (const std::exception& error) {
    mol.Clear();
    return fail("VXReadMolecule", name, error.what());
  }
  if (mol.GetTitle().empty()) mol.SetTitle(stem(name));
  return true;
}

bool VXReadMolecule(const std::string& filename, VXMolBase& mol) {
  mol.Clear();
  VXHost::vxifstream in(filename);
  if (!in.is_open()) return fail("VXReadMolecule", filename, "cannot be opened");
  std::string text;
  in.read(text, max_text);
  if (!in.eof()) return fail("VXReadMolecule", filename, "is too large");
  return VXReadMoleculeText(text, mol, filename);
}

bool VXWriteMolecule(const std::string& filename, const VXMolBase& mol) {
  const std::string extension = VXCore::VXFileExtension(filename);
  std::string text;
  try {
    text = extension == "cif" || extension == "mmcif" ? detail::write_mmcif_text(mol)
                                                      : detail::write_pdb_text(mol);
  } catch (const detail::MoleculeFileError& error) {
    return fail("VXWriteMolecule", filename, error.what());
  }
  VXHost::vxofstream out(filename);
  if (!out.is_open()) return fail("VXWriteMolecule", filename, "cannot be opened");
  out.write(text.data(), text.size());
  if (!out.close()) return fail("VXWriteMolecule", filename, "could not be written whole");
  return true;
}

}  // namespace VXMol
