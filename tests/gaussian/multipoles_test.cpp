// Shape multipoles against integration of the density on a grid, and their independence of where
// and how a molecule lies.
#include "vxgrid/gaussian/multipoles.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "support/models.h"
#include "support/shared_data.h"
#include "vxgrid/gaussian/series.h"
#include "vxgrid/toolkit/names.h"

namespace {

using namespace VXCore;
using vxgrid_test::make_model;
using vxgrid_test::ModelAtom;

struct Moments {
  std::array<float, 14> multipoles{};
  std::array<float, 3> centre{};
  std::array<float, 9> rotation{};

  /// A place in the frame.
  std::array<double, 3> in_frame(const std::array<double, 3>& p) const {
    std::array<double, 3> u{};
    for (std::size_t a = 0; a < 3; ++a) {
      for (std::size_t k = 0; k < 3; ++k)
        u[a] += rotation[3 * a + k] * (p[k] - centre[k]);
    }
    return u;
  }
};

/// Octopoles as they are while one stands.
struct RawOctopoles {
  RawOctopoles() { vx_shape_multipoles_irreducible_octopoles_off(); }
  ~RawOctopoles() { vx_shape_multipoles_irreducible_octopoles_on(); }
};

/// A lopsided molecule with two hydrogens, without radii.
VXGraphMol lopsided() {
  VXGraphMol mol = make_model(std::vector<ModelAtom>{{6, 0.1f, 0.2f, -0.3f},
                                                     {6, 1.5f, 0.3f, 0.1f},
                                                     {7, 2.2f, 1.5f, 0.4f},
                                                     {8, 2.0f, -0.9f, 0.9f},
                                                     {6, 3.7f, 1.6f, 0.2f},
                                                     {16, 4.4f, 3.1f, 1.2f},
                                                     {6, -0.6f, -0.9f, -1.3f},
                                                     {1, -0.4f, 1.1f, -0.5f},
                                                     {1, 1.7f, 2.3f, 0.7f}});
  std::vector<VXAtomBase*> atoms;
  for (VXAtomBase* atom : mol.GetAtoms())
    atoms.push_back(atom);
  for (const auto& [a, b] :
       {std::array{0, 1}, {1, 2}, {1, 3}, {2, 4}, {4, 5}, {0, 6}, {0, 7}, {2, 8}})
    mol.NewBond(atoms[static_cast<std::size_t>(a)], atoms[static_cast<std::size_t>(b)], 1);
  VXAssignBondiVdWRadii(mol);
  return mol;
}

Moments moments_of(const VXMolBase& mol, const char* type) {
  Gaussian builder;
  Moments m;
  EXPECT_EQ(builder.vx_calculate_shape_multipoles_and_inertial_frame_with_hydrogens(
                mol, m.multipoles.data(), type, m.centre.data(), m.rotation.data()),
            1);
  return m;
}

Moments moments_of(const std::vector<Gsphere>& terms) {
  Moments m;
  EXPECT_EQ(vx_CalcShapeMultipoles(static_cast<int>(terms.size()), terms.data(),
                                   m.multipoles.data(), m.centre.data(), m.rotation.data()),
            1);
  return m;
}

std::vector<Gsphere> full_series(const VXMolBase& mol) {
  Gaussian builder;
  Gsphere* terms = nullptr;
  int count = 0;
  EXPECT_EQ(builder.vx_make_gaussian_representation_with_hydrogens(mol, &terms, &count), 1);
  return {terms, terms + count};
}

/// Calls visit(place, density times the volume of a cell) for the points of a fine grid.
template <class Visit>
void integrate(const std::vector<Gsphere>& terms, Visit visit) {
  constexpr double step = 0.3;
  for (double z = -7; z < 7; z += step) {
    for (double y = -7; y < 9; y += step) {
      for (double x = -7; x < 11; x += step) {
        double density = 0;
        for (const Gsphere& g : terms) {
          const double d2 = (x - g.x) * (x - g.x) + (y - g.y) * (y - g.y) + (z - g.z) * (z - g.z);
          const double value = g.prefactor * std::exp(-g.width * d2);
          density += g.level % 2 ? -value : value;
        }
        visit(std::array<double, 3>{x, y, z}, density * step * step * step);
      }
    }
  }
}

std::array<float, 9> turn_about(double x, double y, double z, double angle) {
  const double s = std::sin(angle / 2) / std::sqrt(x * x + y * y + z * z);
  const std::array<float, 4> q{static_cast<float>(std::cos(angle / 2)), static_cast<float>(x * s),
                               static_cast<float>(y * s), static_cast<float>(z * s)};
  std::array<float, 9> m{};
  vx_quaternions_to_rotation_matrix(q.data(), m.data());
  return m;
}

double determinant(const std::array<float, 9>& m) {
  return m[0] * double{m[4] * m[8] - m[5] * m[7]} - m[1] * double{m[3] * m[8] - m[5] * m[6]} +
         m[2] * double{m[3] * m[7] - m[4] * m[6]};
}

TEST(Multipoles, are_the_integrals_of_the_density_over_a_grid) {
  const std::vector<Gsphere> terms = full_series(lopsided());
  const Moments irreducible = moments_of(terms);
  const RawOctopoles off;
  const Moments raw = moments_of(terms);

  double volume = 0;
  std::array<double, 3> first{}, squares{}, products{};
  std::array<double, 10> third{}, harmonics{};
  integrate(terms, [&](const std::array<double, 3>& p, double mass) {
    const auto [x, y, z] = raw.in_frame(p);
    volume += mass;
    for (std::size_t k = 0; k < 3; ++k)
      first[k] += mass * p[k];
    const double square[3] = {x * x, y * y, z * z}, product[3] = {x * y, x * z, y * z};
    const double cube[10] = {x * x * x, y * y * y, z * z * z, x * x * y, x * x * z,
                             y * y * x, y * y * z, z * z * x, z * z * y, x * y * z};
    const double r2 = x * x + y * y + z * z;
    const double solid[10] = {x * r2,
                              y * r2,
                              z * r2,
                              z * (2 * z * z - 3 * x * x - 3 * y * y) / 2,
                              std::sqrt(3.0 / 8) * x * (4 * z * z - x * x - y * y),
                              std::sqrt(3.0 / 8) * y * (4 * z * z - x * x - y * y),
                              std::sqrt(15.0) / 2 * z * (x * x - y * y),
                              std::sqrt(15.0) * x * y * z,
                              std::sqrt(5.0 / 8) * (x * x * x - 3 * x * y * y),
                              std::sqrt(5.0 / 8) * (3 * x * x * y - y * y * y)};
    for (std::size_t k = 0; k < 3; ++k) {
      squares[k] += mass * square[k];
      products[k] += mass * product[k];
    }
    for (std::size_t k = 0; k < 10; ++k) {
      third[k] += mass * cube[k];
      harmonics[k] += mass * solid[k];
    }
  });

  EXPECT_NEAR(raw.multipoles[0], volume, 1e-4 * volume);
  for (std::size_t k = 0; k < 3; ++k) {
    EXPECT_NEAR(raw.centre[k], first[k] / volume, 1e-4);
    EXPECT_NEAR(raw.multipoles[1 + k], squares[k] / volume, 1e-3) << k;
    EXPECT_NEAR(products[k] / volume, 0.0, 1e-3) << k;
  }
  for (std::size_t k = 0; k < 10; ++k) {
    EXPECT_NEAR(raw.multipoles[4 + k], third[k] / volume, 2e-3) << k;
    // 0.6666 stands for 2/3 in one of them.
    EXPECT_NEAR(irreducible.multipoles[4 + k], harmonics[k] / volume, 2e-3) << k;
  }
  EXPECT_GT(std::fabs(raw.multipoles[4]), 0.5f);
  EXPECT_TRUE(std::equal(raw.multipoles.begin(), raw.multipoles.begin() + 4,
                         irreducible.multipoles.begin()));
  EXPECT_EQ(raw.rotation, irreducible.rotation);
}

TEST(Multipoles, do_not_change_when_a_molecule_is_turned_and_moved) {
  for (const bool irreducible : {true, false}) {
    if (!irreducible) vx_shape_multipoles_irreducible_octopoles_off();
    for (const char* type : {"atoms", "bonds", "full"}) {
      const Moments still = moments_of(lopsided(), type);
      EXPECT_NEAR(determinant(still.rotation), 1.0, 1e-5);
      if (!irreducible) {
        EXPECT_GT(still.multipoles[4], 0.0f);
        EXPECT_GT(still.multipoles[5], 0.0f);
      }
      for (int i = 0; i < 20; ++i) {
        const std::array<float, 9> turn =
            turn_about(1 + i, 5 - 3 * i % 7, 2 - i % 3, 0.3 + 0.9 * i);
        const std::array<float, 3> step = {static_cast<float>(i % 5) - 2, 1.5f,
                                           static_cast<float>(-i)};
        VXGraphMol mol = lopsided();
        VXRotate(mol, turn.data());
        VXTranslate(mol, step.data());
        const Moments moved = moments_of(mol, type);
        for (std::size_t k = 0; k < 14; ++k)
          EXPECT_NEAR(moved.multipoles[k], still.multipoles[k],
                      2e-2 + 1e-3 * std::fabs(still.multipoles[k]))
              << type << " multipole " << k << " turn " << i;
        for (std::size_t a = 0; a < 3; ++a) {
          double centre = step[a];
          for (std::size_t k = 0; k < 3; ++k) {
            centre += turn[3 * a + k] * still.centre[k];
            double axis = 0;  // of the frame, turned with the molecule
            for (std::size_t j = 0; j < 3; ++j)
              axis += still.rotation[3 * a + j] * turn[3 * k + j];
            EXPECT_NEAR(moved.rotation[3 * a + k], axis, 3e-3) << type << " axis " << a;
          }
          EXPECT_NEAR(moved.centre[a], centre, 2e-3);
        }
      }
    }
  }
  vx_shape_multipoles_irreducible_octopoles_on();
}

TEST(Multipoles, of_a_peptide_do_not_change_when_it_is_turned) {
  if (!vxgrid_test::has_shared_data("5wkd.pdb"))
    GTEST_SKIP() << vxgrid_test::missing_data("5wkd.pdb");
  VXGraphMol mol;
  ASSERT_TRUE(VXReadMolecule(vxgrid_test::shared_data("5wkd.pdb"), mol));
  const Moments still = moments_of(mol, "full");
  VXRotate(mol, turn_about(1, 2, -1, 2.0).data());
  const Moments moved = moments_of(mol, "full");
  const double extent = still.multipoles[1];
  for (std::size_t k = 0; k < 4; ++k)
    EXPECT_NEAR(moved.multipoles[k], still.multipoles[k], 1e-3 * double{still.multipoles[k]}) << k;
  for (std::size_t k = 4; k < 14; ++k)
    EXPECT_NEAR(moved.multipoles[k], still.multipoles[k], 1e-3 * std::pow(extent, 1.5)) << k;
}

TEST(Multipoles, take_the_sign_of_a_term_from_its_level) {
  std::vector<Gsphere> terms = full_series(lopsided());
  const Moments stored = moments_of(terms);
  for (Gsphere& term : terms)
    term.volume = std::fabs(term.volume);
  const Moments positive = moments_of(terms);
  EXPECT_EQ(stored.multipoles, positive.multipoles);
  EXPECT_EQ(stored.rotation, positive.rotation);
}

TEST(Multipoles, of_round_and_straight_molecules_are_settled) {
  Gsphere atom;
  atom.width = 0.8f;
  atom.volume = 20;
  const Moments one = moments_of({atom});
  EXPECT_EQ(one.multipoles[0], 20.0f);
  for (std::size_t k = 1; k < 4; ++k)
    EXPECT_FLOAT_EQ(one.multipoles[k], 0.625f);
  for (std::size_t k = 4; k < 14; ++k)
    EXPECT_EQ(one.multipoles[k], 0.0f) << k;
  // Moments of 0 turn both axes round, and the third one back.
  EXPECT_EQ(one.rotation, (std::array<float, 9>{-1, 0, 0, 0, -1, 0, 0, 0, 1}));

  // Three atoms in a row along y + z, with the weight at the upper end.
  std::vector<Gsphere> row(3, atom);
  row[1].y = row[1].z = 1;
  row[2].y = row[2].z = 2;
  row[2].volume = 25;
  row[0].volume = 90;
  const Moments line = moments_of(row);
  EXPECT_GT(line.multipoles[1], 1.0f);
  EXPECT_FLOAT_EQ(line.multipoles[2], 0.625f);
  EXPECT_FLOAT_EQ(line.multipoles[3], 0.625f);
  // The long tail lies where the octopole is positive.
  EXPECT_NEAR(line.rotation[0], 0.0f, 1e-5f);
  EXPECT_NEAR(line.rotation[1], std::sqrt(0.5f), 1e-5f);
  EXPECT_NEAR(line.rotation[2], std::sqrt(0.5f), 1e-5f);
  EXPECT_NEAR(determinant(line.rotation), 1.0, 1e-5);

  for (const std::vector<Gsphere>& nothing : {std::vector<Gsphere>{}, {Gsphere{1, 3, 2, 1}}}) {
    const Moments none = moments_of(nothing);
    EXPECT_EQ(none.multipoles, (std::array<float, 14>{}));
    EXPECT_EQ(none.centre, (std::array<float, 3>{}));
    EXPECT_EQ(none.rotation, (std::array<float, 9>{1, 0, 0, 0, 1, 0, 0, 0, 1}));
  }
}

TEST(Multipoles, of_molecules_follow_the_form_and_the_hydrogens_that_the_call_names) {
  const VXGraphMol mol = lopsided();
  VXGraphMol heavy = mol;
  VXSuppressHydrogens(heavy, false, false, true);
  Gaussian builder;
  using Call = int (Gaussian::*)(const VXMolBase&, float*, const char*);
  const auto volume = [&](Call call, const VXMolBase& of, const char* type) {
    std::array<float, 14> multipoles;
    multipoles.fill(-1);
    EXPECT_EQ((builder.*call)(of, multipoles.data(), type), 1);
    return multipoles[0];
  };
  float full = 0, full_heavy = 0;
  builder.vx_calculate_volume(mol, &full);
  builder.vx_calculate_volume_no_hydrogens(mol, &full_heavy);
  EXPECT_GT(full, full_heavy + 1);
  for (const char* type : {"atoms", "bonds", "full"}) {
    const float with = volume(&Gaussian::vx_calculate_shape_multipoles_with_hydrogens, mol, type);
    const float without =
        volume(&Gaussian::vx_calculate_shape_multipoles_with_hydrogens, heavy, type);
    EXPECT_GT(with, without + 1) << type;
    EXPECT_EQ(volume(&Gaussian::vx_calculate_shape_multipoles, mol, type), without) << type;
    EXPECT_EQ(volume(&Gaussian::vx_calculate_shape_multipoles_no_hydrogens, mol, type), without);
  }
  EXPECT_EQ(volume(&Gaussian::vx_calculate_shape_multipoles_with_hydrogens, mol, "full"), full);
  EXPECT_EQ(volume(&Gaussian::vx_calculate_shape_multipoles, mol, "full"), full_heavy);
  // The spheres apart from their overlap: Bondi's radii of C, N, O, S.
  const auto sphere = [](double r) { return 4 * M_PI / 3 * r * r * r; };
  EXPECT_NEAR(volume(&Gaussian::vx_calculate_shape_multipoles, mol, "atoms"),
              4 * sphere(1.7) + sphere(1.55) + sphere(1.52) + sphere(1.8), 1e-2);
  for (const char* type : {"atom", "Full", "", static_cast<const char*>(nullptr)})
    EXPECT_EQ(volume(&Gaussian::vx_calculate_shape_multipoles, mol, type), 0.0f);
  EXPECT_EQ(volume(&Gaussian::vx_calculate_shape_multipoles, VXGraphMol(), "full"), 0.0f);

  std::array<float, 14> untouched{}, multipoles{};
  std::array<float, 9> frame{};
  EXPECT_EQ(builder.vx_calculate_shape_multipoles_and_inertial_frame(mol, multipoles.data(), "full",
                                                                     nullptr, frame.data()),
            0);
  EXPECT_EQ(builder.vx_calculate_shape_multipoles_and_inertial_frame_with_hydrogens(
                mol, multipoles.data(), "full", frame.data(), nullptr),
            0);
  EXPECT_EQ(multipoles, untouched);
}

TEST(Multipoles, turn_a_molecule_into_its_frame_and_move_it_by_its_centre) {
  VXGraphMol mol = lopsided();
  const std::array<float, 3> step = {2, -1, 3};
  VXTranslate(mol, step.data());
  const Moments before = moments_of(mol, "full");
  const VXAtomBase* atom = *mol.GetAtoms().begin();
  std::array<float, 3> from{}, to{};
  mol.GetCoords(atom, from.data());
  Gaussian builder;
  EXPECT_EQ(
      builder.vx_transform_to_inertial_frame_using_shape_multipoles_with_hydrogens(mol, "full"), 1);
  mol.GetCoords(atom, to.data());
  for (std::size_t a = 0; a < 3; ++a) {
    const float* const axis = &before.rotation[3 * a];
    EXPECT_NEAR(to[a], axis[0] * from[0] + axis[1] * from[1] + axis[2] * from[2] + before.centre[a],
                1e-4);
  }
  const Moments after = moments_of(mol, "full");
  for (std::size_t i = 0; i < 9; ++i)
    EXPECT_NEAR(after.rotation[i], i % 4 == 0 ? 1.0 : 0.0, 3e-3) << i;

  const std::array<float, 3> there = to;
  EXPECT_EQ(builder.vx_transform_to_inertial_frame_using_shape_multipoles(mol, "none"), 1);
  mol.GetCoords(atom, to.data());
  EXPECT_EQ(to, there);
  VXGraphMol none;
  EXPECT_EQ(builder.vx_transform_to_inertial_frame_using_shape_multipoles(none, "atoms"), 1);
}

}  // namespace
