// Spreading and gathering as a pair of transposed linear maps.
#include "vxgrid/gridmath/buffered_grid.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>
#include <tuple>
#include <vector>

#include "gridmath/test_record.h"

namespace {

using namespace VXCore;
using vxgrid_test::TestRecord;

constexpr std::array<int, 3> dims = {9, 8, 5};
constexpr std::array<float, 3> mid = {1, 2, 3};
constexpr float spacing = 0.5f;

// Atoms over the grid and, the last two, beyond it.
std::vector<PdbStruct> some_atoms(std::size_t count) {
  std::mt19937 generator(5);
  std::vector<PdbStruct> atoms(count);
  for (PdbStruct& atom : atoms) {
    const auto along = [&](std::size_t axis) {
      const float half = static_cast<float>(dims[axis] - 1) * spacing / 2;
      return std::uniform_real_distribution<float>(mid[axis] - half, mid[axis] + half)(generator);
    };
    atom.x = along(0);
    atom.y = along(1);
    atom.z = along(2);
  }
  atoms[count - 1].x = 100;
  atoms[count - 2].z = mid[2] - 1.01f;
  return atoms;
}

TEST(BufferedGrid, gathering_is_the_transpose_of_spreading) {
  std::vector<PdbStruct> atoms = some_atoms(60);
  for (const int buffer : {0, 2}) {
    TestRecord grid(dims, mid, spacing);
    grid.fill_random(1);
    std::vector<float> values(60);
    std::iota(values.begin(), values.end(), -20.0f);
    TestRecord spread(dims, mid, spacing);
    vi_add_from_atoms_to_buffered_grid(0, atoms.data(), 60, values.data(), spread.grid, buffer,
                                       buffer + 1);
    std::vector<float> gathered(60);
    vi_add_to_atoms_from_buffered_grid(0, atoms.data(), 60, gathered.data(), grid.grid, buffer,
                                       buffer + 1);
    const auto dot = [](const std::vector<float>& a, const std::vector<float>& b) {
      return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
    };
    EXPECT_NEAR(dot(grid.floats, spread.floats), dot(gathered, values), 1e-3);
    // What lies on the grid is all of what the atoms inside carry.
    EXPECT_NEAR(std::accumulate(spread.floats.begin(), spread.floats.end(), 0.0),
                std::accumulate(values.begin(), values.end() - 2, 0.0), 1e-3);
    EXPECT_EQ(gathered[58], 0.0f);
    EXPECT_EQ(gathered[59], 0.0f);
  }
}

TEST(BufferedGrid, gathering_adds_the_value_of_a_linear_field_at_the_atom) {
  TestRecord grid(dims, mid, spacing);
  const auto field = [](double x, double y, double z) { return 1 + x - 2 * y + 0.5 * z; };
  grid.fill(field);
  std::vector<PdbStruct> atoms = some_atoms(30);
  std::vector<float> values(30, 10.0f);
  vi_add_to_atoms_from_buffered_grid(0, atoms.data(), 28, values.data(), grid.grid, 1, 1);
  for (std::size_t i = 0; i < 28; ++i)
    EXPECT_NEAR(values[i], 10 + field(atoms[i].x, atoms[i].y, atoms[i].z), 1e-4);
}

TEST(BufferedGrid, constants_reach_the_eight_points_around_an_atom) {
  TestRecord grid(dims, mid, spacing);
  PdbStruct atom;
  std::tie(atom.x, atom.y, atom.z) = std::tuple(1.1f, 2.1f, 3.1f);
  vi_put_constant_from_atoms_to_buffered_grid(0, &atom, 1, 4.0f, grid.grid, 1, 1);
  int written = 0;
  grid.for_each_point([&](int x, int y, int z, std::size_t e) {
    const auto p = grid.place(x, y, z);
    const bool near = std::abs(p[0] - 1.1) < spacing && std::abs(p[1] - 2.1) < spacing &&
                      std::abs(p[2] - 3.1) < spacing;
    EXPECT_EQ(grid.floats[e], near ? 4.0f : 0.0f);
    written += near ? 1 : 0;
  });
  EXPECT_EQ(written, 8);
}

TEST(BufferedGrid, null_arrays_and_flat_grids_are_passed_over) {
  TestRecord grid({4, 4, 1}, {0, 0, 0}, 1.0f);
  PdbStruct atom;
  float value = 1;
  vi_add_from_atoms_to_buffered_grid(0, &atom, 1, &value, grid.grid, 0, 0);
  vi_add_from_atoms_to_buffered_grid(0, nullptr, 1, &value, grid.grid, 0, 0);
  vi_add_from_atoms_to_buffered_grid(0, &atom, 1, nullptr, grid.grid, 0, 0);
  grid.grid.spacing = 0;
  vi_put_constant_from_atoms_to_buffered_grid(0, &atom, 1, 1, grid.grid, 0, 0);
  EXPECT_EQ(grid.floats, std::vector<float>(16));
}

}  // namespace
