// Messages to standard error or to a sink.
#include "vxgrid/toolkit/core/error_handler.h"

#include <cstdio>   // for fwrite
#include <utility>  // for move

#include "vxgrid/toolkit/core/text.h"

namespace VXCore {
namespace {

// True while this thread is inside a sink, and thus holds the handler's mutex.
thread_local bool in_sink = false;

class InSink {
 public:
  InSink() { in_sink = true; }
  ~InSink() { in_sink = false; }
  InSink(const InSink&) = delete;
  InSink& operator=(const InSink&) = delete;
};

void display(VXErrorLevel level, const std::string& text) {
  std::string line;
  if (level == VXErrorLevel::Warning) line = "Warning: ";
  if (level == VXErrorLevel::Error) line = "Error: ";
  line += text;
  line += '\n';
  // In one call, so that lines of several threads do not mix.
  std::fwrite(line.data(), 1, line.size(), stderr);
}

// Storage for the handler that no destructor runs for: others may still speak while the program
// takes its static objects down.
union Immortal {
  VXErrorHandler handler;
  constexpr Immortal() noexcept : handler() {}
  ~Immortal() {}
};

constinit Immortal immortal;

}  // namespace

constinit VXErrorHandler& VXThrow = immortal.handler;

void VXErrorHandler::SetSink(Sink sink) {
  auto next = sink ? std::make_shared<const Sink>(std::move(sink)) : nullptr;
  std::unique_lock lock(mutex_, std::defer_lock);
  if (!in_sink) lock.lock();
  sink_.swap(next);
}

void VXErrorHandler::send(VXErrorLevel level, const std::string& text) {
  if (!is_shown(level)) return;
  if (in_sink) {
    display(level, text);
    return;
  }
  const std::lock_guard lock(mutex_);
  // A sink may replace itself and still has to live to its end.
  const auto sink = sink_;
  if (!sink) {
    display(level, text);
    return;
  }
  const InSink inside;
  (*sink)(level, text);
}

void VXErrorHandler::send_formatted(VXErrorLevel level, const char* format,
                                    std::va_list arguments) {
  if (is_shown(level)) send(level, format_text_v(format, arguments));
}

void VXErrorHandler::Verbose(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  send_formatted(VXErrorLevel::Verbose, format, arguments);
  va_end(arguments);
}

void VXErrorHandler::Debug(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  send_formatted(VXErrorLevel::Debug, format, arguments);
  va_end(arguments);
}

void VXErrorHandler::Info(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  send_formatted(VXErrorLevel::Info, format, arguments);
  va_end(arguments);
}

void VXErrorHandler::Warning(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  send_formatted(VXErrorLevel::Warning, format, arguments);
  va_end(arguments);
}

void VXErrorHandler::Error(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  send_formatted(VXErrorLevel::Error, format, arguments);
  va_end(arguments);
}

}  // namespace VXCore
