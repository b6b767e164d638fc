// The check of options that are lengths.
#ifndef VXGRID_APPS_LENGTH_OPTION_H
#define VXGRID_APPS_LENGTH_OPTION_H

#include <limits>  // for numeric_limits
#include <string>  // for string

#include <CLI/CLI.hpp>

#include "vxgrid/toolkit/names.h"

namespace vxgrid_app {

/// Takes numbers above 0 that fit a float. CLI11's own check for positive numbers lets "nan" pass
/// and tells its limits in three hundred digits.
inline CLI::Validator is_length() {
  const auto check = [](const std::string& text) {
    double value = 0;
    const bool good = VXCore::VXStringToNumber(text, value) &&
                      value >= std::numeric_limits<float>::min() &&
                      value <= std::numeric_limits<float>::max();
    return good ? std::string() : text + " is not a number above 0";
  };
  return CLI::Validator(check, "POSITIVE");
}

}  // namespace vxgrid_app

#endif
