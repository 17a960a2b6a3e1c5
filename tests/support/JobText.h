#pragma once

#include <string>

#include "core/propertylist/Writer.h"

namespace mirvel::testdata {

/// The text of a job file with this label and further keys.
inline std::string jobText(const std::string& label, propertylist::Dictionary keys = {}) {
  keys.set("Label", label);
  return *propertylist::writeXml(keys);
}

/// The text of a startup item's parameter file.
inline std::string startupParameters(propertylist::Value description, propertylist::Value provides) {
  return *propertylist::writeXml(
      propertylist::Dictionary{{"Description", std::move(description)}, {"Provides", std::move(provides)}});
}

}  // namespace mirvel::testdata
