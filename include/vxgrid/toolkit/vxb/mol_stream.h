/// \file
/// What molecule streams share: the handler by which they store objects.
#ifndef VXGRID_TOOLKIT_VXB_MOL_STREAM_H
#define VXGRID_TOOLKIT_VXB_MOL_STREAM_H

#include "vxgrid/toolkit/core/export.h"
#include "vxgrid/toolkit/vxb/handler.h"

namespace VXMol {

/// The base of molecule streams.
class VXGRID_API vxmolstreambase {
 public:
  vxmolstreambase();
  virtual ~vxmolstreambase();
  vxmolstreambase(const vxmolstreambase&) = delete;
  vxmolstreambase& operator=(const vxmolstreambase&) = delete;

  /// The stream's own handler.
  VXCore::VXBinaryIOHandler& GetBinaryIOHandler() { return handler_; }

 private:
  VXCore::VXBinaryIOHandler handler_;
};

}  // namespace VXMol

namespace VXCore {
using VXMol::vxmolstreambase;
}

#endif
