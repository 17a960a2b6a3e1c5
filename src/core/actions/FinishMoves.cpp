#include <algorithm>

#include "core/actions/ActionController.h"
#include "core/actions/JobOnDisk.h"
#include "core/session/Foundation.h"
#include "core/session/Platform.h"

namespace mirvel {

void ActionController::finishMoves() {
  for (const auto& move : m_moves.unfinished()) finishMove(move);
}

void ActionController::finishMove(const MoveJournal::Move& move) {
  const auto isAgents = [&roots = m_context.foundation.roots](const URL& url) {
    return std::any_of(Kind::allCases.begin(), Kind::allCases.end(), [&](Kind kind) {
      return kind.isAgentOfEveryone() && url.path().parent_path() == kind.folderURL(roots);
    });
  };
  const MoveRemedy remedy = remedyFor(move);
  if (remedy == MoveRemedy::RemoveUsers) {
    auto action = Action::delete_(move.users, jobLabel(move.users).value_or(move.label));
    action->ended = [this, users = move.users](bool isDone) {
      if (isDone) endMove(users);
    };
    if (!send(action)) return;
  } else {
    endMove(move.users);
  }
  if (remedy == MoveRemedy::LoadUsers) return loadQuietly(move.users);
  // A daemon is loaded by root's helper when it writes it.
  if (remedy != MoveRemedy::None && isAgents(move.roots)) loadQuietly(move.roots);
}

void ActionController::endMove(const URL& users) {
  const auto ended = m_moves.end(users);
  if (!ended) m_context.platform.interface.present(ended.error());
}

/// Nobody is told if that fails: it may be loaded already.
void ActionController::loadQuietly(const URL& url) {
  if (!isEnabledOnDisk(url)) return;
  auto action = Action::load(url);
  action->presentError = false;
  (void)send(action);
}

}  // namespace mirvel
