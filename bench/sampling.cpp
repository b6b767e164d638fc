// Trilinear values of a 64^3 map at ten million random points, beside gemmi's
// Grid<float>::interpolate_value, which is given each point as a place in space, as the library is,
// and once more in grid coordinates.
#include <benchmark/benchmark.h>

#include <cmath>    // for fabs
#include <cstddef>  // for size_t
#include <cstdint>  // for int64_t
#include <random>   // for mt19937, uniform_real_distribution
#include <string>   // for to_string
#include <vector>   // for vector

#include "gemmi/grid.hpp"
#include "vxgrid/gridmath/sampling.h"

namespace {

constexpr int dim = 64;
constexpr std::size_t count = 10'000'000;
// Whole numbers and halves, so that both libraries see the same coordinates exactly.
constexpr float spacing = 0.5f;
constexpr float lower = -(dim - 1) * spacing / 2;

struct Inputs {
  std::vector<float> values = std::vector<float>(std::size_t{dim} * dim * dim);
  std::vector<float> points = std::vector<float>(3 * count);
  gemmi::Grid<float> grid;

  Inputs() {
    std::mt19937 generator(1);
    std::uniform_real_distribution<float> value(-1.0f, 1.0f);
    for (float& v : values)
      v = value(generator);
    std::uniform_real_distribution<float> coordinate(lower + 0.001f, -lower - 0.001f);
    for (float& p : points)
      p = coordinate(generator);
    grid.set_size(dim, dim, dim);
    grid.data = values;
    grid.unit_cell.set(dim * spacing, dim * spacing, dim * spacing, 90, 90, 90);
  }
};

const Inputs& inputs() {
  static const Inputs made;
  return made;
}

void ours(const Inputs& in, std::vector<float>& out) {
  VXCore::GridStruct record;
  record.floats = const_cast<float*>(in.values.data());
  record.xdim = record.ydim = record.zdim = dim;
  record.spacing = spacing;
  vi_map_to_atoms_from_grid(const_cast<float*>(in.points.data()), static_cast<int>(count),
                            out.data(), record, 2);
}

gemmi::Position place(const Inputs& in, std::size_t i) {
  return {double{in.points[3 * i]} - lower, double{in.points[3 * i + 1]} - lower,
          double{in.points[3 * i + 2]} - lower};
}

float gemmi_at_place(const Inputs& in, std::size_t i) {
  return in.grid.interpolate_value(place(in, i));
}

float gemmi_at_index(const Inputs& in, std::size_t i) {
  const gemmi::Position p = place(in, i);
  return in.grid.interpolate_value(p.x / spacing, p.y / spacing, p.z / spacing);
}

template <float (*value_at)(const Inputs&, std::size_t)>
void gemmi_values(const Inputs& in, std::vector<float>& out) {
  for (std::size_t i = 0; i < count; ++i)
    out[i] = value_at(in, i);
}

using Sampler = void (*)(const Inputs&, std::vector<float>&);

void sample(benchmark::State& state, Sampler sampler) {
  const Inputs& in = inputs();
  std::vector<float> out(count, -9.0f);
  for (auto _ : state) {
    sampler(in, out);
    benchmark::DoNotOptimize(out.data());
    benchmark::ClobberMemory();
  }
  // Trilinear values of numbers up to 1, at places that float knows to 2e-6 of a cell.
  for (std::size_t i = 0; i < count; i += 97) {
    if (!(std::fabs(out[i] - gemmi_at_index(in, i)) < 2e-5f)) {
      state.SkipWithError(("wrong value at point " + std::to_string(i)).c_str());
      return;
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(count));
}

BENCHMARK_CAPTURE(sample, vxgrid, ours)->Unit(benchmark::kMillisecond)->Repetitions(5);
BENCHMARK_CAPTURE(sample, gemmi_at_place, gemmi_values<gemmi_at_place>)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5);
BENCHMARK_CAPTURE(sample, gemmi_at_index, gemmi_values<gemmi_at_index>)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5);

}  // namespace

BENCHMARK_MAIN();
