// Buffers, the types of plain values, their registry, and records of them.
#include "vxgrid/toolkit/pipe/record.h"

#include <gtest/gtest.h>

#include <limits>    // for numeric_limits
#include <optional>  // for optional
#include <string>    // for string

#include "support/bad_input.h"
#include "support/messages.h"

namespace VXPipe {
namespace {

using vxgrid_test::MessageCapture;

TEST(PipeBuffers, hold_numbers_and_blobs_lowest_byte_first) {
  VXWriteBuffer out;
  out.WriteInt(-2);
  out.WriteBlob({7, 8});
  out.WriteNoneBlob();
  out.WriteBlob(VXBytes());
  const VXBytes expected{254, 255, 255, 255, 2,   0,   0,   0, 0, 0, 0, 0, 7, 8, 255,
                         255, 255, 255, 255, 255, 255, 255, 0, 0, 0, 0, 0, 0, 0, 0};
  EXPECT_EQ(out.GetBytes(), expected);

  VXReadBuffer in(expected);
  int number = 0;
  std::optional<VXBlob> blob;
  ASSERT_TRUE(in.ReadInt(number));
  EXPECT_EQ(number, -2);
  ASSERT_TRUE(in.ReadBlob(blob));
  EXPECT_EQ(VXBytes(blob->data, blob->data + blob->size), (VXBytes{7, 8}));
  ASSERT_TRUE(in.ReadBlob(blob));
  EXPECT_FALSE(blob);
  ASSERT_TRUE(in.ReadBlob(blob));
  EXPECT_EQ(blob->size, 0u);
  EXPECT_TRUE(in.AtEnd());
  EXPECT_FALSE(in.ReadInt(number));
  EXPECT_FALSE(in.ReadBlob(blob));
}

TEST(PipeBuffers, take_nothing_when_a_length_is_longer_than_the_rest) {
  for (const VXBytes& bytes : {VXBytes{3, 0, 0, 0, 0, 0, 0, 0, 1, 2},
                               VXBytes{254, 255, 255, 255, 255, 255, 255, 255, 1}, VXBytes(7, 0)}) {
    VXReadBuffer in(bytes);
    std::optional<VXBlob> blob;
    EXPECT_FALSE(in.ReadBlob(blob));
    int number = 0;
    EXPECT_TRUE(in.ReadInt(number));
    EXPECT_EQ(number & 255, bytes[0]);
  }
}

// Through bytes and through JSON, both ways.
template <class T>
void expect_round_trip(const T& value, const std::string& json) {
  const VXBytes bytes = VXFieldType<T>::ToBytes(value);
  T back{};
  ASSERT_TRUE(VXFieldType<T>::FromBytes(back, bytes));
  EXPECT_EQ(back, value);
  const VXFieldType<T> type;
  EXPECT_EQ(type.BytesToJSON(bytes), json);
  EXPECT_EQ(type.JSONToBytes(json), bytes);
  EXPECT_EQ(type.PtrToBytes(&value), bytes);
  EXPECT_FALSE(VXFieldType<T>::FromBytes(back, {}));
  EXPECT_TRUE(type.JSONToBytes("{}").empty());
  EXPECT_EQ(type.BytesToJSON({}), "");
}

TEST(PipeTypes, of_plain_values_survive_bytes_and_json) {
  expect_round_trip(std::numeric_limits<int>::min(), "-2147483648");
  expect_round_trip(0.1, "0.1");
  expect_round_trip(-2.0, "-2.0");
  expect_round_trip(std::string(), "\"\"");
  expect_round_trip(std::string("a\0\"", 3), "\"a\\u0000\\\"\"");
  EXPECT_EQ(VXFieldType<int>::Format(7), "7");
  EXPECT_EQ(VXFieldType<double>::Format(0.25), "0.25");
  EXPECT_EQ(VXFieldType<int>::ToBytes(std::optional<int>()), std::nullopt);
  EXPECT_EQ(VXFieldType<int>::ToBytes(std::optional<int>(1)), VXFieldType<int>::ToBytes(1));
  EXPECT_EQ(VXFieldType<int>().Describe({1, 2}), "Types.Int, 2 bytes");
}

TEST(PipeRegistry, keeps_the_first_handler_of_a_name_unless_told_to_replace_it) {
  class Other : public VXFieldType<int> {
   public:
    explicit Other(std::string name) : name_(std::move(name)) {}
    std::string GetName() const override { return name_; }

   private:
    std::string name_;
  };
  auto& registry = VXFieldTypeHandlerRegistry::GetInstance();
  ASSERT_TRUE(registry.FindHandler("Types.Int"));
  EXPECT_EQ(registry.FindHandler("Types.None"), nullptr);
  EXPECT_FALSE(registry.RegisterHandler(nullptr, 0));
  EXPECT_TRUE(registry.RegisterHandler(new Other("Test.Other"), 0));
  const VXFieldTypeHandler* first = registry.FindHandler("Test.Other");
  EXPECT_FALSE(registry.RegisterHandler(new Other("Test.Other"), 0));
  EXPECT_EQ(registry.FindHandler("Test.Other"), first);
  EXPECT_TRUE(registry.RegisterHandler(new Other("Test.Other"), 1));
  EXPECT_NE(registry.FindHandler("Test.Other"), first);
  EXPECT_EQ(first->GetName(), "Test.Other");
}

TEST(PipeRecord, holds_one_field_of_a_name_and_guards_its_type) {
  VXRecord record;
  const VXField<int> count("a");
  const VXField<std::string> name("a");
  EXPECT_EQ(record.CheckField(count), VXFieldAbsent);
  EXPECT_FALSE(record.DeleteField(count));
  EXPECT_TRUE(record.GetBytes(count).empty());
  EXPECT_TRUE(record.SetBytes(count, VXFieldType<int>::ToBytes(5)));
  EXPECT_EQ(record.CheckField(count), VXFieldBytes);
  EXPECT_EQ(record.CheckField(name), 4u);
  EXPECT_FALSE(record.SetBytes(name, {1}));
  EXPECT_TRUE(record.GetBytes(name).empty());
  std::string text;
  EXPECT_FALSE(VXGetValue(record, name, text));
  int number = 0;
  EXPECT_TRUE(VXGetValue(record, count, number));
  EXPECT_EQ(number, 5);
  // Setting by value makes room for itself.
  EXPECT_TRUE(VXSetValue(record, name, std::string("x")));
  EXPECT_FALSE(VXGetValue(record, count, number));
  EXPECT_TRUE(VXGetValue(record, name, text));
  EXPECT_EQ(record.NumFields(), 1u);
}

TEST(PipeRecord, keeps_cached_values_as_they_are_until_bytes_are_asked_for) {
  VXRecord record;
  const VXField<int> field("n");
  const auto value = std::make_shared<const int>(7);
  EXPECT_TRUE(record.SetCached(field, value));
  EXPECT_EQ(record.CheckField(field), VXFieldCached);
  EXPECT_EQ(record.GetCached(field), value);
  EXPECT_EQ(record.FindBytes(field), nullptr);
  EXPECT_EQ(record.GetBytes(field), VXFieldType<int>::ToBytes(7));
  EXPECT_FALSE(record.SetCached(field, std::shared_ptr<const int>()));
  VXRecord back;
  ASSERT_TRUE(back.FromBytes(record.ToBytes()));
  EXPECT_EQ(back.CheckField(field), VXFieldBytes);
  EXPECT_EQ(back.GetCached(field), nullptr);
  int number = 0;
  EXPECT_TRUE(VXGetValue(back, field, number));
  EXPECT_EQ(number, 7);
}

VXRecord sample_record() {
  VXRecord record;
  VXSetValue(record, VXField<std::string>("title"), std::string("a map"));
  VXSetValue(record, VXField<int>("count"), 3);
  VXSetValue(record, VXField<double>("resolution"), 1.5);
  return record;
}

TEST(PipeRecord, survives_its_bytes_and_shows_as_json) {
  const VXRecord record = sample_record();
  VXRecord back;
  ASSERT_TRUE(back.FromBytes(record.ToBytes()));
  EXPECT_EQ(back.GetFieldNames(), (std::vector<std::string>{"title", "count", "resolution"}));
  EXPECT_EQ(back.ToBytes(), record.ToBytes());
  EXPECT_EQ(back.ToJSON(), R"({"fields":[{"name":"title","type":"Types.String","value":"a map"},)"
                           R"({"name":"count","type":"Types.Int","value":3},)"
                           R"({"name":"resolution","type":"Types.Double","value":1.5}]})");
  EXPECT_TRUE(back.FromBytes(VXRecord().ToBytes()));
  EXPECT_EQ(back.ToJSON(), R"({"fields":[]})");
}

TEST(PipeRecord, keeps_fields_of_unknown_types) {
  VXWriteBuffer out;
  out.WriteInt(1);
  out.WriteInt(1);
  for (const char* text : {"name", "Future.Type", "\x01\x02"}) {
    const std::string blob = text;
    out.WriteBlob(VXBytes(blob.begin(), blob.end()));
  }
  VXRecord record;
  ASSERT_TRUE(record.FromBytes(out.GetBytes()));
  EXPECT_EQ(record.ToBytes(), out.GetBytes());
  EXPECT_EQ(record.ToJSON(), R"({"fields":[{"name":"name","type":"Future.Type","value":null}]})");
}

TEST(PipeRecord, cut_doubled_or_damaged_it_is_refused_and_left_empty) {
  const VXBytes whole = sample_record().ToBytes();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    VXRecord record = sample_record();
    EXPECT_FALSE(record.FromBytes(VXBytes(whole.begin(), whole.begin() + std::ptrdiff_t(length))));
    EXPECT_EQ(record.NumFields(), 0u);
  }
  const auto is_record = [](VXBytes bytes) {
    VXRecord record;
    return record.FromBytes(bytes);
  };
  VXBytes other = whole;
  other.push_back(0);
  EXPECT_FALSE(is_record(other));
  other = whole;
  other[0] = 2;
  EXPECT_FALSE(is_record(other));
  other = whole;
  other[7] = 0x7f;
  EXPECT_FALSE(is_record(other));
  // Twice the same name.
  VXWriteBuffer out;
  out.WriteInt(1);
  out.WriteInt(2);
  for (int i = 0; i < 6; ++i)
    out.WriteBlob({'n'});
  EXPECT_FALSE(is_record(out.GetBytes()));

  const MessageCapture heard;
  vxgrid_test::for_random_bytes(std::string(whole.begin(), whole.end()), 2000,
                                [](const std::string& bytes) {
                                  VXRecord record;
                                  record.FromBytes(VXBytes(bytes.begin(), bytes.end()));
                                  record.ToJSON();
                                });
}

}  // namespace
}  // namespace VXPipe
