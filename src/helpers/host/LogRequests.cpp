#include "helpers/host/LogRequests.h"

#include <algorithm>
#include <utility>

#include "core/messages/Requests.h"

namespace mirvel::host {

using namespace std::chrono;

namespace {

bool hasLine(std::string_view blocks, const LogRange& range) {
  LogBlocks reader(blocks);
  while (const auto item = reader.next()) {
    if (item->line && range.has(item->position)) return true;
  }
  return false;
}

}  // namespace

bool LogRequests::add(const std::shared_ptr<Connection>& client, std::int64_t id, const hostdata::Log& request,
                      milliseconds now) {
  const auto count = std::count_if(m_waiting.begin(), m_waiting.end(),
                                   [&](const Waiting& other) { return other.client.lock() == client; });
  if (static_cast<std::size_t>(count) >= wire::mostRequests) return false;
  LogRange range{.since = LogMoment(microseconds(request.since)), .after = request.after};
  // The numbers have begun again, because the files were deleted while no host was running.
  if (range.after && *range.after > m_log.newest(request.label)) range.after = 0;
  m_waiting.push_back({.client = client,
                       .id = id,
                       .label = request.label,
                       .range = range,
                       .seen = range.after.value_or(0),
                       .until = now + messages::longestLogWait});
  if (range.after) m_labels.insert(request.label);
  return true;
}

bool LogRequests::cancel(const std::shared_ptr<Connection>& client, std::int64_t id) {
  return m_waiting.remove_if(
             [&](const Waiting& waiting) { return waiting.id == id && waiting.client.lock() == client; }) > 0;
}

milliseconds LogRequests::dueAt(const Waiting& waiting) const {
  if (!waiting.range.after) return milliseconds(0);
  if (m_log.newest(waiting.label) <= waiting.seen) return waiting.until;
  const auto answered = m_answeredAt.find(waiting.label);
  return answered == m_answeredAt.end() ? milliseconds(0) : std::min(answered->second + pause, waiting.until);
}

bool LogRequests::answer(Connection& client, Waiting& waiting, milliseconds now) {
  auto blocks = m_log.blocks(waiting.label, waiting.range);
  const bool isTimeOver = !waiting.range.after || now >= waiting.until;
  if (!isTimeOver && !hasLine(blocks, waiting.range)) {  // the lines are gone, for example with their files
    waiting.seen = m_log.newest(waiting.label);
    return false;
  }
  if (waiting.range.after) m_answeredAt[waiting.label] = now;
  const hostdata::Log::Answer content{.blocks = {std::move(blocks)}, .after = waiting.range.after};
  client.send({.id = waiting.id, .body = messages::FieldWriter::write(content)});
  return true;
}

void LogRequests::settle(milliseconds now) {
  if (m_waiting.empty() && m_labels.empty()) return;
  std::erase_if(m_answeredAt, [&](const auto& answered) { return answered.second + pause <= now; });
  m_labels.clear();
  int answers = 0;
  for (auto waiting = m_waiting.begin(); waiting != m_waiting.end();) {
    const auto client = waiting->client.lock();
    const bool isDue = client && answers < answersPerTurn && dueAt(*waiting) <= now;
    const bool isDone = !client || (isDue && answer(*client, *waiting, now));
    answers += isDue ? 1 : 0;
    if (!isDone && waiting->range.after) m_labels.insert(waiting->label);
    waiting = isDone ? m_waiting.erase(waiting) : std::next(waiting);
  }
}

std::optional<milliseconds> LogRequests::wakeAt() const {
  std::optional<milliseconds> earliest;
  for (const Waiting& waiting : m_waiting) {
    const milliseconds due = dueAt(waiting);
    earliest = std::min(earliest.value_or(due), due);
  }
  return earliest;
}

}  // namespace mirvel::host
