// Grids as JSON documents and as bytes of record fields.
//
// JSON of a 128^3 grid stands beside plain RapidJSON on the same numbers: its Writer on the values
// cut beforehand, as doubles, and Document::Parse and a loop that takes the array over as floats.
// Record bytes of a 256^3 grid stand beside a copy of the values into fresh memory; the bytes hold
// a field of floats and one of integers of the same size.
#include <benchmark/benchmark.h>
#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <cmath>    // for sin
#include <cstdlib>  // for abort
#include <cstring>  // for memcmp
#include <string>   // for string
#include <vector>   // for vector

#include "vxgrid/serial/grid_fields.h"
#include "vxgrid/serial/grid_json.h"
#include "vxgrid/toolkit/core/text.h"

namespace {

using namespace VXCore;

// Density-like values: smooth, of both signs, with all digits in use.
VXScalarGrid made_grid(int dim) {
  VXScalarGrid grid(dim, dim, dim, 1.0f, 2.0f, 3.0f, 0.5f, "map");
  for (unsigned int i = 0; i < grid.GetSize(); ++i)
    grid[i] = 2.5f * std::sin(0.001f * static_cast<float>(i % 100003));
  return grid;
}

const VXScalarGrid& json_grid() {
  static const VXScalarGrid grid = made_grid(128);
  return grid;
}

const std::vector<double>& cut_values() {
  static const std::vector<double> values = [] {
    std::vector<double> cut(json_grid().GetSize());
    for (unsigned int i = 0; i < cut.size(); ++i)
      cut[i] = VXTruncate(json_grid()[i], 100000000);
    return cut;
  }();
  return values;
}

std::string plain_text() {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  writer.StartObject();
  writer.Key("values");
  writer.StartArray();
  for (const double value : cut_values())
    writer.Double(value);
  writer.EndArray();
  writer.EndObject();
  return {buffer.GetString(), buffer.GetSize()};
}

void json_write(benchmark::State& state) {
  const VXScalarGrid& grid = json_grid();
  std::string text;
  for (auto _ : state) {
    text = VXGridToJSON(grid, 0);
    benchmark::DoNotOptimize(text.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void json_write_rapidjson(benchmark::State& state) {
  cut_values();
  std::string text;
  for (auto _ : state) {
    text = plain_text();
    benchmark::DoNotOptimize(text.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void json_read(benchmark::State& state) {
  const std::string text = VXGridToJSON(json_grid(), 0);
  VXScalarGrid grid;
  for (auto _ : state) {
    if (!VXJSONToGrid(grid, text)) std::abort();
  }
  for (unsigned int i = 0; i < grid.GetSize(); ++i) {
    if (grid[i] != static_cast<float>(cut_values()[i])) std::abort();
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void json_read_rapidjson(benchmark::State& state) {
  const std::string text = plain_text();
  std::vector<float> values;
  for (auto _ : state) {
    rapidjson::Document document;
    document.Parse(text.c_str());
    const rapidjson::Value& array = document["values"];
    values.assign(array.Size(), 0.0f);
    for (rapidjson::SizeType i = 0; i < array.Size(); ++i)
      values[i] = array[i].GetFloat();
    benchmark::DoNotOptimize(values.data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

const VXScalarGrid& record_grid() {
  static const VXScalarGrid grid = made_grid(256);
  return grid;
}

template <class Grid>
void record_bytes(benchmark::State& state) {
  const Grid grid(record_grid());
  VXPipe::VXBytes bytes;
  for (auto _ : state) {
    bytes = VXPipe::VXBytes();
    bytes = VXPipe::VXFieldType<Grid>::ToBytes(grid);
    benchmark::DoNotOptimize(bytes.data());
  }
  if (bytes.size() < 2 * sizeof(float) * grid.GetSize()) std::abort();
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes.size()));
}

void record_bytes_copy(benchmark::State& state) {
  const VXScalarGrid& grid = record_grid();
  std::vector<float> copy;
  for (auto _ : state) {
    copy = std::vector<float>();
    copy = std::vector<float>(grid.GetValues(), grid.GetValues() + grid.GetSize());
    benchmark::DoNotOptimize(copy.data());
  }
  if (std::memcmp(copy.data(), grid.GetValues(), copy.size() * sizeof(float)) != 0) std::abort();
  state.SetBytesProcessed(state.iterations() *
                          static_cast<std::int64_t>(copy.size() * sizeof(float)));
}

BENCHMARK(json_write)->Unit(benchmark::kMillisecond);
BENCHMARK(json_write_rapidjson)->Unit(benchmark::kMillisecond);
BENCHMARK(json_read)->Unit(benchmark::kMillisecond);
BENCHMARK(json_read_rapidjson)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(record_bytes, VXSkewGrid)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(record_bytes, VXScalarGrid)->Unit(benchmark::kMillisecond);
BENCHMARK(record_bytes_copy)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
