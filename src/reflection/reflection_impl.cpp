// The data of a reflection set: columns, resolution and sorting.
#include "vxgrid/reflection/reflection_impl.h"

#include <algorithm>  // for copy_n, max, min, sort
#include <cmath>      // for cos, fabs, sin, sqrt
#include <new>        // for bad_alloc
#include <numeric>    // for iota
#include <stdexcept>  // for length_error
#include <tuple>      // for tie

#include "reflection/columns.h"

namespace VXCore {
namespace {

constexpr double radians_per_degree = 0.0174532925199433;

// A column and the spare element behind it, or no column when memory does not suffice.
template <class T>
bool resize_column(std::vector<T>& column, std::size_t count) {
  try {
    column.resize(count + 1);
  } catch (const std::bad_alloc&) {
    std::vector<T>().swap(column);
  } catch (const std::length_error&) {
    std::vector<T>().swap(column);
  }
  return !column.empty();
}

// `values` in place of what the column holds, with room for `count` values at least.
template <class T>
bool replace_column(std::vector<T>& column, const T* values, unsigned int n, unsigned int count) {
  std::vector<T>().swap(column);
  if (!values || !resize_column(column, std::max(n, count))) return false;
  std::copy_n(values, n, column.begin());
  return true;
}

}  // namespace

void VXReflectionImpl::Clear() {
  *this = VXReflectionImpl();
}

int VXReflectionImpl::SetCount(unsigned int n) {
  visit_columns([n](auto& column) {
    if (!column.empty()) resize_column(column, n);
  });
  // The permutation goes on as the identity, so that the elements it does not know can be reached.
  if (!sort_index_.empty() && resize_column(sort_index_, n)) {
    const unsigned int known = std::min(count_, n);
    std::iota(sort_index_.begin() + known, sort_index_.end(), known);
  }
  count_ = n;
  return 1;
}

VXReflectionImpl::FloatColumn VXReflectionImpl::*VXReflectionImpl::find_float_column(
    unsigned int column) {
  switch (column) {
    case VXReflectionColumn::Phase:
      return &VXReflectionImpl::phase_;
    case VXReflectionColumn::PhaseCalc:
      return &VXReflectionImpl::phase_calc_;
    case VXReflectionColumn::Fobs:
      return &VXReflectionImpl::fobs_;
    case VXReflectionColumn::Fcalc:
      return &VXReflectionImpl::fcalc_;
    case VXReflectionColumn::Phiwt:
      return &VXReflectionImpl::phiwt_;
    case VXReflectionColumn::Phidelwt:
      return &VXReflectionImpl::phidelwt_;
    case VXReflectionColumn::Fwt:
      return &VXReflectionImpl::fwt_;
    case VXReflectionColumn::Fdelwt:
      return &VXReflectionImpl::fdelwt_;
    case VXReflectionColumn::Sigma:
      return &VXReflectionImpl::sigma_;
    case VXReflectionColumn::FOM:
      return &VXReflectionImpl::fom_;
    case VXReflectionColumn::Stolsq:
      return &VXReflectionImpl::stolsq_;
    default:
      return nullptr;
  }
}

VXReflectionImpl::IntColumn VXReflectionImpl::*VXReflectionImpl::find_int_column(
    unsigned int column) {
  switch (column) {
    case VXReflectionColumn::Centric:
      return &VXReflectionImpl::centric_;
    case VXReflectionColumn::RFree:
      return &VXReflectionImpl::rfree_;
    default:
      return nullptr;
  }
}

// The place in storage of element `i` in sorted order. The count itself is let through; what the
// permutation of a larger set leaves behind when the set shrinks is not.
bool VXReflectionImpl::find_element(unsigned int i, unsigned int& element) const {
  if (i > count_) return false;
  element = sort_index_.empty() ? i : sort_index_[i];
  return element <= count_;
}

bool VXReflectionImpl::has_column(unsigned int column) const {
  if (const auto floats = find_float_column(column)) return !(this->*floats).empty();
  if (const auto ints = find_int_column(column)) return !(this->*ints).empty();
  return false;
}

bool VXReflectionImpl::GetColumn(unsigned int column, float* out) const {
  const auto member = find_float_column(column);
  if (!out || !member || (this->*member).empty()) return false;
  std::copy_n((this->*member).begin(), count_, out);
  return true;
}

bool VXReflectionImpl::GetColumn(unsigned int column, int* out) const {
  const auto member = find_int_column(column);
  if (!out || !member || (this->*member).empty()) return false;
  std::copy_n((this->*member).begin(), count_, out);
  return true;
}

bool VXReflectionImpl::SetColumn(unsigned int column, const float* values, unsigned int n) {
  const auto member = find_float_column(column);
  return member && n == count_ && replace_column(this->*member, values, n, count_);
}

bool VXReflectionImpl::SetColumn(unsigned int column, const int* values, unsigned int n) {
  const auto member = find_int_column(column);
  return member && n == count_ && replace_column(this->*member, values, n, count_);
}

bool VXReflectionImpl::GetElement(unsigned int column, float& out, unsigned int i) const {
  const auto member = find_float_column(column);
  unsigned int element = 0;
  if (!member || (this->*member).empty() || !find_element(i, element)) return false;
  out = (this->*member)[element];
  return true;
}

bool VXReflectionImpl::GetElement(unsigned int column, int& out, unsigned int i) const {
  const auto member = find_int_column(column);
  unsigned int element = 0;
  if (!member || (this->*member).empty() || !find_element(i, element)) return false;
  out = (this->*member)[element];
  return true;
}

bool VXReflectionImpl::SetElement(unsigned int column, float value, unsigned int i) {
  const auto member = find_float_column(column);
  unsigned int element = 0;
  if (!member || (this->*member).empty() || !find_element(i, element)) return false;
  (this->*member)[element] = value;
  return true;
}

bool VXReflectionImpl::SetElement(unsigned int column, int value, unsigned int i) {
  const auto member = find_int_column(column);
  unsigned int element = 0;
  if (!member || (this->*member).empty() || !find_element(i, element)) return false;
  (this->*member)[element] = value;
  return true;
}

bool VXReflectionImpl::GetHKL(int* h, int* k, int* l) const {
  if (!h || !k || !l || !has_indices()) return false;
  std::copy_n(h_.begin(), count_, h);
  std::copy_n(k_.begin(), count_, k);
  std::copy_n(l_.begin(), count_, l);
  return true;
}

bool VXReflectionImpl::GetHKLElement(int& h, int& k, int& l, unsigned int i) const {
  unsigned int element = 0;
  if (!has_indices() || !find_element(i, element)) return false;
  h = h_[element];
  k = k_[element];
  l = l_[element];
  return true;
}

bool VXReflectionImpl::SetHKLElement(int h, int k, int l, unsigned int i) {
  unsigned int element = 0;
  if (!has_indices() || !find_element(i, element)) return false;
  h_[element] = h;
  k_[element] = k;
  l_[element] = l;
  return true;
}

bool VXReflectionImpl::SetHKL(const int* h, const int* k, const int* l, unsigned int n) {
  const bool h_there = replace_column(h_, h, n, count_);
  const bool k_there = replace_column(k_, k, n, count_);
  const bool l_there = replace_column(l_, l, n, count_);
  return h_there && k_there && l_there;
}

bool VXReflectionImpl::GetABCD(float* a, float* b, float* c, float* d) const {
  if (!a || !b || !c || !d || !has_abcd()) return false;
  std::copy_n(hla_.begin(), count_, a);
  std::copy_n(hlb_.begin(), count_, b);
  std::copy_n(hlc_.begin(), count_, c);
  std::copy_n(hld_.begin(), count_, d);
  return true;
}

bool VXReflectionImpl::GetABCDElement(float& a, float& b, float& c, float& d,
                                      unsigned int i) const {
  unsigned int element = 0;
  if (!has_abcd() || !find_element(i, element)) return false;
  a = hla_[element];
  b = hlb_[element];
  c = hlc_[element];
  d = hld_[element];
  return true;
}

bool VXReflectionImpl::SetABCD(const float* a, const float* b, const float* c, const float* d,
                               unsigned int n) {
  const bool a_there = replace_column(hla_, a, n, count_);
  const bool b_there = replace_column(hlb_, b, n, count_);
  const bool c_there = replace_column(hlc_, c, n, count_);
  const bool d_there = replace_column(hld_, d, n, count_);
  return a_there && b_there && c_there && d_there;
}

bool VXReflectionImpl::SetABCDElement(float a, float b, float c, float d, unsigned int i) {
  unsigned int element = 0;
  if (!has_abcd() || !find_element(i, element)) return false;
  hla_[element] = a;
  hlb_[element] = b;
  hlc_[element] = c;
  hld_[element] = d;
  return true;
}

void VXReflectionImpl::copy_element(unsigned int dst, unsigned int src) {
  if (dst > count_ || src > count_) return;
  visit_columns([dst, src](auto& column) {
    if (!column.empty()) column[dst] = column[src];
  });
}

// (sin theta / lambda)^2 is the squared length of half the reciprocal vector: with A the upper
// triangle of the orthogonalisation matrix, of h A^-1 / 2.
bool VXReflectionImpl::CalcResolution() {
  const VXXtal::VXUnitCell& cell = symmetry_.cell();
  if (symmetry_.GetNumber() == 0 || count_ == 0 || !cell.isValid() || !has_indices()) return false;
  if (stolsq_.empty() && !resize_column(stolsq_, count_)) return false;

  const float bc = cell.b * cell.c;
  const float cc = cell.c * cell.c;
  const double gamma = cell.gamma * radians_per_degree;
  double p = cell.b * std::cos(gamma);
  double q = cell.c * std::cos(cell.beta * radians_per_degree);
  const double s = std::fabs(cell.b * std::sin(gamma));
  double t = (bc * std::cos(cell.alpha * radians_per_degree) - q * p) / s;
  const double u = std::sqrt(cc - q * q - t * t);

  // Right angles are not exactly right in binary.
  constexpr double negligible = 5e-8F;
  const auto drop_negligible = [](double& element, double scale) {
    if (std::fabs(element) * scale < negligible) element = 0;
  };
  const double edge_scale = 1 / std::max({double{cell.a}, s, u});
  for (double* element : {&t, &p, &q})
    drop_negligible(*element, edge_scale);

  const double f00 = 0.5F / cell.a;
  const double f11 = 0.5 / s;
  const double f22 = 0.5 / u;
  double f01 = -f00 * p / s;
  double f12 = -f11 * t / u;
  double f02 = -(f01 * t + f00 * q) / u;
  const double reciprocal_scale = 1 / std::max({f00, f11, f22});
  for (double* element : {&f01, &f12, &f02})
    drop_negligible(*element, reciprocal_scale);

  const double ll = f22 * f22;
  const double kl = f12 * f22;
  const double kk = f11 * f11 + f12 * f12;
  const double hl = f02 * f22;
  const double hh = f01 * f01 + f00 * f00 + f02 * f02;
  const double hk = f01 * f11 + f02 * f12;
  for (unsigned int i = 0; i < count_; ++i) {
    const auto h = static_cast<float>(h_[i]);
    const auto k = static_cast<float>(k_[i]);
    const auto l = static_cast<float>(l_[i]);
    stolsq_[i] = static_cast<float>(l * l * ll + 2 * k * l * kl + k * k * kk + 2 * h * l * hl +
                                    h * h * hh + 2 * h * k * hk);
  }
  return true;
}

bool VXReflectionImpl::Sort() {
  if (!has_indices()) return false;
  if (sort_index_.empty() && !resize_column(sort_index_, count_)) return false;
  std::iota(sort_index_.begin(), sort_index_.end(), 0U);
  std::sort(sort_index_.begin(), sort_index_.begin() + count_,
            [this](unsigned int i, unsigned int j) {
              return std::tie(h_[i], k_[i], l_[i]) < std::tie(h_[j], k_[j], l_[j]);
            });
  return true;
}

}  // namespace VXCore
