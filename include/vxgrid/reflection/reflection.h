/// \file
/// The reflection set: a list of crystallographic reflections that readers fill and maps are made
/// of.
#ifndef VXGRID_REFLECTION_REFLECTION_H
#define VXGRID_REFLECTION_REFLECTION_H

#include <memory>  // for unique_ptr
#include <string>  // for string

#include "vxgrid/crystal/symmetry.h"
#include "vxgrid/reflection/reflection_impl.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

class VXSkewGrid;

/// A reflection set: what readers fill, what maps are made of. A handle that owns one
/// VXReflectionImpl, to which the operations of the same names go, and carries tagged data, such as
/// the resolution limits.
class VXGRID_API VXReflection : public VXBase {
 public:
  VXReflection();
  VXReflection(const VXReflection& other);
  VXReflection& operator=(const VXReflection& other);
  ~VXReflection() override;

  /// Clears the reflection data; tagged data stay.
  void Clear() override;
  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  /// A copy that the caller owns; null when memory does not suffice.
  VXBase* CreateCopy() const override;

  /// The reflection data, owned by this object; never null.
  VXReflectionImpl* GetImpl() const { return impl_.get(); }

  /// Keeps resolution limits as the double tags "reslo" and "reshi" (in 1 / d^2, as an MTZ file's
  /// "RESO" record has them) and "reso" (1 / sqrt(reshi), the high-resolution limit in Angstrom).
  void SetRESO(double reslo, double reshi);
  /// The high-resolution limit in Angstrom, 0 when there is none.
  double GetResolution() const;

  unsigned int GetCount() const { return impl_->GetCount(); }
  int SetCount(unsigned int n) { return impl_->SetCount(n); }
  std::string GetTitle() const { return impl_->GetTitle(); }
  void SetTitle(const std::string& title) { impl_->SetTitle(title); }
  void SetTitle(const char* title) { impl_->SetTitle(title); }
  VXXtal::VXSymmetry GetSymmetry() const { return impl_->GetSymmetry(); }
  void SetSymmetry(const VXXtal::VXSymmetry& symmetry) { impl_->SetSymmetry(symmetry); }

  /// \name Columns, elements, indices and coefficients, as VXReflectionImpl has them
  /// \{
  bool GetColumn(unsigned int column, float* out) const { return impl_->GetColumn(column, out); }
  bool GetColumn(unsigned int column, int* out) const { return impl_->GetColumn(column, out); }
  bool SetColumn(unsigned int column, const float* values, unsigned int n) {
    return impl_->SetColumn(column, values, n);
  }
  bool SetColumn(unsigned int column, const int* values, unsigned int n) {
    return impl_->SetColumn(column, values, n);
  }
  bool GetElement(unsigned int column, float& out, unsigned int i) const {
    return impl_->GetElement(column, out, i);
  }
  bool GetElement(unsigned int column, int& out, unsigned int i) const {
    return impl_->GetElement(column, out, i);
  }
  bool SetElement(unsigned int column, float value, unsigned int i) {
    return impl_->SetElement(column, value, i);
  }
  bool SetElement(unsigned int column, int value, unsigned int i) {
    return impl_->SetElement(column, value, i);
  }
  bool GetPhase(float* out) const { return impl_->GetPhase(out); }
  bool GetPhaseCalc(float* out) const { return impl_->GetPhaseCalc(out); }
  bool GetFobs(float* out) const { return impl_->GetFobs(out); }
  bool GetFcalc(float* out) const { return impl_->GetFcalc(out); }
  bool GetSigma(float* out) const { return impl_->GetSigma(out); }
  bool GetFOM(float* out) const { return impl_->GetFOM(out); }
  bool GetStolsq(float* out) const { return impl_->GetStolsq(out); }
  bool GetFwt(float* out) const { return impl_->GetFwt(out); }
  bool GetFdelwt(float* out) const { return impl_->GetFdelwt(out); }
  bool GetPhiwt(float* out) const { return impl_->GetPhiwt(out); }
  bool GetPhidelwt(float* out) const { return impl_->GetPhidelwt(out); }
  bool GetCentric(int* out) const { return impl_->GetCentric(out); }
  bool GetRFree(int* out) const { return impl_->GetRFree(out); }
  bool SetPhase(const float* values, unsigned int n) { return impl_->SetPhase(values, n); }
  bool SetPhaseCalc(const float* values, unsigned int n) { return impl_->SetPhaseCalc(values, n); }
  bool SetFobs(const float* values, unsigned int n) { return impl_->SetFobs(values, n); }
  bool SetFcalc(const float* values, unsigned int n) { return impl_->SetFcalc(values, n); }
  bool SetSigma(const float* values, unsigned int n) { return impl_->SetSigma(values, n); }
  bool SetFOM(const float* values, unsigned int n) { return impl_->SetFOM(values, n); }
  bool SetStolsq(const float* values, unsigned int n) { return impl_->SetStolsq(values, n); }
  bool SetFwt(const float* values, unsigned int n) { return impl_->SetFwt(values, n); }
  bool SetFdelwt(const float* values, unsigned int n) { return impl_->SetFdelwt(values, n); }
  bool SetPhiwt(const float* values, unsigned int n) { return impl_->SetPhiwt(values, n); }
  bool SetPhidelwt(const float* values, unsigned int n) { return impl_->SetPhidelwt(values, n); }
  bool SetCentric(const int* values, unsigned int n) { return impl_->SetCentric(values, n); }
  bool SetRFree(const int* values, unsigned int n) { return impl_->SetRFree(values, n); }
  bool GetPhaseElement(float& out, unsigned int i) const { return impl_->GetPhaseElement(out, i); }
  bool GetPhaseCalcElement(float& out, unsigned int i) const {
    return impl_->GetPhaseCalcElement(out, i);
  }
  bool GetFobsElement(float& out, unsigned int i) const { return impl_->GetFobsElement(out, i); }
  bool GetFcalcElement(float& out, unsigned int i) const { return impl_->GetFcalcElement(out, i); }
  bool GetSigmaElement(float& out, unsigned int i) const { return impl_->GetSigmaElement(out, i); }
  bool GetFOMElement(float& out, unsigned int i) const { return impl_->GetFOMElement(out, i); }
  bool GetStolsqElement(float& out, unsigned int i) const {
    return impl_->GetStolsqElement(out, i);
  }
  bool GetFwtElement(float& out, unsigned int i) const { return impl_->GetFwtElement(out, i); }
  bool GetFdelwtElement(float& out, unsigned int i) const {
    return impl_->GetFdelwtElement(out, i);
  }
  bool GetPhiwtElement(float& out, unsigned int i) const { return impl_->GetPhiwtElement(out, i); }
  bool GetPhidelwtElement(float& out, unsigned int i) const {
    return impl_->GetPhidelwtElement(out, i);
  }
  bool GetCentricElement(int& out, unsigned int i) const {
    return impl_->GetCentricElement(out, i);
  }
  bool GetRFreeElement(int& out, unsigned int i) const { return impl_->GetRFreeElement(out, i); }
  bool SetPhaseElement(float value, unsigned int i) { return impl_->SetPhaseElement(value, i); }
  bool SetPhaseCalcElement(float value, unsigned int i) {
    return impl_->SetPhaseCalcElement(value, i);
  }
  bool SetFobsElement(float value, unsigned int i) { return impl_->SetFobsElement(value, i); }
  bool SetFcalcElement(float value, unsigned int i) { return impl_->SetFcalcElement(value, i); }
  bool SetSigmaElement(float value, unsigned int i) { return impl_->SetSigmaElement(value, i); }
  bool SetFOMElement(float value, unsigned int i) { return impl_->SetFOMElement(value, i); }
  bool SetStolsqElement(float value, unsigned int i) { return impl_->SetStolsqElement(value, i); }
  bool SetFwtElement(float value, unsigned int i) { return impl_->SetFwtElement(value, i); }
  bool SetFdelwtElement(float value, unsigned int i) { return impl_->SetFdelwtElement(value, i); }
  bool SetPhiwtElement(float value, unsigned int i) { return impl_->SetPhiwtElement(value, i); }
  bool SetPhidelwtElement(float value, unsigned int i) {
    return impl_->SetPhidelwtElement(value, i);
  }
  bool SetCentricElement(int value, unsigned int i) { return impl_->SetCentricElement(value, i); }
  bool SetRFreeElement(int value, unsigned int i) { return impl_->SetRFreeElement(value, i); }
  bool GetHKL(int* h, int* k, int* l) const { return impl_->GetHKL(h, k, l); }
  bool GetHKLElement(int& h, int& k, int& l, unsigned int i) const {
    return impl_->GetHKLElement(h, k, l, i);
  }
  bool SetHKLElement(int h, int k, int l, unsigned int i) {
    return impl_->SetHKLElement(h, k, l, i);
  }
  bool SetHKL(const int* h, const int* k, const int* l, unsigned int n) {
    return impl_->SetHKL(h, k, l, n);
  }
  bool GetABCD(float* a, float* b, float* c, float* d) const { return impl_->GetABCD(a, b, c, d); }
  bool GetABCDElement(float& a, float& b, float& c, float& d, unsigned int i) const {
    return impl_->GetABCDElement(a, b, c, d, i);
  }
  bool SetABCD(const float* a, const float* b, const float* c, const float* d, unsigned int n) {
    return impl_->SetABCD(a, b, c, d, n);
  }
  bool SetABCDElement(float a, float b, float c, float d, unsigned int i) {
    return impl_->SetABCDElement(a, b, c, d, i);
  }
  /// \}

  bool ValidateMaptype(int maptype) const { return impl_->ValidateMaptype(maptype); }
  bool CalcResolution() { return impl_->CalcResolution(); }
  bool Sort() { return impl_->Sort(); }
  bool Expand() { return impl_->Expand(); }
  /// VXReflectionImpl::MakeMap, and on success GetResolution() as the double tag "resolution" on
  /// the grid.
  bool MakeMap(VXSkewGrid& grid, unsigned int maptype) const;
  bool SFCalc(const VXMolBase& mol) { return impl_->SFCalc(mol); }

 private:
  std::unique_ptr<VXReflectionImpl> impl_;
};

}  // namespace VXCore

#endif
