#include "core/editor/FileCheck.h"

#include <system_error>

#include "core/base/ThreadWorkQueue.h"
#include "core/commands/CommandRepairs.h"
#include "core/settings/Defaults.h"

namespace mirvel {

namespace fs = std::filesystem;

FileCheck::FileCheck(const Defaults& defaults, const CommandRepairs& repairs, WorkQueue& fileQueue,
                     MainQueue& mainQueue)
    : m_defaults(defaults), m_repairs(repairs), m_fileQueue(fileQueue), m_mainQueue(mainQueue), m_delay(mainQueue) {}

void FileCheck::check(const std::string& command, Answer answer) {
  const int number = ++*m_last;
  const bool isWanted = m_defaults.showInvalidData();
  auto files = isWanted ? m_repairs.fileArguments(command) : std::vector<fs::path>();
  if (files.empty()) return answer({});

  auto deliver = m_delay.whileOwned([last = m_last, number, answer = std::move(answer)](std::vector<fs::path> missing) {
    if (*last == number) answer(missing);
  });
  m_fileQueue.add(
      [files = std::move(files), last = m_last, number, deliver = std::move(deliver), &queue = m_mainQueue]() mutable {
        if (*last != number) return;
        std::erase_if(files, [](const fs::path& file) {
          std::error_code failure;  // a folder that only root may look into hides no missing file
          return fs::status(file, failure).type() != fs::file_type::not_found;
        });
        queue.post([deliver = std::move(deliver), files = std::move(files)] { deliver(files); });
      });
}

}  // namespace mirvel
