// The kernels against plain loops that call exp per point, and bit by bit against the recurrence.
#include "vxgrid/gaussian/gauss_grid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

#include "gaussian/ball_oracle.h"
#include "support/messages.h"
#include "vxgrid/toolkit/names.h"

namespace {

using namespace VXCore;
using vxgrid_test::ball_of;
using vxgrid_test::BallPoint;
using vxgrid_test::MessageCapture;
using vxgrid_test::OracleBall;
using vxgrid_test::OwnedGrid;

constexpr float cutoff = 0.001f;
constexpr std::array<int, 3> dims = {17, 13, 11};
constexpr std::array<float, 3> mids = {1.0f, -2.0f, 0.5f};
constexpr float h = 0.45f;

PdbStruct atom_at(float x, float y, float z) {
  PdbStruct atom;
  atom.x = x;
  atom.y = y;
  atom.z = z;
  return atom;
}

struct Items {
  std::vector<PdbStruct> atoms;
  std::vector<float> widths;
  std::vector<float> prefactors;

  int count() const { return static_cast<int>(atoms.size()); }
  void add(float x, float y, float z, float width, float prefactor) {
    atoms.push_back(atom_at(x, y, z));
    widths.push_back(width);
    prefactors.push_back(prefactor);
  }
  OracleBall ball(const GridStruct& grid, std::size_t i, bool around_cell_corner = false) const {
    return ball_of(grid, {atoms[i].x, atoms[i].y, atoms[i].z},
                   vi_gauss_rad(prefactors[i], widths[i], cutoff), around_cell_corner);
  }
  double value(std::size_t i, const BallPoint& point) const {
    return prefactors[i] * std::exp(-double{widths[i]} * point.squared());
  }
  void run(int type, OwnedGrid& grid, float* values = nullptr, const float* weights = nullptr,
           double* gradient = nullptr) {
    vi_gauss_grid(0, count(), atoms.data(), widths.data(), prefactors.data(), cutoff, type,
                  grid.record, values, weights, gradient);
  }
};

/// Inside, on the edges, on a corner, just outside, far outside, on a point, wide and narrow.
Items many_items() {
  Items items;
  items.add(1.03f, -2.11f, 0.64f, 0.9f, 0.7f);
  items.add(1.0f, -2.0f, 0.5f, 1.7f, 0.5f);
  items.add(4.6f, -2.3f, 0.4f, 0.8f, 0.6f);
  items.add(-2.6f, -4.7f, -1.75f, 1.1f, 0.9f);
  items.add(1.2f, -2.0f, 4.1f, 0.7f, 0.8f);
  items.add(6.1f, 1.6f, 2.9f, 0.5f, 0.9f);
  items.add(60.0f, 0.0f, 0.0f, 0.9f, 0.7f);
  items.add(0.3f, -1.4f, 0.1f, 0.06f, 0.3f);
  items.add(2.21f, -3.3f, 1.34f, 14.0f, 0.8f);
  items.add(-1.5f, -1.1f, 1.9f, 400.0f, 0.9f);
  return items;
}

TEST(GaussGrid, sums_products_and_radial_forms_agree_with_exp_at_every_point_of_the_ball) {
  const Items items = many_items();
  std::vector<float> coords;
  for (const PdbStruct& atom : items.atoms)
    coords.insert(coords.end(), {atom.x, atom.y, atom.z});
  std::vector<float> ones(items.atoms.size(), 1.0f), offsets, coefficients;
  for (std::size_t i = 0; i < items.atoms.size(); ++i) {
    offsets.push_back(0.3f * static_cast<float>(i));
    coefficients.push_back(1.5f - 0.2f * static_cast<float>(i));
  }
  MessageCapture quiet;
  for (const bool tegs : {false, true}) {
    for (const int type : {0, 1, 2, 4, 6, 8}) {
      if (type < 2 && !tegs) continue;
      const bool product = type == 4 || type == 8;
      OwnedGrid grid(dims, mids, h, type >= 6 ? 4 : 1);
      Items run = items;
      if (tegs)
        vi_gauss_grid_tegs(run.count(), coords.data(), run.widths.data(), run.prefactors.data(),
                           cutoff, type, &grid.record,
                           type == 0 ? ones.data() : coefficients.data(), offsets.data());
      else
        run.run(type, grid);
      std::vector<double> expected(grid.size, product ? 1.0 : 0.0);
      for (std::size_t i = 0; i < items.atoms.size(); ++i) {
        const OracleBall ball = items.ball(grid.record, i);
        for (const BallPoint& point : ball.points) {
          double v = items.value(i, point);
          if (type == 0) v *= point.squared();
          if (type == 1 && ball.reach > 0)
            v *= double{coefficients[i]} * point.squared() + offsets[i];
          if (ball.reach == 0 && type == 8) continue;
          if (product)
            expected[point.element] *= 1 - v;
          else
            expected[point.element] += v;
        }
      }
      for (std::size_t e = 0; e < grid.size; ++e) {
        const double value = product ? 1 - expected[e] : expected[e];
        ASSERT_NEAR(grid.values[e], value, 1e-5 * 3) << "type " << type << " element " << e;
      }
    }
  }
}

TEST(GaussGrid, gradient_planes_are_the_derivatives_of_the_value_plane) {
  for (const int type : {6, 8}) {
    OwnedGrid grid(dims, mids, h, 4);
    Items items = many_items();
    items.atoms.pop_back();  // the single points, whose gradient is a case of its own
    items.widths.pop_back();
    items.prefactors.pop_back();
    items.run(type, grid);
    for (std::size_t axis = 0; axis < 3; ++axis) {
      // The value at a point as a function of where the lattice lies.
      constexpr double step = 1e-5;
      const auto shifted = [&](double shift) {
        std::vector<double> values(grid.size, type == 8 ? 1.0 : 0.0);
        for (std::size_t i = 0; i < items.atoms.size(); ++i) {
          for (BallPoint point : items.ball(grid.record, i).points) {
            point.to_centre[axis] -= shift;
            const double v = items.value(i, point);
            values[point.element] =
                type == 8 ? values[point.element] * (1 - v) : values[point.element] + v;
          }
        }
        return values;
      };
      const auto below = shifted(-step), above = shifted(step);
      for (std::size_t e = 0; e < grid.size; ++e) {
        const double slope = (above[e] - below[e]) / (2 * step) * (type == 8 ? -1 : 1);
        ASSERT_NEAR(grid.values[(axis + 1) * grid.size + e], slope, 1e-4) << type << ' ' << e;
      }
    }
  }
}

/// The recurrence in plain scalar code, in the order and precision that is promised: calls
/// touch(element, value, slopes) for the points of an item.
template <class Touch>
void by_recurrence(const GridStruct& g, const std::array<float, 3>& centre, float width,
                   float prefactor, Touch touch) {
  const std::array<int, 3> dim = {g.xdim, g.ydim, g.zdim};
  const std::array<float, 3> mid = {g.xmid, g.ymid, g.zmid};
  const float inverse = 1.0f / g.spacing;
  const float r = vi_gauss_rad(prefactor, width, cutoff);
  std::array<float, 3> u{};
  std::array<int, 3> node{};
  for (std::size_t k = 0; k < 3; ++k) {
    const float half = static_cast<float>(dim[k] - 1) * g.spacing / 2.0f;
    const float low = mid[k] - half;
    if (centre[k] + r < low || centre[k] - r > mid[k] + half) return;
    const float f = (centre[k] - low) * inverse;
    node[k] = static_cast<int>(std::round(f));
    u[k] = f - static_cast<float>(node[k]);
  }
  const float uu = u[0] * u[0] + u[1] * u[1] + u[2] * u[2];
  const float limit = std::sqrt(uu) + inverse * r;
  const int reach = static_cast<int>(limit);
  const int squared = static_cast<int>(limit * limit);
  const float decay = width * g.spacing * g.spacing;
  const float v = std::exp(-decay * uu) * prefactor;
  std::array<std::vector<float>, 3> table, slope;
  const auto at = [&](std::vector<float>& values, int offset) -> float& {
    return values[static_cast<std::size_t>(offset + reach)];
  };
  for (std::size_t k = 0; k < 3; ++k) {
    table[k].assign(static_cast<std::size_t>(2 * reach + 1), 1.0f);
    slope[k].assign(static_cast<std::size_t>(2 * reach + 1), 2.0f * decay * inverse * u[k]);
    const float q = std::exp(-decay), up = std::exp(2.0f * decay * u[k]), down = 1.0f / up;
    float c = q;
    for (int i = 1; i <= reach; ++i, c *= q * q) {
      at(table[k], i) = c * at(table[k], i - 1) * up;
      at(table[k], -i) = c * at(table[k], 1 - i) * down;
      at(slope[k], i) = at(slope[k], i - 1) - 2.0f * decay * inverse;
      at(slope[k], -i) = at(slope[k], 1 - i) + 2.0f * decay * inverse;
    }
  }
  for (int c = -reach; c <= reach; ++c)
    for (int b = -reach; b <= reach; ++b)
      for (int a = -reach; a <= reach; ++a) {
        const int x = node[0] + a, y = node[1] + b, z = node[2] + c;
        if (a * a + b * b + c * c > squared || x < 0 || y < 0 || z < 0 || x >= dim[0] ||
            y >= dim[1] || z >= dim[2])
          continue;
        touch(static_cast<std::size_t>(x + dim[0] * (y + dim[1] * z)),
              v * at(table[2], c) * at(table[1], b) * at(table[0], a),
              std::array<float, 3>{at(slope[0], a), at(slope[1], b), at(slope[2], c)});
      }
}

TEST(GaussGrid, values_and_gradients_are_those_of_the_scalar_recurrence_to_the_last_bit) {
  std::mt19937 random(5);
  const auto uniform = [&](double low, double high) {
    return static_cast<float>(low + (high - low) * (static_cast<double>(random()) / 4294967296.0));
  };
  Items items;
  // Rows of every length up to the whole width, many of them clipped.
  for (int i = 0; i < 60; ++i)
    items.add(uniform(-9, 15), uniform(-10, 9), uniform(-9, 13), std::exp(uniform(-3, 2)), 2.7f);
  OwnedGrid sum({61, 47, 53}, {3, -1, 2}, 0.31f, 4), product({61, 47, 53}, {3, -1, 2}, 0.31f, 4);
  const std::size_t n = sum.size;
  std::fill_n(product.values.begin(), n, 1.0f);
  for (std::size_t i = 0; i < items.atoms.size(); ++i) {
    by_recurrence(sum.record, {items.atoms[i].x, items.atoms[i].y, items.atoms[i].z},
                  items.widths[i], 2.7f,
                  [&](std::size_t e, float v, const std::array<float, 3>& slopes) {
                    const float c = 1.0f - v, m = v * product.values[e];
                    for (std::size_t k = 0; k < 3; ++k) {
                      sum.values[e + (k + 1) * n] += v * slopes[k];
                      float& gradient = product.values[e + (k + 1) * n];
                      gradient = c * gradient + m * slopes[k];
                    }
                    sum.values[e] += v;
                    product.values[e] = c * product.values[e];
                  });
  }
  for (std::size_t e = 0; e < n; ++e)
    product.values[e] = 1.0f - product.values[e];
  EXPECT_GT(std::accumulate(sum.values.begin(), sum.values.end(), 0.0), 1000.0);

  for (const int type : {2, 4, 6, 8}) {
    const std::size_t planes = type < 6 ? 1 : 4;
    OwnedGrid grid({61, 47, 53}, {3, -1, 2}, 0.31f, static_cast<int>(planes));
    items.run(type, grid);
    const OwnedGrid& expected = type == 2 || type == 6 ? sum : product;
    EXPECT_TRUE(std::equal(grid.values.begin(), grid.values.end(), expected.values.begin()))
        << type;
  }
}

constexpr std::array<int, 3> smear_dims = {21, 19, 17};

TEST(GaussGrid, the_smear_deposits_its_amount_around_the_item_wherever_that_lies) {
  struct Case {
    float x, y, z, width, amount;
    bool inside;
  };
  // The last two touch one point alone.
  for (const Case& c :
       {Case{1.13f, -2.2f, 0.61f, 0.9f, 1.0f, true}, Case{0.9f, -1.9f, 0.45f, 0.4f, -3.0f, false},
        Case{5.5f, 1.9f, 4.1f, 0.8f, 2.0f, false}, Case{-3.6f, -6.1f, -3.2f, 0.8f, 2.0f, false},
        Case{1.13f, -2.2f, 0.61f, 900.0f, 1.5f, true},
        Case{5.55f, -2.2f, 0.61f, 900.0f, 1.5f, false}}) {
    OwnedGrid grid(smear_dims, mids, h);
    Items items;
    items.add(c.x, c.y, c.z, c.width, 0.2f);
    float amount = c.amount;
    items.run(GaussGridType::NormalisedSmear, grid, &amount);
    const double total = std::accumulate(grid.values.begin(), grid.values.end(), 0.0);
    EXPECT_NEAR(total, c.amount, 1e-5) << c.x;
    EXPECT_NEAR(items.widths[0], c.width, 1e-6 * c.width);
    if (!c.inside) continue;
    std::array<double, 3> mean{};
    for (int z = 0; z < smear_dims[2]; ++z)
      for (int y = 0; y < smear_dims[1]; ++y)
        for (int x = 0; x < smear_dims[0]; ++x) {
          const double v =
              grid.values[static_cast<std::size_t>(x + smear_dims[0] * (y + smear_dims[1] * z))];
          const std::array<int, 3> index = {x, y, z};
          for (std::size_t k = 0; k < 3; ++k)
            mean[k] += v * (double{mids[k]} + (index[k] - (smear_dims[k] - 1) / 2.0) * double{h});
        }
    EXPECT_NEAR(mean[0] / total, c.x, 2e-5);
    EXPECT_NEAR(mean[1] / total, c.y, 2e-5);
    EXPECT_NEAR(mean[2] / total, c.z, 2e-5);
  }
}

TEST(GaussGrid, the_smear_is_a_gaussian_of_the_scaled_width_around_the_cell_corner) {
  Items items;
  items.add(1.13f, -2.2f, 0.61f, 0.9f, 0.2f);
  OwnedGrid grid(smear_dims, mids, h);
  float amount = 1.0f;
  items.run(GaussGridType::NormalisedSmear, grid, &amount);
  const OracleBall ball = items.ball(grid.record, 0, true);
  double total = 0;
  const auto weight = [](const BallPoint& point) {
    return std::exp(-0.9 * double{cutoff} * point.squared());
  };
  for (const BallPoint& point : ball.points)
    total += weight(point);
  std::vector<double> expected(grid.size);
  const auto fraction = [&](std::size_t k, int side) {
    const double u = ball.u[k] < 0 ? ball.u[k] + 1 : ball.u[k];
    return side == 1 ? u : 1 - u;
  };
  for (const BallPoint& point : ball.points)
    for (int corner = 0; corner < 8; ++corner) {
      const int i = corner & 1, j = corner >> 1 & 1, k = corner >> 2;
      expected[point.element +
               static_cast<std::size_t>(i + smear_dims[0] * (j + smear_dims[1] * k))] +=
          weight(point) / total * fraction(0, i) * fraction(1, j) * fraction(2, k);
    }
  for (std::size_t e = 0; e < grid.size; ++e)
    ASSERT_NEAR(grid.values[e], expected[e], 1e-7);
}

TEST(GaussGrid, gathers_are_sums_over_the_ball) {
  std::mt19937 random(3);
  OwnedGrid grid(dims, mids, h);
  std::vector<float> weights;
  for (float& value : grid.values) {
    value = random() % 5 == 0 ? 0.0f : static_cast<float>(random() % 1000) / 1000.0f - 0.4f;
    weights.push_back(value);
  }
  Items items = many_items();
  const std::size_t n = items.atoms.size();
  std::vector<float> vectors(3 * n, 0.25f), sums(n, 9.0f);
  std::vector<double> gradient(3 * n, 0.5);
  const std::vector<float> before = grid.values;
  items.run(GaussGridType::AtomGradient, grid, vectors.data());
  items.run(GaussGridType::AtomRadialSum, grid, sums.data());
  items.run(GaussGridType::SumAndDerivatives, grid, nullptr, weights.data(), gradient.data());
  EXPECT_EQ(grid.values, before);

  std::size_t single_points = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const OracleBall ball = items.ball(grid.record, i);
    double radial = 0;
    std::array<double, 3> vector{};
    for (const BallPoint& point : ball.points) {
      const double gv = before[point.element] * items.value(i, point);
      radial += 2 * double{items.widths[i]} * point.squared() * gv;
      for (std::size_t k = 0; k < 3; ++k)
        vector[k] += 2 * double{items.widths[i]} * point.to_centre[k] * gv;
    }
    const bool is_single = ball.reach == 0 && !ball.points.empty();
    single_points += is_single ? 1 : 0;
    EXPECT_NEAR(sums[i], is_single ? 0 : radial, 2e-4) << i;
    for (std::size_t k = 0; k < 3; ++k) {
      EXPECT_NEAR(vectors[3 * i + k], 0.25 + (is_single ? 0 : vector[k]), 1e-4) << i;
      // The weighted form takes a half; on a single point it takes A*u instead of 2*width*d.
      const double factor = is_single ? double{h} / 2 : 0.5;
      EXPECT_NEAR(gradient[3 * i + k], 0.5 + vector[k] * factor, 1e-4) << i;
    }
  }
  EXPECT_EQ(single_points, 1u);
}

TEST(GaussGrid, a_single_point_is_touched_by_what_its_type_says) {
  const float u = 0.3f, width = 500.0f;
  const double d = double{u} * double{h};
  const double v = 0.9 * std::exp(-double{width} * d * d);
  for (const int type : {2, 4, 6, 8}) {
    OwnedGrid grid({3, 3, 3}, {0, 0, 0}, h, 4);
    Items items;
    items.add(u * h, 0, 0, width, 0.9f);
    items.run(type, grid);
    EXPECT_NEAR(grid.values[13], type == 8 ? 0 : v, 1e-7);
    EXPECT_NEAR(grid.values[27 + 13], type == 6 ? 2 * v * double{width} * double{h * h} * u : 0,
                1e-6);
    grid.values[13] = grid.values[27 + 13] = 0;
    for (const float value : grid.values)
      EXPECT_EQ(value, 0.0f);
  }
}

TEST(GaussGrid, spheres_reach_to_their_radius_and_learn_one_that_they_lack) {
  Gsphere spheres[2];
  spheres[0] = {0.8f, 1.0f, -2.0f, 0.5f, 2.7f, 0, 0, 1.2f};
  spheres[1] = {0.8f, 2.0f, -2.0f, 0.5f, 2.7f, 0, 0, 0.0f};
  OwnedGrid grid(dims, mids, h);
  vi_gauss_grid(0, 2, spheres, nullptr, nullptr, cutoff, GaussGridType::Sum, grid.record, nullptr,
                nullptr, nullptr);
  EXPECT_EQ(spheres[0].radius, 1.2f);
  EXPECT_EQ(spheres[1].radius, vi_gauss_rad(2.7f, 0.8f, cutoff));
  std::vector<double> expected(grid.size);
  for (const Gsphere& s : spheres) {
    for (const BallPoint& point : ball_of(grid.record, {s.x, s.y, s.z}, s.radius).points)
      expected[point.element] += 2.7 * std::exp(-0.8 * point.squared());
  }
  for (std::size_t e = 0; e < grid.size; ++e)
    ASSERT_NEAR(grid.values[e], expected[e], 1e-5);
}

TEST(GaussGrid, a_reach_of_thousands_of_spacings_ends_where_it_should) {
  // All lengths are exact in binary, and the item, a flat one, lies on a lattice point far outside.
  OwnedGrid grid({40, 9, 7}, {19.5f / 64, 4.0f / 64, 3.0f / 64}, 1.0f / 64);
  Gsphere sphere{0.0f, -1600.0f / 64, 0, 0, 1.0f, 0, 0, 1620.5f / 64};
  vi_gauss_grid(0, 1, &sphere, nullptr, nullptr, cutoff, 2, grid.record, nullptr, nullptr, nullptr);
  for (int z = 0; z < 7; ++z)
    for (int y = 0; y < 9; ++y)
      for (int x = 0; x < 40; ++x) {
        const bool inside = (1600 + x) * (1600 + x) + y * y + z * z < 1620.5 * 1620.5;
        ASSERT_EQ(grid.values[static_cast<std::size_t>(x + 40 * (y + 9 * z))],
                  inside ? 1.0f : 0.0f);
      }
}

TEST(GaussGrid, weights_belong_to_one_type_and_announcements_to_the_array_form) {
  OwnedGrid grid(dims, mids, h);
  Items items = many_items();
  std::vector<float> weights(grid.size, 1.0f);
  std::vector<double> gradient(30, 0.0);
  MessageCapture messages;
  items.run(GaussGridType::Sum, grid, nullptr, weights.data(), nullptr);
  items.run(GaussGridType::Product, grid, nullptr, nullptr, gradient.data());
  ASSERT_EQ(messages.messages.size(), 2u);
  EXPECT_EQ(messages.messages[0].second,
            "When weights, grad are passed to vi_gauss_grid, please use grid type "
            "SumAndDerivatives. Stopping and exiting now.");
  EXPECT_EQ(grid.values, std::vector<float>(grid.size, 0.0f));

  messages.messages.clear();
  for (int type = 0; type < 10; ++type)
    vi_gauss_grid_tegs(0, nullptr, nullptr, nullptr, cutoff, type, nullptr, nullptr, nullptr);
  ASSERT_EQ(messages.messages.size(), 5u);
  EXPECT_EQ(messages.messages[0].second, "Calculating Sum of Radial Gaussians\n");
  EXPECT_EQ(messages.messages[4].second, "Calculating Product and Derivatives of Gaussians\n");
}

TEST(GaussGrid, an_empty_product_is_zero_everywhere) {
  OwnedGrid grid({3, 4, 5}, {0, 0, 0}, 1.0f);
  grid.values.assign(grid.size, 7.0f);
  Items().run(GaussGridType::Product, grid);
  EXPECT_EQ(grid.values, std::vector<float>(grid.size, 0.0f));
}

TEST(GaussGrid, hostile_items_and_records_do_no_harm) {
  constexpr float inf = std::numeric_limits<float>::infinity();
  constexpr float nan = std::numeric_limits<float>::quiet_NaN();
  const float odd[] = {0.0f, -1.0f, 1e-30f, 1e30f, -1e30f, inf, nan, 3e9f};
  std::vector<float> values(60, 1.0f);
  std::vector<double> gradient(60, 0.0);
  for (const float place : odd)
    for (const float width : odd)
      for (const float radius : odd)
        for (int type = 2; type <= 14; type += 2) {
          OwnedGrid grid({4, 3, 2}, {0, 0, 0}, 0.7f, 4);
          Gsphere sphere{width, place, 0.1f, place, 1.0f, 0, 0, radius};
          vi_gauss_grid(0, 1, &sphere, nullptr, nullptr, 0.01f, type, grid.record, values.data(),
                        nullptr, nullptr);
        }
  // A flat Gaussian without end covers the whole grid.
  OwnedGrid flat({4, 3, 2}, {0, 0, 0}, 0.7f);
  Gsphere endless{0.0f, 0, 0, 0, 2.0f, 0, 0, 1e30f};
  vi_gauss_grid(0, 1, &endless, nullptr, nullptr, 0.01f, 2, flat.record, nullptr, nullptr, nullptr);
  EXPECT_EQ(flat.values, std::vector<float>(24, 2.0f));

  Items items = many_items();
  for (const float spacing : {0.0f, -0.5f, nan}) {
    OwnedGrid grid(dims, mids, h, 4);
    grid.record.spacing = spacing;
    items.run(GaussGridType::SumAndDerivatives, grid);
    EXPECT_EQ(grid.values, std::vector<float>(grid.values.size(), 0.0f));
  }
  OwnedGrid huge(dims, mids, h);
  huge.record.xdim = huge.record.ydim = 2147483647;
  items.run(GaussGridType::Sum, huge);
  huge.record.xdim = -5;
  items.run(GaussGridType::Product, huge);
  EXPECT_EQ(huge.values, std::vector<float>(huge.size, 0.0f));
}

}  // namespace
