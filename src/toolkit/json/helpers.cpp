// Writing, parsing and asking JSON documents.
#include "vxgrid/toolkit/json/helpers.h"

#include <rapidjson/error/en.h>

#include <array>         // for array
#include <charconv>      // for from_chars, to_chars
#include <cmath>         // for fabs, isfinite, signbit
#include <cstdint>       // for uint64_t
#include <system_error>  // for errc

#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/core/text.h"

namespace VXCore {

namespace {

// How many bytes of a text are one well-formed character, 0 for none (the Unicode Standard, table
// 3-7).
std::size_t character_length(std::string_view text) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return 1;
  std::size_t length = 0;
  unsigned char lowest = 0x80;
  unsigned char highest = 0xBF;
  if (lead >= 0xC2 && lead <= 0xDF) length = 2;
  if (lead >= 0xE0 && lead <= 0xEF) length = 3;
  if (lead >= 0xF0 && lead <= 0xF4) length = 4;
  if (lead == 0xE0) lowest = 0xA0;
  if (lead == 0xED) highest = 0x9F;
  if (lead == 0xF0) lowest = 0x90;
  if (lead == 0xF4) highest = 0x8F;
  if (length == 0 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (byte(i) < lowest || byte(i) > highest) return 0;
    lowest = 0x80;
    highest = 0xBF;
  }
  return length;
}

std::string well_formed(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = character_length(text);
    if (length == 0)
      result += "\xEF\xBF\xBD";
    else
      result.append(text.substr(0, length));
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return result;
}

// A row of numbers as text, in blocks that the writer takes as one value each, since it knows the
// comma between two values and looks no further.
//
// A number cut behind d decimals is the whole number n = trunc(number * 10^d) over 10^d, and its
// shortest decimal form the digits of n as long as these are at most 15, what a double holds of any
// decimal. They are written as the writer itself writes them: no exponent from 1e-6 on.
class CutNumberText {
 public:
  CutNumberText(JSONWriter& writer, int decimals) : writer_(writer) {
    for (int i = 0; i < decimals; ++i)
      unit_ *= 10;
    factor_ = static_cast<int>(unit_);
    for (int i = 6; i < decimals; ++i)
      smallest_ *= 10;
  }
  ~CutNumberText() { flush(); }
  CutNumberText(const CutNumberText&) = delete;
  CutNumberText& operator=(const CutNumberText&) = delete;

  void put(float number) {
    constexpr double largest = 1e15;
    const double scaled = double{number} * factor_;
    if (!(std::fabs(scaled) < largest)) return put_by_writer(number);
    const auto digits = static_cast<std::uint64_t>(std::fabs(scaled));
    if (digits != 0 && digits < smallest_) return put_by_writer(number);
    if (used_ + longest_number > block_.size()) flush();
    if (used_ > 0) block_[used_++] = ',';
    if (std::signbit(scaled)) block_[used_++] = '-';
    put_digits(digits);
  }

 private:
  // '-', 16 digits in front of the point, the point, 9 behind it, and a comma.
  static constexpr std::size_t longest_number = 32;

  void put_digits(std::uint64_t digits) {
    char* const end = block_.data() + block_.size();
    char* const point = std::to_chars(block_.data() + used_, end, digits / unit_).ptr;
    // With the unit added the decimals have all their leading zeros, behind a 1 that becomes the
    // point.
    char* last = std::to_chars(point, end, digits % unit_ + unit_).ptr - 1;
    *point = '.';
    if (last == point) *++last = '0';
    while (*last == '0' && last - point > 1)
      --last;
    used_ = static_cast<std::size_t>(last + 1 - block_.data());
  }

  void put_by_writer(float number) {
    flush();
    writer_.Double(VXTruncate(number, factor_));
  }

  void flush() {
    if (used_ > 0) writer_.RawValue(block_.data(), used_, rapidjson::kNumberType);
    used_ = 0;
  }

  JSONWriter& writer_;
  std::uint64_t unit_ = 1;
  int factor_ = 1;
  std::uint64_t smallest_ = 1;
  std::array<char, 4096> block_;
  std::size_t used_ = 0;
};

JSONAnswer wrong_type(std::string_view key, const char* wanted) {
  VXThrow.Warning("JSON: key \"%s\" must be %s", std::string(key).c_str(), wanted);
  return JSONAnswer::wrong;
}

}  // namespace

bool JSONParseHelper(JSONDocument& document, const std::string& text) {
  // Not with kParseFullPrecisionFlag, which reads beyond its tables for hostile numbers.
  rapidjson::StringStream stream(text.c_str());
  document.ParseStream<rapidjson::kParseDefaultFlags | rapidjson::kParseIterativeFlag>(stream);
  rapidjson::ParseErrorCode error = document.GetParseError();
  std::size_t place = document.GetErrorOffset();
  // A zero byte ends the text for the parser.
  if (error == rapidjson::kParseErrorNone && stream.Tell() != text.size()) {
    error = rapidjson::kParseErrorDocumentRootNotSingular;
    place = stream.Tell();
  }
  if (error == rapidjson::kParseErrorNone) return true;
  VXThrow.Warning("JSON: parse error at offset %lu: %s", static_cast<unsigned long>(place),
                  rapidjson::GetParseError_En(error));
  return false;
}

bool compatibleJSONVersion(std::string_view version) {
  constexpr unsigned int major = 0;
  constexpr unsigned int newest_minor = 91;
  const char* const end = version.data() + version.size();
  unsigned int first = 0;
  unsigned int second = 0;
  const auto dot = std::from_chars(version.data(), end, first);
  if (dot.ec == std::errc() && dot.ptr != end && *dot.ptr == '.') {
    const auto rest = std::from_chars(dot.ptr + 1, end, second);
    if (rest.ec == std::errc() && rest.ptr == end && first == major && second <= newest_minor)
      return true;
  }
  VXThrow.Warning("JSON: version %s is not supported", std::string(version).c_str());
  return false;
}

std::string VXEscapeJSON(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    switch (c) {
      case '"':
        result += "\\\"";
        break;
      case '\\':
        result += "\\\\";
        break;
      case '\b':
        result += "\\b";
        break;
      case '\f':
        result += "\\f";
        break;
      case '\n':
        result += "\\n";
        break;
      case '\r':
        result += "\\r";
        break;
      case '\t':
        result += "\\t";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20)
          result += format_text("\\u%04x", static_cast<unsigned int>(c));
        else
          result += c;
    }
  }
  return result;
}

void JSONWriteKey(JSONWriter& writer, std::string_view key) {
  const std::string text = well_formed(key);
  writer.Key(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

void JSONWriteText(JSONWriter& writer, std::string_view text) {
  const std::string written = well_formed(text);
  writer.String(written.data(), static_cast<rapidjson::SizeType>(written.size()));
}

bool JSONWriteNumber(JSONWriter& writer, float number) {
  if (!std::isfinite(number)) return JSONWriteNumber(writer, double{number});
  // The double nearest to the shortest decimal form of the float has that form itself.
  std::array<char, 32> digits{};
  const auto text = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  double same = 0.0;
  std::from_chars(digits.data(), text.ptr, same);
  return JSONWriteNumber(writer, static_cast<float>(same) == number ? same : double{number});
}

bool JSONWriteNumber(JSONWriter& writer, double number) {
  const bool is_finite = std::isfinite(number);
  writer.Double(is_finite ? number : 0.0);
  return is_finite;
}

std::size_t JSONWriteCutArray(JSONWriter& writer, const float* numbers, std::size_t count,
                              int decimals) {
  std::size_t not_finite = 0;
  writer.StartArray();
  {
    CutNumberText text(writer, decimals);
    for (std::size_t i = 0; i < count; ++i) {
      const bool is_finite = std::isfinite(numbers[i]);
      if (!is_finite) ++not_finite;
      text.put(is_finite ? numbers[i] : 0.0f);
    }
  }
  writer.EndArray();
  return not_finite;
}

void JSONWarnNotFinite(std::string_view key, std::size_t count) {
  if (count == 0) return;
  VXThrow.Warning("JSON: \"%s\": %lu not finite, written as 0", std::string(key).c_str(),
                  static_cast<unsigned long>(count));
}

const JSONValue* JSONFindKey(const JSONValue& object, std::string_view key) {
  if (!object.IsObject()) return nullptr;
  const JSONValue name(rapidjson::StringRef(key.data(), key.size()));
  const auto found = object.FindMember(name);
  return found == object.MemberEnd() ? nullptr : &found->value;
}

JSONAnswer JSONGetText(const JSONValue& object, std::string_view key, std::string& text) {
  const JSONValue* value = JSONFindKey(object, key);
  if (!value) return JSONAnswer::absent;
  if (!value->IsString()) return wrong_type(key, "a text");
  text.assign(value->GetString(), value->GetStringLength());
  return JSONAnswer::present;
}

JSONAnswer JSONGetNumber(const JSONValue& object, std::string_view key, float& number) {
  const JSONValue* value = JSONFindKey(object, key);
  if (!value) return JSONAnswer::absent;
  if (!value->IsNumber()) return wrong_type(key, "a number");
  number = static_cast<float>(value->GetDouble());
  return JSONAnswer::present;
}

bool JSONRequire(JSONAnswer answer, std::string_view key) {
  if (answer == JSONAnswer::absent)
    VXThrow.Warning("JSON: key \"%s\" is missing", std::string(key).c_str());
  return answer == JSONAnswer::present;
}

const JSONValue* JSONGetArray(const JSONValue& object, std::string_view key) {
  const JSONValue* value = JSONFindKey(object, key);
  if (!JSONRequire(value ? JSONAnswer::present : JSONAnswer::absent, key)) return nullptr;
  if (value->IsArray()) return value;
  wrong_type(key, "an array");
  return nullptr;
}

}  // namespace VXCore
