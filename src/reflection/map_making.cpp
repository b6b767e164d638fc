// From reflections to an electron-density map, by a Fourier transform with FFTW 2.
#include "vxgrid/reflection/map_making.h"

#include <rfftw.h>
#include <sys/mman.h>  // for madvise

#include <algorithm>  // for copy_n, fill_n, max, min
#include <array>      // for array
#include <cstddef>    // for size_t
#include <cstdint>    // for int64_t, uintptr_t
#include <cstdlib>    // for abs, free, malloc
#include <limits>     // for numeric_limits
#include <memory>     // for unique_ptr
#include <mutex>      // for lock_guard, mutex

#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/reflection/reflection_impl.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {
namespace {

static_assert(sizeof(fftw_real) == sizeof(double), "FFTW 2 has to be the one of double precision");
static_assert(sizeof(fftw_complex) == sizeof(std::complex<double>));

constexpr std::int64_t max_map_points = std::numeric_limits<std::int32_t>::max();

struct FftwFree {
  void operator()(double* array) const { fftw_free(array); }
};
using FftwArray = std::unique_ptr<double[], FftwFree>;

// Fresh memory is faster in large pages, where the system has them. Only a wish: whole pages inside
// of the block are all that is asked for.
void ask_for_huge_pages(void* block, std::size_t bytes) {
  constexpr std::uintptr_t page = std::uintptr_t{2} << 20;
  const auto start = (reinterpret_cast<std::uintptr_t>(block) + page - 1) / page * page;
  const auto end = (reinterpret_cast<std::uintptr_t>(block) + bytes) / page * page;
  if (start < end) madvise(reinterpret_cast<void*>(start), end - start, MADV_HUGEPAGE);
}

// Zeros, or null. fftw_malloc ends the program when there is no memory, so that is found out first.
FftwArray allocate_transform(std::size_t count) {
  void* const probe = std::malloc(count * sizeof(double));
  if (!probe) return nullptr;
  std::free(probe);
  FftwArray array(static_cast<double*>(fftw_malloc(count * sizeof(double))));
  ask_for_huge_pages(array.get(), count * sizeof(double));
  std::fill_n(array.get(), count, 0.0);
  return array;
}

// FFTW's planner keeps tables that all plans share.
std::mutex& planner_mutex() {
  static std::mutex mutex;
  return mutex;
}

bool transform_to_real_space(FFTMap& map) {
  constexpr int flags = FFTW_ESTIMATE | FFTW_IN_PLACE | FFTW_USE_WISDOM;
  rfftwnd_plan plan = nullptr;
  {
    const std::lock_guard lock(planner_mutex());
    plan = rfftw3d_create_plan(map.nx, map.ny, map.nz, FFTW_COMPLEX_TO_REAL, flags);
  }
  if (!plan) return false;
  rfftwnd_one_complex_to_real(plan, reinterpret_cast<fftw_complex*>(map.complex_data), nullptr);
  const std::lock_guard lock(planner_mutex());
  rfftwnd_destroy_plan(plan);
  return true;
}

// Turns the map from z fastest to x fastest, and closes it: the last plane of each axis repeats the
// first. `values` has room for one point more than the map on each axis.
void lay_out_closed(const FFTMap& map, float* values) {
  const auto nx = static_cast<std::size_t>(map.nx);
  const auto ny = static_cast<std::size_t>(map.ny);
  const auto nz = static_cast<std::size_t>(map.nz);
  const std::size_t row_in = static_cast<std::size_t>(map.rz);
  const std::size_t plane_in = row_in * ny;
  const std::size_t row = nx + 1;
  const std::size_t plane = row * (ny + 1);

  // As many planes at a time as two cache lines of doubles hold. The next two of each row are asked
  // for ahead: rows lie too far apart for the processor to guess.
  constexpr std::size_t tile = 16;
  for (std::size_t y = 0; y < ny; ++y) {
    for (std::size_t z0 = 0; z0 < nz; z0 += tile) {
      const std::size_t depth = std::min(tile, nz - z0);
      const std::size_t ahead = std::min(2 * tile, nz - z0);
      const double* from = map.real_data + row_in * y + z0;
      float* to = values + row * y + plane * z0;
      for (std::size_t x = 0; x < nx; ++x) {
        for (std::size_t z = tile; z < ahead; z += 8)
          __builtin_prefetch(from + plane_in * x + z);
        for (std::size_t z = 0; z < depth; ++z)
          to[x + plane * z] = static_cast<float>(from[plane_in * x + z]);
      }
      for (std::size_t z = 0; z < depth; ++z)
        to[nx + plane * z] = to[plane * z];
    }
  }
  for (std::size_t z = 0; z < nz; ++z)
    std::copy_n(values + plane * z, row, values + plane * z + row * ny);
  std::copy_n(values, plane, values + plane * nz);
}

// Largest absolute value plus 1.
std::int64_t index_limit(const std::vector<int>& indices, unsigned int count) {
  std::int64_t largest = 0;
  for (unsigned int i = 0; i < count; ++i)
    largest = std::max(largest, std::abs(std::int64_t{indices[i]}));
  return largest + 1;
}

// 2.5 samples for each step of the largest index, which is a sampling of 0.4 times the resolution.
std::int64_t sample_count(std::int64_t limit) {
  return static_cast<std::int64_t>(2.5 * static_cast<double>(limit));
}

void set_crystal(VXSkewGrid& grid, const VXXtal::VXSymmetry& symmetry, const FFTMap& map) {
  const VXXtal::VXUnitCell& cell = symmetry.cell();
  grid.SetReentrant(true);
  grid.SetSpaceGroup(symmetry.GetNumber());
  const auto nx = static_cast<unsigned int>(map.nx);
  const auto ny = static_cast<unsigned int>(map.ny);
  const auto nz = static_cast<unsigned int>(map.nz);
  grid.SetUnitCell(cell.a, cell.b, cell.c, cell.alpha, cell.beta, cell.gamma, nx, ny, nz);
  grid.SetData("vx_symm", symmetry);

  // Puts grid point (0, 0, 0) at the origin of the cell.
  std::array<float, 9> r{};
  grid.GetImpl().GetOrientation(r.data());
  const auto x = static_cast<float>(map.nx);
  const auto y = static_cast<float>(map.ny);
  const auto z = static_cast<float>(map.nz);
  const float half = 0.5F * grid.GetSpacing();
  grid.SetMid(half * (x * r[0] + y * r[1] + z * r[2]), half * (x * r[3] + y * r[4] + z * r[5]),
              half * (x * r[6] + y * r[7] + z * r[8]));
}

}  // namespace

bool VXReflectionImpl::MakeMap(VXSkewGrid& grid, unsigned int maptype) const {
  const VXXtal::VXUnitCell& cell = symmetry_.cell();
  if (count_ == 0 || !cell.isValid() || !ValidateMaptype(static_cast<int>(maptype))) return false;
  const float volume = cell.GetVolume();
  if (!(volume >= 1e-05) || !has_indices()) return false;

  const std::array<std::int64_t, 3> limits = {index_limit(h_, count_), index_limit(k_, count_),
                                              index_limit(l_, count_)};
  std::array<std::int64_t, 3> dims{};
  std::transform(limits.begin(), limits.end(), dims.begin(), sample_count);
  if (std::max({dims[0], dims[1], dims[2]}) >= max_map_points) return false;
  VXThrow.Verbose("Hmax %d, kmax %d, lmax %d", static_cast<int>(limits[0]),
                  static_cast<int>(limits[1]), static_cast<int>(limits[2]));
  VXThrow.Verbose("Dimensions %d %d %d", static_cast<int>(dims[0]), static_cast<int>(dims[1]),
                  static_cast<int>(dims[2]));
  VXStopwatch stopwatch;
  VXThrow.Debug("Using FFTW");
  for (std::int64_t& dim : dims)
    dim += dim % 2;
  VXThrow.Debug("Final Dimensions %d %d %d", static_cast<int>(dims[0]), static_cast<int>(dims[1]),
                static_cast<int>(dims[2]));
  if (dims[0] + 1 > max_map_points / (dims[1] + 1) / (dims[2] + 1)) return false;

  FFTMap map{};
  map.nx = map.cx = map.rx = static_cast<int>(dims[0]);
  map.ny = map.cy = map.ry = static_cast<int>(dims[1]);
  map.nz = static_cast<int>(dims[2]);
  map.cz = map.nz / 2 + 1;
  map.rz = 2 * map.cz;
  map.scale = 1.0F / volume;
  FftwArray array =
      allocate_transform(static_cast<std::size_t>(map.rx) * static_cast<std::size_t>(map.ry) *
                         static_cast<std::size_t>(map.rz));
  if (!array) return false;
  map.real_data = array.get();
  map.complex_data = reinterpret_cast<std::complex<double>*>(array.get());

  // FFTW's backward transform sums F exp(+2 pi i h.x), and gives no scale.
  place_coefficients(map, static_cast<int>(maptype), map.scale, -double{map.scale});
  if (!transform_to_real_space(map)) return false;
  VXThrow.Debug("Time elapsed for fft %f", static_cast<double>(stopwatch.Lap()));

  grid.Clear();
  if (!grid.SetDim(static_cast<unsigned int>(map.nx) + 1, static_cast<unsigned int>(map.ny) + 1,
                   static_cast<unsigned int>(map.nz) + 1))
    return false;
  float* const values = grid.GetValues();
  if (!values) return false;
  lay_out_closed(map, values);
  grid.SetTitle("FT: " + (title_.empty() ? std::string("grid") : title_));
  grid.SetData("MapType", maptype);
  set_crystal(grid, symmetry_, map);
  return true;
}

}  // namespace VXCore
