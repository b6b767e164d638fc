// Overlap series against all subsets of small clusters and against integration of real peptides;
// the forms of atoms and bonds against closed forms.
#include "vxgrid/gaussian/series.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/messages.h"
#include "support/models.h"
#include "support/shared_data.h"
#include "vxgrid/gaussian/molecule_grid.h"
#include "vxgrid/gaussian/overlap.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/names.h"

namespace {

using namespace VXCore;
using vxgrid_test::make_model;
using vxgrid_test::MessageCapture;
using vxgrid_test::ModelAtom;

struct Sphere {
  std::array<float, 3> centre;
  float radius;
};

VXGraphMol molecule(const std::vector<Sphere>& spheres) {
  VXGraphMol mol;
  for (const Sphere& sphere : spheres) {
    VXAtomBase* atom = mol.NewAtom(6);
    atom->SetRadius(sphere.radius);
    mol.SetCoords(atom, sphere.centre.data());
  }
  return mol;
}

std::vector<Sphere> cluster(std::size_t n, float extent, unsigned int seed,
                            std::vector<float> radii = {1.2f, 1.52f, 1.55f, 1.7f, 1.8f}) {
  std::mt19937 random(seed);
  const auto uniform = [&] { return static_cast<float>(random() % 10001) / 10000.0f * extent; };
  std::vector<Sphere> spheres;
  for (std::size_t i = 0; i < n; ++i) {
    const std::array<float, 3> centre{uniform(), uniform(), uniform()};
    // The two extremes always, since they set the tables.
    spheres.push_back(
        {centre, i < 2 ? (i == 0 ? radii.front() : radii.back()) : radii[random() % radii.size()]});
  }
  return spheres;
}

std::vector<Gsphere> full(Gaussian& builder, const VXMolBase& mol) {
  Gsphere* terms = nullptr;
  int count = -1;
  EXPECT_EQ(builder.vx_make_gaussian_representation_with_hydrogens(mol, &terms, &count), 1);
  return {terms, terms + count};
}

double total_volume(const std::vector<Gsphere>& terms) {
  return std::accumulate(terms.begin(), terms.end(), 0.0,
                         [](double sum, const Gsphere& g) { return sum + double{g.volume}; });
}

/// The product of the Gaussians of a set of spheres, in double.
struct Product {
  double width = 0;
  std::array<double, 3> centre{};
  double volume = 0;
  int atoms = 0;
  double least = 0;  // the smallest volume among it and what it grew from, atoms apart
};

Product product_of(const std::vector<Sphere>& spheres, unsigned int set) {
  const double kappa = VXGetKappa(2.7);
  Product p;
  double exponent = 0, heights = 1;
  for (std::size_t i = 0; i < spheres.size(); ++i) {
    if (!(set >> i & 1u)) continue;
    const double w = VXGetWidth(kappa, spheres[i].radius);
    double squared = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      const double d = p.centre[k] - spheres[i].centre[k];
      squared += d * d;
      p.centre[k] = (p.width * p.centre[k] + w * spheres[i].centre[k]) / (p.width + w);
    }
    exponent += p.width * w / (p.width + w) * squared;
    p.width += w;
    heights *= 2.7;
    ++p.atoms;
  }
  p.volume = heights * std::exp(-exponent) * std::pow(M_PI / p.width, 1.5);
  return p;
}

/// All products of at least one sphere. The series grows a set by its last atom.
std::vector<Product> all_products(const std::vector<Sphere>& spheres) {
  std::vector<Product> products(std::size_t{1} << spheres.size());
  for (unsigned int set = 1; set < products.size(); ++set) {
    const unsigned int rest = set & ~std::bit_floor(set);
    products[set] = product_of(spheres, set);
    products[set].least = rest == 0 ? 1e30 : std::min(products[rest].least, products[set].volume);
  }
  return products;
}

bool is_same(const Gsphere& g, const Product& p) {
  const double dx = g.x - p.centre[0], dy = g.y - p.centre[1], dz = g.z - p.centre[2];
  return g.level == p.atoms - 1 && std::abs(g.width - p.width) < 1e-5 * p.width &&
         std::sqrt(dx * dx + dy * dy + dz * dz) < 0.02;
}

TEST(Series, small_clusters_have_the_terms_of_all_their_subsets) {
  for (const unsigned int seed : {1u, 2u, 3u, 4u, 5u, 6u}) {
    for (const float extent : {2.5f, 4.0f, 6.0f}) {
      const std::vector<Sphere> spheres = cluster(11, extent, seed);
      Gaussian builder;
      const std::vector<Gsphere> terms = full(builder, molecule(spheres));
      const std::vector<Product> products = all_products(spheres);
      double kept_volume = 0;
      std::size_t clearly_kept = 0;
      for (std::size_t set = 1; set < products.size(); ++set) {
        const Product& p = products[set];
        if (p.least > 0.1) kept_volume += p.atoms % 2 ? p.volume : -p.volume;
        if (p.least < 0.104) continue;
        ++clearly_kept;
        EXPECT_TRUE(std::any_of(terms.begin(), terms.end(),
                                [&](const Gsphere& g) {
                                  return is_same(g, p) &&
                                         std::abs(std::abs(g.volume) - p.volume) <
                                             0.04 * p.volume &&
                                         (g.volume > 0) == (p.atoms % 2 == 1);
                                }))
            << "seed " << seed << " set " << set << " of volume " << p.volume;
      }
      EXPECT_LT(terms.size(), clearly_kept + clearly_kept / 50 + 20);
      for (const Gsphere& g : terms) {
        const auto found = std::find_if(products.begin() + 1, products.end(),
                                        [&](const Product& p) { return is_same(g, p); });
        ASSERT_NE(found, products.end());
        EXPECT_GT(found->volume, 0.096);
        EXPECT_NEAR(g.prefactor * std::pow(M_PI / g.width, 1.5), std::abs(g.volume),
                    1e-5 * std::abs(g.volume));
      }
      EXPECT_NEAR(total_volume(terms), kept_volume, 0.006 * kept_volume) << seed << ' ' << extent;
    }
  }
}

std::vector<std::array<float, 8>> sorted(const std::vector<Gsphere>& terms) {
  std::vector<std::array<float, 8>> all;
  for (const Gsphere& g : terms)
    all.push_back(
        {g.x, g.y, g.z, g.width, g.prefactor, g.volume, g.radius, static_cast<float>(g.level)});
  std::sort(all.begin(), all.end());
  return all;
}

TEST(Series, more_atoms_than_the_pairwise_search_takes_change_no_term) {
  for (const unsigned int seed : {7u, 8u, 9u}) {
    std::vector<Sphere> spheres = cluster(150, 14.0f, seed);
    Gaussian builder;
    const std::vector<Gsphere> few = full(builder, molecule(spheres));
    EXPECT_GT(few.size(), 700u);
    for (int i = 0; i < 90; ++i)
      spheres.push_back({{500.0f + 40.0f * static_cast<float>(i), -30.0f, 70.0f}, 1.7f});
    std::vector<Gsphere> many = full(builder, molecule(spheres));
    ASSERT_EQ(many.size(), few.size() + 90);
    EXPECT_EQ(many.back().level, 0);
    many.resize(few.size());
    EXPECT_EQ(sorted(many), sorted(few));
  }
}

/// The atoms before atom `limit` in the order of a breadth-first walk through a k-d tree into which
/// the spheres went one by one.
std::vector<std::size_t> walk_of_tree(const std::vector<Sphere>& spheres, std::size_t limit) {
  std::vector<std::array<std::size_t, 2>> children(spheres.size());  // 0 for none
  std::vector<std::size_t> axis(spheres.size());
  for (std::size_t i = 1; i < spheres.size(); ++i) {
    std::size_t at = 0;
    for (;;) {
      const std::size_t k = axis[at];
      std::size_t& child = children[at][spheres[at].centre[k] >= spheres[i].centre[k] ? 0 : 1];
      if (child == 0) {
        child = i;
        axis[i] = (k + 1) % 3;
        break;
      }
      at = child;
    }
  }
  std::vector<std::size_t> queue = {0};
  for (std::size_t head = 0; head < queue.size(); ++head) {
    for (const std::size_t child : children[queue[head]]) {
      if (child != 0 && child < limit) queue.push_back(child);
    }
  }
  return queue;
}

TEST(Series, past_the_pairwise_search_terms_come_in_the_order_of_a_tree) {
  // Many equal coordinates, and a string of atoms in a row, which makes the tree deep.
  std::vector<Sphere> spheres = cluster(260, 15.0f, 21, {1.7f});
  for (Sphere& sphere : spheres) {
    sphere.centre[0] = std::round(sphere.centre[0]);
    sphere.centre[1] = std::round(sphere.centre[1]);
  }
  for (int i = 0; i < 60; ++i)
    spheres.push_back({{40.0f + static_cast<float>(i), 5, 5}, 1.7f});
  Gaussian builder;
  full(builder, molecule(spheres));
  std::size_t pairs = 0, disordered = 0;
  for (std::size_t i = 1; i < spheres.size(); ++i) {
    // Pairs of atom i in their order, told by their middles.
    const std::vector<std::size_t> walk = walk_of_tree(spheres, i);
    std::vector<std::size_t> places;
    const auto end = static_cast<std::size_t>(builder.first_term[i + 1]);
    for (auto k = static_cast<std::size_t>(builder.first_term[i]); k < end; ++k) {
      const Gsphere& term = builder.terms[k];
      if (term.level != 1) continue;
      const auto distance = [&](std::size_t j) {
        const auto &a = spheres[i].centre, &b = spheres[j].centre;
        return std::hypot(term.x - (a[0] + b[0]) / 2, term.y - (a[1] + b[1]) / 2,
                          term.z - (a[2] + b[2]) / 2);
      };
      const auto nearest =
          std::min_element(walk.begin(), walk.end(),
                           [&](std::size_t a, std::size_t b) { return distance(a) < distance(b); });
      ASSERT_LT(distance(*nearest), 0.02f);
      places.push_back(static_cast<std::size_t>(nearest - walk.begin()));
    }
    EXPECT_TRUE(std::is_sorted(places.begin(), places.end())) << i;
    pairs += places.size();
    disordered += places.size() > 2 ? 1 : 0;
  }
  EXPECT_GT(pairs, 700u);
  EXPECT_GT(disordered, 100u);
}

TEST(Series, volumes_of_real_peptides_are_those_of_the_product_form) {
  for (const std::string file : {"5wkd.pdb", "5i55.cif"}) {
    if (!vxgrid_test::has_shared_data(file)) GTEST_SKIP() << vxgrid_test::missing_data(file);
    VXGraphMol mol;
    ASSERT_TRUE(VXReadMolecule(vxgrid_test::shared_data(file), mol));
    VXAssignBondiVdWRadii(mol);
    Gaussian builder;
    float volume = 0;
    EXPECT_EQ(builder.vx_calculate_volume(mol, &volume), 1);
    EXPECT_NEAR(volume, total_volume(full(builder, mol)), 1e-4 * double{volume});
    VXBrioGrid grid;
    ASSERT_EQ(vx_make_molecular_product_gaussian_grid(mol, 0.25f, grid), 1);
    const double integral =
        std::accumulate(grid.GetValues(), grid.GetValues() + grid.GetSize(), 0.0) *
        std::pow(0.25, 3);
    EXPECT_NEAR(volume, integral, 0.02 * integral) << file;
  }
}

TEST(Series, one_atom_has_one_term_and_two_in_one_place_a_negative_pair) {
  Gaussian builder;
  const std::vector<Gsphere> one = full(builder, molecule({{{1, 2, 3}, 1.7f}}));
  ASSERT_EQ(one.size(), 1u);
  EXPECT_EQ(one[0].level, 0);
  EXPECT_EQ(one[0].x, 1.0f);
  EXPECT_NEAR(one[0].volume, 20.58, 0.12);
  EXPECT_NEAR(one[0].prefactor, 2.7, 0.02);
  // The squared reach: there a like atom has a product of the size of the cut-off.
  const std::vector<Sphere> apart = {{{0, 0, 0}, 1.7f}, {{std::sqrt(one[0].radius), 0, 0}, 1.7f}};
  EXPECT_NEAR(product_of(apart, 3).volume, 0.1, 1e-4);
  const std::vector<Gsphere> two = full(builder, molecule({{{1, 2, 3}, 1.7f}, {{1, 2, 3}, 1.7f}}));
  ASSERT_EQ(two.size(), 3u);
  EXPECT_EQ(two[2].level, 1);
  EXPECT_LT(two[2].volume, 0.0f);
  EXPECT_GT(two[2].prefactor, 0.0f);
  EXPECT_GT(total_volume(two), one[0].volume);
}

TEST(Series, tables_are_kept_or_made_anew_as_radii_and_settings_ask) {
  const VXGraphMol wide = molecule(cluster(40, 8.0f, 11)),
                   equal = molecule(cluster(40, 8.0f, 11, {1.6f}));
  Gaussian builder;
  const auto same = [](const std::vector<Gsphere>& a, const std::vector<Gsphere>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(Gsphere)) == 0;
  };
  const std::vector<Gsphere> first = full(builder, wide);
  EXPECT_TRUE(same(full(builder, wide), first));
  Gaussian fresh;
  EXPECT_TRUE(same(full(builder, equal), full(fresh, equal)));
  EXPECT_TRUE(same(full(builder, wide), first));
  // A finer cut-off keeps more; going back gives the old terms.
  builder.cutoff = 0.02f;
  const std::vector<Gsphere> finer = full(builder, wide);
  EXPECT_GT(finer.size(), first.size());
  builder.cutoff = 0.1f;
  EXPECT_TRUE(same(full(builder, wide), first));
  // Copies work by themselves, whichever search they need.
  const VXGraphMol large = molecule(cluster(300, 20.0f, 12));
  const std::vector<Gsphere> of_large = full(builder, large);
  Gaussian copy = builder;
  EXPECT_TRUE(same(full(copy, large), of_large));
  EXPECT_EQ(builder.vi_delete_gauss_rep(), 1);
  EXPECT_EQ(builder.capacity, 0);
  EXPECT_TRUE(same(full(builder, large), of_large));
}

TEST(Series, hydrogens_and_atoms_without_a_size_are_left_out) {
  VXGraphMol mol = make_model(
      std::array<ModelAtom, 4>{{{6, 0, 0, 0}, {1, 1.1f, 0, 0}, {8, 0, 1.4f, 0}, {7, 0, 0, 1.4f}}});
  Gaussian builder;
  Gsphere* terms = nullptr;
  int count = 0;
  // Bondi's radii in the series, those by element in the atomic form.
  EXPECT_EQ(builder.vx_make_gaussian_representation(mol, &terms, &count), 1);
  EXPECT_NEAR(terms[0].volume, 4.18879 * std::pow(1.7, 3), 0.12);
  EXPECT_EQ(builder.vx_make_atomic_gaussian_representation(mol, &terms, &count), 1);
  ASSERT_EQ(count, 4);
  EXPECT_EQ(terms[1].radius, 1.0f);
  EXPECT_EQ(terms[3].radius, 1.65f);
  EXPECT_EQ(mol.GetAtom(0)->GetRadius(), 0.0f);

  const float radii[] = {1.7f, 1.2f, 0.00009f, 1.5f};
  for (unsigned int i = 0; i < 4; ++i)
    mol.GetAtom(i)->SetRadius(radii[i]);
  const auto atoms = [&](int no_hydrogens) {
    EXPECT_EQ(builder.make_full_gaussian_rep_base(mol, no_hydrogens, &terms, &count), 1);
    return std::count_if(terms, terms + count, [](const Gsphere& g) { return g.level == 0; });
  };
  EXPECT_EQ(atoms(0), 3);
  EXPECT_EQ(atoms(1), 2);
  EXPECT_NEAR(terms[1].z, 1.4f, 0);  // the nitrogen, with its own place and size
  EXPECT_NEAR(terms[1].volume, 4.18879 * std::pow(1.5, 3), 0.09);
  mol.DeleteAtom(mol.GetAtom(0));
  EXPECT_EQ(atoms(1), 1);
  EXPECT_EQ(terms[0].z, 1.4f);
}

TEST(Series, bonds_are_products_of_their_atoms) {
  VXGraphMol mol =
      make_model(std::array<ModelAtom, 3>{{{6, 0, 0, 0}, {8, 1.2f, 0.3f, 0}, {1, 0, -1.0f, 0.4f}}});
  const float radii[] = {1.7f, 1.5f, 1.1f};
  for (unsigned int i = 0; i < 3; ++i)
    mol.GetAtom(i)->SetRadius(radii[i]);
  mol.NewBond(mol.GetAtom(0), mol.GetAtom(1), 1);
  mol.NewBond(mol.GetAtom(0), mol.GetAtom(2), 1);
  Gaussian builder;
  Gsphere* terms = nullptr;
  int count = 0;
  EXPECT_EQ(builder.make_atomic_gaussian_rep_base(mol, 1, 0, &terms, &count), 1);
  ASSERT_EQ(count, 5);
  for (const auto& [bond, atom] : {std::pair{3, 1}, std::pair{4, 2}}) {
    Gsphere product;
    vi_make_overlap_gaussian(&terms[0], &terms[atom], &product);
    double volume = 0;
    vi_vol_sg_intersect(&volume, &terms[0], &terms[atom]);
    const Gsphere& term = terms[bond];
    EXPECT_EQ(term.level, 1);
    EXPECT_NEAR(term.width, product.width, 1e-5);
    EXPECT_NEAR(term.x, product.x, 1e-5);
    EXPECT_NEAR(term.y, product.y, 1e-5);
    EXPECT_NEAR(term.z, product.z, 1e-5);
    EXPECT_NEAR(term.prefactor, -product.prefactor, 1e-5);
    EXPECT_NEAR(term.volume, volume, 1e-5 * volume);
    EXPECT_NEAR(term.radius, std::cbrt(volume * 3 / (4 * M_PI)), 1e-4);
  }
  EXPECT_EQ(builder.vx_make_bond_gaussian_representation_no_hydrogens(mol, &terms, &count), 1);
  EXPECT_EQ(count, 3);
  MessageCapture messages;
  EXPECT_EQ(builder.make_test(mol), 1);
  ASSERT_EQ(messages.messages.size(), 4u);
  const std::string last = messages.messages[3].second;
  EXPECT_EQ(last.substr(0, 15), "full vol (h) = ");
  const std::vector<Gsphere> all = full(builder, mol);
  EXPECT_NEAR(std::stod(last.substr(15)), total_volume(all), 1e-3);
  EXPECT_NE(last.find(", num= " + std::to_string(all.size())), std::string::npos);
}

TEST(Series, what_cannot_be_built_is_refused_and_odd_molecules_do_no_harm) {
  Gaussian builder;
  Gsphere* terms = nullptr;
  int count = 7;
  VXGraphMol none, placeless, sizeless;
  placeless.NewAtom(6);
  EXPECT_EQ(builder.make_full_gaussian_rep_base(none, 0, &terms, &count), 0);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(builder.make_atomic_gaussian_rep_base(none, 1, 0, &terms, &count), 0);
  EXPECT_EQ(builder.make_full_gaussian_rep_base(placeless, 0, &terms, &count), 0);
  EXPECT_EQ(builder.make_full_gaussian_rep_base(
                make_model(std::array<ModelAtom, 1>{{{1, 0, 0, 0}}}), 1, &terms, &count),
            0);
  float volume = 7;
  EXPECT_EQ(builder.vx_calculate_volume_no_hydrogens(none, &volume), 1);
  EXPECT_EQ(volume, 0.0f);
  EXPECT_EQ(builder.vi_init_gauss_rep(0), 0);
  EXPECT_EQ(builder.vi_init_gauss_rep(-5), 0);
  EXPECT_EQ(builder.vi_init_gs(-1), 0);

  // Sixty atoms in one place have 2^60 subsets.
  for (const std::size_t n : {60u, 260u}) {
    const MessageCapture messages;
    EXPECT_EQ(builder.make_full_gaussian_rep_base(
                  molecule(std::vector<Sphere>(n, {{1, 1, 1}, 1.7f})), 0, &terms, &count),
              0);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(messages.messages.size(), 1u);
  }
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  constexpr float infinity = std::numeric_limits<float>::infinity();
  for (const std::size_t n : {3u, 250u}) {
    std::vector<Sphere> spheres = cluster(n, 12.0f, 3);
    spheres.push_back({{nan, 0, 0}, 1.7f});
    spheres.push_back({{0, infinity, 0}, 1.7f});
    spheres.push_back({{3e38f, -3e38f, 1e30f}, 1.7f});
    spheres.push_back({{1, 1, 1}, nan});
    spheres.push_back({{1, 1, 1}, infinity});
    spheres.push_back({{1, 1, 1}, -1.7f});
    spheres.push_back({{1, 1, 1}, 0.0002f});
    const std::vector<Gsphere> odd = full(builder, molecule(spheres));
    EXPECT_EQ(std::count_if(odd.begin(), odd.end(), [](const Gsphere& g) { return g.level == 0; }),
              static_cast<std::ptrdiff_t>(n) + 4);
    EXPECT_LT(odd.size(), 100 * n);
  }
  for (const float radius : {1e20f, 1e-3f})
    full(builder, molecule({{{0, 0, 0}, radius}, {{1, 0, 0}, radius}, {{0, 1, 0}, 2.0f}}));
}

}  // namespace
