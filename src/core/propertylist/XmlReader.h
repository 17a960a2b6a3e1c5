#pragma once

#include <string_view>
#include <vector>

#include "core/propertylist/Document.h"
#include "core/propertylist/Positions.h"
#include "core/propertylist/SmallVector.h"
#include "core/propertylist/XmlScanner.h"

namespace mirvel::propertylist {

/// The message of the warning about data after the list.
inline constexpr const char* dataAfterList = "data after the end of the list, which macOS ignores";

/// Builds the nodes of an XML list in one pass over its text. Used by `read` only, for one list. Throws `ReadFailure`.
///
/// There is no recursion: `m_frames` is the stack of open elements, and the nodes of their children are on a stack of
/// their own until the element is closed. A <plist> element may occur wherever a value may, as on macOS; it contains
/// exactly one value and doesn't count as nesting.
class XmlReader {
 public:
  /// The nodes refer to `utf8`, which must be in the arena or outlive it, and be followed by `XmlScanner::padding`. If
  /// `positions` isn't null, the offset of every value is added to it; the caller calls `Positions::complete`.
  XmlReader(std::string_view utf8, Arena& arena, Positions* positions)
      : m_text(utf8), m_arena(arena), m_scanner(utf8), m_positions(positions) {}

  /// Reads the whole text and returns the root.
  Node read();
  /// With lines and columns. After `read`.
  Warnings takeWarnings();

 private:
  /// An element whose closing tag hasn't been read.
  struct Frame {
    Element element;
    std::size_t firstNode;  ///< index of its first child in `m_nodes`
    std::size_t offset;     ///< of its opening tag
  };
  /// The path of a value.
  struct Trail {
    PathHash path;
    bool hasKey = false;  ///< the value of a dictionary entry, perhaps within a <plist>
  };

  // Each reads one token, or a scalar with its closing tag.
  void takeKey();
  void takeValue();
  void open(Element element, std::size_t offset);
  /// Reads a closing tag.
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
  /// Text that is valid as long as the arena: copied if the scanner had to change it.
  std::string_view stableText();

  void notePosition(std::size_t offset);
  std::size_t offsetOfKey(std::string_view key, const Frame& frame) const;
  void checkRest();

  std::string_view m_text;
  Arena& m_arena;
  XmlScanner m_scanner;
  Positions* m_positions;
  Trail m_trail;                // of the latest value; unused without positions, like `m_trails`
  std::vector<Trail> m_trails;  // of the open elements
  std::size_t m_keyOffset = 0;  // of the latest key
  SmallVector<Frame, 32> m_frames;
  /// The children of the open elements, those of the innermost one last; those of a dictionary are key, value, key,
  /// value. When an element is closed, its children move to the arena and are replaced by a single node.
  SmallVector<Node, 128> m_nodes;
  bool m_awaitsKey = false;   // in a dictionary, where a key or the closing tag must follow
  std::size_t m_depth = 0;    // of open arrays and dictionaries
  std::size_t m_objects = 0;  // values that were read
  bool m_isDone = false;      // the root is complete
  Warnings m_warnings;        // with offsets in `m_text`
};

}  // namespace mirvel::propertylist
