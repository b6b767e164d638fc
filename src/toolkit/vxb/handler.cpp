// The registry of functors, and what handlers of their own accord know to do with an object.
#include "vxgrid/toolkit/vxb/handler.h"

#include <algorithm>  // for any_of, find_if
#include <mutex>      // for mutex, scoped_lock
#include <new>        // for bad_alloc
#include <utility>    // for move

#include "toolkit/vxb/defaults.h"
#include "toolkit/vxb/nesting.h"
#include "vxgrid/toolkit/vxb/mol_stream.h"
#include "vxgrid/toolkit/vxb/records.h"

namespace VXCore {
namespace {

struct Initializers {
  std::mutex mutex;
  std::vector<VXBInitializer> all;
};

Initializers& initializers() {
  static Initializers registered;
  return registered;
}

}  // namespace

VXReadFxnBase::~VXReadFxnBase() = default;
VXWriteFxnBase::~VXWriteFxnBase() = default;

VXBinaryIOHandlerBase::VXBinaryIOHandlerBase() : default_writer_(detail::make_base_writer()) {
  detail::add_default_functors(*this);
}
VXBinaryIOHandlerBase::~VXBinaryIOHandlerBase() = default;

bool VXBinaryIOHandlerBase::AddReadFxn(const VXReadFxnBase& fxn, unsigned int /*flags*/) {
  readers_.push_back(
      {fxn.GetTag(), fxn.GetType(), std::unique_ptr<VXReadFxnBase>(fxn.CreateCopy())});
  return true;
}

bool VXBinaryIOHandlerBase::AddWriteFxn(const VXWriteFxnBase& fxn, unsigned int /*flags*/) {
  writers_.push_back({fxn.GetType(), std::unique_ptr<VXWriteFxnBase>(fxn.CreateCopy())});
  return true;
}

bool VXBinaryIOHandlerBase::AddDataWriteFxn(const VXWriteFxnBase& fxn) {
  const std::string tag = fxn.GetTag();
  // All of them are called, so that a datum would be written twice.
  const bool is_known = std::any_of(data_writers_.begin(), data_writers_.end(),
                                    [&](const auto& known) { return known->GetTag() == tag; });
  if (!is_known) data_writers_.emplace_back(fxn.CreateCopy());
  return true;
}

const VXReadFxnBase* VXBinaryIOHandlerBase::FindReadFxn(const std::string& tag, TypeId type) const {
  const auto find = [&](TypeId wanted) -> const VXReadFxnBase* {
    const auto found = std::find_if(readers_.begin(), readers_.end(), [&](const Reader& reader) {
      return reader.type == wanted && reader.tag == tag;
    });
    return found == readers_.end() ? nullptr : found->fxn.get();
  };
  const VXReadFxnBase* const own = find(type);
  return own || type == type_ids::base ? own : find(type_ids::base);
}

const VXWriteFxnBase& VXBinaryIOHandlerBase::GetWriteFxn(TypeId type) const {
  const auto found = std::find_if(writers_.begin(), writers_.end(),
                                  [&](const Writer& writer) { return writer.type == type; });
  return found == writers_.end() ? *default_writer_ : *found->fxn;
}

bool VXBinaryIOHandlerBase::WriteAs(VXHost::vxostream& out, const VXBase& object, TypeId type) {
  return GetWriteFxn(type)(out, object, *this);
}

unsigned int VXBinaryIOHandlerBase::ReadAs(VXHost::vxistream& in, VXBase& object, TypeId type) {
  std::string tag;
  if (!VXBReadTag(in, tag) || tag.empty()) return VXBStatus::NoTag;
  if (in.eof()) return VXBStatus::StreamEnded;
  const unsigned int length = VXBReadDataLength(in);
  if (length == 0) return in.eof() ? VXBStatus::StreamEnded : VXBStatus::NotKept;
  try {
    if (const VXReadFxnBase* fxn = FindReadFxn(tag, type)) {
      const detail::NestingLevel level;
      if (!level.is_allowed()) return VXBStatus::NotKept;
      const unsigned int status = (*fxn)(in, object, length, *this);
      if (status != VXBStatus::Success) return status;
    } else {
      VXUnknownVXBData unknown(in, tag, length);
      if (!unknown.IsValid() || !VXAttachData(object, std::move(unknown)))
        return VXBStatus::NotKept;
    }
    // Adding a datum takes the longer the more there are, and more are not written.
    const VXBaseImpl* const data = object.GetBaseImpl();
    return data && data->GetAllData().size() > VXBMostData ? VXBStatus::NotKept
                                                           : VXBStatus::Success;
  } catch (const std::bad_alloc&) {
    return VXBStatus::NoMemory;
  }
}

VXBinaryIOHandler::VXBinaryIOHandler() {
  std::vector<VXBInitializer> registered;
  {
    const std::scoped_lock lock(initializers().mutex);
    registered = initializers().all;
  }
  for (const VXBInitializer initialize : registered)
    initialize(*this);
}

VXBinaryIOHandler::~VXBinaryIOHandler() = default;

bool VXBinaryIOHandler::WriteObject(VXHost::vxostream& out, const VXBase& object) {
  try {
    RecordPayload payload;
    if (!WriteAs(payload, object, object.GetDataType())) return false;
    // An object that has nothing to tell is a record all the same.
    if (payload.size() == 0 && !detail::write_no_data(payload)) return false;
    return out.write(payload.data(), payload.size()) == payload.size();
  } catch (const std::bad_alloc&) {
    return false;
  }
}

unsigned int VXBinaryIOHandler::ReadObject(VXHost::vxistream& in, VXBase& object) {
  return ReadAs(in, object, object.GetDataType());
}

bool VXRegisterVXBInitializer(VXBInitializer initializer) {
  const std::scoped_lock lock(initializers().mutex);
  initializers().all.push_back(initializer);
  return true;
}

}  // namespace VXCore

namespace VXMol {

vxmolstreambase::vxmolstreambase() = default;
vxmolstreambase::~vxmolstreambase() = default;

}  // namespace VXMol
