// The Gaussian kernels on a protein-like molecule of 5,000 atoms at 0.5 A, beside a plain loop that
// calls double std::exp at each point of the same balls.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <tuple>
#include <vector>

#include "vxgrid/gaussian/gauss_grid.h"
#include "vxgrid/gaussian/gsphere.h"
#include "vxgrid/gridmath/sizing.h"
#include "vxgrid/toolkit/core/value_buffer.h"

namespace {

using namespace VXCore;

constexpr float cutoff = 0.001f;

struct Model {
  std::vector<PdbStruct> atoms;
  std::vector<float> widths;
  std::vector<float> prefactors;
  GridStruct grid;

  int count() const { return static_cast<int>(atoms.size()); }
  std::size_t points() const {
    return static_cast<std::size_t>(grid.xdim) * static_cast<std::size_t>(grid.ydim) *
           static_cast<std::size_t>(grid.zdim);
  }
};

/// A ball of atoms at the density of a protein, with radii of C, N and O. Neighbours in the array
/// are near each other in space, as along a chain.
const Model& protein_like() {
  static const Model model = [] {
    std::mt19937 random(11);
    const auto uniform = [&](double low, double high) {
      return low + (high - low) * (static_cast<double>(random()) / 4294967296.0);
    };
    Model made;
    constexpr double radius = 28.8;
    while (made.atoms.size() < 5000) {
      const double x = uniform(-radius, radius), y = uniform(-radius, radius),
                   z = uniform(-radius, radius);
      if (x * x + y * y + z * z > radius * radius) continue;
      PdbStruct atom;
      atom.x = static_cast<float>(x);
      atom.y = static_cast<float>(y);
      atom.z = static_cast<float>(z);
      made.atoms.push_back(atom);
    }
    const auto cell = [](const PdbStruct& atom) {
      constexpr float edge = 5.0f;
      const float z = std::floor(atom.z / edge);
      const float y = std::floor(atom.y / edge) * (std::fmod(z, 2.0f) == 0 ? 1.0f : -1.0f);
      return std::tuple(z, y, atom.x);
    };
    std::sort(made.atoms.begin(), made.atoms.end(),
              [&](const PdbStruct& a, const PdbStruct& b) { return cell(a) < cell(b); });
    constexpr float radii_of_kinds[] = {1.7f, 1.7f, 1.7f, 1.65f, 1.6f};
    std::vector<float> radii, coords;
    for (const PdbStruct& atom : made.atoms) {
      radii.push_back(radii_of_kinds[random() % 5]);
      coords.insert(coords.end(), {atom.x, atom.y, atom.z});
    }
    made.prefactors.assign(made.atoms.size(), 2.7f);
    made.widths.resize(made.atoms.size());
    vi_assign_gwid_from_rad_pre(made.prefactors.data(), radii.data(), made.widths.data(),
                                made.count());
    vx_set_grid_from_points(coords.data(), made.count(), 4, 4, 4, 0.5f, &made.grid);
    return made;
  }();
  return model;
}

/// Calls visit(element, d^2) for the points of one atom's ball, as a straightforward program would.
template <class Visit>
void visit_ball(const Model& model, std::size_t i, Visit visit) {
  const GridStruct& grid = model.grid;
  const double h = grid.spacing;
  const int dim[3] = {grid.xdim, grid.ydim, grid.zdim};
  const double mid[3] = {grid.xmid, grid.ymid, grid.zmid};
  const double centre[3] = {model.atoms[i].x, model.atoms[i].y, model.atoms[i].z};
  double u[3];
  int node[3];
  for (int k = 0; k < 3; ++k) {
    const double f = (centre[k] - (mid[k] - (dim[k] - 1) * h / 2)) / h;
    node[k] = static_cast<int>(std::lround(f));
    u[k] = f - node[k];
  }
  const double reach = vi_gauss_rad(model.prefactors[i], model.widths[i], cutoff) / h +
                       std::sqrt(u[0] * u[0] + u[1] * u[1] + u[2] * u[2]);
  const int r = static_cast<int>(reach);
  const int r_squared = static_cast<int>(reach * reach);
  for (int c = -r; c <= r; ++c) {
    const int z = node[2] + c;
    if (z < 0 || z >= dim[2]) continue;
    for (int b = -r; b <= r; ++b) {
      const int y = node[1] + b;
      if (y < 0 || y >= dim[1]) continue;
      for (int a = -r; a <= r; ++a) {
        const int x = node[0] + a;
        if (x < 0 || x >= dim[0] || a * a + b * b + c * c > r_squared) continue;
        const double d2 =
            h * h * ((u[0] - a) * (u[0] - a) + (u[1] - b) * (u[1] - b) + (u[2] - c) * (u[2] - c));
        visit(static_cast<std::size_t>(x) +
                  static_cast<std::size_t>(dim[0]) *
                      (static_cast<std::size_t>(y) +
                       static_cast<std::size_t>(dim[1]) * static_cast<std::size_t>(z)),
              d2);
      }
    }
  }
}

void plain_sum(const Model& model, float* values) {
  for (std::size_t i = 0; i < model.atoms.size(); ++i) {
    const double width = model.widths[i];
    const double prefactor = model.prefactors[i];
    visit_ball(model, i, [=](std::size_t element, double d2) {
      values[element] += static_cast<float>(prefactor * std::exp(-width * d2));
    });
  }
}

void kernel(const Model& model, int type, float* values) {
  GridStruct grid = model.grid;
  grid.floats = values;
  vi_gauss_grid(0, model.count(), const_cast<PdbStruct*>(model.atoms.data()),
                const_cast<float*>(model.widths.data()),
                const_cast<float*>(model.prefactors.data()), cutoff, type, grid, nullptr, nullptr,
                nullptr);
}

void set_points(benchmark::State& state) {
  const Model& model = protein_like();
  std::size_t touched = 0;
  for (std::size_t i = 0; i < model.atoms.size(); ++i)
    visit_ball(model, i, [&](std::size_t, double) { ++touched; });
  state.counters["points_per_second"] = benchmark::Counter(
      static_cast<double>(touched), benchmark::Counter::kIsIterationInvariantRate);
}

void plain_exp_loop(benchmark::State& state) {
  const Model& model = protein_like();
  ValueBuffer<float> values(model.points());
  for (auto _ : state) {
    plain_sum(model, values.data());
    benchmark::DoNotOptimize(values.data());
  }
  set_points(state);
}
BENCHMARK(plain_exp_loop)->Unit(benchmark::kMillisecond);

void run_type(benchmark::State& state, int type, std::size_t planes) {
  const Model& model = protein_like();
  ValueBuffer<float> values(planes * model.points());
  for (auto _ : state) {
    kernel(model, type, values.data());
    benchmark::DoNotOptimize(values.data());
  }
  set_points(state);
}

void vxgrid_sum(benchmark::State& state) {
  run_type(state, GaussGridType::Sum, 1);

  const Model& model = protein_like();
  std::vector<float> ours(model.points()), theirs(model.points());
  kernel(model, GaussGridType::Sum, ours.data());
  plain_sum(model, theirs.data());
  for (std::size_t i = 0; i < ours.size(); ++i) {
    if (!(std::fabs(ours[i] - theirs[i]) < 1e-5f * 2.7f)) std::abort();
  }
}
BENCHMARK(vxgrid_sum)->Unit(benchmark::kMillisecond);

void vxgrid_product(benchmark::State& state) {
  run_type(state, GaussGridType::Product, 1);
}
BENCHMARK(vxgrid_product)->Unit(benchmark::kMillisecond);

void vxgrid_sum_and_derivatives(benchmark::State& state) {
  run_type(state, GaussGridType::SumAndDerivatives, 4);
}
BENCHMARK(vxgrid_sum_and_derivatives)->Unit(benchmark::kMillisecond);

void vxgrid_product_and_derivatives(benchmark::State& state) {
  run_type(state, GaussGridType::ProductAndDerivatives, 4);
}
BENCHMARK(vxgrid_product_and_derivatives)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
