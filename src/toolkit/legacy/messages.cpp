// Progress and warning lines through the one error handler, file handles and heap blocks.
#include "vxgrid/toolkit/legacy/messages.h"

#include <cstdarg>  // for va_list
#include <cstdlib>  // for malloc, free
#include <string>   // for string

#include "vxgrid/toolkit/core/error_handler.h"
#include "vxgrid/toolkit/core/text.h"

namespace VXBrioMol {

namespace {

// The handler ends the line itself.
void drop_line_end(std::string& text) {
  if (!text.empty() && text.back() == '\n') text.pop_back();
}

}  // namespace

int vx_printf(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::string text = VXCore::format_text_v(format, arguments);
  va_end(arguments);
  const int length = static_cast<int>(text.size());
  drop_line_end(text);
  VXCore::VXThrow.Info(text);
  return length;
}

int vi_warning(const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  std::string text = VXCore::format_text_v(format, arguments);
  va_end(arguments);
  const int length = static_cast<int>(text.size());
  drop_line_end(text);
  VXCore::VXThrow.Warning(text);
  return length;
}

void vi_warning_print(const char* text) {
  std::string line(text ? text : "");
  drop_line_end(line);
  VXCore::VXThrow.Warning(line);
}

std::FILE* vi_fopen(const char* name, const char* mode) {
  return name && mode ? std::fopen(name, mode) : nullptr;
}

int vi_fclose(std::FILE* file) {
  return file ? std::fclose(file) : 0;
}

void* vx_malloc(std::size_t bytes) {
  return std::malloc(bytes == 0 ? 1 : bytes);
}

void vx_free(void* block) {
  std::free(block);
}

}  // namespace VXBrioMol
