#pragma once

#include <memory>
#include <string>
#include <vector>

namespace mirvel {

class Job;
class Program;

/// Deletes a job as `ActionController::deleteConfirmed` does, and keeps its file to be restored. Where that can't be
/// kept, the user is asked once more.
void deleteAndKeep(Program& program, const std::shared_ptr<Job>& job);
/// What the question about the deletion says of it: until when the job can be brought back, or that it can't.
std::string consequenceOfDeleting(Program& program, const Job& job);

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
std::vector<DeletedJobRow> deletedJobRows(Program& program);
/// Has the file of a deleted job written as it was, under its old name or, where that is taken, under a new one, and
/// the job loaded unless it is disabled. If another job has the name the user is asked first. The job is shown once it
/// is written, and is kept as a deleted one until then.
void restoreDeleted(Program& program, const std::string& id);

}  // namespace mirvel
