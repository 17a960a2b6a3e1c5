#pragma once

#include <string>

#include "core/propertylist/Writer.h"

namespace mirvel::testdata {

/// A job file with that label and further keys.
inline std::string jobText(const std::string& label, propertylist::Dictionary keys = {}) {
  keys.set("Label", label);
  return *propertylist::writeXml(keys);
}

/// What a startup item's parameter file says.
inline std::string startupParameters(propertylist::Value description, propertylist::Value provides) {
  return *propertylist::writeXml(
      propertylist::Dictionary{{"Description", std::move(description)}, {"Provides", std::move(provides)}});
}

}  // namespace mirvel::testdata
