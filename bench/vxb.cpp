// Grids as VXB bytes in memory, against a plain copy of their values into fresh memory.
#include <benchmark/benchmark.h>

#include <algorithm>  // for equal
#include <cstdint>    // for int64_t
#include <cstdlib>    // for abort
#include <random>     // for mt19937
#include <vector>     // for vector

#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/serial/grid_vxb.h"
#include "vxgrid/toolkit/names.h"
#include "vxgrid/toolkit/vxb/handler.h"

namespace {

using namespace VXCore;

constexpr unsigned int edge = 256;
constexpr std::size_t points = std::size_t{edge} * edge * edge;

const std::vector<float>& values() {
  static const std::vector<float> made = [] {
    std::mt19937 random(1);
    std::vector<float> numbers(points);
    for (float& number : numbers)
      number = static_cast<float>(random()) - 2e9f;
    return numbers;
  }();
  return made;
}

template <class Grid>
const Grid& grid() {
  static const Grid made = [] {
    Grid filled;
    filled.SetDim(edge, edge, edge);
    filled.SetValues(values().data(), points);
    filled.SetSpacing(0.5f);
    filled.SetMid(1, 2, 3);
    filled.SetDoubleData("resolution", 1.5);
    return filled;
  }();
  return made;
}

void count_bytes(benchmark::State& state) {
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(points * sizeof(float)));
}

void plain_copy(benchmark::State& state) {
  for (auto _ : state) {
    const std::vector<float> copy(values());
    benchmark::DoNotOptimize(copy.data());
  }
  count_bytes(state);
}

template <class Grid>
void write_vxb(benchmark::State& state) {
  VXBinaryIOHandler handler;
  const Grid& from = grid<Grid>();
  for (auto _ : state) {
    vxosstream out;
    if (!handler.WriteObject(out, from)) std::abort();
    benchmark::DoNotOptimize(out.str().data());
  }
  count_bytes(state);
}

template <class Grid>
void read_vxb(benchmark::State& state) {
  VXBinaryIOHandler handler;
  vxosstream out;
  if (!handler.WriteObject(out, grid<Grid>())) std::abort();
  for (auto _ : state) {
    vxisstream in(out.str().data(), out.str().size());
    Grid back;
    if (handler.ReadObject(in, back) != VXBStatus::Success) std::abort();
    benchmark::DoNotOptimize(back.GetValues());
    state.PauseTiming();
    if (!std::equal(values().begin(), values().end(), back.GetValues())) std::abort();
    state.ResumeTiming();
  }
  count_bytes(state);
}

BENCHMARK(plain_copy)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(write_vxb<VXScalarGrid>)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(write_vxb<VXSkewGrid>)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(write_vxb<VXBrioGrid>)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(read_vxb<VXScalarGrid>)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(read_vxb<VXSkewGrid>)->Unit(benchmark::kMillisecond)->MinTime(2);

}  // namespace

BENCHMARK_MAIN();
