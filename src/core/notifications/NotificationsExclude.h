#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/notifications/Exceptions.h"

namespace mirvel {

/// The rows of the tab of the notification preferences that lists the excluded prefixes. A row without text isn't in
/// the file, and has no effect; it stays until the pane is closed. For the main thread.
class NotificationsExclude {
 public:
  struct Row {
    std::int64_t id = 0;  ///< identifies the row as long as it exists
    std::string prefix = {};
  };

  /// Must outlive this.
  explicit NotificationsExclude(Exceptions& exceptions) : m_exceptions(exceptions) {}

  /// Reads the file anew, in its order. Rows keep their identity, and those without text follow.
  void reload();
  const std::vector<Row>& rows() const { return m_rows; }

  /// Adds an empty row at the end and returns its id.
  std::int64_t add();
  /// Changes the text of a row, exactly as typed, and removes a row. Other rows of the same text are unaffected. A row
  /// that doesn't exist any more is ignored. All return whether the excluded prefixes have changed.
  bool setPrefix(std::int64_t id, const std::string& prefix);
  bool remove(std::int64_t id);

 private:
  std::size_t indexOf(std::int64_t id) const;
  std::size_t occurrenceOf(std::size_t index) const;

  Exceptions& m_exceptions;
  std::vector<Row> m_rows;
  std::int64_t m_lastId = 0;
};

}  // namespace mirvel
