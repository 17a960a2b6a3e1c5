#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "core/propertylist/Positions.h"
#include "core/propertylist/Reader.h"
#include "core/propertylist/Room.h"
#include "core/propertylist/XmlScanner.h"

namespace mirvel::plist {

/// Builds the nodes of an XML list in one pass, with a stack of its own in place of recursion. Throws `ReadFailure`.
class XmlReader {
 public:
  /// `utf8` lies in the arena, or outlives it, and is followed by `XmlScanner::padding`; `positions` may be null.
  XmlReader(std::string_view utf8, Arena& arena, Positions* positions)
      : m_text(utf8), m_arena(arena), m_scanner(utf8), m_positions(positions), m_cursor(utf8) {}

  Node read();
  std::vector<Warning> takeWarnings() { return std::move(m_warnings); }

 private:
  /// A container whose closing tag hasn't come yet.
  struct Frame {
    Element element;
    std::size_t firstNode;  ///< where its nodes begin on the stack
    std::size_t offset;
  };

  void takeKey();
  void takeValue();
  void open(Element element, std::size_t offset);
  void close();
  void finish();
  Node array(const Frame& frame);
  Node dictionary(const Frame& frame);
  void deliver(Node node, std::size_t offset);

  Node scalar(Element element, std::size_t offset);
  Node emptyScalar(Element element, std::size_t offset) const;
  Node integer(std::size_t offset);
  Node real(std::size_t offset);
  Node date(std::size_t offset);
  Node data(std::size_t offset);
  std::string_view stableText();

  void notePosition(std::size_t offset);
  std::size_t offsetOfKey(std::string_view key, const Frame& frame) const;
  void warn(std::string message, std::size_t offset);
  void checkRest();

  std::string_view m_text;
  Arena& m_arena;
  XmlScanner m_scanner;
  Positions* m_positions;
  PlaceCursor m_cursor;
  Room<Frame, 32> m_frames;
  /// What is read and whose container isn't complete yet: the innermost container's nodes lie on top, those of a
  /// dictionary as key, value, key, value. A complete container's go to the arena, and one node takes their place.
  Room<Node, 128> m_nodes;
  bool m_awaitsKey = false;  // in a dictionary, where a key or its end must come next
  std::size_t m_depth = 0;
  std::size_t m_objects = 0;
  bool m_isDone = false;
  std::vector<Warning> m_warnings;
};

}  // namespace mirvel::plist
