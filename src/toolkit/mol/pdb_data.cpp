// The records of a PDB file and the items of an mmCIF file that a molecule keeps.
#include "vxgrid/toolkit/mol/pdb_data.h"

#include <array>  // for array
#include <cmath>  // for isfinite

#include "vxgrid/toolkit/core/text.h"
#include "vxgrid/toolkit/mol/conformers.h"
#include "vxgrid/toolkit/mol/molecule.h"

namespace VXMol {
namespace {

const std::string* find_value(const std::vector<VXPDBDataPair>& pairs, const std::string& tag) {
  for (const VXPDBDataPair& pair : pairs) {
    if (pair.GetTag() == tag) return &pair.GetValue();
  }
  return nullptr;
}

std::string value_or_empty(const std::vector<VXPDBDataPair>& pairs, const std::string& tag) {
  const std::string* value = find_value(pairs, tag);
  return value ? *value : std::string();
}

// A CIF number may carry its standard uncertainty in brackets: 10.234(5).
bool parse_cif_number(const std::string& text, double& number) {
  return VXCore::VXStringToNumber(text.substr(0, text.find('(')), number) && std::isfinite(number);
}

}  // namespace

const std::vector<VXPDBDataPair>& VXGetPDBDataPairs(const VXMolBase& mol) {
  static const std::vector<VXPDBDataPair> none;
  const VXConfBase* conformer = mol.GetActive();
  return conformer ? conformer->GetPDBDataPairs() : none;
}

const std::vector<VXPDBDataPair>& VXGetPDBDataPairs(const VXConfBase& conformer) {
  return conformer.GetPDBDataPairs();
}

std::string VXGetPDBData(const VXMolBase& mol, const std::string& tag) {
  return value_or_empty(VXGetPDBDataPairs(mol), tag);
}

std::string VXGetPDBData(const VXConfBase& conformer, const std::string& tag) {
  return value_or_empty(conformer.GetPDBDataPairs(), tag);
}

bool VXSetPDBData(VXMolBase& mol, const std::string& tag, const std::string& text) {
  return !tag.empty() && mol.active_or_new().SetPDBData(tag, text);
}

bool VXSetPDBData(VXConfBase& conformer, const std::string& tag, const std::string& text) {
  return conformer.SetPDBData(tag, text);
}

bool VXAddPDBData(VXMolBase& mol, const std::string& tag, const std::string& text) {
  return !tag.empty() && mol.active_or_new().AddPDBData(tag, text);
}

bool VXAddPDBData(VXConfBase& conformer, const std::string& tag, const std::string& text) {
  return conformer.AddPDBData(tag, text);
}

bool VXHasMMCIFData(const VXMolBase& mol) {
  return !mol.GetMMCIFDataPairs().empty();
}

std::string VXGetMMCIFData(const VXMolBase& mol, const std::string& item) {
  return value_or_empty(mol.GetMMCIFDataPairs(), item);
}

bool VXSetMMCIFData(VXMolBase& mol, const std::string& item, const std::string& value) {
  return mol.SetMMCIFData(item, value);
}

bool VXGetResolutionCIF(double& resolution, const VXMolBase& mol) {
  for (const char* item :
       {"_refine.ls_d_res_high", "_em_3d_reconstruction.resolution", "_reflns.d_resolution_high"}) {
    double value = 0;
    if (parse_cif_number(VXGetMMCIFData(mol, item), value) && value > 0) {
      resolution = value;
      return true;
    }
  }
  return false;
}

bool VXParseSymmetryCif(const VXMolBase& mol, float* cell, std::string& name) {
  constexpr std::array<const char*, 6> items = {"_cell.length_a",   "_cell.length_b",
                                                "_cell.length_c",   "_cell.angle_alpha",
                                                "_cell.angle_beta", "_cell.angle_gamma"};
  std::array<float, 6> parameters{};
  for (std::size_t i = 0; i < items.size(); ++i) {
    double value = 0;
    if (!parse_cif_number(VXGetMMCIFData(mol, items[i]), value)) return false;
    parameters[i] = static_cast<float>(value);
  }
  for (std::size_t i = 0; i < parameters.size(); ++i)
    cell[i] = parameters[i];
  name = VXGetMMCIFData(mol, "_symmetry.space_group_name_H-M");
  return true;
}

}  // namespace VXMol
