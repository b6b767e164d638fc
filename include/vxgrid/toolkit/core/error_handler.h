/// \file
/// The one place where the library speaks: messages by level, to standard error or to a sink.
#ifndef VXGRID_TOOLKIT_CORE_ERROR_HANDLER_H
#define VXGRID_TOOLKIT_CORE_ERROR_HANDLER_H

#include <atomic>      // for atomic
#include <cstdarg>     // for va_list
#include <functional>  // for function
#include <memory>      // for shared_ptr
#include <mutex>       // for mutex
#include <string>      // for string

#include "vxgrid/toolkit/core/export.h"

namespace VXCore {

/// Levels of messages, from the least to the gravest.
enum class VXErrorLevel { Verbose, Debug, Info, Warning, Error };

/// Hands messages on, from any thread, one at a time. Every call returns: no level ends the program
/// or throws. The members with a format take it and its arguments as printf does, always with the
/// decimal point; those with a std::string never format.
class VXGRID_API VXErrorHandler {
 public:
  /// Gets the finished text, without a line end added.
  using Sink = std::function<void(VXErrorLevel, const std::string&)>;

  constexpr VXErrorHandler() noexcept = default;
  VXErrorHandler(const VXErrorHandler&) = delete;
  VXErrorHandler& operator=(const VXErrorHandler&) = delete;

  /// Messages below the level are dropped unformatted; Info is where it starts.
  void SetLevel(VXErrorLevel level) noexcept { level_.store(level, std::memory_order_relaxed); }
  VXErrorLevel GetLevel() const noexcept { return level_.load(std::memory_order_relaxed); }

  /// Takes over the display; an empty function gives it back to standard error. When the call is
  /// back, the former sink is not running any more, unless it is itself the caller. A message that
  /// a sink sends goes to standard error.
  void SetSink(Sink sink);

  /// Progress notes, silent at first.
  void Verbose(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void Verbose(const std::string& text) { send(VXErrorLevel::Verbose, text); }
  /// Traces for developers, silent at first.
  void Debug(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void Debug(const std::string& text) { send(VXErrorLevel::Debug, text); }
  /// Reports that are meant to be read.
  void Info(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void Info(const std::string& text) { send(VXErrorLevel::Info, text); }
  /// A failure that the caller reports by its result.
  void Warning(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void Warning(const std::string& text) { send(VXErrorLevel::Warning, text); }
  /// A grave failure.
  void Error(const char* format, ...) __attribute__((format(printf, 2, 3)));
  void Error(const std::string& text) { send(VXErrorLevel::Error, text); }

 private:
  bool is_shown(VXErrorLevel level) const noexcept { return level >= GetLevel(); }
  void send(VXErrorLevel level, const std::string& text);
  void send_formatted(VXErrorLevel level, const char* format, std::va_list arguments);

  std::atomic<VXErrorLevel> level_{VXErrorLevel::Info};
  std::mutex mutex_;
  std::shared_ptr<const Sink> sink_;
};

/// The one handler of the program. It needs no initialiser to have run, and is never destroyed.
extern VXGRID_API VXErrorHandler& VXThrow;

}  // namespace VXCore

#endif
