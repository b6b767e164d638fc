// Writing of the PDB and mmCIF formats.
#include <array>    // for array
#include <cmath>    // for isfinite
#include <cstdlib>  // for abs
#include <gemmi/cifdoc.hpp>

#include "toolkit/mol/molecule_text.h"
#include "vxgrid/toolkit/core/text.h"
#include "vxgrid/toolkit/mol/elements.h"
#include "vxgrid/toolkit/mol/pdb_data.h"

namespace VXMol::detail {
namespace {

using VXCore::format_text;

// Numbers that outgrow their columns go on in base 36: A000 follows 9999 (hybrid-36,
// http://cci.lbl.gov/hybrid_36/).
std::string hybrid36(int number, int width) {
  int decimal_end = 1;
  int letters_begin = 10;
  for (int i = 0; i < width; ++i)
    decimal_end *= 10;
  for (int i = 1; i < width; ++i)
    letters_begin *= 36;
  if (number < decimal_end) return format_text("%*d", width, number);
  long long value = static_cast<long long>(number) - decimal_end + letters_begin;
  std::string digits;
  for (; value != 0; value /= 36) {
    digits.insert(digits.begin(), "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"[value % 36]);
  }
  return digits;
}

std::string upper(std::string text) {
  for (char& c : text) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

// A name of less than four characters starts in the second column, unless its element has a symbol
// of two letters.
std::string pad_atom_name(const std::string& name, const std::string& symbol) {
  return name.size() < 4 && symbol.size() < 2 ? " " + name : name;
}

std::string charge_text(int charge) {
  if (charge == 0 || charge < -9 || charge > 9) return {};
  return format_text("%d%c", std::abs(charge), charge > 0 ? '+' : '-');
}

// One field of a record, refused if it is wider than its columns or breaks the line.
class RecordBuilder {
 public:
  void add(const std::string& text, int width) {
    const auto columns = static_cast<std::size_t>(std::abs(width));
    if (text.size() > columns || text.find_first_of("\r\n") != std::string::npos) {
      throw MoleculeFileError("\"" + text + "\" does not fit the columns of a PDB file");
    }
    const std::string blanks(columns - text.size(), ' ');
    record_ += width < 0 ? text + blanks : blanks + text;
  }
  void add(float number, int width, int digits) {
    const std::string text = format_text("%.*f", digits, static_cast<double>(number));
    if (!std::isfinite(number))
      throw MoleculeFileError("\"" + text + "\" is not a number to write");
    add(text, width);
  }
  void skip(std::size_t columns) { record_.append(columns, ' '); }
  std::string finish() { return record_ + '\n'; }

 private:
  std::string record_;
};

std::string atom_record(const VXAtomBase& atom, const std::array<float, 3>& xyz, int serial) {
  const VXResidue residue = residue_to_write(atom);
  const std::string symbol = upper(VXGetAtomicSymbol(atom.GetAtomicNum()));
  const std::string name = atom.GetName().empty() ? symbol : atom.GetName();
  RecordBuilder record;
  record.add(residue.GetHetAtom() ? "HETATM" : "ATOM", -6);
  record.add(hybrid36(serial, 5), 5);
  record.skip(1);
  record.add(pad_atom_name(name, symbol), -4);
  record.add(std::string(1, residue.GetAlternateLocation()), 1);
  record.add(residue.GetName(), 3);
  record.add(residue.GetChainID(), 2);
  record.add(hybrid36(residue.GetResidueNumber(), 4), 4);
  record.add(std::string(1, residue.GetInsertCode()), 1);
  record.skip(3);
  for (const float x : xyz)
    record.add(x, 8, 3);
  record.add(residue.GetOccupancy(), 6, 2);
  record.add(residue.GetBFactor(), 6, 2);
  record.skip(10);
  record.add(symbol, 2);
  record.add(charge_text(atom.GetFormalCharge()), 2);
  return record.finish();
}

// The cell and the resolution of a molecule that came from an mmCIF file, as PDB records.
std::string records_from_mmcif(const VXMolBase& mol) {
  std::string records;
  double resolution = 0;
  if (VXGetResolutionCIF(resolution, mol)) {
    records += format_text("REMARK   2 RESOLUTION. %7.2f ANGSTROMS.\n", resolution);
  }
  std::array<float, 6> cell{};
  std::string name;
  if (VXParseSymmetryCif(mol, cell.data(), name)) {
    RecordBuilder record;
    record.add("CRYST1", 6);
    for (std::size_t i = 0; i < 6; ++i)
      record.add(cell[i], i < 3 ? 9 : 7, i < 3 ? 3 : 2);
    record.skip(1);
    record.add(name.substr(0, 11), -11);
    record.add(VXGetMMCIFData(mol, "_cell.Z_PDB"), 4);
    records += record.finish();
  }
  return records;
}

// The items of a molecule that came from a PDB file: its CRYST1 record has a, b, c in 9 columns
// each, the angles in 7, and the group's name in columns 56 to 66.
std::vector<VXPDBDataPair> items_from_pdb(const VXMolBase& mol) {
  const std::string record = VXGetPDBData(mol, "CRYST1");
  std::vector<VXPDBDataPair> items;
  if (record.size() < 48) return items;
  constexpr std::array<const char*, 6> names = {"_cell.length_a",   "_cell.length_b",
                                                "_cell.length_c",   "_cell.angle_alpha",
                                                "_cell.angle_beta", "_cell.angle_gamma"};
  std::size_t column = 0;
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::size_t width = i < 3 ? 9 : 7;
    float number = 0;
    if (!VXCore::VXStringToNumber(record.substr(column, width), number)) return {};
    items.emplace_back(names[i], format_text("%g", static_cast<double>(number)));
    column += width;
  }
  if (record.size() > 49) {
    std::string name = record.substr(49, 11);
    name.erase(name.find_last_not_of(' ') + 1);
    if (!name.empty()) items.emplace_back("_symmetry.space_group_name_H-M", name);
  }
  return items;
}

std::string quote_or_null(const std::string& text) {
  return text.empty() ? "?" : gemmi::cif::quote(text);
}

std::string quote_or_null(char c) {
  return c == ' ' ? "." : gemmi::cif::quote(std::string(1, c));
}

std::string atom_row(const VXAtomBase& atom, const std::array<float, 3>& xyz, int serial) {
  const VXResidue residue = residue_to_write(atom);
  const std::string symbol = VXGetAtomicSymbol(atom.GetAtomicNum());
  const std::string name = atom.GetName().empty() ? symbol : atom.GetName();
  const char insert_code = residue.GetInsertCode();
  std::string row = residue.GetHetAtom() ? "HETATM" : "ATOM";
  row += format_text(" %d ", serial);
  row += symbol + ' ' + quote_or_null(name) + ' ';
  row += quote_or_null(residue.GetAlternateLocation()) + ' ';
  row += quote_or_null(residue.GetName()) + ' ' + quote_or_null(residue.GetChainID()) + ' ';
  row += format_text("%d ", residue.GetResidueNumber());
  row += insert_code == ' ' ? "?" : quote_or_null(insert_code);
  for (const float x : xyz)
    row += format_text(" %.3f", static_cast<double>(x));
  row += format_text(" %.2f %.2f", static_cast<double>(residue.GetOccupancy()),
                     static_cast<double>(residue.GetBFactor()));
  row += atom.GetFormalCharge() == 0 ? " ?" : format_text(" %d", atom.GetFormalCharge());
  return row + " 1\n";
}

}  // namespace

std::string write_pdb_text(const VXMolBase& mol) {
  std::string text;
  for (const VXPDBDataPair& pair : VXGetPDBDataPairs(mol)) {
    text += format_text("%-6s", pair.GetTag().c_str()) + pair.GetValue() + '\n';
  }
  if (VXGetPDBData(mol, "CRYST1").empty()) text += records_from_mmcif(mol);
  int serial = 0;
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    std::array<float, 3> xyz{};
    mol.GetCoords(atom, xyz.data());
    text += atom_record(*atom, xyz, ++serial);
  }
  return text + "END\n";
}

std::string write_mmcif_text(const VXMolBase& mol) {
  std::string id = mol.GetTitle().empty() ? "molecule" : mol.GetTitle();
  for (char& c : id) {
    if (c <= ' ' || c > '~') c = '_';
  }
  std::string text = "data_" + id + '\n';
  const std::vector<VXPDBDataPair> items =
      VXHasMMCIFData(mol) ? mol.GetMMCIFDataPairs() : items_from_pdb(mol);
  for (const VXPDBDataPair& item : items) {
    text += item.GetTag() + ' ' + gemmi::cif::quote(item.GetValue()) + '\n';
  }
  text += "loop_\n";
  for (const char* column :
       {"group_PDB", "id", "type_symbol", "label_atom_id", "label_alt_id", "auth_comp_id",
        "auth_asym_id", "auth_seq_id", "pdbx_PDB_ins_code", "Cartn_x", "Cartn_y", "Cartn_z",
        "occupancy", "B_iso_or_equiv", "pdbx_formal_charge", "pdbx_PDB_model_num"}) {
    text += std::string("_atom_site.") + column + '\n';
  }
  int serial = 0;
  for (const VXAtomBase* atom : mol.GetAtoms()) {
    std::array<float, 3> xyz{};
    mol.GetCoords(atom, xyz.data());
    text += atom_row(*atom, xyz, ++serial);
  }
  return text;
}

}  // namespace VXMol::detail
