#pragma once

#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>

#include "core/jobfile/Plist.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Value.h"
#include "core/propertylist/Writer.h"

namespace mirvel::propertylist {

/// Prints values as XML in the messages of failed tests.
inline void PrintTo(const Value& value, std::ostream* out) {
  const auto text = writeXml(value);
  *out << (text ? *text : text.error().text());
}

}  // namespace mirvel::propertylist

namespace mirvel::jobfile {

using List = propertylist::Array;
using Dict = propertylist::Dictionary;

/// The content of a job file with a label and one more key.
inline Dict fileWith(const std::string& key, propertylist::Value value) {
  return Dict{{"Label", "job"}, {key, std::move(value)}};
}

/// Decodes a file with this content strictly.
inline Result<Plist> decode(const propertylist::Value& file) {
  const auto document = propertylist::read(propertylist::writeBinary(file));
  if (!document) throw std::runtime_error("not read: " + document.error().text());
  return Plist::decode(document->root());
}

/// The same for a file that must be valid.
inline Plist decoded(const propertylist::Value& file) {
  auto plist = decode(file);
  if (!plist) throw std::runtime_error("not decoded: " + plist.error().text());
  return std::move(*plist);
}

/// The record as the program reads it, with the content of the file.
inline Plist loaded(const propertylist::Value& file) {
  auto plist = Plist::readTolerantly(propertylist::writeBinary(file));
  if (!plist) throw std::runtime_error("not loaded: " + plist.error().text());
  return std::move(*plist);
}

}  // namespace mirvel::jobfile
