/// \file
/// The root of everything that can carry tagged data, and the table of tags.
#ifndef VXGRID_TOOLKIT_CORE_BASE_H
#define VXGRID_TOOLKIT_CORE_BASE_H

#include <memory>  // for unique_ptr
#include <string>  // for string
#include <vector>  // for vector

#include "vxgrid/toolkit/core/base_data.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/type_ids.h"

namespace VXCore {

/// The number of a tag, made on first use. Null counts as the empty text, whose number is 0.
/// Safe from any thread and before other static initialisers have run.
VXGRID_API unsigned int VXGetTag(const char* name);
/// The text of a tag; the empty text for a number that was never given out. The text stays valid.
VXGRID_API const char* VXGetTag(unsigned int tag);

/// A tag as an argument: by its number, or by its text.
class DataTag {
 public:
  DataTag(unsigned int tag) : tag_(tag) {}
  DataTag(const char* name) : tag_(VXGetTag(name)) {}
  DataTag(const std::string& name) : tag_(VXGetTag(name.c_str())) {}

  unsigned int number() const { return tag_; }

 private:
  unsigned int tag_;
};

/// The tagged data of one object, one datum per tag, in the order in which they came.
class VXGRID_API VXBaseImpl {
 public:
  VXBaseImpl();
  VXBaseImpl(const VXBaseImpl& other);
  VXBaseImpl& operator=(const VXBaseImpl&) = delete;
  ~VXBaseImpl();

  /// The datum, null when absent; the object keeps it.
  VXBaseData* FindData(unsigned int tag) const;
  /// Replaces the datum of the same tag in its place, or adds the datum at the end.
  void SetData(std::unique_ptr<VXBaseData> datum);
  /// False when there is none.
  bool DeleteData(unsigned int tag);
  const std::vector<std::unique_ptr<VXBaseData>>& GetAllData() const { return data_; }

  /// Asked when a datum has another type than the one wanted: true would mean to use it anyway.
  /// Answers false, so that the datum counts as absent, and leaves a Debug trace.
  static bool CheckTypeWarning();

 private:
  std::vector<std::unique_ptr<VXBaseData>> data_;
};

/// The root class. Tagged data are copied by copy construction and assignment, which replaces
/// all data that the target had.
class VXGRID_API VXBase {
 public:
  VXBase() noexcept;
  VXBase(const VXBase& other);
  VXBase(VXBase&& other) noexcept;
  VXBase& operator=(const VXBase& other);
  VXBase& operator=(VXBase&& other) noexcept;

  virtual ~VXBase();
  /// Removes all tagged data, and in derived classes all content.
  virtual void Clear();
  /// The identifier of the object's own class.
  virtual TypeId GetDataType() const;
  /// True for the identifier of the object's class and of every class above it.
  virtual bool IsDataType(TypeId type) const;
  /// A copy, owned by the caller.
  virtual VXBase* CreateCopy() const;

  bool HasData(DataTag tag) const { return FindBaseData(tag) != nullptr; }
  /// Removes the datum; false when there is none.
  bool DeleteData(DataTag tag);

  /// \name The typed data
  /// The getters give zero, false or the empty text when the datum is absent or has another
  /// type. The setters replace or add, and give true.
  /// @{
  float GetFloatData(DataTag tag) const { return get_or_default<float>(tag); }
  double GetDoubleData(DataTag tag) const { return get_or_default<double>(tag); }
  bool GetBoolData(DataTag tag) const { return get_or_default<bool>(tag); }
  int GetIntData(DataTag tag) const { return get_or_default<int>(tag); }
  std::string GetStringData(DataTag tag) const { return get_or_default<std::string>(tag); }

  bool SetFloatData(DataTag tag, float value) { return SetData(tag, value); }
  bool SetDoubleData(DataTag tag, double value) { return SetData(tag, value); }
  bool SetBoolData(DataTag tag, bool value) { return SetData(tag, value); }
  bool SetIntData(DataTag tag, int value) { return SetData(tag, value); }
  bool SetStringData(DataTag tag, const std::string& value) { return SetData(tag, value); }
  /// @}

  /// Replaces or adds a datum of any copyable type; true.
  template <class T>
  bool SetData(DataTag tag, const T& value) {
    AttachBaseData(std::make_unique<VXBaseDataT<T>>(tag.number(), value));
    return true;
  }
  /// A literal is kept as std::string, null as the empty text.
  bool SetData(DataTag tag, const char* value) {
    return SetData(tag, std::string(value ? value : ""));
  }

  /// False, and the value left as it is, when the datum is absent or has another type.
  template <class T>
  bool GetData(DataTag tag, T& value) const {
    const T* found = FindDataValue<T>(tag);
    if (!found) return false;
    value = *found;
    return true;
  }

  /// The value in its place, null when the datum is absent or has another type. It stays valid
  /// until the datum is replaced or deleted.
  template <class T>
  const T* FindDataValue(DataTag tag) const {
    const VXBaseData* datum = FindBaseData(tag);
    if (!datum) return nullptr;
    if (datum->GetDataType() != DataTypeId<T>::get() && !VXBaseImpl::CheckTypeWarning())
      return nullptr;
    return &static_cast<const VXBaseDataT<T>*>(datum)->GetData();
  }

  /// The holder of the tagged data, null until one is attached.
  VXBaseImpl* GetBaseImpl() const { return impl_.get(); }
  /// Takes over a datum, which replaces the one of the same tag.
  void AttachBaseData(std::unique_ptr<VXBaseData> datum);

 private:
  VXBaseData* FindBaseData(DataTag tag) const {
    return impl_ ? impl_->FindData(tag.number()) : nullptr;
  }
  template <class T>
  T get_or_default(DataTag tag) const {
    const T* found = FindDataValue<T>(tag);
    return found ? *found : T();
  }

  std::unique_ptr<VXBaseImpl> impl_;
};

/// Copies all tagged data of one object over those of another, which keeps its data of other tags.
VXGRID_API void VXCopyBaseData(VXBase& to, const VXBase& from);

/// A plain object that carries nothing but tagged data.
class VXGRID_API VXContainer : public VXBase {
 public:
  TypeId GetDataType() const override;
  bool IsDataType(TypeId type) const override;
  VXBase* CreateCopy() const override;
};

}  // namespace VXCore

#endif
