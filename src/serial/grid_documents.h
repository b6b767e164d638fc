// Whole grid documents as parts of other JSON: with "type", with "unitcell" where there is one.
#ifndef VXGRID_SRC_SERIAL_GRID_DOCUMENTS_H
#define VXGRID_SRC_SERIAL_GRID_DOCUMENTS_H

#include "vxgrid/grid/scalar_grid.h"
#include "vxgrid/grid/skew_grid.h"
#include "vxgrid/toolkit/json/helpers.h"

namespace VXCore::detail {

void write_grid_document(JSONWriter& writer, const VXScalarGrid& grid, unsigned int flags);
void write_grid_document(JSONWriter& writer, const VXSkewGrid& grid, unsigned int flags);

/// Reads a document with its tagged data, and of a skew grid with its cell when it has one.
bool read_grid_document(VXScalarGrid& grid, const JSONValue& document);
bool read_grid_document(VXSkewGrid& grid, const JSONValue& document);

}  // namespace VXCore::detail

#endif
