// Grids as GRD bytes in fields of records.
#include "vxgrid/serial/grid_fields.h"

#include <cstdint>  // for uint64_t
#include <new>      // for bad_alloc

#include "serial/grid_documents.h"
#include "toolkit/pipe/field_type.h"
#include "vxgrid/gridio/dispatch.h"
#include "vxgrid/gridio/formats.h"
#include "vxgrid/gridmath/regularize.h"
#include "vxgrid/serial/grid_json.h"
#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/host/streams.h"

namespace VXPipe {

using VXCore::VXScalarGrid;
using VXCore::VXSkewGrid;

namespace detail {

namespace {

// Output to bytes in memory that are given away without a copy.
class BytesStream final : public VXHost::vxostream {
 public:
  explicit BytesStream(std::size_t expected) : vxostream(0) { bytes_.reserve(expected); }
  VXBytes take() { return std::move(bytes_); }
  bool close() override { return true; }

 protected:
  std::size_t write_sink(const char* bytes, std::size_t count) override {
    const auto* start = reinterpret_cast<const unsigned char*>(bytes);
    bytes_.insert(bytes_.end(), start, start + count);
    return count;
  }

 private:
  VXBytes bytes_;
};

template <class Grid>
VXBytes grid_to_bytes(const Grid& grid, unsigned int fields) {
  // More than all of a GRD file that is not values.
  constexpr std::size_t rest = 512;
  BytesStream out(rest + sizeof(float) * fields * std::size_t{grid.GetSize()});
  if (!VXCore::VXWriteGrid(out, grid, VXCore::VXGridFileType::GRD)) return {};
  return out.take();
}

bool grid_from_bytes(VXSkewGrid& grid, const VXBlob& blob) {
  VXHost::vxisstream in(reinterpret_cast<const char*>(blob.data), blob.size);
  return VXCore::VXReadGrid(in, grid, VXCore::VXGridFileType::GRD);
}

}  // namespace

// What the two classes of grids share.
template <class Grid>
struct GridCodec {
  static constexpr const char* noun = "grid";
  static std::uint64_t memory(const Grid& grid) {
    return sizeof(float) * std::uint64_t{grid.GetSize()};
  }
  static std::string to_json(const Grid& grid) {
    return VXCore::VXGridToJSON(grid, VXCore::grid_json_flavor);
  }
  static bool from_json(Grid& grid, const std::string& text) {
    return VXCore::VXJSONToGrid(grid, text);
  }
  static void write_json(VXCore::JSONWriter& writer, const Grid& grid) {
    VXCore::detail::write_grid_document(writer, grid, VXCore::grid_json_flavor);
  }
  static bool read_json(Grid& grid, const VXCore::JSONValue& json) {
    return VXCore::detail::read_grid_document(grid, json);
  }
};

template <>
struct FieldCodec<VXSkewGrid> : GridCodec<VXSkewGrid> {
  static constexpr const char* name = "Chem.SkewGrid";
  static constexpr const char* vector_name = "Chem.SkewGridVec";
  // Also one that was not in the bytes has a lattice behind it, with two fields.
  static std::uint64_t memory(const VXSkewGrid& grid) {
    return sizeof(VXCore::VXSkewGridImpl) + sizeof(VXCore::VXBrioGrid) +
           2 * sizeof(VXCore::VXGrid<float>) + GridCodec::memory(grid);
  }
  static std::string format(const VXSkewGrid&) { return "<VXSkewGrid>"; }
  static VXBytes to_bytes(const VXSkewGrid& grid) {
    const VXCore::VXBrioGrid& brio = grid.GetImpl().GetImpl();
    const int fields = brio.GetFloatsMultiple() + brio.GetIntegersMultiple();
    return grid_to_bytes(grid, fields > 0 ? static_cast<unsigned int>(fields) : 0);
  }
  static bool from_bytes(VXSkewGrid& grid, const VXBlob& blob) {
    return grid_from_bytes(grid, blob);
  }
};

template <>
struct FieldCodec<VXScalarGrid> : GridCodec<VXScalarGrid> {
  static constexpr const char* name = "Chem.Grid";
  static constexpr const char* vector_name = "Chem.GridVec";
  static std::string format(const VXScalarGrid&) { return "<VXScalarGrid>"; }
  // A GRD file holds a float and an integer field.
  static VXBytes to_bytes(const VXScalarGrid& grid) { return grid_to_bytes(grid, 2); }
  // As `VXReadGrid` does it for a scalar grid, but for one without points, of which there is
  // nothing to resample.
  static bool from_bytes(VXScalarGrid& grid, const VXBlob& blob) {
    try {
      VXSkewGrid source;
      if (!grid_from_bytes(source, blob)) return false;
      if (source.GetSize() > 0) return VXCore::VXMakeRegularGrid(grid, source, 0.0f);
      grid = source.AsRegularGrid();
      return grid.SetType(source.GetType());
    } catch (const std::bad_alloc&) {
      VXCore::VXThrow.Warning("Unable to allocate enough memory to read VXScalarGrid.");
      return false;
    }
  }
};

}  // namespace detail

template class VXFieldType<VXScalarGrid>;
template class VXVectorFieldType<VXScalarGrid>;
template class VXFieldType<VXSkewGrid>;
template class VXVectorFieldType<VXSkewGrid>;

VXFieldTypeHandler* VXInitGridFieldHandler() {
  return new VXFieldType<VXScalarGrid>;
}
VXFieldTypeHandler* VXInitGridVecFieldHandler() {
  return new VXVectorFieldType<VXScalarGrid>;
}
VXFieldTypeHandler* VXInitSkewGridFieldHandler() {
  return new VXFieldType<VXSkewGrid>;
}
VXFieldTypeHandler* VXInitSkewGridVecFieldHandler() {
  return new VXVectorFieldType<VXSkewGrid>;
}

bool VXSetGridValue(VXRecord& record, const VXField<VXScalarGrid>& field,
                    const VXScalarGrid& grid) {
  return VXSetValue(record, field, grid);
}
bool VXSetGridValue(VXRecord& record, const VXField<VXSkewGrid>& field, const VXSkewGrid& grid) {
  return VXSetValue(record, field, grid);
}

bool VXGetGridValue(const VXRecord& record, const VXField<VXScalarGrid>& field,
                    VXScalarGrid& grid) {
  return VXGetValue(record, field, grid);
}
bool VXGetGridValue(const VXRecord& record, const VXField<VXSkewGrid>& field, VXSkewGrid& grid) {
  return VXGetValue(record, field, grid);
}

}  // namespace VXPipe
