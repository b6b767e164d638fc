/// \file
/// An open MTZ file: what columns it has, which of them make a map, and that map.
#ifndef VXGRID_REFLECTION_MTZ_H
#define VXGRID_REFLECTION_MTZ_H

#include <memory>  // for unique_ptr
#include <string>  // for string
#include <vector>  // for vector

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/names.h"

namespace VXCore {

class VXSkewGrid;

/// The labels that VXMTZColumns holds.
class VXGRID_API VXMTZColumnsPrivate {
 public:
  const std::string& GetFdelwt() const { return fdelwt_; }
  const std::string& GetPhidelwt() const { return phidelwt_; }
  const std::string& GetFwt() const { return fwt_; }
  const std::string& GetPhiwt() const { return phiwt_; }
  const std::string& GetFobs() const { return fobs_; }
  const std::string& GetPhi() const { return phi_; }
  const std::string& GetFc() const { return fc_; }
  const std::string& GetPhic() const { return phic_; }
  const std::string& GetSigmaA() const { return sigmaa_; }

  void SetFdelwt(const std::string& label) { fdelwt_ = label; }
  void SetPhidelwt(const std::string& label) { phidelwt_ = label; }
  void SetFwt(const std::string& label) { fwt_ = label; }
  void SetPhiwt(const std::string& label) { phiwt_ = label; }
  void SetFobs(const std::string& label) { fobs_ = label; }
  void SetPhi(const std::string& label) { phi_ = label; }
  void SetFc(const std::string& label) { fc_ = label; }
  void SetPhic(const std::string& label) { phic_ = label; }
  void SetSigmaA(const std::string& label) { sigmaa_ = label; }

 private:
  std::string fdelwt_ = "DELFWT";
  std::string phidelwt_ = "PHDELWT";
  std::string fwt_ = "FWT";
  std::string phiwt_ = "PHWT";
  std::string fobs_ = "FP";
  std::string phi_;
  std::string fc_ = "FC";
  std::string phic_ = "PHIC";
  std::string sigmaa_ = "SIGF";
};

/// The labels of the columns that the map types want: "DELFWT" and "PHDELWT" of the difference map,
/// "FWT" and "PHWT" of the weighted map, "FP" observed with no phase of its own, "FC" and "PHIC"
/// calculated, and "SIGF", which serves as SigmaA and as the uncertainty of the observed amplitude.
class VXGRID_API VXMTZColumns {
 public:
  VXMTZColumns();
  VXMTZColumns(const VXMTZColumns& other);
  VXMTZColumns& operator=(const VXMTZColumns& other);
  ~VXMTZColumns();

  const std::string& GetFdelwt() const { return impl_->GetFdelwt(); }
  const std::string& GetPhidelwt() const { return impl_->GetPhidelwt(); }
  const std::string& GetFwt() const { return impl_->GetFwt(); }
  const std::string& GetPhiwt() const { return impl_->GetPhiwt(); }
  const std::string& GetFobs() const { return impl_->GetFobs(); }
  const std::string& GetPhi() const { return impl_->GetPhi(); }
  const std::string& GetFc() const { return impl_->GetFc(); }
  const std::string& GetPhic() const { return impl_->GetPhic(); }
  const std::string& GetSigmaA() const { return impl_->GetSigmaA(); }

  void SetFdelwt(const std::string& label) { impl_->SetFdelwt(label); }
  void SetPhidelwt(const std::string& label) { impl_->SetPhidelwt(label); }
  void SetFwt(const std::string& label) { impl_->SetFwt(label); }
  void SetPhiwt(const std::string& label) { impl_->SetPhiwt(label); }
  void SetFobs(const std::string& label) { impl_->SetFobs(label); }
  void SetPhi(const std::string& label) { impl_->SetPhi(label); }
  void SetFc(const std::string& label) { impl_->SetFc(label); }
  void SetPhic(const std::string& label) { impl_->SetPhic(label); }
  void SetSigmaA(const std::string& label) { impl_->SetSigmaA(label); }

 private:
  std::unique_ptr<VXMTZColumnsPrivate> impl_;
};

/// An MTZ file, held open with the inventory of its columns. Making a map moves the file's stream,
/// so that one object serves one thread at a time.
class VXGRID_API VXMTZ {
 public:
  /// Opens a file with the extension "mtz" or "mtz.gz" and reads its column labels. A file that
  /// cannot be opened is reported by the Error "Unable to open file %s"; another extension and a
  /// file without columns leave the object invalid without a message.
  explicit VXMTZ(const std::string& filename);
  /// Opens the other's file once more.
  VXMTZ(const VXMTZ& other);
  VXMTZ& operator=(const VXMTZ& other);
  ~VXMTZ();

  /// True if the file has columns.
  bool IsValid() const;

  /// Exact, case-sensitive.
  bool FindColumn(const std::string& label) const;
  /// True if the file has all labels. At the first one missing the inventory goes to the error
  /// stream, the Error "Requested column '%s' not found." goes out, and the result is false.
  bool FindColumns(const std::vector<std::string>& labels) const;

  /// Writes the inventory, one label a line, and reports the Warning "Available columns:".
  void PrintColumns(vxostream& os) const;
  /// The same on the error stream.
  void PrintColumns() const;

  /// Labels of the amplitudes and intensities (column types F, G, J, K), in file order.
  const std::vector<std::string>& GetAmplitudes() const;
  /// Labels of the phases (type P).
  const std::vector<std::string>& GetPhases() const;
  /// Labels of the standard uncertainties (types L, M, Q).
  const std::vector<std::string>& GetSigmaA() const;
  /// Labels of the free-R flags and other integers (type I).
  const std::vector<std::string>& GetFreeR() const;

  /// Chooses columns by the labels that refinement programs use. Each field takes the first label
  /// that the file has and is left alone when it has none: Fc of "FC", "F-model"; Phic of "PHIC",
  /// "PHIF-model"; Fobs of "F", "FP", after which "F-obs" goes to Fc; SigmaA of "SIGF", "SIGFP",
  /// "SIGF-Obs". Fdelwt, Phidelwt, Fwt and Phiwt come together from "DELFWT", "PHDELWT", "FWT",
  /// "PHWT" or from "FOFCWT", "PHFOFCWT", "2FOFCWT", "PH2FOFCWT"; the result tells whether one of
  /// these two sets is whole.
  bool AutoGetColumns(VXMTZColumns& cols) const;

  /// The map with columns chosen automatically.
  bool MakeMap(VXSkewGrid& grid, unsigned int maptype) const;

  /// Makes the map of a type (VXMTZMapType) over one unit cell, on the scale of its own standard
  /// deviation.
  ///
  /// With `automatic` the columns come from AutoGetColumns and only the types Fo, Fc, TwoFoFc,
  /// TwoFoFcSigmaA, Fwt and Fdelwt are taken; without it, from `cols` as they are. For Fo an empty
  /// Phi becomes Phic, in `cols` as well. With `check_only` the result tells whether the columns
  /// are there, and the grid is not touched.
  ///
  /// The grid is overwritten: the values along with what VXReflection::MakeMap and
  /// VXSigmaNormalizeGrid set; the type, a difference map (4) for FoFc, Fdelwt and FcAuto and a
  /// regular map (3) otherwise; on the Brio grid below, the float tags "AMIN", "AMAX", "AMEAN" of
  /// the map before scaling and its deviation as "ARMS", as a map file has them; the string tags
  /// "mtz_filename" and, with the file's labels joined by "|", "fobs" (types F, G, J, K), "sigma"
  /// (L, M, Q) and "rfree" (I).
  ///
  /// False without a message when the object is not valid or the file cannot be read again, with
  /// one when the type is unknown, columns are missing or the map cannot be made.
  bool MakeMap(VXSkewGrid& grid, unsigned int maptype, VXMTZColumns& cols, bool automatic,
               bool check_only) const;

 private:
  struct Private;
  std::unique_ptr<Private> private_;
};

/// Opens an MTZ file and makes the map with columns chosen automatically; see VXMTZ::MakeMap.
VXGRID_API bool VXReadMTZ(const std::string& filename, VXSkewGrid& grid, unsigned int maptype);

}  // namespace VXCore

#endif
