// The crystal symmetry that a molecule carries: as tagged data, and as a CRYST1 record.
#include "vxgrid/crystal/molecule_symmetry.h"

#include <algorithm>     // for copy, fill_n, min
#include <array>         // for array
#include <charconv>      // for from_chars
#include <string_view>   // for string_view
#include <system_error>  // for errc
#include <vector>        // for vector

#include "crystal/symmetry_tags.h"

namespace VXCore {
namespace {

using VXXtal::VXSymmetry;
using VXXtal::VXUnitCell;

// Where a CRYST1 record without its first six columns has the group's name and Z.
constexpr std::size_t name_column = 49;
constexpr std::size_t name_length = 10;
constexpr std::size_t z_column = 60;
constexpr std::size_t z_length = 4;

bool is_space(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

void skip_spaces(std::string_view& text) {
  while (!text.empty() && is_space(text.front()))
    text.remove_prefix(1);
}

// Takes one number as scanf's %f does, in the C locale: a number ends where no digit can follow, so
// that fields without a blank between them run together.
bool take_float(std::string_view& text, float& value) {
  skip_spaces(text);
  if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc()) return false;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

// Takes one number of at most so many characters as scanf's %u does; a sign is allowed.
bool take_unsigned(std::string_view text, std::size_t length, unsigned int& value) {
  skip_spaces(text);
  text = text.substr(0, length);
  const bool negative = !text.empty() && text.front() == '-';
  if (negative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
  unsigned int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc()) return false;
  value = negative ? 0U - number : number;
  return true;
}

}  // namespace

namespace detail {

const SymmetryTags& symmetry_tags() {
  static const SymmetryTags tags = {
      VXGetTag(VXXtal::unit_cell_tag), VXGetTag(VXXtal::spacegroup_tag),
      VXGetTag(VXXtal::spacegroup_name_tag), VXGetTag(VXXtal::symm_enabled_tag),
      VXGetTag(VXXtal::symm_com_tag)};
  return tags;
}

bool write_symmetry(VXMolBase& mol, const VXSymmetry& symmetry) {
  const VXUnitCell& cell = symmetry.cell();
  const std::array<float, 6> parameters = {cell.a,     cell.b,    cell.c,
                                           cell.alpha, cell.beta, cell.gamma};
  std::vector<bool> enabled;
  symmetry.GetEnabled(enabled);
  if (enabled.size() != symmetry.GetOpCount()) enabled.assign(symmetry.GetOpCount(), true);

  const SymmetryTags& tags = symmetry_tags();
  const bool stored = store_datum(mol, tags.unit_cell, parameters) &&
                      store_datum(mol, tags.spacegroup, symmetry.GetNumber()) &&
                      store_datum(mol, tags.spacegroup_name, symmetry.GetName()) &&
                      store_datum(mol, tags.symm_enabled, enabled);
  if (!stored) return false;
  if (mol.IsDataType(type_ids::graph_mol) || mol.IsDataType(type_ids::mc_mol_base)) {
    VXXtal::VXSetPDBDataFromXtalSymmetry(mol);
  }
  return true;
}

}  // namespace detail

namespace VXXtal {

bool VXHasXtalSymmetry(const VXBase& object) {
  const detail::SymmetryTags& tags = detail::symmetry_tags();
  return object.HasData(tags.unit_cell) && object.HasData(tags.symm_enabled) &&
         (object.HasData(tags.spacegroup) || object.HasData(tags.spacegroup_name));
}

bool VXGetXtalSymmetry(const VXBase& object, VXSymmetry& out) {
  if (!VXHasXtalSymmetry(object)) return false;
  const detail::SymmetryTags& tags = detail::symmetry_tags();
  std::array<float, 6> parameters{};
  if (!object.GetData(tags.unit_cell, parameters)) return false;
  const VXUnitCell cell(parameters.data());
  if (object.HasData(tags.spacegroup_name)) {
    out = VXSymmetry(object.GetStringData(tags.spacegroup_name), cell);
  } else {
    unsigned int number = 0;
    object.GetData(tags.spacegroup, number);
    out = VXSymmetry(number, cell);
  }
  if (out.GetNumber() == 0) return false;
  std::vector<bool> enabled;
  object.GetData(tags.symm_enabled, enabled);
  out.SetEnabled(enabled);
  return true;
}

bool VXExtractCRYST1(const VXMolBase& mol, float* cell, std::string& name, unsigned int& z) {
  z = 0;
  name.clear();
  std::fill_n(cell, 6, 0.0F);
  if (VXHasMMCIFData(mol)) return VXParseSymmetryCif(mol, cell, name);

  const std::string record = VXGetPDBData(mol, "CRYST1");
  std::string_view rest = record;
  for (int i = 0; i < 6; ++i) {
    if (!take_float(rest, cell[i])) return false;
  }
  if (record.size() >= name_column) name = record.substr(name_column, name_length);
  if (record.size() > z_column) {
    take_unsigned(std::string_view(record).substr(z_column), z_length, z);
  }
  return true;
}

bool VXSetPDBDataFromXtalSymmetry(VXMolBase& mol) {
  VXSymmetry symmetry;
  if (!VXGetXtalSymmetry(mol, symmetry)) return false;
  std::array<float, 6> old_cell{};
  std::string old_name;
  unsigned int z = 0;
  VXExtractCRYST1(mol, old_cell.data(), old_name, z);

  const VXUnitCell& cell = symmetry.cell();
  const std::string record =
      format_text("%9.3f%9.3f%9.3f%7.2f%7.2f%7.2f %-11.11s%4d", static_cast<double>(cell.a),
                  static_cast<double>(cell.b), static_cast<double>(cell.c),
                  static_cast<double>(cell.alpha), static_cast<double>(cell.beta),
                  static_cast<double>(cell.gamma), symmetry.GetName().c_str(), static_cast<int>(z));
  if (!mol.IsDataType(type_ids::mc_mol_base)) return VXSetPDBData(mol, "CRYST1", record);
  VXConfBase* first = mol.GetActive();
  return first && VXSetPDBData(*first, "CRYST1", record);
}

bool VXSetXtalSymmetryFromPDBData(VXMolBase& mol) {
  std::array<float, 6> cell{};
  std::string name;
  unsigned int z = 0;
  if (!VXExtractCRYST1(mol, cell.data(), name, z)) return false;
  const VXSymmetry symmetry(name, VXUnitCell(cell.data()));
  return symmetry.GetNumber() > 0 && detail::write_symmetry(mol, symmetry);
}

}  // namespace VXXtal

bool VXHasCrystalSymmetryImpl(const VXMolBase& mol) {
  if (VXXtal::VXHasXtalSymmetry(mol)) return true;
  std::array<float, 6> cell{};
  std::string name;
  unsigned int z = 0;
  if (!VXXtal::VXExtractCRYST1(mol, cell.data(), name, z)) return false;
  constexpr std::array<float, 6> dummy = {1, 1, 1, 90, 90, 90};
  return cell != dummy;
}

}  // namespace VXCore
