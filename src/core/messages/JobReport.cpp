#include "core/messages/JobReport.h"

namespace mirvel {

propertylist::Dictionary JobReport::write() const {
  return messages::FieldWriter::write(*this);
}

Result<JobReport> JobReport::read(const propertylist::Dictionary& dictionary) {
  constexpr std::size_t tolerance = 10;  // another version may keep more
  auto report = messages::FieldReader::read<JobReport>(dictionary);
  if (report && (report->runs.size() > tolerance * mostRuns || report->missed.size() > tolerance * mostMissed)) {
    return Error{.code = Error::Code::LimitExceeded, .message = "the report has too many runs"};
  }
  return report;
}

bool hasFailed(const RunReport& run) {
  if (!run.end || run.end->isStopped || run.cause == RunCause::Test) return false;
  switch (run.end->how) {
    case RunEnd::How::Exited:
      return run.end->code != 0;
    case RunEnd::How::Signalled:
    case RunEnd::How::CouldNotStart:
      return true;
    case RunEnd::How::Lost:
      return false;
  }
  return false;
}

}  // namespace mirvel
