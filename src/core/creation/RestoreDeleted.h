#pragma once

#include <string>
#include <vector>

namespace mirvel {

struct CreationContext;

/// A row of the list of deleted jobs. All texts are for display.
struct DeletedJobRow {
  std::string id;  ///< identifies the job, see `DeletedJobs`
  std::string name;
  std::string kind;
  std::string file;     ///< the path of the deleted file
  std::string deleted;  ///< the time of the deletion, in the user's time zone
  std::string until;    ///< the time until which the job is kept
};

/// The jobs that can be restored, the most recently deleted first.
std::vector<DeletedJobRow> deletedJobRows(const CreationContext& context);

/// Restores a deleted job: writes its file with the same content, loads it unless it is disabled, and selects it. The
/// file gets its former path or, if that is in use, a new name in the folder of its kind.
///
/// If another job has the same label, the user is asked first and can restore this one disabled. Returns before the
/// file is written; the job remains among the deleted ones until then, but can't be restored a second time meanwhile.
/// Does nothing for an unknown ID. Errors are shown to the user.
void restoreDeleted(const CreationContext& context, const std::string& id);

}  // namespace mirvel
