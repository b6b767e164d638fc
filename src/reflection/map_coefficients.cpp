// Map coefficients: where each map type has them from, and where they go in reciprocal space.
#include <cmath>    // for cos, isnan, sin
#include <complex>  // for complex
#include <cstddef>  // for ptrdiff_t
#include <cstdint>  // for int64_t
#include <limits>   // for numeric_limits

#include "vxgrid/reflection/map_making.h"
#include "vxgrid/reflection/map_types.h"
#include "vxgrid/reflection/reflection_impl.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {
namespace {

constexpr float radians_per_degree_f = 0.017453292F;

// What a column says about a reflection; not a number where there is no column.
float value_at(const std::vector<float>& column, unsigned int i) {
  return i < column.size() ? column[i] : std::numeric_limits<float>::quiet_NaN();
}

// The remainder that is never negative.
int wrap(std::int64_t index, int n) {
  if (index >= 0 && index < n) return static_cast<int>(index);
  const auto remainder = static_cast<int>(index % n);
  return remainder < 0 ? remainder + n : remainder;
}

struct HalfComplexStore {
  const FFTMap& map;

  // The coefficient at (h, k, l), and its conjugate at (-h, -k, -l), each where the array has it.
  void store_pair(std::int64_t h, std::int64_t k, std::int64_t l, double a, double b) const {
    store(h, k, l, {a, b});
    store(-h, -k, -l, {a, -b});
  }

 private:
  void store(std::int64_t h, std::int64_t k, std::int64_t l, std::complex<double> value) const {
    const int z = wrap(l, map.nz);
    if (z >= map.cz) return;
    const std::ptrdiff_t row =
        std::ptrdiff_t{wrap(h, map.nx)} * map.cy + std::ptrdiff_t{wrap(k, map.ny)};
    map.complex_data[row * map.cz + z] = value;
  }
};

}  // namespace

// The columns behind a map type: amplitude = factor first, less the second one or times it.
struct VXReflectionImpl::MapColumns {
  enum class Second { none, subtract, multiply };

  const FloatColumn& phases;
  const FloatColumn& first;
  float factor = 1;
  Second use = Second::none;
  const FloatColumn& second = first;
  float second_factor = 1;

  float phase(unsigned int i) const { return value_at(phases, i); }

  float amplitude(unsigned int i) const {
    const float value = factor * value_at(first, i);
    switch (use) {
      case Second::subtract:
        return value - second_factor * value_at(second, i);
      case Second::multiply:
        return value * value_at(second, i);
      default:
        return value;
    }
  }

  // Real and imaginary part; false where phase or amplitude is not a number.
  bool coefficient(unsigned int i, float& a, float& b) const {
    const float degrees = phase(i);
    const float length = amplitude(i);
    if (std::isnan(degrees) || std::isnan(length)) return false;
    const float angle = degrees * radians_per_degree_f;
    a = length * std::cos(angle);
    b = length * std::sin(angle);
    return true;
  }
};

VXReflectionImpl::MapColumns VXReflectionImpl::find_map_columns(int maptype) const {
  const auto difference = [this](float fobs_factor, float fcalc_factor) {
    return MapColumns{phase_calc_, fobs_,       fobs_factor, MapColumns::Second::subtract,
                      fcalc_,      fcalc_factor};
  };
  switch (static_cast<unsigned int>(maptype)) {
    case VXMTZMapType::Fc:
      return {phase_calc_, fcalc_};
    case VXMTZMapType::TwoFoFc:
      return difference(2, 1);
    case VXMTZMapType::FoFc:
      return difference(1, 1);
    case VXMTZMapType::ThreeFoTwoFc:
      return difference(3, 2);
    case VXMTZMapType::FiveFoThreeFc:
      return difference(5, 3);
    case VXMTZMapType::TwoFoFcSigmaA:
      return {phase_, hla_};
    case VXMTZMapType::FoFcSigmaA:
      return {phase_, hlb_};
    case VXMTZMapType::FoFo:
      return {phase_, fobs_, 1, MapColumns::Second::multiply, fobs_};
    case VXMTZMapType::FoFOM:
      return {phase_, fom_, 1, MapColumns::Second::multiply, fobs_};
    case VXMTZMapType::Fwt:
      return {phiwt_, fwt_};
    case VXMTZMapType::Fdelwt:
      return {phidelwt_, fdelwt_};
    default:
      return {phase_, fobs_};
  }
}

bool VXReflectionImpl::GetAmpPhase(float& amp, float& phase, unsigned int i, int maptype) const {
  const MapColumns columns = find_map_columns(maptype);
  amp = columns.amplitude(i);
  phase = columns.phase(i);
  return true;
}

bool VXReflectionImpl::GetAB(float& a, float& b, unsigned int i, int maptype) const {
  return find_map_columns(maptype).coefficient(i, a, b);
}

bool VXReflectionImpl::ValidateMaptype(int maptype) const {
  const bool fobs = !fobs_.empty();
  const bool phase = !phase_.empty();
  switch (static_cast<unsigned int>(maptype)) {
    case VXMTZMapType::Fo:
    case VXMTZMapType::FoFo:
      return fobs && phase;
    case VXMTZMapType::Fc:
      if (fcalc_.empty()) VXThrow.Error("fcalc missing.");
      if (phase_calc_.empty()) VXThrow.Error("phase calc missing.");
      return !fcalc_.empty() && !phase_calc_.empty();
    case VXMTZMapType::TwoFoFc:
    case VXMTZMapType::FoFc:
    case VXMTZMapType::ThreeFoTwoFc:
    case VXMTZMapType::FiveFoThreeFc:
      return fobs && !fcalc_.empty() && !phase_calc_.empty();
    case VXMTZMapType::TwoFoFcSigmaA:
    case VXMTZMapType::FoFcSigmaA:
      return has_abcd();
    case VXMTZMapType::FoFOM:
      return fobs && !fom_.empty() && phase;
    case VXMTZMapType::Fwt:
      return !fwt_.empty() && !phiwt_.empty();
    case VXMTZMapType::Fdelwt:
      return !fdelwt_.empty() && !phidelwt_.empty();
    default:
      return false;
  }
}

void VXReflectionImpl::FillGrid(FFTMap* map, int maptype) const {
  if (map && has_indices()) place_coefficients(*map, maptype, 1, 1);
}

void VXReflectionImpl::place_coefficients(FFTMap& map, int maptype, double real_factor,
                                          double imaginary_factor) const {
  const MapColumns columns = find_map_columns(maptype);
  const HalfComplexStore coefficients{map};
  for (unsigned int i = 0; i < count_; ++i) {
    float re = 0;
    float im = 0;
    if (!columns.coefficient(i, re, im)) continue;
    // The Friedel mate with h at or above 0 is the one kept.
    const std::int64_t sign = h_[i] < 0 ? -1 : 1;
    const std::int64_t h = sign * h_[i];
    const std::int64_t k = sign * k_[i];
    const std::int64_t l = sign * l_[i];
    const double a = real_factor * re;
    const double b = imaginary_factor * (sign < 0 ? -im : im);
    coefficients.store_pair(h, k, l, a, b);
    // Both halves of the plane h = 0.
    if (h == 0) coefficients.store_pair(0, -k, -l, a, -b);
  }
}

void VXReflectionImpl::FillGrid(float* a, float* b, int nx, int ny, int nz, int maptype) const {
  if (!a || !b || !has_indices()) return;
  const MapColumns columns = find_map_columns(maptype);
  const std::int64_t row = nx;
  const std::int64_t plane = row * ny;
  const std::int64_t size = plane * nz;
  const auto store = [&](std::int64_t h, std::int64_t k, std::int64_t l, float re, float im) {
    if (k < 0) k += ny;
    if (l < 0) l += nz;
    const std::int64_t offset = h + row * k + plane * l;
    if (offset < 0 || offset >= size) return;
    a[offset] = re;
    b[offset] = im;
  };
  for (unsigned int i = 0; i < count_; ++i) {
    float re = 0;
    float im = 0;
    if (!columns.coefficient(i, re, im)) continue;
    const std::int64_t sign = h_[i] < 0 ? -1 : 1;
    const std::int64_t h = sign * h_[i];
    const std::int64_t k = sign * k_[i];
    const std::int64_t l = sign * l_[i];
    if (sign < 0) im = -im;
    store(h, k, l, re, im);
    if (h == 0) store(0, -k, -l, re, -im);
  }
}

}  // namespace VXCore
