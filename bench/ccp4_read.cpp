// Reading a CCP4 map into a skew grid, beside gemmi doing the same.
//
// The map has 256 x 240 x 270 points along x, y, z and covers no full period, so that no closing
// plane is added. gemmi_read is Ccp4<float>::read_ccp4_file alone, which is all that a file in the
// order X, Y, Z needs; gemmi_read_and_setup adds Ccp4<float>::setup(NAN, MapSetup::ReorderOnly),
// which turns the axes to that order and does nothing else.
#include <benchmark/benchmark.h>
#include <unistd.h>  // for getpid

#include <array>           // for array
#include <bit>             // for bit_cast
#include <cmath>           // for NAN
#include <cstdint>         // for uint32_t
#include <cstdlib>         // for abort
#include <filesystem>      // for remove_all, temp_directory_path
#include <fstream>         // for ofstream
#include <gemmi/ccp4.hpp>  // for Ccp4
#include <string>          // for string
#include <vector>          // for vector

#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/gridio/dispatch.h"

namespace {

using Axes = std::array<std::uint32_t, 3>;  // of columns, rows, sections: 1 x, 2 y, 3 z

constexpr Axes points{256, 240, 270};

float value_at(std::uint32_t x, std::uint32_t y, std::uint32_t z) {
  return static_cast<float>(x + 7 * y) - 3.25f * static_cast<float>(z);
}

Axes axes_of(const benchmark::State& state) {
  const auto code = static_cast<std::uint32_t>(state.range(0));
  return {code / 100, code / 10 % 10, code % 10};
}

// The folder that the maps lie in for the time of the run; each is made when it is first asked for.
class MapFiles {
 public:
  MapFiles() { std::filesystem::create_directories(folder_); }
  ~MapFiles() { std::filesystem::remove_all(folder_); }

  std::string of(const Axes& axes) const {
    const std::string path =
        (folder_ / (std::to_string(axes[0] * 100 + axes[1] * 10 + axes[2]) + ".map")).string();
    if (!std::filesystem::exists(path)) write(path, axes);
    return path;
  }

 private:
  static void write(const std::string& path, const Axes& axes) {
    std::vector<std::uint32_t> words(256, 0);
    for (std::size_t i = 0; i < 3; ++i) {
      words[i] = points[axes[i] - 1];
      words[7 + i] = points[i] + 30;
      words[10 + i] = std::bit_cast<std::uint32_t>(0.5f * static_cast<float>(points[i] + 30));
      words[13 + i] = std::bit_cast<std::uint32_t>(90.0f);
      words[16 + i] = axes[i];
    }
    words[3] = 2;
    words[22] = 1;
    words[52] = 0x2050414d;  // "MAP "
    words[53] = 0x4144;
    std::ofstream out(path, std::ios::binary);
    out.write(reinterpret_cast<const char*>(words.data()), 1024);
    std::vector<float> row(words[0]);
    Axes file{};
    const auto along = [&](std::uint32_t axis) {
      for (std::size_t i = 0; i < 3; ++i) {
        if (axes[i] == axis) return file[i];
      }
      return 0u;
    };
    for (file[2] = 0; file[2] < words[2]; ++file[2]) {
      for (file[1] = 0; file[1] < words[1]; ++file[1]) {
        for (file[0] = 0; file[0] < words[0]; ++file[0]) {
          row[file[0]] = value_at(along(1), along(2), along(3));
        }
        out.write(reinterpret_cast<const char*>(row.data()),
                  static_cast<std::streamsize>(4 * row.size()));
      }
    }
  }

  std::filesystem::path folder_ =
      std::filesystem::temp_directory_path() / ("vxgrid-bench-" + std::to_string(getpid()));
};

const MapFiles files;

void check(const float* values) {
  for (const auto& [x, y, z] : {Axes{0, 0, 0}, Axes{255, 1, 269}, Axes{17, 239, 5}}) {
    if (values[x + 256 * (y + 240 * z)] != value_at(x, y, z)) std::abort();
  }
}

void count_bytes(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * 4 * points[0] *
                          points[1] * points[2]);
}

void read_vxgrid(benchmark::State& state) {
  const std::string path = files.of(axes_of(state));
  const auto read = [&] {
    VXCore::VXSkewGrid grid;
    if (!VXCore::VXReadGrid(path, grid)) std::abort();
    check(grid.GetValues());
  };
  read();
  for (auto _ : state)
    read();
  count_bytes(state);
}

void read_gemmi(benchmark::State& state, bool turn) {
  const std::string path = files.of(axes_of(state));
  const auto read = [&] {
    gemmi::Ccp4<float> map;
    map.read_ccp4_file(path);
    if (turn) {
      map.setup(NAN, gemmi::MapSetup::ReorderOnly);
      check(map.grid.data.data());
    }
    benchmark::DoNotOptimize(map.grid.data.data());
  };
  read();
  for (auto _ : state)
    read();
  count_bytes(state);
}

void gemmi_read(benchmark::State& state) {
  read_gemmi(state, false);
}
void gemmi_read_and_setup(benchmark::State& state) {
  read_gemmi(state, true);
}

// The argument says which axes run along columns, rows and sections: 312 is Z, X, Y.
BENCHMARK(read_vxgrid)->Arg(123)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(gemmi_read)->Arg(123)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(gemmi_read_and_setup)->Arg(123)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(read_vxgrid)->Arg(312)->Arg(213)->Arg(321)->Unit(benchmark::kMillisecond)->MinTime(2);
BENCHMARK(gemmi_read_and_setup)
    ->Arg(312)
    ->Arg(213)
    ->Arg(321)
    ->Unit(benchmark::kMillisecond)
    ->MinTime(2);

}  // namespace

BENCHMARK_MAIN();
