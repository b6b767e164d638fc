// The greedy fit of grids: against projections computed in double, and against what went in.
#include "vxgrid/gaussian/grid_fit.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "support/models.h"
#include "vxgrid/gaussian/containers.h"
#include "vxgrid/gaussian/gsphere.h"
#include "vxgrid/grid/brio_grid.h"
#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/toolkit/names.h"

namespace {

using namespace VXCore;

VXBrioGrid cube(unsigned int dim, float spacing) {
  VXBrioGrid grid;
  grid.SetSpacing(spacing);
  grid.SetMid(1, 2, 3);
  grid.SetDim(dim, dim, dim);
  return grid;
}

struct Added {
  std::array<float, 3> centre;
  double width, prefactor;
};

template <class Value>
void add(VXBrioGrid& grid, Value value) {
  for (unsigned int e = 0; e < grid.GetSize(); ++e) {
    std::array<float, 3> p{};
    grid.ElementToSpatialCoord(e, p[0], p[1], p[2]);
    grid.GetValues()[e] += static_cast<float>(value(p));
  }
}

double squared_distance(const std::array<float, 3>& a, const std::array<float, 3>& b) {
  double sum = 0;
  for (std::size_t k = 0; k < 3; ++k)
    sum += (double{a[k]} - b[k]) * (double{a[k]} - b[k]);
  return sum;
}

void add(VXBrioGrid& grid, const Added& g) {
  add(grid, [&](const std::array<float, 3>& p) {
    return g.prefactor * std::exp(-g.width * squared_distance(p, g.centre));
  });
}

double energy(const VXBrioGrid& grid) {
  double sum = 0;
  for (unsigned int e = 0; e < grid.GetSize(); ++e)
    sum += double{grid.GetValues()[e]} * grid.GetValues()[e];
  return sum * std::pow(grid.GetSpacing(), 3);
}

struct Fit {
  std::vector<float> coords, prefactors, widths;
  VXBrioGrid fitted;
  std::size_t size() const { return widths.size(); }
};

Fit fit(VXBrioGrid& grid, float stop_gain, int run_to_limit, int max_gaussians, int levels = 0,
        float cutoff = 0) {
  Fit result;
  EXPECT_EQ(vx_make_grid_gaussian_representation(
                grid, cutoff, 0, stop_gain, run_to_limit, levels, 0, 0, max_gaussians,
                result.coords, result.prefactors, result.widths, true, result.fitted),
            1);
  return result;
}

double width_of(double radius) {
  return VXGetWidth(VXGetKappa(2.7), radius);
}

TEST(GridFit, gaussians_of_its_own_widths_come_back_largest_first) {
  VXBrioGrid grid = cube(61, 0.5f);
  const std::vector<Added> added = {{{-7, 2, 3}, width_of(3.2), 2.0},
                                    {{10, 9.5f, 3}, width_of(2.2), 2.5},
                                    {{10, -8, -6}, width_of(1.2), 3.0}};
  for (const Added& g : added)
    add(grid, g);
  const Fit result = fit(grid, 0.0f, 1, 3);
  ASSERT_EQ(result.size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    for (std::size_t k = 0; k < 3; ++k)
      EXPECT_NEAR(result.coords[3 * i + k], added[i].centre[k], 1e-4);
    EXPECT_NEAR(result.widths[i], added[i].width, 1e-5);
    EXPECT_NEAR(result.prefactors[i], added[i].prefactor, 0.02 * added[i].prefactor);
  }
  VXBrioGrid rest = grid;
  add(rest, [](const auto&) { return 0.0; });
  for (unsigned int e = 0; e < rest.GetSize(); ++e)
    rest.GetValues()[e] -= result.fitted.GetValues()[e];
  EXPECT_LT(energy(rest), 1e-3 * energy(grid));
}

TEST(GridFit, the_first_choice_is_the_largest_projection) {
  constexpr unsigned int side = 10;
  for (const unsigned int seed : {1u, 2u, 3u}) {
    VXBrioGrid grid = cube(side, 0.9f);
    std::mt19937 random(seed);
    const auto uniform = [&](float low, float high) {
      return low + (high - low) * static_cast<float>(random() % 1000) / 1000.0f;
    };
    for (int i = 0; i < 6; ++i) {
      add(grid, {{uniform(-2, 4), uniform(-1, 5), uniform(0, 6)},
                 uniform(0.2f, 1.5f),
                 uniform(0.5f, 3.0f)});
    }
    const double h3 = std::pow(0.9, 3);
    double best = 0, best_width = 0;
    std::array<float, 3> best_centre{};
    const auto squared_steps = [](unsigned int a, unsigned int b) {
      const int dx = static_cast<int>(a % side) - static_cast<int>(b % side);
      const int dy = static_cast<int>(a / side % side) - static_cast<int>(b / side % side);
      const int dz = static_cast<int>(a / side / side) - static_cast<int>(b / side / side);
      return static_cast<std::size_t>(dx * dx + dy * dy + dz * dz);
    };
    for (const double radius : {3.2, 2.2, 1.2}) {
      const double w = width_of(radius);
      const double norm = std::sqrt(std::pow(M_PI / (2 * w), 1.5));
      std::vector<double> height;
      for (int steps = 0; steps <= 3 * 9 * 9; ++steps)
        height.push_back(std::exp(-w * 0.9 * 0.9 * steps));
      for (unsigned int e = 0; e < grid.GetSize(); ++e) {
        double sum = 0;
        for (unsigned int other = 0; other < grid.GetSize(); ++other)
          sum += grid.GetValues()[other] * height[squared_steps(e, other)];
        if (sum * h3 / norm > best) {
          best = sum * h3 / norm;
          best_width = w;
          grid.ElementToSpatialCoord(e, best_centre[0], best_centre[1], best_centre[2]);
        }
      }
    }
    // A cut-off far out, so that the fit sees what the sum over all points sees.
    const Fit result = fit(grid, 1e9f, 0, 5, 0, 1e-9f);
    ASSERT_EQ(result.size(), 1u);
    EXPECT_NEAR(result.widths[0], best_width, 1e-5);
    for (std::size_t k = 0; k < 3; ++k)
      EXPECT_NEAR(result.coords[k], best_centre[k], 1e-4);
    const double norm = std::sqrt(std::pow(M_PI / (2 * best_width), 1.5));
    EXPECT_NEAR(result.prefactors[0], best / norm, 1e-3 * result.prefactors[0]);
  }
}

/// The fit step by step in plain loops: no list is kept, but for each level the threshold above
/// which its points are looked at.
class PlainFit {
 public:
  explicit PlainFit(const VXBrioGrid& grid)
      : values_(grid.GetValues(), grid.GetValues() + grid.GetSize()),
        dim_{static_cast<int>(grid.GetXDim()), static_cast<int>(grid.GetYDim()),
             static_cast<int>(grid.GetZDim())},
        h_(grid.GetSpacing()) {
    for (const float radius : {3.2f, 2.2f, 1.2f}) {
      const auto w = static_cast<float>(width_of(double{radius}));
      levels_.push_back({w, static_cast<float>(std::pow(2 * w / M_PI, 1.5)), response(w), {}});
      for (float& value : levels_.back().response)
        value *= std::sqrt(levels_.back().norm);
      for (const float value : levels_.back().response)
        threshold_ = std::max(threshold_, value);
    }
    look_above(0.85f * threshold_);
  }

  /// Element and level of the next Gaussian; false at the end.
  bool next(std::size_t& element, std::size_t& level) {
    for (;;) {
      float best = 0;
      for (std::size_t l = 0; l < levels_.size(); ++l) {
        for (std::size_t e = 0; e < values_.size(); ++e) {
          const float value = levels_[l].response[e];
          if (levels_[l].is_candidate[e] && std::abs(value) > 0.85f * threshold_ &&
              std::abs(value) > std::abs(best)) {
            best = value;
            element = e;
            level = l;
          }
        }
      }
      if (best < 0) return false;
      if (best > 0) break;
      threshold_ *= 0.85f;
      look_above(0.85f * threshold_);
    }
    take_off(element, level);
    return true;
  }

  float width(std::size_t level) const { return levels_[level].width; }
  float prefactor() const { return prefactor_; }

 private:
  struct Level {
    float width, norm;
    std::vector<float> response;
    std::vector<bool> is_candidate;
  };

  int place(std::size_t element, std::size_t axis) const {
    const auto e = static_cast<int>(element);
    return axis == 0 ? e % dim_[0] : axis == 1 ? e / dim_[0] % dim_[1] : e / dim_[0] / dim_[1];
  }
  int steps(float w) const { return static_cast<int>(std::sqrt(-std::log(0.004f) / w) / h_); }

  std::vector<float> response(float w) const {
    std::vector<float> out = values_;
    std::size_t stride = 1;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const std::vector<float> in = out;
      for (std::size_t e = 0; e < out.size(); ++e) {
        const int at = place(e, axis), r = steps(w);
        double sum = 0;
        for (int d = std::max(-r, -at); d <= std::min(r, dim_[axis] - 1 - at); ++d) {
          const float value = in[e + stride * static_cast<std::size_t>(at + d) -
                                 stride * static_cast<std::size_t>(at)];
          if (axis == 2 || value >= (axis == 0 ? 1e-7f : 1e-5f))
            sum += double{value * h_} * std::exp(-double{w * h_ * h_} * d * d);
        }
        out[e] = static_cast<float>(sum);
      }
      stride *= static_cast<std::size_t>(dim_[axis]);
    }
    for (std::size_t e = 0; e < out.size(); ++e) {
      if (!(values_[e] > 0.01f)) out[e] = 0;
    }
    return out;
  }

  void look_above(float threshold) {
    for (Level& level : levels_) {
      level.is_candidate.assign(values_.size(), false);
      for (std::size_t e = 0; e < values_.size(); ++e)
        level.is_candidate[e] = values_[e] > 0.01f && std::abs(level.response[e]) > threshold;
    }
  }

  void take_off(std::size_t element, std::size_t chosen) {
    const float width = levels_[chosen].width;
    prefactor_ = std::sqrt(levels_[chosen].norm) * levels_[chosen].response[element];
    for (Level& level : levels_) {
      const float sum = level.width + width;
      const double height =
          double{prefactor_} * std::sqrt(std::pow(M_PI / sum, 3) * double{level.norm});
      const int r = steps(level.width * width / sum);
      for (std::size_t e = 0; e < values_.size(); ++e) {
        int squared = 0;
        bool inside = true;
        for (std::size_t axis = 0; axis < 3; ++axis) {
          const int d = place(e, axis) - place(element, axis);
          inside = inside && -r <= d && d < r;
          squared += d * d;
        }
        if (inside) {
          level.response[e] -= static_cast<float>(
              height * std::exp(-double{level.width * width / sum * h_ * h_} * squared));
        }
      }
    }
  }

  std::vector<float> values_;
  std::array<int, 3> dim_;
  float h_;
  std::vector<Level> levels_;
  float threshold_ = 0;
  float prefactor_ = 0;
};

TEST(GridFit, every_choice_is_that_of_a_plain_search_until_the_largest_response_is_negative) {
  std::size_t ended = 0, longest = 0;
  for (const unsigned int seed : {1u, 2u, 3u, 4u}) {
    // A few Gaussians, so that responses fall by steps, or many narrow ones that overlap.
    std::mt19937 random(seed);
    const auto uniform = [&](float low, float high) {
      return low + (high - low) * static_cast<float>(random() % 10000) / 10000.0f;
    };
    VXBrioGrid grid = cube(24, 0.7f);
    const bool few = seed % 2 == 1;
    for (int i = 0; i < (few ? 6 : 60); ++i) {
      add(grid, {{uniform(-6, 8), uniform(-5, 9), uniform(-4, 10)},
                 width_of(uniform(1.0f, few ? 3.0f : 1.4f)),
                 uniform(0.1f, 3.0f)});
    }
    PlainFit plain(grid);
    const Fit result = fit(grid, 0, 1, 60);
    longest = std::max(longest, result.size());
    std::size_t element = 0, level = 0;
    for (std::size_t i = 0; i < result.size(); ++i) {
      ASSERT_TRUE(plain.next(element, level)) << i;
      std::array<float, 3> centre{};
      grid.ElementToSpatialCoord(static_cast<unsigned int>(element), centre[0], centre[1],
                                 centre[2]);
      for (std::size_t k = 0; k < 3; ++k)
        ASSERT_NEAR(result.coords[3 * i + k], centre[k], 1e-4) << seed << ' ' << i;
      ASSERT_NEAR(result.widths[i], plain.width(level), 1e-5) << seed << ' ' << i;
      ASSERT_NEAR(result.prefactors[i], plain.prefactor(), 1e-3 * result.prefactors[i]);
    }
    if (result.size() < 60) {
      EXPECT_FALSE(plain.next(element, level));
      ++ended;
    }
  }
  EXPECT_GT(ended, 0u);
  EXPECT_GT(longest, 30u);
}

TEST(GridFit, it_stops_by_number_or_by_gain_and_each_gaussian_takes_off_energy) {
  VXBrioGrid grid = cube(40, 0.5f);
  std::mt19937 random(5);
  for (int i = 0; i < 12; ++i) {
    const auto place = [&] { return static_cast<float>(random() % 120) / 10.0f - 5.0f; };
    add(grid, {{place(), place(), place()}, width_of(1.0 + 0.2 * i), 2.7});
  }
  double before = energy(grid);
  std::size_t made = 0;
  for (int max : {1, 2, 3, 5}) {
    const Fit result = fit(grid, 0.0f, 1, max);
    ASSERT_EQ(result.size(), static_cast<std::size_t>(max));
    EXPECT_EQ(result.coords.size(), 3 * result.size());
    VXBrioGrid rest = grid;
    for (unsigned int e = 0; e < rest.GetSize(); ++e)
      rest.GetValues()[e] -= result.fitted.GetValues()[e];
    EXPECT_LT(energy(rest), before);
    before = energy(rest);
    made = result.size();
  }
  EXPECT_EQ(made, 5u);
  EXPECT_EQ(fit(grid, 1e9f, 0, 1).size(), 1u);
  EXPECT_EQ(fit(grid, 1e9f, 0, 100).size(), 1u);
  const std::size_t coarse = fit(grid, 10.0f, 0, 100).size();
  EXPECT_GT(coarse, 1u);
  EXPECT_LE(coarse, fit(grid, 1.0f, 0, 100).size());
}

TEST(GridFit, grids_without_anything_to_fit_have_no_gaussians) {
  VXBrioGrid zeros = cube(8, 0.5f), empty, flat = cube(8, 0.0f);
  flat.GetValues()[5] = 1;
  for (VXBrioGrid* grid : {&zeros, &empty, &flat}) {
    Fit result = fit(*grid, 0.0f, 1, 10);
    EXPECT_EQ(result.size(), 0u);
    for (unsigned int e = 0; e < result.fitted.GetSize(); ++e)
      ASSERT_EQ(result.fitted.GetValues()[e], 0.0f);
  }
  VXBrioGrid signs = cube(8, 0.5f);
  signs.GetValues()[100] = -5;
  signs.GetValues()[101] = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(fit(signs, 0.0f, 1, 10).size(), 0u);
  EXPECT_EQ(signs.GetValues()[100], 0.0f);

  // What is asked for in vain ends all the same.
  VXBrioGrid odd = cube(12, 0.5f);
  add(odd, {{1, 2, 3}, 0.5, 2.0});
  odd.GetValues()[700] = std::numeric_limits<float>::infinity();
  fit(odd, 0.0f, 1, 50);
  VXBrioGrid coarse = cube(6, 50.0f);
  coarse.GetValues()[43] = 1;
  EXPECT_LE(fit(coarse, 0.0f, 1, std::numeric_limits<int>::max()).size(), 1u);
  VXBrioGrid small = cube(6, 0.2f);
  add(small, {{0.5f, 1.5f, 2.5f}, width_of(3.2), 2.0});  // the first point
  EXPECT_GT(fit(small, 0.0f, 1, 1).fitted.GetValues()[215], 0.0f);
  VXBrioGrid one = cube(20, 0.5f);
  add(one, {{1, 2, 3}, 0.5, 2.0});
  EXPECT_GE(fit(one, 0.0f, 1, 40, std::numeric_limits<int>::max()).size(), 1u);
  EXPECT_LE(fit(one, 0.0f, 1, 40, -3).size(), 0u);
  EXPECT_EQ(fit(one, 0.0f, 0, -3).size(), 1u);
  for (const float cutoff : {5.0f, -1.0f, std::numeric_limits<float>::quiet_NaN()})
    EXPECT_LE(fit(one, 0.0f, 0, 5, 0, cutoff).size(), 5u);
}

TEST(GridFit, a_container_takes_the_fit_of_a_grid_or_a_molecule) {
  VXGaussianContainer c;
  c.AddGaussian(VXGaussian());
  EXPECT_FALSE(VXMakeGaussianRepresentation(c, VXGraphMol(), 0.1f, 3, 10));
  EXPECT_EQ(c.NumGaussians(), 0u);
  VXGraphMol mol =
      vxgrid_test::make_model(std::array<vxgrid_test::ModelAtom, 2>{{{6, 1, 2, 3}, {8, 9, 2, 3}}});
  for (VXAtomBase* atom : mol.GetAtoms())
    atom->SetRadius(2.2f);
  ASSERT_TRUE(VXMakeGaussianRepresentation(c, mol, 0.1f, 3, 2));
  ASSERT_EQ(c.NumGaussians(), 2u);
  for (const VXGaussianBase& g : VXIter<VXGaussianBase>(c.GetGaussians())) {
    EXPECT_NEAR(g.GetPrefactor(), 2.7, 0.1);
    EXPECT_NEAR(VXGetRadius(g), 2.2, 0.05);
    EXPECT_EQ(g.GetColor(), 0u);
  }
  VXScalarGrid grid(20, 20, 20, 0, 0, 0, 0.5f, "one");
  grid.GetValues()[10] = -1;
  grid.GetValues()[4210] = 4;
  EXPECT_TRUE(VXMakeGaussianRepresentation(c, grid, 0.0f, 2, 1));
  EXPECT_EQ(c.NumGaussians(), 1u);
  EXPECT_EQ(grid.GetValues()[10], -1.0f);
}

}  // namespace
