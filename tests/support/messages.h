// Captures what goes out through VXThrow while a test runs.
#ifndef VXGRID_TESTS_SUPPORT_MESSAGES_H
#define VXGRID_TESTS_SUPPORT_MESSAGES_H

#include <algorithm>  // for any_of
#include <string>     // for string
#include <utility>    // for pair
#include <vector>     // for vector

#include "vxgrid/toolkit/core/error_handler.h"

namespace vxgrid_test {

/// While one stands, every message from the given level on is kept here instead of being shown.
class MessageCapture {
 public:
  using Level = VXCore::VXErrorLevel;

  explicit MessageCapture(Level from = Level::Info) {
    VXCore::VXThrow.SetLevel(from);
    VXCore::VXThrow.SetSink(
        [this](Level level, const std::string& text) { messages.emplace_back(level, text); });
  }
  ~MessageCapture() {
    VXCore::VXThrow.SetSink({});
    VXCore::VXThrow.SetLevel(Level::Info);
  }
  MessageCapture(const MessageCapture&) = delete;
  MessageCapture& operator=(const MessageCapture&) = delete;

  bool has(Level level, const std::string& text) const {
    return std::any_of(messages.begin(), messages.end(), [&](const auto& message) {
      return message.first == level && message.second == text;
    });
  }
  bool warned(const std::string& text) const { return has(Level::Warning, text); }

  std::vector<std::pair<Level, std::string>> messages;
};

}  // namespace vxgrid_test

#endif
