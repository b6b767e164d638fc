// The overlap series, on many molecules of 100 atoms and on one of 10,000, by the time per term;
// and the greedy fit of a 64^3 grid with 200 Gaussians beside a straightforward one.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <random>
#include <tuple>
#include <vector>

#include "vxgrid/gaussian/grid_fit.h"
#include "vxgrid/gaussian/series.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/toolkit/names.h"

namespace {

using namespace VXCore;

class Uniform {
 public:
  explicit Uniform(unsigned int seed) : random_(seed) {}
  double operator()(double low, double high) {
    return low + (high - low) * (static_cast<double>(random_()) / 4294967296.0);
  }

 private:
  std::mt19937 random_;
};

/// A ball of atoms at the density of a protein, none nearer than a bond to another, in an order
/// that keeps neighbours together as a chain does.
VXGraphMol protein_like(std::size_t atoms, unsigned int seed) {
  using Point = std::array<double, 3>;
  constexpr double density = 0.055, bond = 1.4;
  const double radius = std::cbrt(static_cast<double>(atoms) / (4.18879 * density));
  const auto cells = static_cast<std::size_t>(2 * radius / bond) + 3;
  const auto cell_along = [&](double x) {
    return static_cast<std::size_t>((x + radius) / bond) + 1;
  };
  std::vector<std::vector<Point>> in_cell(cells * cells * cells);
  const auto cell_at = [&](std::size_t x, std::size_t y, std::size_t z) -> auto& {
    return in_cell[x + cells * (y + cells * z)];
  };
  const auto is_free = [&](const Point& p) {
    for (std::size_t z = cell_along(p[2]) - 1; z <= std::min(cell_along(p[2]) + 1, cells - 1); ++z)
      for (std::size_t y = cell_along(p[1]) - 1; y <= std::min(cell_along(p[1]) + 1, cells - 1);
           ++y)
        for (std::size_t x = cell_along(p[0]) - 1; x <= std::min(cell_along(p[0]) + 1, cells - 1);
             ++x)
          for (const Point& q : cell_at(x, y, z)) {
            if (std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]) < bond) return false;
          }
    return true;
  };
  Uniform uniform(seed);
  std::vector<Point> points;
  while (points.size() < atoms) {
    const Point p{uniform(-radius, radius), uniform(-radius, radius), uniform(-radius, radius)};
    if (std::hypot(p[0], p[1], p[2]) > radius || !is_free(p)) continue;
    cell_at(cell_along(p[0]), cell_along(p[1]), cell_along(p[2])).push_back(p);
    points.push_back(p);
  }
  const auto along_chain = [](const Point& p) {
    const double z = std::floor(p[2] / 5);
    return std::tuple(z, std::floor(p[1] / 5) * (std::fmod(z, 2) == 0 ? 1 : -1), p[0]);
  };
  std::sort(points.begin(), points.end(),
            [&](const Point& a, const Point& b) { return along_chain(a) < along_chain(b); });
  constexpr float radii[] = {1.7f, 1.7f, 1.7f, 1.55f, 1.52f};
  VXGraphMol mol;
  for (const Point& p : points) {
    const float xyz[3] = {static_cast<float>(p[0]), static_cast<float>(p[1]),
                          static_cast<float>(p[2])};
    VXAtomBase* const atom = mol.NewAtom(6);
    atom->SetRadius(radii[static_cast<std::size_t>(uniform(0, 5))]);
    mol.SetCoords(atom, xyz);
  }
  return mol;
}

/// `count` molecules of `atoms` atoms one after the other, with one builder.
void series(benchmark::State& state) {
  const auto atoms = static_cast<std::size_t>(state.range(0));
  std::vector<VXGraphMol> molecules;
  for (std::size_t i = 0; i < 10000 / atoms; ++i)
    molecules.push_back(protein_like(atoms, static_cast<unsigned int>(i) + 1));
  Gaussian builder;
  std::size_t terms = 0;
  for (auto _ : state) {
    terms = 0;
    for (const VXGraphMol& mol : molecules) {
      Gsphere* spheres = nullptr;
      int count = 0;
      builder.vx_make_gaussian_representation(mol, &spheres, &count);
      benchmark::DoNotOptimize(spheres);
      terms += static_cast<std::size_t>(count);
    }
  }
  state.counters["terms"] = static_cast<double>(terms);
  state.counters["time_per_term"] =
      benchmark::Counter(static_cast<double>(terms), benchmark::Counter::kIsIterationInvariantRate |
                                                         benchmark::Counter::kInvert);
}
BENCHMARK(series)->Arg(100)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond)->MinTime(1.0);

constexpr int side = 64;
constexpr float spacing = 0.5f;
constexpr int wanted = 200;
constexpr double cutoff = 0.004;

double width_of(double radius) {
  return 2.344250976862621 / (radius * radius);
}

std::size_t element(int x, int y, int z) {
  return static_cast<std::size_t>(x) +
         std::size_t{side} *
             (static_cast<std::size_t>(y) + std::size_t{side} * static_cast<std::size_t>(z));
}

int steps_to(double width) {
  return static_cast<int>(std::sqrt(-std::log(cutoff) / width) / double{spacing});
}

/// values += height*exp(-width*d^2) over a box, with an exponential for each point.
void add_gaussian(std::vector<float>& values, const std::array<int, 3>& node, double width,
                  double height) {
  const int r = steps_to(width);
  for (int z = std::max(node[2] - r, 0); z < std::min(node[2] + r, side); ++z)
    for (int y = std::max(node[1] - r, 0); y < std::min(node[1] + r, side); ++y)
      for (int x = std::max(node[0] - r, 0); x < std::min(node[0] + r, side); ++x) {
        const int dx = x - node[0], dy = y - node[1], dz = z - node[2];
        const double squared = double{spacing} * double{spacing} * (dx * dx + dy * dy + dz * dz);
        values[element(x, y, z)] += static_cast<float>(height * std::exp(-width * squared));
      }
}

/// Neighbours overlap, but none hides another.
const VXBrioGrid& grid_of_gaussians() {
  static const VXBrioGrid grid = [] {
    std::vector<float> values(side * side * side, 0.0f);
    Uniform uniform(9);
    for (int i = 0; i < wanted; ++i) {
      const auto place = [&](int cell) { return 5 + 10 * cell + static_cast<int>(uniform(0, 4)); };
      add_gaussian(values, {place(i % 6), place(i / 6 % 6), place(i / 36)}, width_of(1.2),
                   uniform(1.0, 3.0));
    }
    VXBrioGrid made;
    made.SetSpacing(spacing);
    made.SetMid(0, 0, 0);
    made.SetDim(side, side, side);
    std::copy(values.begin(), values.end(), made.GetValues());
    return made;
  }();
  return grid;
}

/// Separable smoothing along one axis, point by point.
std::vector<float> smoothed_along(int axis, const std::vector<float>& values, double width) {
  const int r = steps_to(width);
  std::vector<double> kernel;
  for (int k = 0; k <= r; ++k)
    kernel.push_back(double{spacing} *
                     std::exp(-width * double{spacing} * double{spacing} * k * k));
  std::vector<float> out(values.size(), 0.0f);
  for (int z = 0; z < side; ++z)
    for (int y = 0; y < side; ++y)
      for (int x = 0; x < side; ++x) {
        const int at = axis == 0 ? x : axis == 1 ? y : z;
        double sum = 0;
        for (int d = std::max(-r, -at); d <= std::min(r, side - 1 - at); ++d) {
          sum += kernel[static_cast<std::size_t>(std::abs(d))] *
                 double{values[element(x + (axis == 0 ? d : 0), y + (axis == 1 ? d : 0),
                                       z + (axis == 2 ? d : 0))]};
        }
        out[element(x, y, z)] = static_cast<float>(sum);
      }
  return out;
}

/// Matching pursuit as one would write it down: every response is looked at for each Gaussian.
std::vector<float> plain_fit(const VXBrioGrid& grid) {
  const std::vector<float> values(grid.GetValues(), grid.GetValues() + grid.GetSize());
  std::vector<std::vector<float>> responses;
  std::vector<double> widths, norms;
  for (const double radius : {3.2, 2.2, 1.2}) {
    const double w = width_of(radius);
    widths.push_back(w);
    norms.push_back(std::pow(2 * w / M_PI, 1.5));
    std::vector<float> response = values;
    for (int axis = 0; axis < 3; ++axis)
      response = smoothed_along(axis, response, w);
    for (float& value : response)
      value *= static_cast<float>(std::sqrt(norms.back()));
    responses.push_back(response);
  }
  std::vector<float> fitted(values.size(), 0.0f);
  for (int made = 0; made < wanted; ++made) {
    std::size_t level = 0, at = 0;
    for (std::size_t l = 0; l < responses.size(); ++l)
      for (std::size_t i = 0; i < values.size(); ++i) {
        if (values[i] > 0.01f && std::fabs(responses[l][i]) > std::fabs(responses[level][at])) {
          level = l;
          at = i;
        }
      }
    const std::array<int, 3> node{static_cast<int>(at % side), static_cast<int>(at / side % side),
                                  static_cast<int>(at / side / side)};
    const double width = widths[level];
    const double height = std::sqrt(norms[level]) * double{responses[level][at]};
    for (std::size_t l = 0; l < responses.size(); ++l) {
      const double sum = widths[l] + width;
      add_gaussian(responses[l], node, widths[l] * width / sum,
                   -height * std::sqrt(norms[l]) * std::pow(M_PI / sum, 1.5));
    }
    add_gaussian(fitted, node, width, height);
  }
  return fitted;
}

void library_fit(benchmark::State& state) {
  std::vector<float> coords, prefactors, widths;
  VXBrioGrid fitted;
  for (auto _ : state) {
    VXBrioGrid grid = grid_of_gaussians();
    vx_make_grid_gaussian_representation(grid, 0, 0, 0, 1, 0, 0, 0, wanted, coords, prefactors,
                                         widths, true, fitted);
  }
  state.counters["gaussians"] = static_cast<double>(widths.size());

  const std::vector<float> theirs = plain_fit(grid_of_gaussians());
  for (std::size_t i = 0; i < theirs.size(); ++i) {
    if (!(std::fabs(fitted.GetValues()[i] - theirs[i]) < 1e-3f)) std::abort();
  }
}
BENCHMARK(library_fit)->Unit(benchmark::kMillisecond);

void straightforward_fit(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(plain_fit(grid_of_gaussians()));
  state.counters["gaussians"] = wanted;
}
BENCHMARK(straightforward_fit)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
