// PHS phase files, and the HKL reflection lists that go by the same name at times.
#include "vxgrid/reflection/phs.h"

#include <cstddef>      // for size_t
#include <string>       // for string
#include <string_view>  // for string_view
#include <vector>       // for vector

#include "reflection/field_scanner.h"
#include "reflection/text_rows.h"
#include "vxgrid/reflection/reflection.h"

namespace VXCore {
namespace {

using detail::begins_with;
using detail::FieldScanner;
using detail::ReflectionRow;
using detail::ReflectionRows;
namespace columns = VXReflectionColumn;

constexpr std::size_t longest_phs_line = 256;
constexpr std::size_t longest_hkl_line = 128;
constexpr std::string_view hkl_keyword = "HKL";

bool is_blank(std::string_view line) {
  std::string_view word;
  return !FieldScanner(line).word(word);
}

bool scan_indices(FieldScanner& scanner, ReflectionRow& row) {
  return scanner.number(row.hkl[0]) && scanner.number(row.hkl[1]) && scanner.number(row.hkl[2]);
}

// h, k, l, fobs, the fifth value in the places of both fom and fcalc, phase, A, B, C, D. True when
// the first six are there.
bool scan_phs(FieldScanner& scanner, ReflectionRow& row, bool& has_abcd) {
  row = ReflectionRow();
  if (!scan_indices(scanner, row) || !scanner.number(row.values[columns::Fobs]) ||
      !scanner.number(row.values[columns::FOM]) || !scanner.number(row.values[columns::Phase]))
    return false;
  row.values[columns::Fcalc] = row.values[columns::FOM];
  for (float& coefficient : row.abcd)
    has_abcd = scanner.number(coefficient) && has_abcd;
  return true;
}

bool scan_hkl(FieldScanner& scanner, ReflectionRow& row) {
  row = ReflectionRow();
  std::string_view keyword;
  return scanner.word(keyword) && scan_indices(scanner, row) &&
         scanner.number(row.values[columns::Fobs]) && scanner.number(row.values[columns::Sigma]) &&
         scanner.number(row.values[columns::Phase]) && scanner.number(row.values[columns::FOM]);
}

}  // namespace

bool VXReadReflectionPHS(vxistream& is, VXReflection& refl) {
  ReflectionRows rows;
  ReflectionRow row;
  std::vector<int> rfree;
  double fifth_sum = 0;
  bool has_negative_phase = false;
  bool has_abcd = true;
  bool has_data = false;
  std::string buffer;
  std::string_view line;
  while (detail::read_line(is, buffer, longest_phs_line, line)) {
    if (begins_with(line, "REM") || begins_with(line, "#") || is_blank(line)) continue;
    if (!has_data && begins_with(line, hkl_keyword))
      return is.rewind() && VXReadReflectionHKL(is, refl);
    has_data = true;
    FieldScanner scanner(line);
    const bool counts = scan_phs(scanner, row, has_abcd);
    if (scanner.overflowed()) return detail::refuse(refl);
    if (!counts) continue;
    float& phase = row.values[columns::Phase];
    const bool is_negative = !(phase >= 0);
    if (is_negative) phase += 360;
    has_negative_phase = has_negative_phase || is_negative;
    rfree.push_back(is_negative ? 0 : 1);
    fifth_sum += row.values[columns::FOM];
    rows.add(row);
  }
  if (rows.empty()) return false;
  // Figures of merit lie between 0 and 1, amplitudes beyond.
  const bool is_fcalc = fifth_sum / static_cast<double>(rows.size()) > 1.0;
  const unsigned int fifth = is_fcalc ? columns::Fcalc : columns::FOM;
  if (!rows.fill(refl, {columns::Fobs, columns::Phase, fifth}, has_abcd)) return false;
  if (has_negative_phase && !refl.SetRFree(rfree.data(), refl.GetCount()))
    return detail::refuse(refl);
  return true;
}

bool VXReadReflectionHKL(vxistream& is, VXReflection& refl) {
  constexpr float unknown_phase = 1000;
  ReflectionRows rows;
  ReflectionRow row;
  std::string buffer;
  std::string_view line;
  while (detail::read_line(is, buffer, longest_hkl_line, line)) {
    if (!begins_with(line, hkl_keyword)) continue;
    FieldScanner scanner(line);
    const bool counts = scan_hkl(scanner, row);
    if (scanner.overflowed()) return detail::refuse(refl);
    if (!counts) continue;
    if (row.values[columns::Phase] == unknown_phase) row.values[columns::FOM] = 0;
    rows.add(row);
  }
  if (rows.empty()) return detail::refuse(refl);
  return rows.fill(refl, {columns::Fobs, columns::Sigma, columns::Phase, columns::FOM});
}

bool VXWriteReflectionPHS(vxostream& os, VXReflection& refl) {
  const std::size_t n = refl.GetCount();
  if (n == 0 || !refl.GetImpl()->has_indices()) return false;
  std::vector<int> h(n), k(n), l(n);
  std::vector<float> fobs(n), phase(n), fom(n), a(n), b(n), c(n), d(n);
  if (!refl.GetHKL(h.data(), k.data(), l.data()) || !refl.GetFobs(fobs.data()) ||
      !refl.GetPhase(phase.data()) || !refl.GetFOM(fom.data()))
    return false;
  const bool has_abcd = refl.GetABCD(a.data(), b.data(), c.data(), d.data());
  for (std::size_t i = 0; i < n; ++i) {
    os << format_text("%5d%5d%5d %10.3f %10.3f %10.3f ", h[i], k[i], l[i], fobs[i], fom[i],
                      phase[i]);
    if (has_abcd) os << format_text(" %11.5f %11.5f %11.5f %11.5f", a[i], b[i], c[i], d[i]);
    os << '\n';
  }
  return os.good();
}

}  // namespace VXCore
