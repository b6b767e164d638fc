/// \file
/// Functors for objects whose record is a group of records.
#ifndef VXGRID_TOOLKIT_VXB_GROUP_H
#define VXGRID_TOOLKIT_VXB_GROUP_H

#include <memory>   // for unique_ptr
#include <string>   // for string
#include <utility>  // for move
#include <vector>   // for vector

#include "vxgrid/toolkit/vxb/handler.h"
#include "vxgrid/toolkit/vxb/records.h"

namespace VXCore {

/// Reads a group: its records go one after the other through the handler's read functors for class
/// `Member` into the object, which is of class `T`.
template <class T, class Member>
class VXGroupReadFxn : public VXReadFxn<T> {
 public:
  explicit VXGroupReadFxn(std::string tag) : tag_(std::move(tag)) {}

  std::string GetTag() const override { return tag_; }
  VXGroupReadFxn* CreateCopy() const override { return new VXGroupReadFxn(*this); }
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override {
    RecordReader payload(in, length);
    unsigned int status = payload.status();
    while (status == VXBStatus::Success && !payload.eof())
      status = handler.ReadAs(payload, object, VXBClassId<Member>::get());
    return status;
  }

 private:
  std::string tag_;
};

/// Writes a group: its members write their records one after the other, up to the first that
/// fails. When they write nothing, neither does the group.
template <class T>
class VXCollectWriteFxn : public VXWriteFxn<T> {
 public:
  /// A compressed form does not exist yet: a group that asks for one cannot be written.
  explicit VXCollectWriteFxn(std::string tag, bool compress = false, std::string compression = "gz")
      : tag_(std::move(tag)), compress_(compress), compression_(std::move(compression)) {}
  VXCollectWriteFxn(const VXCollectWriteFxn& other)
      : VXWriteFxn<T>(other),
        tag_(other.tag_),
        compress_(other.compress_),
        compression_(other.compression_) {
    for (const auto& member : other.members_)
      Add(*member);
  }
  VXCollectWriteFxn& operator=(const VXCollectWriteFxn&) = delete;

  /// Keeps a copy of the member at the end.
  void Add(const VXWriteFxnBase& member) { members_.emplace_back(member.CreateCopy()); }
  bool IsCompressed() const { return compress_; }
  const std::string& GetCompression() const { return compression_; }

  std::string GetTag() const override { return tag_; }
  VXCollectWriteFxn* CreateCopy() const override { return new VXCollectWriteFxn(*this); }
  bool operator()(VXHost::vxostream& out, const VXBase& object,
                  VXBinaryIOHandlerBase& handler) const override {
    RecordWriter record(out, tag_);
    if (!record || compress_) return false;
    for (const auto& member : members_)
      if (!(*member)(record.payload(), object, handler)) return false;
    return record.finish();
  }

 private:
  std::string tag_;
  bool compress_;
  std::string compression_;
  std::vector<std::unique_ptr<VXWriteFxnBase>> members_;
};

/// Reads a record with the tagged data of an object of class T.
template <class T>
class VXBasePODReadFxn : public VXReadFxn<T> {
 public:
  std::string GetTag() const override { return "VXBasePOD"; }
  VXBasePODReadFxn* CreateCopy() const override { return new VXBasePODReadFxn(*this); }
  unsigned int operator()(VXHost::vxistream& in, VXBase& object, unsigned int length,
                          VXBinaryIOHandlerBase& handler) const override {
    return VXBReadVXBase(in, object, length, handler);
  }
};

}  // namespace VXCore

#endif
