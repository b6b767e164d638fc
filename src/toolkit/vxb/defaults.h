// What the toolkit itself knows to write and read: tagged data and host grids.
#ifndef VXGRID_SRC_TOOLKIT_VXB_DEFAULTS_H
#define VXGRID_SRC_TOOLKIT_VXB_DEFAULTS_H

#include <memory>  // for unique_ptr

#include "vxgrid/toolkit/vxb/handler.h"

namespace VXCore::detail {

/// The writer of all tagged data of any object.
std::unique_ptr<VXWriteFxnBase> make_base_writer();
/// The record of an object without tagged data.
bool write_no_data(VXHost::vxostream& out);

/// Gives a handler the functors of the toolkit.
void add_default_functors(VXBinaryIOHandlerBase& handler);
void add_plain_data_functors(VXBinaryIOHandlerBase& handler);
void add_host_grid_functors(VXBinaryIOHandlerBase& handler);

}  // namespace VXCore::detail

#endif
