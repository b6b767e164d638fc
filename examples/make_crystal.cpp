// Makes a small crystal to try things on: a ten-residue helix from ideal geometry in P 21 21 21,
// written as FOLDER/crystal.pdb, and its reflections with map coefficients as FOLDER/crystal.mtz.
//
// The "observed" amplitudes are the calculated ones with a few percent of repeatable noise, so that
// maps look like a refined structure's. Structure factors and the MTZ file are gemmi's work.

#include <algorithm>  // for min
#include <array>      // for array
#include <cmath>      // for sqrt, cos, sin
#include <complex>    // for complex
#include <cstdio>     // for fprintf, FILE
#include <memory>     // for unique_ptr
#include <random>     // for mt19937
#include <string>     // for string
#include <vector>     // for vector

#define GEMMI_WRITE_IMPLEMENTATION  // gemmi/mtz.hpp then holds the writer itself
#include <gemmi/it92.hpp>
#include <gemmi/model.hpp>
#include <gemmi/mtz.hpp>
#include <gemmi/reciproc.hpp>
#include <gemmi/sfcalc.hpp>
#include <gemmi/symmetry.hpp>

namespace {

using gemmi::Position;

constexpr double resolution = 1.8;
constexpr std::array<double, 3> cell_edges = {18.0, 20.0, 28.0};

struct BuiltAtom {
  std::string name;
  gemmi::El element;
  std::string residue;
  int number;
  Position position;
};

/// The point at `bond` from c, with the angle b-c-point and the torsion a-b-c-point in degrees
/// (Parsons et al., J. Comput. Chem. 26, 1063 (2005)).
Position place(const Position& a, const Position& b, const Position& c, double bond, double angle,
               double torsion) {
  const double theta = gemmi::rad(180.0 - angle), phi = gemmi::rad(torsion);
  const gemmi::Vec3 bc = gemmi::Vec3(c - b).normalized();
  const gemmi::Vec3 n = gemmi::Vec3(b - a).cross(bc).normalized();
  const gemmi::Vec3 m = n.cross(bc);
  const gemmi::Vec3 step = bc * (bond * std::cos(theta)) +
                           m * (bond * std::sin(theta) * std::cos(phi)) +
                           n * (bond * std::sin(theta) * std::sin(phi));
  return Position(gemmi::Vec3(c) + step);
}

/// One side-chain atom by internal coordinates; its reference atoms go by name.
struct SideAtom {
  const char *residue, *name, *a, *b, *c;
  gemmi::El element;
  double bond, angle, torsion;
};

// Bond lengths and angles after Engh & Huber, Acta Cryst. A47, 392 (1991); common rotamers.
constexpr SideAtom side_chains[] = {
    {"SER", "OG", "N", "CA", "CB", gemmi::El::O, 1.417, 111.1, -65.0},
    {"CYS", "SG", "N", "CA", "CB", gemmi::El::S, 1.808, 114.4, -65.0},
    {"THR", "OG1", "N", "CA", "CB", gemmi::El::O, 1.433, 109.6, -60.0},
    {"THR", "CG2", "N", "CA", "CB", gemmi::El::C, 1.521, 110.5, 179.0},
    {"VAL", "CG1", "N", "CA", "CB", gemmi::El::C, 1.521, 110.5, 175.0},
    {"VAL", "CG2", "N", "CA", "CB", gemmi::El::C, 1.521, 110.5, -62.0},
    {"LEU", "CG", "N", "CA", "CB", gemmi::El::C, 1.530, 116.3, -65.0},
    {"LEU", "CD1", "CA", "CB", "CG", gemmi::El::C, 1.521, 110.7, 174.0},
    {"LEU", "CD2", "CA", "CB", "CG", gemmi::El::C, 1.521, 110.7, -63.0},
};

std::vector<BuiltAtom> build_helix(const std::vector<std::string>& sequence) {
  constexpr double phi = -57.8, psi = -47.0, omega = 180.0;
  std::vector<BuiltAtom> atoms;
  Position n(0, 0, 0), ca(1.458, 0, 0), c = place(Position(0, 1, 0), n, ca, 1.525, 111.0, -60.0);
  for (std::size_t i = 0; i < sequence.size(); ++i) {
    const std::string& residue = sequence[i];
    const int number = static_cast<int>(i) + 1;
    const std::size_t first = atoms.size();
    const Position next_n = place(n, ca, c, 1.329, 117.2, psi);
    const Position next_ca = place(ca, c, next_n, 1.458, 121.7, omega);
    const Position next_c = place(c, next_n, next_ca, 1.525, 111.0, phi);
    atoms.push_back({"N", gemmi::El::N, residue, number, n});
    atoms.push_back({"CA", gemmi::El::C, residue, number, ca});
    atoms.push_back({"C", gemmi::El::C, residue, number, c});
    atoms.push_back({"O", gemmi::El::O, residue, number, place(n, ca, c, 1.231, 120.1, psi + 180)});
    if (residue != "GLY")
      atoms.push_back({"CB", gemmi::El::C, residue, number, place(c, n, ca, 1.530, 110.5, -122.6)});
    const auto at = [&](const std::string& name) {
      for (std::size_t k = first; k < atoms.size(); ++k)
        if (atoms[k].name == name) return atoms[k].position;
      return Position();
    };
    for (const SideAtom& side : side_chains)
      if (residue == side.residue)
        atoms.push_back(
            {side.name, side.element, residue, number,
             place(at(side.a), at(side.b), at(side.c), side.bond, side.angle, side.torsion)});
    n = next_n;
    ca = next_ca;
    c = next_c;
  }
  return atoms;
}

/// Smallest distance between the molecule, moved by `shift`, and its symmetry mates.
double closest_contact(const std::vector<BuiltAtom>& atoms, const Position& shift,
                       const gemmi::UnitCell& cell) {
  double closest_sq = 1e9;
  for (const BuiltAtom& mate : atoms) {
    const gemmi::Fractional place_of_mate = cell.fractionalize(mate.position + shift);
    for (const gemmi::FTransform& image : cell.images)
      for (const BuiltAtom& atom : atoms)
        closest_sq =
            std::min(closest_sq, cell.distance_sq(cell.fractionalize(atom.position + shift),
                                                  gemmi::Fractional(image.apply(place_of_mate))));
  }
  return std::sqrt(closest_sq);
}

/// Puts the molecule where it keeps farthest from its symmetry mates.
void settle_in_cell(std::vector<BuiltAtom>& atoms, const gemmi::UnitCell& cell) {
  Position centre;
  for (const BuiltAtom& atom : atoms)
    centre += atom.position / static_cast<double>(atoms.size());
  Position best_shift;
  double best = -1.0;
  constexpr int steps = 6;
  for (int i = 0; i < steps; ++i)
    for (int j = 0; j < steps; ++j)
      for (int k = 0; k < steps; ++k) {
        const gemmi::Fractional target(0.5 * i / steps, 0.5 * j / steps, 0.5 * k / steps);
        const Position shift = cell.orthogonalize(target) - centre;
        const double contact = closest_contact(atoms, shift, cell);
        if (contact > best) {
          best = contact;
          best_shift = shift;
        }
      }
  for (BuiltAtom& atom : atoms)
    atom.position += best_shift;
  std::printf("%zu atoms, closest contact with a symmetry mate %.2f A\n", atoms.size(), best);
}

gemmi::Model make_model(const std::vector<BuiltAtom>& atoms) {
  gemmi::Model model("1");
  gemmi::Chain chain("A");
  for (const BuiltAtom& built : atoms) {
    if (chain.residues.empty() || chain.residues.back().seqid.num.value != built.number) {
      gemmi::Residue residue;
      residue.name = built.residue;
      residue.seqid = gemmi::SeqId(built.number, ' ');
      chain.residues.push_back(residue);
    }
    gemmi::Atom atom;
    atom.name = built.name;
    atom.element = built.element;
    atom.pos = built.position;
    const bool backbone = built.name == "N" || built.name == "CA" || built.name == "C";
    atom.b_iso = backbone ? 12.0f : 16.0f;
    chain.residues.back().atoms.push_back(atom);
  }
  model.chains.push_back(chain);
  return model;
}

bool write_pdb(const std::string& path, const gemmi::Model& model, const gemmi::UnitCell& cell) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "w"),
                                                             std::fclose);
  if (!file) return false;
  std::fprintf(file.get(), "REMARK   2 RESOLUTION.    %.2f ANGSTROMS.\n", resolution);
  std::fprintf(file.get(), "CRYST1%9.3f%9.3f%9.3f%7.2f%7.2f%7.2f %-11s%4d\n", cell.a, cell.b,
               cell.c, cell.alpha, cell.beta, cell.gamma, "P 21 21 21", 4);
  int serial = 0;
  for (const gemmi::Residue& residue : model.chains[0].residues)
    for (const gemmi::Atom& atom : residue.atoms)
      std::fprintf(file.get(),
                   "ATOM  %5d  %-3s %3s A%4d    %8.3f%8.3f%8.3f%6.2f%6.2f          %2s\n", ++serial,
                   atom.name.c_str(), residue.name.c_str(), residue.seqid.num.value, atom.pos.x,
                   atom.pos.y, atom.pos.z, static_cast<double>(atom.occ),
                   static_cast<double>(atom.b_iso), atom.element.uname());
  std::fprintf(file.get(), "END\n");
  return true;
}

/// Calculated structure factors, noisy amplitudes and the usual map coefficients
/// 2Fo-Fc (FWT) and Fo-Fc (DELFWT) with calculated phases.
gemmi::Mtz make_reflections(const gemmi::Model& model, const gemmi::UnitCell& cell,
                            const gemmi::SpaceGroup* group) {
  gemmi::Mtz mtz(/*with_base=*/true);
  mtz.title = "crystal made by make_crystal";
  mtz.spacegroup = group;
  mtz.set_cell_for_all(cell);
  mtz.add_dataset("made");
  struct Label {
    const char* name;
    char type;
  };
  for (const Label& label :
       {Label{"FP", 'F'}, Label{"SIGFP", 'Q'}, Label{"FC", 'F'}, Label{"PHIC", 'P'},
        Label{"FWT", 'F'}, Label{"PHWT", 'P'}, Label{"DELFWT", 'F'}, Label{"PHDELWT", 'P'}})
    mtz.add_column(label.name, label.type, -1, -1, false);

  gemmi::StructureFactorCalculator<gemmi::IT92<double>> calculator(cell);
  std::mt19937 random(1);
  std::vector<float> rows;
  for (const gemmi::Miller& hkl : gemmi::make_miller_vector(cell, group, resolution)) {
    const std::complex<double> factor = calculator.calculate_sf_from_model(model, hkl);
    const double fc = std::abs(factor);
    const double phase = gemmi::deg(std::arg(factor));
    const double noise = static_cast<double>(random()) / 4294967296.0 - 0.5;
    const double fo = fc * (1.0 + 0.1 * noise);
    for (const double value :
         {static_cast<double>(hkl[0]), static_cast<double>(hkl[1]), static_cast<double>(hkl[2]), fo,
          0.02 * fo + 0.1, fc, phase, 2 * fo - fc, phase, fo - fc, phase})
      rows.push_back(static_cast<float>(value));
  }
  mtz.set_data(rows.data(), rows.size());
  return mtz;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: make_crystal FOLDER\n");
    return 2;
  }
  const std::string folder = argv[1];
  const gemmi::SpaceGroup* group = gemmi::find_spacegroup_by_name("P 21 21 21");
  gemmi::UnitCell cell(cell_edges[0], cell_edges[1], cell_edges[2], 90, 90, 90);
  cell.set_cell_images_from_spacegroup(group);

  std::vector<BuiltAtom> atoms =
      build_helix({"GLY", "ALA", "SER", "VAL", "LEU", "ALA", "THR", "CYS", "LEU", "ALA"});
  settle_in_cell(atoms, cell);
  const gemmi::Model model = make_model(atoms);
  if (!write_pdb(folder + "/crystal.pdb", model, cell)) {
    std::fprintf(stderr, "cannot write to %s\n", folder.c_str());
    return 1;
  }
  const gemmi::Mtz mtz = make_reflections(model, cell, group);
  mtz.write_to_file(folder + "/crystal.mtz");
  std::printf("%d reflections to %.2f A\n", mtz.nreflections, resolution);
  return 0;
}
