#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/propertylist/Document.h"
#include "core/propertylist/Positions.h"
#include "core/propertylist/Room.h"
#include "core/propertylist/XmlScanner.h"

namespace mirvel::propertylist {

/// Builds the nodes of an XML list in one pass, with a stack of its own in place of recursion. Throws `ReadFailure`.
class XmlReader {
 public:
  /// `utf8` lies in the arena, or outlives it, and is followed by `XmlScanner::padding`; `positions` may be null.
  XmlReader(std::string_view utf8, Arena& arena, Positions* positions)
      : m_text(utf8), m_arena(arena), m_scanner(utf8), m_positions(positions) {}

  Node read();
  Warnings takeWarnings();

 private:
  /// A container whose closing tag hasn't come yet.
  struct Frame {
    Element element;
    std::size_t firstNode;  ///< where its nodes begin on the stack
    std::size_t offset;
  };
  /// The way to a value.
  struct Trail {
    PathHash path;
    bool hasKey = false;  ///< it stands behind a key, perhaps within a <plist>
  };
  struct Remark {
    std::string message;
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
  template <typename Message>
  void warn(Message message, std::size_t offset);
  void checkRest();

  std::string_view m_text;
  Arena& m_arena;
  XmlScanner m_scanner;
  Positions* m_positions;
  Trail m_trail;                // of the latest value; like the next, only where positions are wanted
  std::vector<Trail> m_trails;  // of the open containers
  std::size_t m_keyOffset = 0;  // of the latest key
  Room<Frame, 32> m_frames;
  /// What is read and whose container isn't complete yet: the innermost container's nodes lie on top, those of a
  /// dictionary as key, value, key, value. A complete container's go to the arena, and one node takes their place.
  Room<Node, 128> m_nodes;
  bool m_awaitsKey = false;  // in a dictionary, where a key or its end must come next
  std::size_t m_depth = 0;
  std::size_t m_objects = 0;
  bool m_isDone = false;
  std::vector<Remark> m_remarks;
  std::size_t m_unreported = 0;
};

}  // namespace mirvel::propertylist
