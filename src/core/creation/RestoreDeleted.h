#pragma once

#include <string>
#include <vector>

namespace mirvel {

struct CreationContext;

/// A deleted job as the list shows it.
struct DeletedJobRow {
  std::string id;
  std::string name;
  std::string kind;
  std::string file;
  std::string deleted;  ///< when, in the user's zone
  std::string until;    ///< kept till then
};

/// The jobs that can be restored, the last deleted first.
std::vector<DeletedJobRow> deletedJobRows(const CreationContext& context);
/// Has the file of a deleted job written as it was, under its old name or, where that is taken, under a new one, and
/// the job loaded unless it is disabled. If another job has the name the user is asked first. The job is shown once it
/// is written, and is kept as a deleted one until then.
void restoreDeleted(const CreationContext& context, const std::string& id);

}  // namespace mirvel
