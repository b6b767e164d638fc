// A plain grid record that owns its buffers, for tests.
#ifndef VXGRID_TESTS_GRIDMATH_TEST_RECORD_H
#define VXGRID_TESTS_GRIDMATH_TEST_RECORD_H

#include <array>    // for array
#include <cstddef>  // for size_t
#include <random>   // for mt19937, uniform_real_distribution
#include <vector>   // for vector

#include "vxgrid/grid/grid_struct.h"

namespace vxgrid_test {

class TestRecord {
 public:
  TestRecord(std::array<int, 3> dims, std::array<float, 3> mid, float spacing)
      : floats(static_cast<std::size_t>(dims[0]) * static_cast<std::size_t>(dims[1]) *
               static_cast<std::size_t>(dims[2])),
        integers(floats.size()) {
    grid.floats = floats.data();
    grid.integers = integers.data();
    grid.xdim = dims[0];
    grid.ydim = dims[1];
    grid.zdim = dims[2];
    grid.xmid = mid[0];
    grid.ymid = mid[1];
    grid.zmid = mid[2];
    grid.spacing = spacing;
    grid.inverse_spacing = 1.0f / spacing;
  }
  TestRecord(const TestRecord&) = delete;
  TestRecord& operator=(const TestRecord&) = delete;

  std::size_t element(int x, int y, int z) const {
    return static_cast<std::size_t>(x + grid.xdim * (y + grid.ydim * z));
  }

  /// Coordinates in double precision, so that oracles do not share the library's rounding.
  std::array<double, 3> place(double x, double y, double z) const {
    return {grid.xmid + (x - (grid.xdim - 1) / 2.0) * double{grid.spacing},
            grid.ymid + (y - (grid.ydim - 1) / 2.0) * double{grid.spacing},
            grid.zmid + (z - (grid.zdim - 1) / 2.0) * double{grid.spacing}};
  }

  /// Calls visit(x, y, z, element) for all points, x fastest.
  template <class Visit>
  void for_each_point(Visit visit) const {
    std::size_t e = 0;
    for (int z = 0; z < grid.zdim; ++z) {
      for (int y = 0; y < grid.ydim; ++y) {
        for (int x = 0; x < grid.xdim; ++x)
          visit(x, y, z, e++);
      }
    }
  }

  /// Fills the floats from a function of the place.
  template <class Field>
  void fill(Field field) {
    for_each_point([&](int x, int y, int z, std::size_t e) {
      const auto [px, py, pz] = place(x, y, z);
      floats[e] = static_cast<float>(field(px, py, pz));
    });
  }

  void fill_random(unsigned int seed) {
    std::mt19937 generator(seed);
    std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
    for (float& value : floats)
      value = uniform(generator);
  }

  std::vector<float> floats;
  std::vector<int> integers;
  VXCore::GridStruct grid;
};

}  // namespace vxgrid_test

#endif
