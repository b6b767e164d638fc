// Thinning of a blob on 128^3 points, beside the rules carried out point by point on the float
// values, as they read: three walks over the grid for each direction of each pass, and the
// templates in the order of the rules for each border point.
#include <benchmark/benchmark.h>

#include <algorithm>  // for equal
#include <cmath>      // for exp
#include <cstddef>    // for size_t
#include <cstdint>    // for int64_t
#include <vector>     // for vector

#include "../tests/fieldgrids/thinning_oracle.h"
#include "vxgrid/fieldgrids/thinning.h"

namespace {

constexpr int dim = 128;

/// The inside of a surface of overlapping Gaussians: arms of different thickness on a core.
const std::vector<float>& blob() {
  static const std::vector<float> made = [] {
    const double balls[][4] = {{64, 64, 64, 24}, {40, 50, 80, 20},   {88, 80, 60, 22},
                               {60, 96, 90, 16}, {96, 40, 36, 18},   {30, 84, 36, 17},
                               {64, 24, 64, 15}, {100, 100, 100, 12}};
    std::vector<float> values(std::size_t{dim} * dim * dim);
    std::size_t i = 0;
    for (int z = 0; z < dim; ++z)
      for (int y = 0; y < dim; ++y)
        for (int x = 0; x < dim; ++x, ++i) {
          double sum = 0;
          for (const auto& [cx, cy, cz, r] : balls)
            sum += std::exp(1 - ((x - cx) * (x - cx) + (y - cy) * (y - cy) + (z - cz) * (z - cz)) /
                                    (r * r));
          values[i] = sum > 1 ? 1.0f : 0.0f;
        }
    return values;
  }();
  return made;
}

VXCore::VXScalarGrid make_grid() {
  return {dim, dim, dim, 0, 0, 0, 1, "blob", blob().data()};
}

int thin_with_vxgrid(VXCore::VXScalarGrid& grid) {
  return VXCore::VXThinGrid(grid);
}

int thin_point_by_point(VXCore::VXScalarGrid& grid) {
  std::vector<float> values(grid.GetValues(), grid.GetValues() + grid.GetSize());
  const int passes = thinning_oracle::thin(values, dim, dim, dim).passes;
  grid.SetValues(values.data(), grid.GetSize());
  return passes;
}

void thin(benchmark::State& state, int (*thin_grid)(VXCore::VXScalarGrid&)) {
  static const std::vector<float> expected = [] {
    std::vector<float> values = blob();
    thinning_oracle::thin(values, dim, dim, dim);
    return values;
  }();
  int passes = 0;
  for (auto _ : state) {
    state.PauseTiming();
    VXCore::VXScalarGrid grid = make_grid();
    state.ResumeTiming();
    passes = thin_grid(grid);
    state.PauseTiming();
    if (!std::equal(expected.begin(), expected.end(), grid.GetValues())) {
      state.SkipWithError("the skeletons differ");
      break;
    }
    state.ResumeTiming();
  }
  state.counters["passes"] = passes;
  state.SetItemsProcessed(state.iterations() * int64_t{dim} * dim * dim * passes);
}

BENCHMARK_CAPTURE(thin, vxgrid, thin_with_vxgrid)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thin, point_by_point, thin_point_by_point)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
