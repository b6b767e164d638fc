// Objects to VXB bytes and back, by a handler that knows what every handler knows.
#ifndef VXGRID_TESTS_SUPPORT_VXB_OBJECTS_H
#define VXGRID_TESTS_SUPPORT_VXB_OBJECTS_H

#include <gtest/gtest.h>

#include <string>  // for string

#include "vxgrid/toolkit/core/base.h"
#include "vxgrid/toolkit/host/streams.h"
#include "vxgrid/toolkit/vxb/handler.h"

namespace vxgrid_test {

inline std::string vxb_written(const VXCore::VXBase& object) {
  static VXCore::VXBinaryIOHandler handler;
  VXHost::vxosstream out;
  EXPECT_TRUE(handler.WriteObject(out, object));
  return out.str();
}

/// The status of reading.
inline unsigned int vxb_read(const std::string& bytes, VXCore::VXBase& object) {
  static VXCore::VXBinaryIOHandler handler;
  VXHost::vxisstream in(bytes);
  return handler.ReadObject(in, object);
}

}  // namespace vxgrid_test

#endif
