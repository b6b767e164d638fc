// Reading of the PDB format: records by columns, those of atoms through gemmi.
#include <algorithm>  // for find, min
#include <array>      // for array
#include <cmath>      // for isfinite
#include <gemmi/pdb.hpp>
#include <utility>  // for swap

#include "toolkit/mol/molecule_text.h"
#include "vxgrid/toolkit/core/text.h"
#include "vxgrid/toolkit/mol/pdb_data.h"

namespace VXMol::detail {
namespace {

using VXCore::format_text;
using VXCore::VXStringToNumber;

constexpr std::size_t record_length = 80;
constexpr std::size_t tag_length = 6;
// x, y and z end here; all that follows may be missing.
constexpr std::size_t shortest_atom_record = 54;

std::string_view trim(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::string record_tag(std::string_view line) {
  std::string tag(trim(line.substr(0, tag_length)));
  for (char& c : tag) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return tag;
}

bool is_kept_record(const std::string& tag) {
  constexpr std::array<std::string_view, 11> kept = {"CRYST1", "REMARK", "HEADER", "TITLE",
                                                     "EXPDTA", "ORIGX1", "ORIGX2", "ORIGX3",
                                                     "SCALE1", "SCALE2", "SCALE3"};
  return std::find(kept.begin(), kept.end(), tag) != kept.end();
}

bool is_finite_number(std::string_view field) {
  float parsed = 0;
  return VXStringToNumber(field, parsed) && std::isfinite(parsed);
}

// "2+" is the standard, "+2" is met as well; gemmi refuses a file over anything else.
bool is_charge(char digit, char sign) {
  if (sign >= '0' && sign <= '9') std::swap(digit, sign);
  return digit >= '0' && digit <= '9' && (sign == '+' || sign == '-' || sign == ' ');
}

void put_field(std::string& record, std::size_t column, std::string_view text) {
  record.replace(column, text.size(), text);
}

// An atom record as gemmi takes it without complaint and without a guess: 80 columns of printable
// characters, with an occupancy of 1 and a B-factor of 0 where the file gives none.
std::string clean_atom_record(std::string_view line, std::size_t line_number) {
  if (line.size() < shortest_atom_record) {
    throw MoleculeFileError(format_text("line %zu is too short for an atom", line_number));
  }
  for (std::size_t column = 30; column < shortest_atom_record; column += 8) {
    const std::string_view field = line.substr(column, 8);
    if (is_finite_number(field)) continue;
    throw MoleculeFileError(format_text("line %zu has \"%.*s\" for a coordinate", line_number,
                                        static_cast<int>(field.size()), field.data()));
  }
  std::string record(line.substr(0, record_length));
  record.resize(record_length, ' ');
  for (char& c : record) {
    if (c < ' ' || c > '~') c = ' ';
  }
  if (!is_finite_number(std::string_view(record).substr(54, 6))) put_field(record, 54, "  1.00");
  if (!is_finite_number(std::string_view(record).substr(60, 6))) put_field(record, 60, "  0.00");
  if (!is_charge(record[78], record[79])) put_field(record, 78, "  ");
  return record;
}

// Reads atom records run by run, a run being what stands together of one chain: gemmi's search
// among the chains and residues that it has met would take quadratic time in a file that keeps
// alternating them.
class AtomRecordReader {
 public:
  explicit AtomRecordReader(VXMolBase& mol) : atoms_(mol) {}

  void add(const std::string& record) {
    const std::string chain = record.substr(20, 2);
    if (chain != chain_) flush();
    chain_ = chain;
    run_ += record;
    run_ += '\n';
    found_ = true;
  }
  bool found_any() const { return found_; }
  void finish() {
    flush();
    atoms_.finish();
  }

 private:
  void flush() {
    if (run_.empty()) return;
    const gemmi::Structure structure =
        gemmi::read_pdb_from_memory(run_.data(), run_.size(), std::string());
    run_.clear();
    for (const gemmi::Chain& chain : structure.models.front().chains) {
      for (const gemmi::Residue& residue : chain.residues)
        take_residue(chain.name, residue);
    }
  }

  void take_residue(const std::string& chain, const gemmi::Residue& source) {
    VXResidue residue;
    residue.SetName(source.name);
    residue.SetChainID(chain);
    residue.SetResidueNumber(source.seqid.num.has_value() ? *source.seqid.num : 0);
    residue.SetInsertCode(source.seqid.icode);
    residue.SetHetAtom(source.het_flag == 'H');
    for (const gemmi::Atom& atom : source.atoms) {
      residue.SetAlternateLocation(atom.altloc == '\0' ? ' ' : atom.altloc);
      residue.SetOccupancy(atom.occ);
      residue.SetBFactor(atom.b_iso);
      atoms_.add(static_cast<unsigned int>(atom.element.atomic_number()), atom.name, atom.charge,
                 {static_cast<float>(atom.pos.x), static_cast<float>(atom.pos.y),
                  static_cast<float>(atom.pos.z)},
                 residue);
    }
  }

  AtomCollector atoms_;
  std::string chain_;
  std::string run_;
  bool found_ = false;
};

std::string_view take_line(std::string_view& text) {
  const auto length = text.find('\n');
  std::string_view line = text.substr(0, length);
  text.remove_prefix(length == std::string_view::npos ? text.size() : length + 1);
  if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
  return line;
}

// Columns 63 to 66 of HEADER.
std::string entry_id(const VXMolBase& mol) {
  const std::string header = VXGetPDBData(mol, "HEADER");
  return header.size() > 56 ? std::string(trim(std::string_view(header).substr(56, 4)))
                            : std::string();
}

}  // namespace

void read_pdb_text(std::string_view text, VXMolBase& mol) {
  AtomRecordReader atoms(mol);
  for (std::size_t line_number = 1; !text.empty(); ++line_number) {
    const std::string_view line = take_line(text);
    const std::string tag = record_tag(line);
    if (tag == "ATOM" || tag == "HETATM") {
      atoms.add(clean_atom_record(line, line_number));
    } else if (is_kept_record(tag)) {
      VXAddPDBData(mol, tag, std::string(line.substr(std::min(tag_length, line.size()))));
    } else if (tag == "END" || (atoms.found_any() && (tag == "MODEL" || tag == "ENDMDL"))) {
      break;
    }
  }
  if (!atoms.found_any()) throw MoleculeFileError("there are no atoms");
  atoms.finish();
  mol.SetTitle(entry_id(mol));
}

}  // namespace VXMol::detail
