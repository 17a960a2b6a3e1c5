#pragma once

#include <cstdint>
#include <deque>
#include <string_view>
#include <utility>
#include <vector>

#include "core/propertylist/DictionaryBuilder.h"
#include "core/propertylist/Positions.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/XmlScanner.h"

namespace mirvel::plist {

/// Builds the value of an XML list in one pass, with a stack of its own in place of recursion. Throws `ReadFailure`.
class XmlReader {
 public:
  /// `utf8` must outlive the reader; `positions` may be null.
  XmlReader(std::string_view utf8, Positions* positions)
      : m_text(utf8), m_scanner(utf8), m_positions(positions) {}

  Value read();
  std::vector<Warning> takeWarnings() { return std::move(m_warnings); }

 private:
  /// A container whose closing tag hasn't come yet. Its values and keys are the topmost ones of `m_values`, `m_keys`.
  struct Frame {
    Element element;
    std::size_t firstValue;
    std::size_t firstKey;
    std::size_t offset;
  };
  void takeElement();
  void takeScalar(XmlScanner::Tag tag, std::size_t offset);
  void open(Element element, std::size_t offset);
  void close();
  void finish();
  void deliver(Value value);
  void checkPlace(Element element, std::size_t offset) const;
  bool awaitsKey() const;
  void takeKey(bool isEmpty, std::size_t offset);

  Value scalar(Element element, std::size_t offset);
  Value emptyScalar(Element element, std::size_t offset) const;
  Value integer(std::size_t offset);
  Value real(std::size_t offset);
  Value date(std::size_t offset);
  Value data(std::size_t offset);
  Value string();

  Value finishArray(const Frame& frame);
  Value finishDictionary(const Frame& frame);
  Value finishPlist(const Frame& frame);

  void notePosition(std::size_t offset);
  void warn(std::string message, std::size_t offset);
  void checkRest();

  std::string_view m_text;
  XmlScanner m_scanner;
  Positions* m_positions;
  std::vector<Frame> m_frames;
  std::vector<Value> m_values;
  std::vector<ReadKey> m_keys;
  std::deque<std::string> m_decodedKeys;  // keys that don't stand in the text as they are
  DictionaryBuilder m_builder{Repeated::LastWins};
  std::size_t m_depth = 0;
  std::size_t m_objects = 0;
  bool m_isDone = false;
  std::vector<Warning> m_warnings;
};

}  // namespace mirvel::plist
