#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "core/support/Error.h"

namespace mirvel {

/// What went wrong with a file that the program keeps for itself.
struct StoreTrouble {
  enum class Kind {
    Damaged,    ///< it was moved to `rescue` and counts as empty
    Unread,     ///< it can't be read, or not be moved aside; it is left alone
    Unwritten,  ///< what should have been written is in memory only
  };

  Kind kind;
  Error error;  ///< names the file
  std::filesystem::path rescue = {};
};

/// Passes such troubles on to whoever tells the user. Those that occur before anybody listens wait. For the main
/// thread.
class StoreTroubles {
 public:
  using Listener = std::function<void(const StoreTrouble&)>;

  void report(StoreTrouble trouble);
  /// The listener hears of those that wait at once, and of every later one as it occurs. Null: nobody listens.
  void setListener(Listener listener);

 private:
  Listener m_listener;
  std::vector<StoreTrouble> m_waiting;
};

}  // namespace mirvel
