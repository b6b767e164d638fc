// Reading of the mmCIF format, parsed by gemmi.
#include <array>  // for array
#include <cmath>  // for isfinite, isnan
#include <gemmi/cif.hpp>
#include <gemmi/elem.hpp>
#include <gemmi/numb.hpp>

#include "toolkit/mol/molecule_text.h"
#include "vxgrid/toolkit/core/text.h"
#include "vxgrid/toolkit/mol/pdb_data.h"

namespace VXMol::detail {
namespace {

namespace cif = gemmi::cif;

// Columns of the _atom_site loop in the order in which they are asked for below.
enum Column : std::size_t {
  type_symbol,
  cartn_x,
  cartn_y,
  cartn_z,
  group,
  auth_atom,
  label_atom,
  alternate,
  auth_residue,
  label_residue,
  auth_chain,
  label_chain,
  auth_number,
  label_number,
  insert_code,
  occupancy,
  b_factor,
  charge,
  model,
};

const std::vector<std::string>& atom_site_columns() {
  static const std::vector<std::string> columns = {"type_symbol",
                                                   "Cartn_x",
                                                   "Cartn_y",
                                                   "Cartn_z",
                                                   "?group_PDB",
                                                   "?auth_atom_id",
                                                   "?label_atom_id",
                                                   "?label_alt_id",
                                                   "?auth_comp_id",
                                                   "?label_comp_id",
                                                   "?auth_asym_id",
                                                   "?label_asym_id",
                                                   "?auth_seq_id",
                                                   "?label_seq_id",
                                                   "?pdbx_PDB_ins_code",
                                                   "?occupancy",
                                                   "?B_iso_or_equiv",
                                                   "?pdbx_formal_charge",
                                                   "?pdbx_PDB_model_num"};
  return columns;
}

// The items of the file that the molecule keeps.
constexpr std::array<const char*, 14> kept_cif_items = {
    "_entry.id",
    "_struct.title",
    "_exptl.method",
    "_cell.length_a",
    "_cell.length_b",
    "_cell.length_c",
    "_cell.angle_alpha",
    "_cell.angle_beta",
    "_cell.angle_gamma",
    "_cell.Z_PDB",
    "_symmetry.space_group_name_H-M",
    "_refine.ls_d_res_high",
    "_em_3d_reconstruction.resolution",
    "_reflns.d_resolution_high",
};

std::string text_of(const cif::Table::Row& row, std::size_t column) {
  return row.has2(column) ? cif::as_string(row[column]) : std::string();
}

// The depositor's name for a thing, or the archive's where there is none.
std::string text_of(const cif::Table::Row& row, std::size_t auth_column, std::size_t label_column) {
  std::string text = text_of(row, auth_column);
  return text.empty() ? text_of(row, label_column) : text;
}

char character_of(const cif::Table::Row& row, std::size_t column) {
  const std::string text = text_of(row, column);
  return text.empty() ? ' ' : text.front();
}

float number_of(const cif::Table::Row& row, std::size_t column, float missing) {
  if (!row.has2(column)) return missing;
  const auto number = static_cast<float>(cif::as_number(row[column]));
  return std::isfinite(number) ? number : missing;
}

int integer_of(const std::string& text) {
  int number = 0;
  VXCore::VXStringToNumber(text, number);
  return number;
}

std::array<float, 3> position_of(const cif::Table::Row& row, std::size_t row_number) {
  std::array<float, 3> xyz{};
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const std::string& text = row[cartn_x + axis];
    const auto number = static_cast<float>(cif::as_number(text));
    if (!std::isfinite(number)) {
      throw MoleculeFileError(VXCore::format_text("atom %zu has \"%s\" for a coordinate",
                                                  row_number, text.substr(0, 20).c_str()));
    }
    xyz[axis] = number;
  }
  return xyz;
}

VXResidue residue_of(const cif::Table::Row& row) {
  VXResidue residue;
  residue.SetName(text_of(row, auth_residue, label_residue));
  residue.SetChainID(text_of(row, auth_chain, label_chain));
  std::string number = text_of(row, auth_number, label_number);
  residue.SetInsertCode(character_of(row, insert_code));
  // Old files write the insertion code into the number: 15A.
  if (number.size() > 1 && number.back() >= 'A') {
    residue.SetInsertCode(number.back());
    number.pop_back();
  }
  residue.SetResidueNumber(integer_of(number));
  residue.SetHetAtom(text_of(row, group) == "HETATM");
  residue.SetAlternateLocation(character_of(row, alternate));
  residue.SetOccupancy(number_of(row, occupancy, 1));
  residue.SetBFactor(number_of(row, b_factor, 0));
  return residue;
}

void read_atoms(cif::Table& table, VXMolBase& mol) {
  AtomCollector atoms(mol);
  std::string first_model;
  std::size_t row_number = 0;
  for (const cif::Table::Row row : table) {
    const std::string row_model = text_of(row, model);
    if (++row_number == 1) first_model = row_model;
    if (row_model != first_model) continue;
    const gemmi::Element element(text_of(row, type_symbol));
    atoms.add(static_cast<unsigned int>(element.atomic_number()),
              text_of(row, auth_atom, label_atom), integer_of(text_of(row, charge)),
              position_of(row, row_number), residue_of(row));
  }
  atoms.finish();
}

// The first value of an item that is not unknown or inapplicable.
std::string first_value(cif::Block& block, const std::string& item) {
  for (const std::string& value : block.find_values(item)) {
    if (!cif::is_null(value)) return cif::as_string(value);
  }
  return {};
}

void keep_items(cif::Block& block, VXMolBase& mol) {
  for (const std::string item : kept_cif_items) {
    const std::string value = first_value(block, item);
    if (!value.empty()) mol.SetMMCIFData(item, value);
  }
  if (VXGetMMCIFData(mol, "_entry.id").empty()) mol.SetMMCIFData("_entry.id", block.name);
  // Newer dictionaries have moved the name to another category.
  const std::string group_name = first_value(block, "_space_group.name_H-M_alt");
  if (!group_name.empty() && VXGetMMCIFData(mol, "_symmetry.space_group_name_H-M").empty()) {
    mol.SetMMCIFData("_symmetry.space_group_name_H-M", group_name);
  }
}

}  // namespace

bool looks_like_cif(std::string_view text) {
  for (;;) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) return false;
    text.remove_prefix(first);
    if (text.front() != '#') break;
    const auto line_end = text.find('\n');
    if (line_end == std::string_view::npos) return false;
    text.remove_prefix(line_end);
  }
  constexpr std::string_view heading = "data_";
  if (text.size() < heading.size()) return false;
  for (std::size_t i = 0; i < heading.size(); ++i) {
    const char c = text[i];
    if ((c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c) != heading[i]) return false;
  }
  return true;
}

void read_mmcif_text(std::string_view text, VXMolBase& mol) {
  cif::Document document = cif::read_memory(text.data(), text.size(), "mmCIF");
  for (cif::Block& block : document.blocks) {
    cif::Table table = block.find("_atom_site.", atom_site_columns());
    if (table.length() == 0) continue;
    keep_items(block, mol);
    read_atoms(table, mol);
    mol.SetTitle(VXGetMMCIFData(mol, "_entry.id"));
    return;
  }
  throw MoleculeFileError("there are no atoms");
}

}  // namespace VXMol::detail
