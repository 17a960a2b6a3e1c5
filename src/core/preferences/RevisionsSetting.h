#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/actions/RevisionHistory.h"
#include "core/ports/MainQueue.h"

namespace mirvel {

class Defaults;
class Interface;
class Localize;

/// The number of revisions that are kept of each job and script, as a stepper shows and changes it. For the main
/// thread.
///
/// The positions of the stepper are the numbers 0 to 100. A stored number beyond them has a position of its own beside
/// them, which shows it as it is, so that nothing is changed by looking at it.
class RevisionsSetting {
 public:
  static constexpr int least = 0;
  static constexpr int most = 100;
  /// In seconds: a number that is reached by stepping is stored when no other step follows in this time.
  static constexpr double pause = 1;

  /// All must outlive this object. The setting holds for all of these stores.
  RevisionsSetting(Defaults& defaults, RevisionHistories stores, Interface& interface, MainQueue& mainQueue,
                   const Localize& localize);

  /// The range of the stepper, which includes the position of the stored number.
  int minimum() const;
  int maximum() const;
  /// The position of the stored number.
  int position() const;
  /// What the stepper shows at a position.
  std::string text(int position) const;
  /// The position of a text; nullopt if it is none of the stepper's.
  std::optional<int> positionOf(const std::string& text) const;
  /// Whether a text that is no number yet can become one by typing: it is empty, or the beginning of what is stored.
  bool mayContinue(const std::string& text) const;

  /// To be called when the stepper has moved by a step: stores the number after a pause. `ended` is called then.
  void step(int position, const MainQueue::Task& ended);
  /// Stores the number of a position, and deletes the revisions beyond it after asking. Does nothing if it is the
  /// stored one, or while the user is being asked. A smaller number is refused with an error if the revisions can't be
  /// read, since nobody can say then what would be deleted. Afterwards the stepper has to show `position()`, since the
  /// number may not have been stored.
  void commit(int position);
  /// Ends stepping without storing the number. Afterwards the stepper has to show `position()`.
  void abandon() { ++m_steps; }

 private:
  std::int64_t stored() const;
  bool mayStore(std::int64_t number);
  bool mayDelete(std::int64_t number, const RevisionHistory::Excess& excess);

  Defaults& m_defaults;
  const RevisionHistories m_stores;
  Interface& m_interface;
  const Localize& m_localize;
  Delay m_delay;
  int m_steps = 0;  ///< counts what is done; only a step that was the last thing done is followed by a commit
  bool m_isAsking = false;
};

}  // namespace mirvel
