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

/// For the messages of failed tests.
inline void PrintTo(const Value& value, std::ostream* out) {
  const auto text = writeXml(value);
  *out << (text ? *text : text.error().text());
}

}  // namespace mirvel::propertylist

namespace mirvel::jobfile {

using List = propertylist::Array;
using Dict = propertylist::Dictionary;

/// A job file with one key beside its label.
inline Dict fileWith(const std::string& key, propertylist::Value value) {
  return Dict{{"Label", "job"}, {key, std::move(value)}};
}

/// What the record's decoder makes of a file with that content.
inline Result<Plist> decode(const propertylist::Value& file) {
  const auto document = propertylist::read(propertylist::writeBinary(file));
  if (!document) throw std::runtime_error("not read: " + document.error().text());
  return Plist::decode(document->root());
}

/// The record of a file that must be good.
inline Plist decoded(const propertylist::Value& file) {
  auto plist = decode(file);
  if (!plist) throw std::runtime_error("not decoded: " + plist.error().text());
  return std::move(*plist);
}

/// Likewise, as the program opens it, with the file itself.
inline Plist loaded(const propertylist::Value& file) {
  auto plist = Plist::readTolerantly(propertylist::writeBinary(file));
  if (!plist) throw std::runtime_error("not loaded: " + plist.error().text());
  return std::move(*plist);
}

}  // namespace mirvel::jobfile
