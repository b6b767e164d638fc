// Shape multipoles of a list of Gaussians in their principal frame.
#include "vxgrid/gaussian/multipoles.h"

#include <algorithm>  // for fill_n, transform
#include <array>      // for array
#include <cstddef>    // for size_t

#include "gaussian/signed_volume.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

namespace {

using Vector3 = std::array<double, 3>;
using Axes = std::array<Vector3, 3>;

// The switch of the whole process.
int irreducible_octopoles = 1;

// Where symmetric moments stand in their packed arrays: xx, xy, xz, yy, yz, zz, and from such a
// pair and a third axis xxx, xxy, xxz, xyy, xyz, xzz, yyy, yyz, yzz, zzz.
constexpr std::size_t pair_index[3][3] = {{0, 1, 2}, {1, 3, 4}, {2, 4, 5}};
constexpr std::size_t triple_index[6][3] = {{0, 1, 2}, {1, 3, 4}, {2, 4, 5},
                                            {3, 6, 7}, {4, 7, 8}, {5, 8, 9}};

// Moments about the origin: single precision, in the order of the terms.
struct RawMoments {
  float volume = 0;
  std::array<float, 3> first{};
  std::array<float, 6> second{};
  std::array<float, 10> third{};

  void add(const Gsphere& term) {
    const float v = detail::parity_volume(term);
    const float x = term.x, y = term.y, z = term.z;
    // What the spread of the Gaussian itself adds to x^2, and to x^2 in x^3.
    const float h = 1.0f / (2.0f * term.width);
    const float g = 3.0f / (2.0f * term.width);
    volume += v;
    first[0] += x * v;
    first[1] += y * v;
    first[2] += z * v;
    second[0] += (h + x * x) * v;
    second[1] += x * y * v;
    second[2] += x * z * v;
    second[3] += (h + y * y) * v;
    second[4] += y * z * v;
    second[5] += (h + z * z) * v;
    third[0] += (g + x * x) * x * v;
    third[1] += (h + x * x) * y * v;
    third[2] += (h + x * x) * z * v;
    third[3] += (h + y * y) * x * v;
    third[4] += x * y * z * v;
    third[5] += (h + z * z) * x * v;
    third[6] += (g + y * y) * y * v;
    third[7] += (h + y * y) * z * v;
    third[8] += (h + z * z) * y * v;
    third[9] += (g + z * z) * z * v;
  }
};

// Moments per volume about the centroid.
struct CentralMoments {
  explicit CentralMoments(const RawMoments& raw) {
    const double inverse = 1.0 / double{raw.volume};
    for (std::size_t a = 0; a < 3; ++a)
      centre[a] = raw.first[a] * inverse;
    const Vector3& c = centre;
    const auto pair = [&](std::size_t a, std::size_t b) {
      return raw.second[pair_index[a][b]] * inverse;
    };
    for (std::size_t i = 0, a = 0; a < 3; ++a) {
      for (std::size_t b = 0; b < 3; ++b) {
        second[3 * a + b] = pair(a, b) - c[a] * c[b];
        for (std::size_t k = 0; k < 3; ++k, ++i) {
          third[i] = raw.third[triple_index[pair_index[a][b]][k]] * inverse - pair(b, k) * c[a] -
                     pair(a, k) * c[b] - pair(a, b) * c[k] + 2.0 * c[a] * c[b] * c[k];
        }
      }
    }
  }

  // The third moment along three axes of a frame.
  double octopole(const Vector3& a, const Vector3& b, const Vector3& c) const {
    double sum = 0;
    for (std::size_t n = 0, i = 0; i < 3; ++i) {
      for (std::size_t j = 0; j < 3; ++j) {
        for (std::size_t k = 0; k < 3; ++k)
          sum += a[i] * b[j] * c[k] * third[n++];
      }
    }
    return sum;
  }

  Vector3 centre{};
  std::array<double, 9> second{};
  std::array<double, 27> third{};
};

struct Octopoles {
  double O000, O111, O222, O001, O002, O110, O112, O220, O221, O012;
};

void turn_round(Vector3& axis) {
  for (double& component : axis)
    component = -component;
}

// Points axes 0 and 1 to where their octopoles are above 0, and axis 2 to where it keeps the hand
// of the frame.
void choose_directions(const CentralMoments& moments, Axes& axes) {
  bool turned[3];
  for (std::size_t k = 0; k < 3; ++k)
    turned[k] = !(moments.octopole(axes[k], axes[k], axes[k]) > 0.0);
  if ((turned[0] != turned[1]) != turned[2]) turned[2] = !turned[2];
  for (std::size_t k = 0; k < 3; ++k) {
    if (turned[k]) turn_round(axes[k]);
  }
}

Octopoles octopoles_along(const CentralMoments& moments, Axes& axes) {
  const auto along = [&](std::size_t a, std::size_t b, std::size_t c) {
    return moments.octopole(axes[a], axes[b], axes[c]);
  };
  Octopoles o{along(0, 0, 0), along(1, 1, 1), along(2, 2, 2), along(0, 0, 1), along(0, 0, 2),
              along(1, 1, 0), along(1, 1, 2), along(2, 2, 0), along(2, 2, 1), along(0, 1, 2)};
  // The directions chosen leave neither of these two below 0. Turning two axes round is part of the
  // definition all the same, and the first turn leaves out O001, the second O112.
  if (o.O000 < 0.0) {
    turn_round(axes[0]);
    turn_round(axes[1]);
    for (double* moment : {&o.O000, &o.O111, &o.O220, &o.O221, &o.O110})
      *moment = -*moment;
  }
  if (o.O111 < 0.0) {
    turn_round(axes[1]);
    turn_round(axes[2]);
    for (double* moment : {&o.O111, &o.O001, &o.O222, &o.O002, &o.O221})
      *moment = -*moment;
  }
  return o;
}

std::array<double, 10> irreducible(const Octopoles& o) {
  return {o.O000 + o.O110 + o.O220,
          o.O001 + o.O111 + o.O221,
          o.O112 + o.O002 + o.O222,
          1.5 * (0.6666 * o.O222 - o.O002 - o.O112),
          0.61237246 * (4.0 * o.O220 - o.O000 - o.O110),
          0.61237246 * (4.0 * o.O221 - o.O111 - o.O001),
          1.9364916 * (o.O002 - o.O112),
          3.8729832 * o.O012,
          0.7905649 * (o.O000 - 3.0 * o.O110),
          0.7905649 * (3.0 * o.O001 - o.O111)};
}

std::array<double, 10> as_they_are(const Octopoles& o) {
  return {o.O000, o.O111, o.O222, o.O001, o.O002, o.O110, o.O112, o.O220, o.O221, o.O012};
}

template <class Numbers>
float* store(const Numbers& numbers, float* out) {
  return std::transform(numbers.begin(), numbers.end(), out,
                        [](double number) { return static_cast<float>(number); });
}

}  // namespace

int vx_CalcShapeMultipoles(int count, const Gsphere* terms, float* multipoles, float* centre,
                           float* rotation) {
  RawMoments raw;
  for (const Gsphere& term : detail::term_span(count, terms))
    raw.add(term);
  if (raw.volume == 0.0f) {
    std::fill_n(multipoles, 14, 0.0f);
    std::fill_n(centre, 3, 0.0f);
    for (int i = 0; i < 9; ++i)
      rotation[i] = i % 4 == 0 ? 1.0f : 0.0f;
    return 1;
  }
  const CentralMoments moments(raw);
  Vector3 values{};
  std::array<double, 9> vectors{};
  eigen_solve_3_by_3(moments.second.data(), values.data(), vectors.data());
  Axes axes{};
  for (std::size_t k = 0; k < 3; ++k)
    axes[k] = {vectors[k], vectors[3 + k], vectors[6 + k]};
  choose_directions(moments, axes);
  const Octopoles octopoles = octopoles_along(moments, axes);

  multipoles[0] = raw.volume;
  store(values, multipoles + 1);
  store(irreducible_octopoles ? irreducible(octopoles) : as_they_are(octopoles), multipoles + 4);
  store(moments.centre, centre);
  for (const Vector3& axis : axes)
    rotation = store(axis, rotation);
  return 1;
}

void vx_shape_multipoles_irreducible_octopoles_on() {
  irreducible_octopoles = 1;
}

void vx_shape_multipoles_irreducible_octopoles_off() {
  irreducible_octopoles = 0;
}

}  // namespace VXCore
