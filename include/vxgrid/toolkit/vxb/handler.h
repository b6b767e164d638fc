/// \file
/// The registry of what reads and writes objects in VXB, and the walk over an object's tagged data.
#ifndef VXGRID_TOOLKIT_VXB_HANDLER_H
#define VXGRID_TOOLKIT_VXB_HANDLER_H

#include <cstddef>  // for size_t
#include <memory>   // for unique_ptr
#include <string>   // for string
#include <vector>   // for vector

#include "vxgrid/toolkit/core/base.h"
#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/core/host_grids.h"
#include "vxgrid/toolkit/host/streams.h"
#include "vxgrid/toolkit/vxb/primitives.h"

namespace VXCore {

class VXBinaryIOHandlerBase;

/// How many tagged data an object may have, in writing and in reading.
inline constexpr std::size_t VXBMostData = 4096;

/// The identifier of a class, for the functors of its records. Give a class its own by deriving a
/// specialisation from FixedDataTypeId.
template <class T>
struct VXBClassId;
template <>
struct VXBClassId<VXBase> : FixedDataTypeId<type_ids::base> {};
template <>
struct VXBClassId<VXFixedGrid<float>> : FixedDataTypeId<type_ids::fixed_grid_float> {};
template <>
struct VXBClassId<VXFixedGrid<int>> : FixedDataTypeId<type_ids::fixed_grid_int> {};
template <>
struct VXBClassId<VXGrid<float>> : FixedDataTypeId<type_ids::grid_float> {};
template <>
struct VXBClassId<VXGrid<int>> : FixedDataTypeId<type_ids::grid_int> {};
template <>
struct VXBClassId<VXFixedMultiGrid<float>> : FixedDataTypeId<type_ids::fixed_multi_grid_float> {};
template <>
struct VXBClassId<VXFixedMultiGrid<int>> : FixedDataTypeId<type_ids::fixed_multi_grid_int> {};
template <>
struct VXBClassId<VXMultiGrid<float>> : FixedDataTypeId<type_ids::multi_grid_float> {};
template <>
struct VXBClassId<VXMultiGrid<int>> : FixedDataTypeId<type_ids::multi_grid_int> {};

/// Reads the records of one tag into objects of one class. A functor has no state but its tag.
class VXGRID_API VXReadFxnBase {
 public:
  virtual ~VXReadFxnBase();
  virtual std::string GetTag() const = 0;
  /// The identifier of the class.
  virtual TypeId GetType() const = 0;
  /// A copy, owned by the caller.
  virtual VXReadFxnBase* CreateCopy() const = 0;
  /// Reads the `length` bytes of a payload from `in` into the object, which has to be of the
  /// functor's class. The result is a VXBStatus.
  virtual unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                                  VXBinaryIOHandlerBase& handler) const = 0;
};

/// Writes records of one tag from objects of one class.
class VXGRID_API VXWriteFxnBase {
 public:
  virtual ~VXWriteFxnBase();
  virtual std::string GetTag() const = 0;
  /// The identifier of the class.
  virtual TypeId GetType() const = 0;
  /// A copy, owned by the caller.
  virtual VXWriteFxnBase* CreateCopy() const = 0;
  /// Writes the object, which has to be of the functor's class, as a record; false when that fails.
  virtual bool operator()(VXHost::vxostream& out, const VXBase& object,
                          VXBinaryIOHandlerBase& handler) const = 0;
};

/// A read functor of objects of class T.
template <class T>
class VXReadFxn : public VXReadFxnBase {
 public:
  TypeId GetType() const override { return VXBClassId<T>::get(); }

 protected:
  static T& cast(VXBase& object) { return static_cast<T&>(object); }
};

/// A write functor of objects of class T.
template <class T>
class VXWriteFxn : public VXWriteFxnBase {
 public:
  TypeId GetType() const override { return VXBClassId<T>::get(); }

 protected:
  static const T& cast(const VXBase& object) { return static_cast<const T&>(object); }
};

/// The read and write functors to choose from, in the order in which they came; the first that
/// fits is taken. Every handler starts with those of tagged data of plain types and of the host
/// grids. Once filled, one handler may serve several threads.
class VXGRID_API VXBinaryIOHandlerBase {
 public:
  virtual ~VXBinaryIOHandlerBase();

  /// Keep a copy of the functor; always true. The number says nothing and is 0.
  virtual bool AddReadFxn(const VXReadFxnBase& fxn, unsigned int flags);
  virtual bool AddWriteFxn(const VXWriteFxnBase& fxn, unsigned int flags);
  /// Keeps a copy of a writer of generic data, which writes every datum of its type that an object
  /// has; a second one of the same tag is left out. Always true.
  virtual bool AddDataWriteFxn(const VXWriteFxnBase& fxn);

  /// The first read functor of this tag and class, or else of this tag and VXBase, which every
  /// class is; null when there is none.
  const VXReadFxnBase* FindReadFxn(const std::string& tag, TypeId type) const;
  /// The first write functor of this class, or else the default writer, which writes the tagged
  /// data of any object.
  const VXWriteFxnBase& GetWriteFxn(TypeId type) const;
  const std::vector<std::unique_ptr<VXWriteFxnBase>>& GetDataWriteFxns() const {
    return data_writers_;
  }

  /// Writes an object as one of the given class, which it has to be of.
  bool WriteAs(VXHost::vxostream& out, const VXBase& object, TypeId type);
  /// Reads the next record into an object of the given class. A record that no functor knows is
  /// attached to the object as it is and goes out again when the object is written. The result is a
  /// VXBStatus; NotKept also when records lie in one another deeper than VXBDeepestRecord, and when
  /// the object has more than VXBMostData tagged data.
  unsigned int ReadAs(VXHost::vxistream& in, VXBase& object, TypeId type);

 protected:
  VXBinaryIOHandlerBase();
  VXBinaryIOHandlerBase(const VXBinaryIOHandlerBase&) = delete;
  VXBinaryIOHandlerBase& operator=(const VXBinaryIOHandlerBase&) = delete;

 private:
  struct Reader {
    std::string tag;
    TypeId type;
    std::unique_ptr<VXReadFxnBase> fxn;
  };
  struct Writer {
    TypeId type;
    std::unique_ptr<VXWriteFxnBase> fxn;
  };

  std::vector<Reader> readers_;
  std::vector<Writer> writers_;
  std::vector<std::unique_ptr<VXWriteFxnBase>> data_writers_;
  std::unique_ptr<VXWriteFxnBase> default_writer_;
};

/// The handler to make: starts with everything that was announced through VXRegisterVXBInitializer
/// as well.
class VXGRID_API VXBinaryIOHandler : public VXBinaryIOHandlerBase {
 public:
  VXBinaryIOHandler();
  ~VXBinaryIOHandler() override;

  /// Writes an object of any class as one record; of a class without a writer its tagged data. A
  /// datum of a type without a handler is left out. False, and nothing written, when that fails.
  bool WriteObject(VXHost::vxostream& out, const VXBase& object);
  /// Reads one record into the object, by its class. What the object has and the record does not
  /// speak of stays. A record of another class is kept with the object as an unknown one, which
  /// counts as success. The result is a VXBStatus.
  unsigned int ReadObject(VXHost::vxistream& in, VXBase& object);
};

/// Fills a handler with functors.
using VXBInitializer = bool (*)(VXBinaryIOHandlerBase& handler);
/// Has every VXBinaryIOHandler made from now on filled by the initializer, too. Always true.
VXGRID_API bool VXRegisterVXBInitializer(VXBInitializer initializer);

/// A record that no functor knew: its tag and its payload as they came.
class VXGRID_API VXUnknownVXBData {
 public:
  VXUnknownVXBData() = default;
  /// Takes `length` bytes from the stream; not valid when it has fewer.
  VXUnknownVXBData(VXHost::vxistream& in, const std::string& tag, unsigned int length);

  bool IsValid() const { return valid_; }
  const std::string& GetTag() const { return tag_; }
  const std::string& GetBytes() const { return bytes_; }
  /// Writes the record again.
  bool Write(VXHost::vxostream& out) const;

 private:
  std::string tag_;
  std::string bytes_;
  bool valid_ = false;
};

template <>
struct DataTypeId<std::vector<VXUnknownVXBData>> : FixedDataTypeId<data_ids::unknown_vxb> {};
extern template class VXBaseDataT<std::vector<VXUnknownVXBData>>;

/// Keeps an unknown record with the object, behind those that it has, as tagged data. Always true.
VXGRID_API bool VXAttachData(VXBase& object, VXUnknownVXBData data);

/// Writes all tagged data of the object as one record of this tag: plain types, what the handler's
/// writers of generic data know, and unknown records. Nothing is written for an object without any
/// of these.
VXGRID_API bool VXBWritePOD(VXHost::vxostream& out, const VXBase& object, const std::string& tag,
                            VXBinaryIOHandlerBase& handler);
/// Reads the payload of such a record. The data are added to those of the object. The result is a
/// VXBStatus, NotKept for a payload of another version than VXBVersion.
VXGRID_API unsigned int VXBReadVXBase(VXHost::vxistream& in, VXBase& object, unsigned int length,
                                      VXBinaryIOHandlerBase& handler);

}  // namespace VXCore

#endif
