#pragma once

#include <string>

#include "core/propertylist/Writer.h"

namespace mirvel::testdata {

/// A job file with that label and further keys.
inline std::string jobText(const std::string& label, plist::Dictionary keys = {}) {
  keys.set("Label", label);
  return *plist::writeXml(keys);
}

/// What a startup item's parameter file says.
inline std::string startupParameters(plist::Value description, plist::Value provides) {
  return *plist::writeXml(
      plist::Dictionary{{"Description", std::move(description)}, {"Provides", std::move(provides)}});
}

}  // namespace mirvel::testdata
