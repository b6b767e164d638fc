/// \file
/// The data of a reflection set: indices, columns, space group and cell, and what is done with
/// them.
#ifndef VXGRID_REFLECTION_REFLECTION_IMPL_H
#define VXGRID_REFLECTION_REFLECTION_IMPL_H

#include <cstddef>  // for size_t
#include <string>   // for string
#include <vector>   // for vector

#include "vxgrid/crystal/symmetry.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

class VXSkewGrid;
struct FFTMap;

/// Columns of a reflection set, as the unsigned words that GetColumn and its kin take. Centric and
/// RFree hold ints, all others floats.
namespace VXReflectionColumn {
inline constexpr unsigned int Phase = 0;      ///< phase, degrees
inline constexpr unsigned int PhaseCalc = 1;  ///< calculated phase, degrees
inline constexpr unsigned int Fobs = 2;       ///< observed amplitude
inline constexpr unsigned int Fcalc = 3;      ///< calculated amplitude
inline constexpr unsigned int Phiwt = 4;      ///< phase of Fwt, degrees
inline constexpr unsigned int Phidelwt = 5;   ///< phase of Fdelwt, degrees
inline constexpr unsigned int Fwt = 6;        ///< weighted map amplitude
inline constexpr unsigned int Fdelwt = 7;     ///< weighted difference-map amplitude
inline constexpr unsigned int Sigma = 8;      ///< standard uncertainty of Fobs
inline constexpr unsigned int FOM = 9;        ///< figure of merit
inline constexpr unsigned int Centric = 10;   ///< centric flag, int
inline constexpr unsigned int RFree = 11;     ///< free-R flag, int
inline constexpr unsigned int Stolsq =
    12;  ///< (sin theta / lambda)^2 = 1 / (4 d^2), in 1/Angstrom^2
}  // namespace VXReflectionColumn

/// The data of a VXReflection: N reflections with their Miller indices and up to eighteen columns
/// in parallel.
///
/// Every column may be missing. Whole-column operations run in storage order; the element
/// operations run in the order that Sort() has found, if it was called. Failure is a false result,
/// and a column that memory does not suffice for is missing afterwards. Const operations may run in
/// parallel.
class VXGRID_API VXReflectionImpl {
 public:
  /// Back to a fresh object: no reflections, columns, title or symmetry.
  void Clear();

  unsigned int GetCount() const { return count_; }
  /// Makes room for `n` reflections in every column that is there, new values being 0, and leaves
  /// missing columns missing. The permutation of Sort() is not found anew. Always 1.
  int SetCount(unsigned int n);

  std::string GetTitle() const { return title_; }
  void SetTitle(const std::string& title) { title_ = title; }
  void SetTitle(const char* title) { title_ = title ? title : ""; }
  VXXtal::VXSymmetry GetSymmetry() const { return symmetry_; }
  void SetSymmetry(const VXXtal::VXSymmetry& symmetry) { symmetry_ = symmetry; }

  /// Copies a column (VXReflectionColumn) to `out`, GetCount() values in storage order. False when
  /// `out` is null, the column is missing or its values are of the other type.
  bool GetColumn(unsigned int column, float* out) const;
  bool GetColumn(unsigned int column, int* out) const;
  /// Replaces a column by a copy of `values`. False with nothing changed when `n` is not GetCount()
  /// or the column's values are of the other type; false with the column missing afterwards when
  /// `values` is null.
  bool SetColumn(unsigned int column, const float* values, unsigned int n);
  bool SetColumn(unsigned int column, const int* values, unsigned int n);
  /// One element in sorted order. False when the column is missing or of the other type, or `i` is
  /// above GetCount(); an `i` equal to it is let through, to a spare element behind the column.
  bool GetElement(unsigned int column, float& out, unsigned int i) const;
  bool GetElement(unsigned int column, int& out, unsigned int i) const;
  bool SetElement(unsigned int column, float value, unsigned int i);
  bool SetElement(unsigned int column, int value, unsigned int i);

  /// \name GetColumn for each column
  /// \{
  bool GetPhase(float* out) const { return GetColumn(VXReflectionColumn::Phase, out); }
  bool GetPhaseCalc(float* out) const { return GetColumn(VXReflectionColumn::PhaseCalc, out); }
  bool GetFobs(float* out) const { return GetColumn(VXReflectionColumn::Fobs, out); }
  bool GetFcalc(float* out) const { return GetColumn(VXReflectionColumn::Fcalc, out); }
  bool GetSigma(float* out) const { return GetColumn(VXReflectionColumn::Sigma, out); }
  bool GetFOM(float* out) const { return GetColumn(VXReflectionColumn::FOM, out); }
  bool GetStolsq(float* out) const { return GetColumn(VXReflectionColumn::Stolsq, out); }
  bool GetFwt(float* out) const { return GetColumn(VXReflectionColumn::Fwt, out); }
  bool GetFdelwt(float* out) const { return GetColumn(VXReflectionColumn::Fdelwt, out); }
  bool GetPhiwt(float* out) const { return GetColumn(VXReflectionColumn::Phiwt, out); }
  bool GetPhidelwt(float* out) const { return GetColumn(VXReflectionColumn::Phidelwt, out); }
  bool GetCentric(int* out) const { return GetColumn(VXReflectionColumn::Centric, out); }
  bool GetRFree(int* out) const { return GetColumn(VXReflectionColumn::RFree, out); }
  /// \}
  /// \name SetColumn for each column
  /// \{
  bool SetPhase(const float* values, unsigned int n) {
    return SetColumn(VXReflectionColumn::Phase, values, n);
  }
  bool SetPhaseCalc(const float* values, unsigned int n) {
    return SetColumn(VXReflectionColumn::PhaseCalc, values, n);
  }
  bool SetFobs(const float* values, unsigned int n) {
    return SetColumn(VXReflectionColumn::Fobs, values, n);
  }
  bool SetFcalc(const float* values, unsigned int n) {
    return SetColumn(VXReflectionColumn::Fcalc, values, n);
  }
  bool SetSigma(const float* values, unsigned int n) {
    return SetColumn(VXReflectionColumn::Sigma, values, n);
  }
  bool SetFOM(const float* values, unsigned int n) {
    return SetColumn(VXReflectionColumn::FOM, values, n);
  }
  bool SetStolsq(const float* values, unsigned int n) {
    return SetColumn(VXReflectionColumn::Stolsq, values, n);
  }
  bool SetFwt(const float* values, unsigned int n) {
    return SetColumn(VXReflectionColumn::Fwt, values, n);
  }
  bool SetFdelwt(const float* values, unsigned int n) {
    return SetColumn(VXReflectionColumn::Fdelwt, values, n);
  }
  bool SetPhiwt(const float* values, unsigned int n) {
    return SetColumn(VXReflectionColumn::Phiwt, values, n);
  }
  bool SetPhidelwt(const float* values, unsigned int n) {
    return SetColumn(VXReflectionColumn::Phidelwt, values, n);
  }
  bool SetCentric(const int* values, unsigned int n) {
    return SetColumn(VXReflectionColumn::Centric, values, n);
  }
  bool SetRFree(const int* values, unsigned int n) {
    return SetColumn(VXReflectionColumn::RFree, values, n);
  }
  /// \}
  /// \name GetElement for each column
  /// \{
  bool GetPhaseElement(float& out, unsigned int i) const {
    return GetElement(VXReflectionColumn::Phase, out, i);
  }
  bool GetPhaseCalcElement(float& out, unsigned int i) const {
    return GetElement(VXReflectionColumn::PhaseCalc, out, i);
  }
  bool GetFobsElement(float& out, unsigned int i) const {
    return GetElement(VXReflectionColumn::Fobs, out, i);
  }
  bool GetFcalcElement(float& out, unsigned int i) const {
    return GetElement(VXReflectionColumn::Fcalc, out, i);
  }
  bool GetSigmaElement(float& out, unsigned int i) const {
    return GetElement(VXReflectionColumn::Sigma, out, i);
  }
  bool GetFOMElement(float& out, unsigned int i) const {
    return GetElement(VXReflectionColumn::FOM, out, i);
  }
  bool GetStolsqElement(float& out, unsigned int i) const {
    return GetElement(VXReflectionColumn::Stolsq, out, i);
  }
  bool GetFwtElement(float& out, unsigned int i) const {
    return GetElement(VXReflectionColumn::Fwt, out, i);
  }
  bool GetFdelwtElement(float& out, unsigned int i) const {
    return GetElement(VXReflectionColumn::Fdelwt, out, i);
  }
  bool GetPhiwtElement(float& out, unsigned int i) const {
    return GetElement(VXReflectionColumn::Phiwt, out, i);
  }
  bool GetPhidelwtElement(float& out, unsigned int i) const {
    return GetElement(VXReflectionColumn::Phidelwt, out, i);
  }
  bool GetCentricElement(int& out, unsigned int i) const {
    return GetElement(VXReflectionColumn::Centric, out, i);
  }
  bool GetRFreeElement(int& out, unsigned int i) const {
    return GetElement(VXReflectionColumn::RFree, out, i);
  }
  /// \}
  /// \name SetElement for each column
  /// \{
  bool SetPhaseElement(float value, unsigned int i) {
    return SetElement(VXReflectionColumn::Phase, value, i);
  }
  bool SetPhaseCalcElement(float value, unsigned int i) {
    return SetElement(VXReflectionColumn::PhaseCalc, value, i);
  }
  bool SetFobsElement(float value, unsigned int i) {
    return SetElement(VXReflectionColumn::Fobs, value, i);
  }
  bool SetFcalcElement(float value, unsigned int i) {
    return SetElement(VXReflectionColumn::Fcalc, value, i);
  }
  bool SetSigmaElement(float value, unsigned int i) {
    return SetElement(VXReflectionColumn::Sigma, value, i);
  }
  bool SetFOMElement(float value, unsigned int i) {
    return SetElement(VXReflectionColumn::FOM, value, i);
  }
  bool SetStolsqElement(float value, unsigned int i) {
    return SetElement(VXReflectionColumn::Stolsq, value, i);
  }
  bool SetFwtElement(float value, unsigned int i) {
    return SetElement(VXReflectionColumn::Fwt, value, i);
  }
  bool SetFdelwtElement(float value, unsigned int i) {
    return SetElement(VXReflectionColumn::Fdelwt, value, i);
  }
  bool SetPhiwtElement(float value, unsigned int i) {
    return SetElement(VXReflectionColumn::Phiwt, value, i);
  }
  bool SetPhidelwtElement(float value, unsigned int i) {
    return SetElement(VXReflectionColumn::Phidelwt, value, i);
  }
  bool SetCentricElement(int value, unsigned int i) {
    return SetElement(VXReflectionColumn::Centric, value, i);
  }
  bool SetRFreeElement(int value, unsigned int i) {
    return SetElement(VXReflectionColumn::RFree, value, i);
  }
  /// \}

  /// The Miller indices, by the rules of GetColumn, GetElement and SetElement.
  bool GetHKL(int* h, int* k, int* l) const;
  bool GetHKLElement(int& h, int& k, int& l, unsigned int i) const;
  bool SetHKLElement(int h, int k, int l, unsigned int i);
  /// Replaces the indices by copies of `n` values each; SetCount(n) comes first, as `n` is not
  /// compared. True when all three are there afterwards.
  bool SetHKL(const int* h, const int* k, const int* l, unsigned int n);

  /// The Hendrickson-Lattman coefficients A, B, C, D, by the same rules as the indices.
  bool GetABCD(float* a, float* b, float* c, float* d) const;
  bool GetABCDElement(float& a, float& b, float& c, float& d, unsigned int i) const;
  bool SetABCD(const float* a, const float* b, const float* c, const float* d, unsigned int n);
  bool SetABCDElement(float a, float b, float c, float d, unsigned int i);

  /// Amplitude and phase (degrees) of reflection `i` in storage order for a map type
  /// (VXMTZMapType; a value that is none means fobs and phase). Always true; what a column that is
  /// missing would have told is not a number.
  bool GetAmpPhase(float& amp, float& phase, unsigned int i, int maptype) const;
  /// The same as real and imaginary part. False, the outputs untouched, when phase or amplitude is
  /// not a number: such a reflection has no part in a map.
  bool GetAB(float& a, float& b, unsigned int i, int maptype) const;
  /// True when the columns are there that the map type needs. The SigmaA types ask for the four
  /// Hendrickson-Lattman columns and not for the phase, which they need too. Type Fc alone speaks,
  /// at Error level: "fcalc missing." and "phase calc missing.".
  bool ValidateMaptype(int maptype) const;

  /// Fills the column Stolsq from indices and cell. False with nothing changed without reflections,
  /// indices, a space group or a valid cell.
  bool CalcResolution();

  /// Finds the permutation that orders the reflections by h, then k, then l, for the element
  /// operations; the data stay where they are. False without indices.
  bool Sort();

  /// Adds the symmetry mates, so that the reflections of the asymmetric unit become those of the
  /// whole sphere without Friedel mates.
  ///
  /// Mates follow the N reflections that were there, those of one reflection together, in the
  /// half-space l > 0, or l = 0 and h > 0, or l = h = 0 and k >= 0; a reflection that is given in
  /// the other half may thus get its own Friedel mate too. Amplitudes and flags are
  /// copied; phases become phi - 360 h.t, their negatives for a Friedel mate, in [0, 360) with
  /// steps of about 0.03 degrees; Hendrickson-Lattman coefficients turn with them. When only the
  /// calculated phase is there it becomes the phase as well. The permutation of Sort() is not kept
  /// up.
  ///
  /// False without reflections, indices or a space group, and when a mate's index does not fit an
  /// int or the mates do not fit the count. True with nothing done in P 1. A second call expands
  /// the expanded set.
  bool Expand();

  /// Makes the map of a type (VXMTZMapType) from the reflections as they are: no symmetry is
  /// applied, so an asymmetric unit goes through Expand() first.
  ///
  /// The map is the Fourier sum (1 / V) sum over h of F exp(-2 pi i h.x), Friedel mates included,
  /// in electrons per cubic Angstrom for amplitudes on the absolute scale. It is sampled at 2.5
  /// times the largest index plus 1 on each axis, truncated and then made even, and the grid holds
  /// one plane more at the end of each axis, which repeats the first. Reflections whose coefficient
  /// is not a number are left out.
  ///
  /// The grid is overwritten whole: values, dimensions, cell with sampling, group, reentrance, mid
  /// (grid point (0, 0, 0) lies at the cell's origin), the title "FT: " with this set's title or
  /// "grid", and the tags "MapType" (unsigned int) and "vx_symm" (VXXtal::VXSymmetry).
  ///
  /// False without a message when there are no reflections, the cell is not valid or smaller than
  /// 1e-5 cubic Angstrom, the map would have more than 2^31 - 1 points, or memory does not suffice;
  /// false by ValidateMaptype for columns that are missing.
  bool MakeMap(VXSkewGrid& grid, unsigned int maptype) const;

  /// Fills the columns Fcalc and PhaseCalc, and Phase with the same phases, with the structure
  /// factors of a model: by direct summation over its atoms and all operators of the space group,
  /// on the absolute scale (electrons per cell), phases in degrees from 0 to 360.
  ///
  /// The model is in vacuum: form factors of scatter_data, one B-factor and one occupancy for each
  /// atom, from its residue data; atoms without residue data do not take part. Form factors are
  /// tabulated to s^2 = 1 in steps of 0.005, exponentials in steps of 1/2000 and angles in whole
  /// degrees, so that amplitudes differ from exact sums by about a percent of their mean. A
  /// B-factor that is negative or not finite counts as 0. A neutral hydrogen, like an element that
  /// scatter_data does not have, scatters as carbon.
  ///
  /// The column Stolsq is filled first when it is missing. A set that is marked as expanded goes
  /// back to its unique reflections and loses the permutation of Sort().
  ///
  /// False, with the columns as they were, for a model without residue data, without indices, a
  /// space group, a valid cell or a resolution, for angles beyond 32-bit integers (positions that
  /// are not finite among them), and when memory does not suffice; for that of the form factors
  /// the Error "sfinit: internal - could not allocate enough memory for reflection" goes out, once.
  bool SFCalc(const VXMolBase& mol);

  /// \name What is there, whatever the count and the permutation of Sort()
  /// @{
  /// All three indices.
  bool has_indices() const { return !h_.empty() && !k_.empty() && !l_.empty(); }
  /// All four Hendrickson-Lattman coefficients.
  bool has_abcd() const { return !hla_.empty() && !hlb_.empty() && !hlc_.empty() && !hld_.empty(); }
  /// A column of VXReflectionColumn.
  bool has_column(unsigned int column) const;
  /// @}

 protected:
  /// Copies element `src` to element `dst` in every column that is there, both being at most
  /// GetCount().
  void copy_element(unsigned int dst, unsigned int src);
  /// Stores the coefficient (a, b) of every reflection in the half-complex array, where its indices
  /// and those of its Friedel mate fall; what comes later overwrites.
  void FillGrid(FFTMap* map, int maptype) const;
  /// The same into two planes of nx ny nz floats, X fastest, over h at or above 0 only.
  void FillGrid(float* a, float* b, int nx, int ny, int nz, int maptype) const;

 private:
  using FloatColumn = std::vector<float>;
  using IntColumn = std::vector<int>;

  struct MapColumns;

  MapColumns find_map_columns(int maptype) const;
  void place_coefficients(FFTMap& map, int maptype, double real_factor,
                          double imaginary_factor) const;
  bool sum_structure_factors(const VXMolBase& mol);
  static FloatColumn VXReflectionImpl::*find_float_column(unsigned int column);
  static IntColumn VXReflectionImpl::*find_int_column(unsigned int column);
  bool find_element(unsigned int i, unsigned int& element) const;
  template <class Mates>
  void append_mates(const Mates& mates, std::size_t at);
  /// Calls `visit` with every column but the permutation.
  template <class Visit>
  void visit_columns(Visit&& visit);

  std::string title_;
  unsigned int count_ = 0;
  VXXtal::VXSymmetry symmetry_;
  // A column that is missing is empty; one that is there is one element longer than it has values,
  // at least, since the element operations reach that far.
  IntColumn h_;
  IntColumn k_;
  IntColumn l_;
  FloatColumn phase_;
  FloatColumn phase_calc_;
  FloatColumn fobs_;
  FloatColumn fcalc_;
  FloatColumn sigma_;
  FloatColumn fom_;
  IntColumn centric_;
  IntColumn rfree_;
  FloatColumn hla_;
  FloatColumn hlb_;
  FloatColumn hlc_;
  FloatColumn hld_;
  FloatColumn stolsq_;
  std::vector<unsigned int> sort_index_;
  FloatColumn fwt_;
  FloatColumn fdelwt_;
  FloatColumn phiwt_;
  FloatColumn phidelwt_;
  bool expanded_ = false;
  unsigned int unexpanded_count_ = 0;
};

}  // namespace VXCore

#endif
