#include "Check.h"
#include "core/notifications/ChangeNotes.h"
#include "core/notifications/FailureSeries.h"
#include "core/notifications/Notice.h"
#include "core/propertylist/Reader.h"

using namespace mirvel;

/// What the background agent reads: the record of changes, notices and series of failures. Whatever is accepted is the
/// same after it has been written and read again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  if (const auto notes = readChangeNotes(bytes)) {
    const auto again = readChangeNotes(writeChangeNotes(*notes));
    FUZZ_CHECK(again && *again == *notes);
  }
  const auto list = propertylist::readDictionary(bytes);
  if (!list) return 0;
  if (const auto notice = Notice::read(*list)) FUZZ_CHECK(Notice::read(notice->write()) == notice);
  const auto stored = FailureSeries::read(&*list).write();
  FUZZ_CHECK(FailureSeries::read(&stored).write() == stored);
  return 0;
}
