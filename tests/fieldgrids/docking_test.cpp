// Docking maps against direct sums over the atoms.
#include "vxgrid/fieldgrids/docking.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <vector>

#include "support/messages.h"

namespace {

using namespace VXCore;
using vxgrid_test::MessageCapture;

PdbStruct make_atom(const char* name, float x, float y, float z) {
  PdbStruct atom;
  atom.x = x;
  atom.y = y;
  atom.z = z;
  std::strncpy(atom.label + 2, name, sizeof atom.label - 2);
  return atom;
}

struct Record : GridStruct {
  Record() = default;
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;
  ~Record() { vx_deallocate_grid_struct(*this, true, true); }
  std::size_t points() const {
    return static_cast<std::size_t>(xdim) * static_cast<std::size_t>(ydim) *
           static_cast<std::size_t>(zdim);
  }
};

const std::vector<PdbStruct> protein = {
    make_atom(" CA ", 0, 0, 0), make_atom(" O  ", 2.2f, 0.4f, 0.3f), make_atom("1HB ", -1, 0.7f, 2),
    make_atom(" SG ", 0.3f, 3, -0.8f)};
const std::array<double, 4> radius = {1.7, 1.6, 1.0, 1.9};

// The Gaussian of a prefactor that has the volume of a sphere.
double width_for(double prefactor, double r) {
  return std::pow(prefactor * 0.75 * std::sqrt(M_PI), 2.0 / 3.0) / (r * r);
}

// Calls test(value, distances to the atoms) for the points of a plane.
template <class Test>
void for_points(const Record& g, std::size_t plane, Test test) {
  for (std::size_t i = 0; i < g.points(); ++i) {
    const auto coordinate = [&](float mid, int dim, std::size_t index) {
      return double{mid} + (static_cast<double>(index) - (dim - 1) / 2.0) * double{g.spacing};
    };
    const auto xdim = static_cast<std::size_t>(g.xdim);
    const auto ydim = static_cast<std::size_t>(g.ydim);
    const double x = coordinate(g.xmid, g.xdim, i % xdim);
    const double y = coordinate(g.ymid, g.ydim, i / xdim % ydim);
    const double z = coordinate(g.zmid, g.zdim, i / xdim / ydim);
    std::array<double, 4> d{};
    for (std::size_t a = 0; a < 4; ++a) {
      d[a] =
          std::hypot(x - double{protein[a].x}, y - double{protein[a].y}, z - double{protein[a].z});
    }
    test(double{g.floats[plane * g.points() + i]}, d);
  }
}

TEST(Docking, atoms_are_typed_by_the_first_letter_of_their_names) {
  const struct {
    const char* name;
    int type;
  } cases[] = {{" CA ", 0}, {"CA  ", 0}, {"1HB ", 1}, {" 2HG", 1}, {"34OX", 2},
               {"43OX", 4}, {"  CA", 4}, {"11HA", 4}, {" N  ", 3}, {" F1 ", 5},
               {" c  ", 4}, {"", 4},     {"5HX ", 4}, {"1234N", 3}};
  for (const auto& c : cases) {
    PdbStruct atom = make_atom(c.name, 0, 0, 0);
    Record grid;
    float probe = 1.7f;
    EXPECT_EQ(vx_make_docking_grid(&grid, &atom, 1, &probe, 1, 4.0f, 1, 0, 0, 1), 1);
    EXPECT_EQ(atom.type, c.type) << c.name;
  }
}

TEST(Docking, each_plane_is_the_sum_of_what_its_probe_feels_of_the_atoms) {
  std::vector<PdbStruct> atoms = protein;
  std::array<float, 3> probes = {1.7f, 0.0f, 1.2f};
  for (const double scale : {1.0, 2.5}) {
    for (const int flag : {0, 1}) {
      Record grid;
      EXPECT_EQ(vx_make_docking_grid(&grid, atoms.data(), 4, probes.data(), 3, 0.75f,
                                     static_cast<float>(scale), 9, 0, flag),
                1);
      // x runs from -2 to 3.8, and 15 more.
      EXPECT_EQ(grid.xdim, 27);
      EXPECT_FLOAT_EQ(grid.xmid, 0.9f);
      const double prefactor = std::sqrt(0.4265795397863698 * scale);
      for (const std::size_t plane : {std::size_t{0}, std::size_t{2}}) {
        int compared = 0;
        for_points(grid, plane, [&](double value, const std::array<double, 4>& d) {
          double expected = 0;
          for (std::size_t a = 0; a < 4; ++a) {
            const double p = double{probes[plane]};
            const double wa = width_for(prefactor, radius[a]);
            const double wp = width_for(prefactor, p);
            const double w = wa * wp / (wa + wp);
            const double c2 = (radius[a] + p) * (radius[a] + p);
            const double height = flag != 0 ? std::exp(w * c2) : prefactor / std::pow(wa + wp, 1.5);
            const double reach = std::sqrt(std::log(height / 0.001) / w);
            // Where a term ends within the rounding to lattice points is the kernel's business.
            if (std::fabs(d[a] - reach) < 1.5 * 0.75) return;
            if (d[a] > reach) continue;
            expected += height * (1 + w * (d[a] * d[a] - c2)) * std::exp(-w * d[a] * d[a]);
          }
          ++compared;
          EXPECT_NEAR(value, expected, 1e-4 * std::max(1.0, std::fabs(expected)));
        });
        EXPECT_GT(compared, 1000);
      }
      // A probe without a radius feels nothing.
      EXPECT_TRUE(std::all_of(grid.floats + grid.points(), grid.floats + 2 * grid.points(),
                              [](float v) { return v == 0.0f; }));
    }
  }
}

TEST(Docking, an_atom_is_worth_one_at_contact_and_less_elsewhere) {
  PdbStruct atom = make_atom(" C  ", 0, 0, 0);
  float probe = 1.6f;
  Record grid;
  EXPECT_EQ(vx_make_docking_grid(&grid, &atom, 1, &probe, 1, 0.1f, 1, 0, 0, 1), 1);
  float* const end = grid.floats + grid.points();
  const float* const best = std::max_element(grid.floats, end);
  EXPECT_NEAR(*best, 1.0f, 1e-4f);
  const auto at = static_cast<int>(best - grid.floats);
  const std::array<int, 3> index = {at % grid.xdim, at / grid.xdim % grid.ydim,
                                    at / grid.xdim / grid.ydim};
  const float centre = static_cast<float>(grid.xdim - 1) / 2.0f;
  const float d =
      std::hypot(static_cast<float>(index[0]) - centre, static_cast<float>(index[1]) - centre,
                 static_cast<float>(index[2]) - centre);
  EXPECT_NEAR(d * 0.1f, 3.3f, 0.05f);
  EXPECT_LT(*std::min_element(grid.floats, end), -2.0f);
}

TEST(Docking, the_potential_is_the_density_scaled_to_one) {
  std::vector<PdbStruct> atoms = protein;
  float probe = 1.7f;
  for (const double extra : {0.0, 1.4, -1.2}) {
    Record grid;
    const MessageCapture messages;
    EXPECT_EQ(vx_make_docking_grid(&grid, atoms.data(), 4, &probe, 1, 0.75f, 1,
                                   static_cast<float>(extra), 2, 1),
              1);
    const double prefactor = std::sqrt(0.4265795397863698);
    std::vector<double> direct;
    for_points(grid, 1, [&](double, const std::array<double, 4>& d) {
      double sum = 0;
      for (std::size_t a = 0; a < 4; ++a) {
        if (radius[a] + extra <= 0) continue;
        sum += prefactor * std::exp(-width_for(prefactor, radius[a] + extra) * d[a] * d[a]);
      }
      direct.push_back(sum);
    });
    const double largest = *std::max_element(direct.begin(), direct.end());
    EXPECT_EQ(*std::max_element(grid.floats + grid.points(), grid.floats + 2 * grid.points()), 1);
    std::size_t i = 0;
    // Each term ends at a height of 0.001.
    for_points(grid, 1, [&](double value, const std::array<double, 4>&) {
      EXPECT_NEAR(value, direct[i++] / largest, 4 * 0.0011 / largest);
    });
  }
}

TEST(Docking, the_table_of_weights_is_the_exponential) {
  const std::vector<float> table = docking_weight_table(87);
  ASSERT_EQ(table.size(), 8701u);
  EXPECT_EQ(table.back(), 0.0f);
  for (std::size_t i = 0; i < 8700; ++i) {
    const double exact = std::exp(-0.01 * static_cast<double>(i));
    EXPECT_NEAR(double{table[i]}, exact, 2e-5 * exact);
  }
  EXPECT_EQ(docking_weight_table(2000000000).size(), 10401u);
  EXPECT_EQ(docking_weight_table(0), std::vector<float>{0.0f});
  EXPECT_EQ(docking_weight_table(-5).size(), 1u);
}

TEST(Docking, bad_input_gives_0_and_leaves_the_record) {
  PdbStruct atom = make_atom(" C  ", 0, 0, 0);
  PdbStruct lost = make_atom(" C  ", 1e30f, NAN, 0);
  float probe = 1.7f;
  Record grid;
  const auto make = [&](PdbStruct* atoms, int count, float* probes, int n, float spacing,
                        float scale, int potential) {
    return vx_make_docking_grid(&grid, atoms, count, probes, n, spacing, scale, 0, potential, 1);
  };
  EXPECT_EQ(vx_make_docking_grid(nullptr, &atom, 1, &probe, 1, 1, 1, 0, 0, 1), 0);
  EXPECT_EQ(make(nullptr, 1, &probe, 1, 1, 1, 0), 0);
  EXPECT_EQ(make(&atom, 0, &probe, 1, 1, 1, 0), 0);
  EXPECT_EQ(make(&atom, 1, nullptr, 1, 1, 1, 0), 0);
  EXPECT_EQ(make(&atom, 1, &probe, 0, 1, 1, 0), 0);
  EXPECT_EQ(make(&atom, 1, &probe, -1, 1, 1, 1), 0);
  EXPECT_EQ(make(&lost, 1, &probe, 1, 1, 1, 0), 0);
  for (const float spacing : {0.0f, -1.0f, NAN, 1e-6f, 0.014f, 100.0f})
    EXPECT_EQ(make(&atom, 1, &probe, 1, spacing, 1, 0), 0) << spacing;
  for (const float scale : {0.0f, -1.0f, NAN, 1e30f, INFINITY})
    EXPECT_EQ(make(&atom, 1, &probe, 1, 1, scale, 0), 0) << scale;
  EXPECT_EQ(grid.floats, nullptr);
  EXPECT_EQ(grid.xdim, 0);
  const MessageCapture messages;
  // A stack that is too high, of a grid that is not.
  EXPECT_EQ(make(&atom, 1, &probe, 2147483647, 1, 1, 1), 0);
  EXPECT_EQ(make(&atom, 1, nullptr, 0, 1, 1, 1), 1);
}

}  // namespace
