// Grid documents: their keys and numbers, round trips of both classes, and documents that are none.
#include "vxgrid/serial/grid_json.h"

#include <gtest/gtest.h>

#include <array>    // for array
#include <cmath>    // for sin
#include <limits>   // for numeric_limits
#include <memory>   // for unique_ptr
#include <string>   // for string
#include <utility>  // for pair
#include <vector>   // for vector

#include "support/bad_input.h"
#include "support/grid_probes.h"
#include "support/messages.h"
#include "vxgrid/grid/contours.h"
#include "vxgrid/toolkit/core/text.h"

namespace VXCore {
namespace {

using vxgrid_test::cell_of;
using vxgrid_test::dims_of;
using vxgrid_test::MessageCapture;
using vxgrid_test::values_of;
using Level = VXErrorLevel;

VXScalarGrid scalar_grid() {
  VXScalarGrid grid(2, 1, 3, 1.5f, -2.0f, 0.1f, 0.5f, "a title");
  const std::vector<float> values{0.0f, -1.0f, 0.25f, 1e-9f, 12345.678f, 1.0f / 3.0f};
  grid.SetValues(values.data(), 6);
  return grid;
}

VXSkewGrid skew_grid() {
  VXSkewGrid grid;
  grid.SetDim(3, 4, 5);
  grid.SetMid(1.0f, -2.0f, 3.5f);
  grid.SetUnitCell(30.0f, 41.0f, 52.5f, 80.0f, 95.0f, 107.0f, 60, 80, 100);
  for (unsigned int i = 0; i < grid.GetSize(); ++i)
    grid.GetValues()[i] = 100.0f * std::sin(static_cast<float>(i));
  return grid;
}

// What is left of a number behind so many decimals, as a float.
float cut(float number, int factor) {
  return static_cast<float>(VXTruncate(number, factor));
}

TEST(GridJson, of_a_scalar_grid_has_its_keys_in_one_order) {
  VXScalarGrid grid = scalar_grid();
  EXPECT_EQ(VXGridToJSON(grid, 0),
            R"({"type":"grid","version":"0.91","title":"a title","center":[1.5,-2.0,0.1],)"
            R"("dimensions":[2,1,3],"resolution":0.5,)"
            R"("values":[0.0,-1.0,0.25,0.0,12345.67773437,0.33333334]})");
  grid.SetType(VXGridType::Electrostatic);
  grid.SetFloatData("SIGMA", 1.25f);
  grid.SetFloatData("version", 2.0f);
  const std::string text = VXGridToJSON(grid, json_flags::generic_data);
  EXPECT_EQ(text.find(R"("title":"a title","gridtype":"Electrostatic","center":)"), 32u);
  EXPECT_EQ(text.substr(text.find("]", text.find("values"))), R"(],"SIGMA":1.25})");
  EXPECT_EQ(VXGridToJSON(grid, 0).find("SIGMA"), std::string::npos);
}

TEST(GridJson, of_an_empty_grid_leaves_out_what_is_not_there) {
  EXPECT_EQ(VXGridToJSON(VXScalarGrid(), 0),
            R"({"type":"grid","version":"0.91","center":[0.0,0.0,0.0],)"
            R"("dimensions":[0,0,0],"resolution":0.0})");
  EXPECT_EQ(VXGridToJSON(VXSkewGrid(), 0),
            R"({"type":"grid","version":"0.91","unitcell":[0.0,0.0,0.0,0.0,0.0,0.0],)"
            R"("center":[0.0,0.0,0.0],"dimensions":[0,0,0],"resolution":0.0})");
  VXScalarGrid scalar = scalar_grid();
  ASSERT_TRUE(VXJSONToGrid(scalar, VXGridToJSON(VXScalarGrid(), 0)));
  EXPECT_EQ(dims_of(scalar), (std::array{0u, 0u, 0u}));
  EXPECT_FALSE(scalar.IsTitleSet());
  VXSkewGrid skew = skew_grid();
  ASSERT_TRUE(VXJSONToGrid(skew, VXGridToJSON(VXSkewGrid(), 0)));
  EXPECT_FALSE(skew.HasUnitCell());
  // A skew grid of one point has no values.
  skew.SetDim(1, 1, 1);
  ASSERT_TRUE(VXJSONToGrid(skew, VXGridToJSON(skew, 0)));
  EXPECT_EQ(skew.GetSize(), 1u);
}

TEST(GridJson, scalar_grids_survive_up_to_the_cut) {
  VXScalarGrid grid = scalar_grid();
  grid.SetMid(1.0f / 3.0f, -100.0f / 3.0f, 4.0f);
  grid.SetSpacing(1.0f / 3.0f);
  grid.SetTitle("\"quoted\" \\ and \xC3\x85");
  grid.SetType(VXGridType::Ux);
  grid.SetFloatData("ARMS", 0.1f);
  grid.SetDoubleData("precise", 0.1);
  VXAddContour(grid, 1.5f, VXColor(255, 0, 0));
  VXScalarGrid back(7, 7, 7, 0.0f, 0.0f, 0.0f, 1.0f, "old");
  back.SetFloatData("old", 1.0f);
  ASSERT_TRUE(VXJSONToGrid(back, VXGridToJSON(grid, grid_json_flavor)));
  EXPECT_EQ(dims_of(back), dims_of(grid));
  EXPECT_EQ(back.GetXMid(), cut(grid.GetXMid(), 100000));
  EXPECT_EQ(back.GetYMid(), cut(grid.GetYMid(), 100000));
  EXPECT_EQ(back.GetSpacing(), 0.33333f);
  EXPECT_EQ(back.GetTitle(), grid.GetTitle());
  EXPECT_EQ(back.GetType(), 5u);
  for (unsigned int i = 0; i < grid.GetSize(); ++i)
    EXPECT_EQ(back[i], cut(grid[i], 100000000)) << i;
  EXPECT_EQ(back.GetFloatData("ARMS"), 0.1f);
  EXPECT_EQ(back.GetDoubleData("precise"), 0.1);
  EXPECT_FALSE(back.HasData("old"));
  EXPECT_EQ(VXGetContourLevel(back, 0), 1.5f);
  EXPECT_EQ(VXGetContourColor(back, 0), VXColor(255, 0, 0));
}

TEST(GridJson, skew_grids_come_back_with_their_dimensions_as_unit_spacings) {
  VXSkewGrid grid = skew_grid();
  grid.SetTitle("map");
  grid.SetType(VXGridType::DifferenceMap);
  grid.SetSpaceGroup(19);
  VXSkewGrid back;
  ASSERT_TRUE(VXJSONToGrid(back, VXGridToJSON(grid, 0)));
  EXPECT_EQ(dims_of(back), dims_of(grid));
  EXPECT_EQ(cell_of(back), cell_of(grid));
  std::array<unsigned int, 3> sampling{};
  back.GetImpl().GetImpl().GetUnitSpacing(sampling[0], sampling[1], sampling[2]);
  EXPECT_EQ(sampling, (std::array{3u, 4u, 5u}));
  EXPECT_EQ(back.GetSpacing(), 10.0f);
  EXPECT_EQ(back.GetZMid(), 3.5f);
  EXPECT_EQ(back.GetType(), 4u);
  EXPECT_EQ(back.GetTitle(), "map");
  EXPECT_FALSE(back.HasSpaceGroup());
  for (unsigned int i = 0; i < grid.GetSize(); ++i)
    EXPECT_EQ(back.GetValues()[i], cut(grid.GetValues()[i], 100000000));

  // Without a cell the spacing is what the document says.
  VXSkewGrid no_cell;
  no_cell.SetDim(2, 2, 2);
  no_cell.SetSpacing(0.75f);
  ASSERT_TRUE(VXJSONToGrid(back, VXGridToJSON(no_cell, 0)));
  EXPECT_EQ(back.GetSpacing(), 0.75f);
  EXPECT_TRUE(back.IsRegular());
  EXPECT_FALSE(back.HasUnitCell());
}

TEST(GridJson, writes_zero_with_a_warning_for_what_is_no_number) {
  VXScalarGrid grid = scalar_grid();
  grid[1] = std::numeric_limits<float>::quiet_NaN();
  grid[2] = std::numeric_limits<float>::infinity();
  grid.SetSpacing(-std::numeric_limits<float>::infinity());
  const MessageCapture heard;
  VXScalarGrid back;
  ASSERT_TRUE(VXJSONToGrid(back, VXGridToJSON(grid, 0)));
  EXPECT_EQ(back[1], 0.0f);
  EXPECT_EQ(back[2], 0.0f);
  EXPECT_EQ(back.GetSpacing(), 0.0f);
  EXPECT_TRUE(heard.warned("JSON: \"values\": 2 not finite, written as 0"));
  EXPECT_TRUE(heard.warned("JSON: \"resolution\": 1 not finite, written as 0"));
  EXPECT_EQ(heard.messages.size(), 2u);
}

TEST(GridJson, types_without_a_word_count_as_generic) {
  VXScalarGrid grid;
  grid.SetType(99);
  const MessageCapture heard;
  const std::string text = VXGridToJSON(grid, 0);
  EXPECT_NE(text.find(R"("gridtype":"Generic")"), std::string::npos);
  EXPECT_TRUE(heard.warned("JSON: encodeGridType: 99 is not a valid value, ignored"));
  std::string other = text;
  other.replace(other.find("Generic"), 7, "generic");
  grid.SetType(3);
  ASSERT_TRUE(VXJSONToGrid(grid, other));
  EXPECT_EQ(grid.GetType(), 0u);
  EXPECT_TRUE(heard.warned("JSON: decodeGridType: generic is not a valid value, ignored"));
}

TEST(GridJson, titles_are_escaped_once_more_on_request) {
  VXScalarGrid grid;
  grid.SetTitle("a\n\"b\"");
  VXScalarGrid back;
  ASSERT_TRUE(VXJSONToGrid(back, VXGridToJSON(grid, json_flags::escape_titles)));
  EXPECT_EQ(back.GetTitle(), "a\\n\\\"b\\\"");
}

// The document of a 2 x 1 x 1 grid with one piece replaced.
std::string document_with(const std::string& piece, const std::string& replacement) {
  std::string text =
      R"({"type":"grid","version":"0.91","title":"t","gridtype":"Dorn","center":[1,2,3],)"
      R"("dimensions":[2,1,1],"resolution":1,"values":[1,2]})";
  const std::size_t place = text.find(piece);
  EXPECT_NE(place, std::string::npos) << piece;
  return text.replace(place, piece.size(), replacement);
}

TEST(GridJson, broken_documents_fail_with_their_message) {
  const struct {
    const char* piece;
    const char* replacement;
    Level level;
    const char* message;
  } cases[] = {
      {"\"type\":\"grid\",", "", Level::Warning, "JSON: key \"type\" is missing"},
      {"\"grid\"", "\"map\"", Level::Warning, "JSON: Top level document must be \"type\":\"grid\""},
      {"\"grid\"", "1", Level::Warning, "JSON: Top level document must be \"type\":\"grid\""},
      {"\"title\"", "\"unitcell\":[1,1,1,90,90,90],\"title\"", Level::Warning,
       "JSON: Object not a scalargrid, has a unitcell key"},
      {"\"version\":\"0.91\",", "", Level::Warning, "JSON: key \"version\" is missing"},
      {"\"0.91\"", "0.91", Level::Warning, "JSON: key \"version\" must be a text"},
      {"0.91", "1.0", Level::Warning, "JSON: version 1.0 is not supported"},
      {"\"t\"", "7", Level::Warning, "JSON: key \"title\" must be a text"},
      {"\"Dorn\"", "2", Level::Warning, "JSON: key \"gridtype\" must be a text"},
      {"\"resolution\":1,", "", Level::Warning, "JSON: key \"resolution\" is missing"},
      {"\"resolution\":1", "\"resolution\":\"1\"", Level::Warning,
       "JSON: key \"resolution\" must be a number"},
      {"[1,2,3]", "[1,2]", Level::Error, "grid.center must be an array of size 3, got 2 instead"},
      {"[1,2,3]", "{}", Level::Error, "grid.center must be an array of size 3, got 0 instead"},
      {"[1,2,3]", "[1,true,3]", Level::Error, "grid.center[1] must be a number"},
      {"[2,1,1]", "[2,1,1,1]", Level::Error, "grid.dimensions must be an array of size 3"},
      {"[2,1,1]", "[2,-1,1]", Level::Error, "grid.dimensions[1] must be an unsigned integer"},
      {"[2,1,1]", "[2,1,1.0]", Level::Error, "grid.dimensions[2] must be an unsigned integer"},
      {"[2,1,1]", "[4294967296,1,1]", Level::Error,
       "grid.dimensions[0] must be an unsigned integer"},
      {"[2,1,1]", "[4294967295,4294967295,4294967295]", Level::Error,
       "grid.values must be an array of size 18446744073709551615, got 2 instead"},
      {"[2,1,1]", "[65536,65536,1]", Level::Error,
       "grid.values must be an array of size 4294967296, got 2 instead"},
      {"values\":[1,2]", "values\":[1]", Level::Error,
       "grid.values must be an array of size 2, got 1 instead"},
      {",\"values\":[1,2]", "", Level::Error,
       "grid.values must be an array of size 2, got 0 instead"},
      {"values\":[1,2]", "values\":[1,null]", Level::Error, "grid.values[1] must be a number"}};
  VXScalarGrid grid;
  ASSERT_TRUE(VXJSONToGrid(grid, document_with("", "")));
  EXPECT_EQ(values_of(grid), (std::vector{1.0f, 2.0f}));
  EXPECT_EQ(grid.GetType(), 2u);
  for (const auto& c : cases) {
    const MessageCapture heard;
    EXPECT_FALSE(VXJSONToGrid(grid, document_with(c.piece, c.replacement))) << c.replacement;
    ASSERT_EQ(heard.messages.size(), 1u) << c.replacement;
    EXPECT_EQ(heard.messages[0].second, c.message);
    EXPECT_EQ(heard.messages[0].first, c.level) << c.message;
  }
  VXSkewGrid skew;
  const std::pair<std::string, std::string> cells[] = {
      {"", "JSON: key \"unitcell\" is missing"},
      {"\"unitcell\":7,", "JSON: key \"unitcell\" must be an array"},
      {"\"unitcell\":[1,2],", "grid.unitcell must be an array of size 6, got 2 instead"},
      {"\"unitcell\":[1,2,3,4,5,[]],", "grid.unitcell[5] must be a number"}};
  for (const auto& [cell, message] : cells) {
    const MessageCapture heard;
    EXPECT_FALSE(VXJSONToGrid(skew, document_with("\"title\"", cell + "\"title\"")));
    ASSERT_EQ(heard.messages.size(), 1u);
    EXPECT_EQ(heard.messages[0].second, message);
  }
}

TEST(GridJson, cut_anywhere_or_damaged_it_does_no_harm) {
  VXSkewGrid grid = skew_grid();
  grid.SetData("inner", scalar_grid());
  grid.SetData("vector", std::vector<VXSkewGrid>(2));
  const std::string whole = VXGridToJSON(grid, grid_json_flavor);
  const MessageCapture heard;
  vxgrid_test::for_every_cut(whole, [&](const std::string& cut_text, std::size_t length) {
    VXSkewGrid back;
    ASSERT_FALSE(VXJSONToGrid(back, cut_text)) << length;
    ASSERT_FALSE(back.HasUnitCell());
  });
  vxgrid_test::for_random_bytes(whole, 2000, [](const std::string& bytes) {
    VXSkewGrid back;
    VXJSONToGrid(back, bytes);
    VXScalarGrid scalar;
    VXJSONToGrid(scalar, bytes);
  });
}

TEST(GridJson, keys_alone_go_into_and_out_of_an_object_of_the_caller) {
  JSONBuffer buffer;
  JSONWriter writer(buffer);
  writer.StartObject();
  VXGenGridJSON(writer, skew_grid(), 0);
  writer.EndObject();
  JSONDocument document;
  ASSERT_TRUE(JSONParseHelper(document, buffer.GetString()));
  EXPECT_FALSE(document.HasMember("type"));
  VXSkewGrid grid;
  ASSERT_TRUE(VXParseGridJSON(grid, document, false));
  EXPECT_EQ(dims_of(grid), (std::array{3u, 4u, 5u}));
  EXPECT_FALSE(grid.HasUnitCell());
}

TEST(GridJsonHandlers, are_registered_under_their_words) {
  const VXJSONHandlerBase* skew = VXFindJSONHandler("grid");
  const VXJSONHandlerBase* scalar = VXFindJSONHandler("unused_grid");
  ASSERT_TRUE(skew && scalar);
  EXPECT_EQ(skew->GetFlavor(), 17303u);
  EXPECT_EQ(skew->GetVDataType(), DataTypeId<std::vector<VXSkewGrid>>::get());
  EXPECT_EQ(scalar->GetVDataType(), DataTypeId<std::vector<VXScalarGrid>>::get());
  const std::unique_ptr<VXJSONHandlerBase> another(VXInitSkewGridJSONHandler());
  EXPECT_STREQ(another->GetJsonType(), "grid");

  VXBase object;
  const MessageCapture heard;
  EXPECT_FALSE(scalar->Read(object, 1, JSONValue()));
  EXPECT_TRUE(heard.warned("JSON: Internal error, scalargrid Read handler called"));
  EXPECT_FALSE(scalar->VRead(object, 1, JSONValue(), true));
  EXPECT_TRUE(heard.warned("JSON: Internal error, scalargrid VRead handler called"));
  JSONBuffer buffer;
  JSONWriter writer(buffer);
  EXPECT_FALSE(skew->Write(VXBaseDataT<int>(1, 1), writer, 0));
  EXPECT_FALSE(skew->VWrite(VXBaseDataT<int>(1, 1), writer, 0));
  EXPECT_EQ(buffer.GetSize(), 0u);
}

TEST(GridJsonHandlers, grids_among_tagged_data_are_told_apart_by_their_cell) {
  VXScalarGrid grid;
  grid.SetData("scalar", scalar_grid());
  grid.SetData("skew", skew_grid());
  grid.SetData("scalars", std::vector<VXScalarGrid>(2, scalar_grid()));
  grid.SetData("skews", std::vector<VXSkewGrid>(3, skew_grid()));
  grid.SetData("none", std::vector<VXScalarGrid>());
  VXScalarGrid back;
  ASSERT_TRUE(VXJSONToGrid(back, VXGridToJSON(grid, grid_json_flavor)));
  const auto* scalar = back.FindDataValue<VXScalarGrid>("scalar");
  const auto* skew = back.FindDataValue<VXSkewGrid>("skew");
  const auto* scalars = back.FindDataValue<std::vector<VXScalarGrid>>("scalars");
  const auto* skews = back.FindDataValue<std::vector<VXSkewGrid>>("skews");
  const auto* none = back.FindDataValue<std::vector<VXScalarGrid>>("none");
  ASSERT_TRUE(scalar && skew && scalars && skews && none);
  EXPECT_EQ(scalar->GetTitle(), "a title");
  EXPECT_EQ(cell_of(*skew), cell_of(skew_grid()));
  EXPECT_EQ(scalars->size(), 2u);
  EXPECT_EQ(skews->at(2).GetValues()[7], skew->GetValues()[7]);
  EXPECT_TRUE(none->empty());

  // One cell in the array makes all of it skew grids.
  JSONDocument mixed;
  ASSERT_TRUE(JSONParseHelper(mixed, "{\"mixed\":[" + VXGridToJSON(scalar_grid(), 0) + "," +
                                         VXGridToJSON(skew_grid(), 0) + "]}"));
  ASSERT_TRUE(VXParseBaseDataJSON(back, mixed, {}));
  skews = back.FindDataValue<std::vector<VXSkewGrid>>("mixed");
  ASSERT_TRUE(skews);
  EXPECT_FALSE(skews->at(0).HasUnitCell());
  EXPECT_TRUE(skews->at(1).HasUnitCell());

  const MessageCapture heard;
  ASSERT_TRUE(JSONParseHelper(mixed, R"({"bad":{"type":"grid"}})"));
  EXPECT_FALSE(VXParseBaseDataJSON(back, mixed, {}));
  EXPECT_FALSE(back.HasData("bad"));
}

}  // namespace
}  // namespace VXCore
