// Structure factors against gemmi's direct summation, a literal loop, and a real refinement.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdint>
#include <cstring>
#include <gemmi/it92.hpp>
#include <gemmi/model.hpp>
#include <gemmi/sfcalc.hpp>
#include <limits>
#include <random>
#include <vector>

#include "reflection/made_crystal.h"
#include "support/messages.h"
#include "support/models.h"
#include "support/shared_data.h"
#include "vxgrid/density/real_space_scores.h"
#include "vxgrid/density/scattering.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/mtz.h"
#include "vxgrid/reflection/mtz_file.h"
#include "vxgrid/reflection/reflection.h"

namespace {

using namespace VXCore;
using vxgrid_test::CrystalCase;
using vxgrid_test::Hkl;
using vxgrid_test::MadeCrystal;
using vxgrid_test::make_model;
using vxgrid_test::ModelAtom;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

VXReflection reflections_of(const std::vector<Hkl>& list, unsigned int group,
                            const VXXtal::VXUnitCell& cell) {
  VXReflection set;
  const auto n = static_cast<unsigned int>(list.size());
  std::vector<int> h, k, l;
  for (const Hkl& hkl : list) {
    h.push_back(hkl[0]);
    k.push_back(hkl[1]);
    l.push_back(hkl[2]);
  }
  set.SetCount(n);
  set.SetHKL(h.data(), k.data(), l.data(), n);
  set.SetSymmetry(VXXtal::VXSymmetry(group, cell));
  return set;
}

/// A column of the set, empty when it has none.
std::vector<float> column(const VXReflection& set, unsigned int which) {
  std::vector<float> values(set.GetCount());
  if (!set.GetColumn(which, values.data())) values.clear();
  return values;
}
std::vector<float> amplitudes(const VXReflection& set) {
  return column(set, VXReflectionColumn::Fcalc);
}
std::vector<float> phases(const VXReflection& set) {
  return column(set, VXReflectionColumn::PhaseCalc);
}

std::complex<double> calculated(const VXReflection& set, std::size_t i) {
  return std::polar<double>(amplitudes(set)[i], phases(set)[i] * vxgrid_test::two_pi / 360);
}

std::vector<ModelAtom> random_atoms(const VXXtal::VXUnitCell& cell, std::size_t count) {
  std::mt19937 random(31);
  std::uniform_real_distribution<float> part(0, 1);
  constexpr unsigned int elements[] = {6, 7, 8, 16, 26};
  std::vector<ModelAtom> atoms;
  for (std::size_t i = 0; i < count; ++i) {
    // Some of them in neighbouring cells.
    atoms.push_back({elements[i % 5], cell.a * (2 * part(random) - 0.5f), cell.b * part(random),
                     cell.c * (part(random) - 0.5f), 8 + 30 * part(random), 1,
                     i % 4 == 0 ? 0.5f : 1.0f});
  }
  return atoms;
}

class FactorsOf : public testing::TestWithParam<CrystalCase> {};

INSTANTIATE_TEST_SUITE_P(EverySystem, FactorsOf, testing::ValuesIn(vxgrid_test::crystal_cases()));

TEST_P(FactorsOf, a_model_are_those_of_gemmis_direct_summation) {
  MadeCrystal crystal(GetParam(), 1.6);
  const VXXtal::VXUnitCell cell = crystal.reflections({}).GetSymmetry().cell();
  const std::vector<ModelAtom> atoms = random_atoms(cell, 12);

  VXReflection set = reflections_of(crystal.unique, GetParam().number, cell);
  ASSERT_TRUE(set.SFCalc(make_model(atoms)));

  crystal.cell.set_cell_images_from_spacegroup(&crystal.group);
  gemmi::Model model("1");
  model.chains.emplace_back("A");
  model.chains[0].residues.emplace_back();
  for (const ModelAtom& made : atoms) {
    gemmi::Atom atom;
    atom.element = gemmi::Element(static_cast<int>(made.element));
    atom.pos = gemmi::Position(made.x, made.y, made.z);
    atom.b_iso = made.b_factor;
    atom.occ = made.occupancy;
    model.chains[0].residues[0].atoms.push_back(atom);
  }
  gemmi::StructureFactorCalculator<gemmi::IT92<double>> calculator(crystal.cell);
  double sum = 0, sum_of_errors = 0;
  for (std::size_t i = 0; i < crystal.unique.size(); ++i) {
    const Hkl& hkl = crystal.unique[i];
    const auto expected = calculator.calculate_sf_from_model(model, {{hkl[0], hkl[1], hkl[2]}});
    sum += std::abs(expected);
    sum_of_errors += std::abs(calculated(set, i) - expected);
  }
  ASSERT_GT(crystal.unique.size(), 20U);
  EXPECT_LT(sum_of_errors, 0.02 * sum);
  EXPECT_EQ(column(set, VXReflectionColumn::Phase), phases(set));
}

/// The sums term by term as they are defined, with tables as long as the angles are wide. All atoms
/// have residue data, B-factors at or above 0, and no charge that has no row.
struct LiteralSums {
  std::vector<float> amplitudes, phases;

  LiteralSums(const VXReflection& set, const std::vector<ModelAtom>& atoms) {
    const unsigned int n = set.GetCount();
    std::vector<int> h(n), k(n), l(n);
    set.GetHKL(h.data(), k.data(), l.data());
    const std::vector<float> stolsq = column(set, VXReflectionColumn::Stolsq);
    const VXXtal::VXSymmetry symmetry = set.GetSymmetry();

    float largest_s = 0, largest_b = 0, largest_h2 = 0;
    for (unsigned int i = 0; i < n; ++i) {
      largest_s = std::max(largest_s, stolsq[i]);
      largest_h2 =
          std::max(largest_h2, static_cast<float>(h[i] * h[i] + k[i] * k[i] + l[i] * l[i]));
    }
    for (const ModelAtom& atom : atoms)
      largest_b = std::max(largest_b, atom.b_factor);
    const std::vector<double> temperature = temperature_table(largest_b * largest_s);
    // One more than the bound, which the rounding to the nearest degree may reach.
    const auto entries = static_cast<std::size_t>(360 * std::sqrt(largest_h2 * 3)) + 2;
    std::vector<float> sine(entries), cosine(entries);
    for (std::size_t i = 0; i < entries; ++i) {
      sine[i] = std::sin(static_cast<float>(i % 360) * 0.017453294F);
      cosine[i] = std::cos(static_cast<float>(i % 360) * 0.017453294F);
    }

    for (unsigned int i = 0; i < n; ++i) {
      const std::size_t fi =
          std::min<std::size_t>(199, static_cast<std::size_t>(stolsq[i] * 200 + 0.5F));
      const float sb = stolsq[i] * 2000;
      const float hx = 360.0F * static_cast<float>(h[i]), ky = 360.0F * static_cast<float>(k[i]),
                  lz = 360.0F * static_cast<float>(l[i]);
      float a = 0, b = 0;
      for (unsigned int op = 0; op < symmetry.GetOpCount(); ++op) {
        for (const ModelAtom& atom : atoms) {
          float place[3] = {atom.x, atom.y, atom.z};
          symmetry.CartesianToFractional(place, 1, op, true);
          const auto w = static_cast<float>(
              double{atom.occupancy} * temperature[static_cast<std::size_t>(sb * atom.b_factor)] *
              double{form_factor(atom, fi)});
          const int d = static_cast<int>(ky * place[1] + hx * place[0] + lz * place[2] + 0.5F);
          const auto index = static_cast<std::size_t>(d >= 1 ? d : -d);
          if (d >= 1)
            b += w * sine[index];
          else
            b -= w * sine[index];
          a += w * cosine[index];
        }
      }
      amplitudes.push_back(std::sqrt(b * b + a * a));
      phases.push_back(static_cast<float>(
          std::fmod(double{std::atan2(b, a)} * 57.29577951308232 + 3600.0, 360.0)));
    }
  }

  static std::vector<double> temperature_table(float largest) {
    const std::size_t units = static_cast<std::size_t>(largest) + 1;
    std::vector<double> table(2000 * units + 1);
    const float e = std::exp(-1.0F / 2000);
    for (std::size_t r = 0; r < units; ++r) {
      table[2000 * r] = std::exp(-0.5F / 2000 - static_cast<float>(r));
      for (std::size_t i = 1; i < 2000; ++i)
        table[2000 * r + i] = e * table[2000 * r + i - 1];
    }
    return table;
  }

  static float form_factor(const ModelAtom& atom, std::size_t i) {
    const int z = static_cast<int>(atom.element);
    // Neutral hydrogen, dummies and what the table does not have count as carbon.
    int row = z == 1 && atom.charge == 0 ? -1 : find_scatter_row(z, atom.charge);
    if (row < 0) row = find_scatter_row(6, 0);
    const scatterT& s = scatter_data[row];
    const double s2 = static_cast<float>(i) * 0.005F;
    return static_cast<float>(s.a4 * std::exp(-s.b4 * s2) + s.c + s.a3 * std::exp(-s.b3 * s2) +
                              s.a2 * std::exp(-s.b2 * s2) + s.a1 * std::exp(-s.b1 * s2));
  }
};

TEST(StructureFactors, are_bit_for_bit_those_of_the_sums_term_by_term) {
  const VXXtal::VXUnitCell cell(23, 17, 31, 90, 106, 90);
  std::vector<ModelAtom> atoms = random_atoms(cell, 150);
  atoms[3].occupancy = atoms[17].occupancy = 0;
  atoms[17].b_factor = 300;  // the widest of the exponents, though it does not scatter
  atoms[5].occupancy = -0.25f;
  atoms[9].b_factor = 0;
  atoms[11] = {26, 1, 2, 3, 15, 1, 1, 2};
  atoms[12] = {26, 4, 2, 3, 15, 1, 1, 7};  // no such ion
  atoms[13] = {1, 4, 6, 3, 15, 1, 1, 0};
  atoms[14] = {1, 4, 6, 5, 15, 1, 1, -1};
  atoms[15] = {0, 4, 6, 8, 15};
  atoms[16] = {99, 4, 1, 8, 15};
  std::mt19937 random(5);
  const auto index = [&](int reach) {
    return std::uniform_int_distribution<int>(-reach, reach)(random);
  };
  std::vector<Hkl> list = {{0, 0, 0}, {1, 0, 0}, {0, -1, 0}, {60, 0, 0}, {0, 0, -70}};
  while (list.size() < 1003)
    list.push_back({index(24), index(18), index(32)});
  for (const unsigned int group : {1U, 4U, 5U, 14U}) {
    VXReflection set = reflections_of(list, group, cell);
    ASSERT_TRUE(set.SFCalc(make_model(atoms)));
    const LiteralSums literal(set, atoms);
    const std::size_t bytes = list.size() * sizeof(float);
    EXPECT_EQ(std::memcmp(amplitudes(set).data(), literal.amplitudes.data(), bytes), 0) << group;
    EXPECT_EQ(std::memcmp(phases(set).data(), literal.phases.data(), bytes), 0) << group;
  }
}

TEST(StructureFactors, of_one_atom_at_the_origin_are_its_form_factor) {
  const VXXtal::VXUnitCell cell(10, 11, 12, 90, 90, 90);
  const struct {
    unsigned int element;
    int charge;
    int row_element, row_charge;
  } cases[] = {
      {6, 0, 6, 0},   {8, 0, 8, 0},   {8, -1, 8, -1}, {26, 2, 26, 2}, {26, 3, 26, 3},
      {26, 7, 26, 0}, {92, 6, 92, 6}, {98, 0, 98, 0}, {2, 0, 2, 0},   {1, 0, 6, 0},
      {1, -1, 1, -1}, {1, 1, 6, 0},   {0, 0, 6, 0},   {99, 0, 6, 0},  {208, 0, 6, 0},
  };
  for (const auto& c : cases) {
    // The last two lie beyond the last point of the form factor's table.
    VXReflection set =
        reflections_of({{1, 2, 3}, {5, 0, 0}, {19, 3, 1}, {22, 0, 0}, {0, 31, 0}}, 1, cell);
    const ModelAtom atom[] = {{c.element, 0, 0, 0, 0, 1, 1, c.charge}};
    ASSERT_TRUE(set.SFCalc(make_model(atom)));
    const scatterT& row = scatter_data[find_scatter_row(c.row_element, c.row_charge)];
    const std::vector<float> stolsq = column(set, VXReflectionColumn::Stolsq);
    for (std::size_t i = 0; i < stolsq.size(); ++i) {
      const double s2 = 0.005 * std::min(199.0, std::round(200.0 * stolsq[i]));
      const double expected = row.a1 * std::exp(-row.b1 * s2) + row.a2 * std::exp(-row.b2 * s2) +
                              row.a3 * std::exp(-row.b3 * s2) + row.a4 * std::exp(-row.b4 * s2) +
                              row.c;
      EXPECT_NEAR(amplitudes(set)[i], std::fabs(expected) * std::exp(-0.00025),
                  2e-6 * c.row_element)
          << c.element << " " << c.charge << " reflection " << i;
      EXPECT_EQ(phases(set)[i], expected < 0 ? 180 : 0) << c.element;
    }
  }
}

TEST(StructureFactors, of_a_centrosymmetric_pair_are_real_and_of_nothing_are_zero) {
  const VXXtal::VXUnitCell cell(10, 11, 12, 90, 90, 90);
  const std::vector<Hkl> list = {{1, 2, 3}, {2, 0, -5}, {0, 1, 0}, {4, 4, 4}};
  VXReflection set = reflections_of(list, 1, cell);
  ModelAtom pair[] = {{8, 1.3f, 2.2f, 3.1f}, {8, 8.7f, 8.8f, 8.9f}};
  ASSERT_TRUE(set.SFCalc(make_model(pair)));
  for (std::size_t i = 0; i < list.size(); ++i)
    EXPECT_LT(std::fabs(calculated(set, i).imag()), 0.02 * 16) << i;  // angles are whole degrees

  pair[0].occupancy = pair[1].occupancy = 0;
  ASSERT_TRUE(set.SFCalc(make_model(pair)));
  EXPECT_EQ(amplitudes(set), std::vector<float>(4, 0.0f));
  EXPECT_EQ(phases(set), std::vector<float>(4, 0.0f));
}

TEST(StructureFactors, replace_three_columns_and_leave_order_and_all_others_alone) {
  const VXXtal::VXUnitCell cell(10, 11, 12, 90, 100, 90);
  const std::vector<Hkl> list = {{2, 1, 3}, {0, 2, 1}, {-1, 3, 2}, {1, 0, 4}};
  const std::vector<ModelAtom> atoms = random_atoms(cell, 6);
  VXReflection plain = reflections_of(list, 4, cell);
  ASSERT_TRUE(plain.SFCalc(make_model(atoms)));

  VXReflection set = reflections_of(list, 4, cell);
  const float given[] = {1, 2, 3, 4};
  set.SetFobs(given, 4);
  set.SetFcalc(given, 4);
  set.SetPhase(given, 4);
  set.SetPhiwt(given, 4);
  set.SetTitle("kept");
  ASSERT_TRUE(set.Sort());
  ASSERT_TRUE(set.SFCalc(make_model(atoms)));
  EXPECT_EQ(amplitudes(set), amplitudes(plain));
  EXPECT_EQ(phases(set), phases(plain));
  EXPECT_EQ(column(set, VXReflectionColumn::Phase), phases(plain));
  for (const unsigned int kept : {VXReflectionColumn::Fobs, VXReflectionColumn::Phiwt})
    EXPECT_EQ(column(set, kept), std::vector<float>({1, 2, 3, 4}));
  EXPECT_EQ(set.GetTitle(), "kept");
  float first = 0;  // (-1, 3, 2) in sorted order
  ASSERT_TRUE(set.GetFcalcElement(first, 0));
  EXPECT_EQ(first, amplitudes(plain)[2]);

  // A resolution that is there is taken as it is.
  const float stolsq[] = {0, 0, 0, 0};
  set.SetStolsq(stolsq, 4);
  ASSERT_TRUE(set.SFCalc(make_model(atoms)));
  EXPECT_GT(amplitudes(set)[0], amplitudes(plain)[0]);
}

TEST(StructureFactors,
     of_an_expanded_set_are_those_of_all_its_reflections_as_expansion_makes_them) {
  MadeCrystal crystal({"P 21 21 21", 19, {7, 9, 11, 90, 90, 90}}, 1.5);
  const VXXtal::VXUnitCell cell(7, 9, 11, 90, 90, 90);
  VXReflection set = reflections_of(crystal.unique, 19, cell);
  const VXGraphMol model = make_model(random_atoms(cell, 8));
  ASSERT_TRUE(set.SFCalc(model));
  ASSERT_TRUE(set.Expand());
  const unsigned int expanded = set.GetCount();
  ASSERT_GT(expanded, crystal.unique.size());
  VXReflection again(set);
  ASSERT_TRUE(again.SFCalc(model));
  ASSERT_EQ(again.GetCount(), expanded);
  double sum = 0, sum_of_errors = 0;
  for (std::size_t i = 0; i < expanded; ++i) {
    sum += std::abs(calculated(set, i));
    sum_of_errors += std::abs(calculated(set, i) - calculated(again, i));
  }
  EXPECT_LT(sum_of_errors, 0.02 * sum);  // every mate is off by its own roundings to whole degrees
}

TEST(StructureFactors, are_refused_without_a_word_and_the_set_stays) {
  vxgrid_test::MessageCapture messages;
  const VXXtal::VXUnitCell cell(10, 11, 12, 90, 90, 90);
  const ModelAtom carbon[] = {{6, 1, 2, 3}};
  const VXGraphMol model = make_model(carbon);
  const std::vector<Hkl> list = {{1, 2, 3}};
  const auto is_refused = [](VXReflection set, const VXGraphMol& mol) {
    const unsigned int n = set.GetCount();
    const std::vector<float> given(n, 7.0f);
    set.SetFcalc(given.data(), n);
    set.SetPhase(given.data(), n);
    const bool refused = !set.SFCalc(mol);
    return refused && set.GetCount() == n && amplitudes(set) == given && phases(set).empty() &&
           column(set, VXReflectionColumn::Phase) == given;
  };
  VXGraphMol bare;
  bare.NewAtom(6);
  EXPECT_TRUE(is_refused(reflections_of(list, 1, cell), bare));
  EXPECT_TRUE(is_refused(reflections_of(list, 1, cell), VXGraphMol()));
  EXPECT_TRUE(is_refused(reflections_of(list, 1, VXXtal::VXUnitCell()), model));
  EXPECT_TRUE(is_refused(VXReflection(), model));
  EXPECT_TRUE(is_refused(reflections_of({}, 1, cell), model));
  VXReflection no_indices = reflections_of(list, 1, cell);
  no_indices.SetHKL(nullptr, nullptr, nullptr, 1);
  EXPECT_TRUE(is_refused(no_indices, model));
  VXReflection no_group = reflections_of(list, 1, cell);
  no_group.SetSymmetry(VXXtal::VXSymmetry());
  EXPECT_TRUE(is_refused(no_group, model));
  // Angles beyond 32 bits.
  EXPECT_TRUE(
      is_refused(reflections_of({{std::numeric_limits<int>::min(), 0, 0}}, 1, cell), model));
  for (const float far : {nan, infinity, -infinity, 1e20f}) {
    const ModelAtom lost[] = {{6, 1, far, 3}};
    EXPECT_TRUE(is_refused(reflections_of(list, 1, cell), make_model(lost))) << far;
  }
  EXPECT_TRUE(messages.messages.empty());
}

TEST(StructureFactors, take_hostile_numbers_of_a_model_and_a_resolution) {
  const VXXtal::VXUnitCell cell(10, 11, 12, 90, 90, 90);
  const std::vector<Hkl> list = {{1, 2, 3}, {2, 0, -5}, {1, 0, 0}};
  const auto with_b = [&](float b_factor) {
    VXReflection set = reflections_of(list, 1, cell);
    const ModelAtom atoms[] = {{6, 1, 2, 3, b_factor}, {8, 9.999f, 2, 3, 20}};
    EXPECT_TRUE(set.SFCalc(make_model(atoms)));
    return amplitudes(set);
  };
  for (const float b_factor : {-1.0f, -1e30f, nan, infinity, -infinity})
    EXPECT_EQ(with_b(b_factor), with_b(0)) << b_factor;
  for (const float b_factor : {1e6f, 1e30f, std::numeric_limits<float>::max()})
    EXPECT_EQ(with_b(b_factor), with_b(1e5f)) << b_factor;  // does not scatter any more

  VXReflection set = reflections_of(list, 1, cell);
  const float stolsq[] = {nan, -3, infinity};
  set.SetStolsq(stolsq, 3);
  const ModelAtom atoms[] = {{6, 1, 2, 3}, {8, 9.999f, 2, 3, 20}};
  ASSERT_TRUE(set.SFCalc(make_model(atoms)));
  for (const float amplitude : amplitudes(set))
    EXPECT_TRUE(std::isfinite(amplitude));
  // An atom without residue data takes no part.
  const std::vector<float> alone = amplitudes(set);
  VXGraphMol more = make_model(atoms);
  const float place[] = {nan, 0, 0};
  more.SetCoords(more.NewAtom(6), place);
  more.DeleteAtom(more.NewAtom(6));
  ASSERT_TRUE(set.SFCalc(more));
  EXPECT_EQ(amplitudes(set), alone);
}

TEST(StructureFactors, of_a_real_peptide_agree_with_its_refinement) {
  for (const char* file : {"5wkd.pdb", "5wkd_phases.mtz"})
    if (!vxgrid_test::has_shared_data(file)) GTEST_SKIP() << vxgrid_test::missing_data(file);
  VXGraphMol model;
  ASSERT_TRUE(VXReadMolecule(vxgrid_test::shared_data("5wkd.pdb"), model));
  VXReflection set;
  vxifstream in(vxgrid_test::shared_data("5wkd_phases.mtz"));
  ASSERT_TRUE(VXReadReflectionMTZ(in, set, VXMTZColumnNames()));
  const std::vector<float> refined = amplitudes(set);
  ASSERT_EQ(refined.size(), 367U);
  ASSERT_TRUE(set.SFCalc(model));

  const std::vector<float> ours = amplitudes(set);
  double sum_of_products = 0, sum_of_squares = 0, sum = 0, difference = 0;
  for (std::size_t i = 0; i < ours.size(); ++i) {
    sum_of_products += double{ours[i]} * refined[i];
    sum_of_squares += double{ours[i]} * ours[i];
  }
  const double scale = sum_of_products / sum_of_squares;
  for (std::size_t i = 0; i < ours.size(); ++i) {
    sum += refined[i];
    difference += std::fabs(refined[i] - scale * ours[i]);
  }
  EXPECT_LT(difference, 0.04 * sum);

  ASSERT_TRUE(set.Expand());
  VXSkewGrid map, refined_map;
  ASSERT_TRUE(set.MakeMap(map, VXMTZMapType::Fc));
  ASSERT_TRUE(
      VXReadMTZ(vxgrid_test::shared_data("5wkd_phases.mtz"), refined_map, VXMTZMapType::Fc));
  EXPECT_GT(VXRSCC(refined_map, map, model, 1.5), 0.998);
  EXPECT_GT(VXRSCC(map, model, 1.5), 0.88);  // the density of the model, which has no resolution
}

}  // namespace
