// MTZ file to finished map on a grid of 116 x 120 x 196 points, beside gemmi doing the same.
//
// gemmi's share is read_mtz_file, get_f_phi_on_grid and transform_f_phi_grid_to_map, which gives
// the unscaled map; ours is VXReadMTZ, which also expands the reflections as a set, closes the map
// with one more plane on each axis, takes its statistics and puts it on sigma scale. Two different
// libraries do the transforms (FFTW 2 in double precision here, pocketfft in single precision
// there), and each is shown apart: the figure to compare is "ratio", ours over gemmi's with the
// transforms taken off both, of the medians of rounds that alternate between the two.
#include <benchmark/benchmark.h>
#include <rfftw.h>

#include <algorithm>          // for nth_element
#include <array>              // for array
#include <cmath>              // for abs
#include <complex>            // for complex
#include <cstdlib>            // for abort
#include <ctime>              // for clock_gettime
#include <filesystem>         // for remove, temp_directory_path
#include <gemmi/fourier.hpp>  // for get_f_phi_on_grid, transform_f_phi_grid_to_map
#define GEMMI_WRITE_IMPLEMENTATION
#include <gemmi/mtz.hpp>  // for Mtz, MtzDataProxy, read_mtz_file
#include <random>         // for mt19937
#include <string>         // for string
#include <vector>         // for vector

#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/mtz.h"

namespace {

using Coefficients = gemmi::FPhiProxy<gemmi::MtzDataProxy>;

constexpr std::array<int, 3> map_size{116, 120, 196};

// The asymmetric unit of P 21 21 21 to 2 A in a cell whose largest indices, 45 47 77, give that
// map, with the columns that refinement programs write.
class MtzFile {
 public:
  MtzFile() {
    gemmi::Mtz mtz(true);
    mtz.spacegroup = gemmi::find_spacegroup_by_number(19);
    mtz.set_cell_for_all(gemmi::UnitCell(90.5, 94.5, 154.5, 90, 90, 90));
    mtz.add_dataset("made");
    const std::vector<std::pair<const char*, char>> columns = {
        {"FP", 'F'},   {"SIGFP", 'Q'},  {"FC", 'F'},      {"PHIC", 'P'}, {"FWT", 'F'},
        {"PHWT", 'P'}, {"DELFWT", 'F'}, {"PHDELWT", 'P'}, {"FOM", 'W'}};
    for (const auto& [label, type] : columns)
      mtz.add_column(label, type, -1, -1, false);
    std::mt19937 random(5);
    std::vector<float> rows;
    // Without the centric zones, whose phases are not free.
    for (int h = 1; h <= 45; ++h)
      for (int k = 1; k <= 47; ++k)
        for (int l = 1; l <= 77; ++l) {
          if (mtz.cell.calculate_1_d2({{h, k, l}}) > 0.25) continue;
          for (int index : {h, k, l})
            rows.push_back(static_cast<float>(index));
          for (const auto& [label, type] : columns)
            rows.push_back(static_cast<float>(random() % (type == 'P' ? 36000 : 9000)) / 100);
        }
    mtz.set_data(rows.data(), rows.size());
    mtz.write_to_file(path_.string());
  }
  ~MtzFile() { std::filesystem::remove(path_); }

  std::string path() const { return path_.string(); }

 private:
  std::filesystem::path path_ = std::filesystem::temp_directory_path() / "vxgrid-bench.mtz";
};

std::string mtz_path() {
  static const MtzFile file;
  return file.path();
}

gemmi::Grid<float> gemmi_map() {
  const gemmi::Mtz mtz = gemmi::read_mtz_file(mtz_path());
  const gemmi::MtzDataProxy proxy{mtz};
  const Coefficients coefficients(proxy, proxy.column_index("FWT"), proxy.column_index("PHWT"));
  return gemmi::transform_f_phi_grid_to_map(
      gemmi::get_f_phi_on_grid<float>(coefficients, map_size, true));
}

VXCore::VXSkewGrid our_map() {
  VXCore::VXSkewGrid grid;
  if (!VXCore::VXReadMTZ(mtz_path(), grid, VXCore::VXMTZMapType::Fwt)) std::abort();
  return grid;
}

void check_maps() {
  const VXCore::VXSkewGrid ours = our_map();
  const gemmi::Grid<float> theirs = gemmi_map();
  if (ours.GetXDim() != 117 || ours.GetYDim() != 121 || ours.GetZDim() != 197) std::abort();
  const float sigma = ours.GetFloatData("SIGMA");
  for (unsigned int element = 0; element < ours.GetSize(); element += 101) {
    unsigned int x = 0, y = 0, z = 0;
    ours.ElementToGridIdx(element, x, y, z);
    const float value =
        theirs.get_value(static_cast<int>(x), static_cast<int>(y), static_cast<int>(z));
    if (!(std::abs(ours.GetValues()[element] - value / sigma) < 1e-3)) std::abort();
  }
}

class FftwTransform {
 public:
  FftwTransform() : data_(map_size[0] * map_size[1] * 2 * (map_size[2] / 2 + 1), 1.0) {}
  void run() {
    const rfftwnd_plan plan =
        rfftw3d_create_plan(map_size[0], map_size[1], map_size[2], FFTW_COMPLEX_TO_REAL,
                            FFTW_ESTIMATE | FFTW_IN_PLACE | FFTW_USE_WISDOM);
    rfftwnd_one_complex_to_real(plan, reinterpret_cast<fftw_complex*>(data_.data()), nullptr);
    rfftwnd_destroy_plan(plan);
  }
  void reset() { std::fill(data_.begin(), data_.end(), 1.0); }

 private:
  std::vector<double> data_;
};

// Of this thread's own time, page faults included, so that a busy machine disturbs it less.
double thread_seconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

template <class Work>
double seconds(Work&& work) {
  const double start = thread_seconds();
  work();
  return thread_seconds() - start;
}

double median(std::vector<double> times) {
  const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

void map_from_mtz(benchmark::State& state) {
  check_maps();
  const gemmi::Mtz mtz = gemmi::read_mtz_file(mtz_path());
  const gemmi::MtzDataProxy proxy{mtz};
  const Coefficients coefficients(proxy, proxy.column_index("FWT"), proxy.column_index("PHWT"));
  FftwTransform fftw;
  std::vector<double> ours, our_transform, theirs, their_transform;
  for (auto _ : state) {
    ours.push_back(seconds([] { benchmark::DoNotOptimize(our_map()); }));
    theirs.push_back(seconds([] { benchmark::DoNotOptimize(gemmi_map()); }));
    fftw.reset();
    our_transform.push_back(seconds([&fftw] { fftw.run(); }));
    auto grid = gemmi::get_f_phi_on_grid<float>(coefficients, map_size, true);
    their_transform.push_back(seconds([&grid] {
      benchmark::DoNotOptimize(gemmi::transform_f_phi_grid_to_map(std::move(grid)));
    }));
    state.SetIterationTime(ours.back());
  }
  const double rest = median(ours) - median(our_transform);
  const double their_rest = median(theirs) - median(their_transform);
  state.counters["ours_ms"] = 1e3 * median(ours);
  state.counters["our_transform_ms"] = 1e3 * median(our_transform);
  state.counters["gemmi_ms"] = 1e3 * median(theirs);
  state.counters["gemmi_transform_ms"] = 1e3 * median(their_transform);
  state.counters["ours_less_transform_ms"] = 1e3 * rest;
  state.counters["gemmi_less_transform_ms"] = 1e3 * their_rest;
  state.counters["ratio"] = rest / their_rest;
}
BENCHMARK(map_from_mtz)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(30);

}  // namespace

BENCHMARK_MAIN();
