#include "helpers/wire/Requests.h"

#include <utility>

namespace mirvel::wire {

Requests::Id Requests::add(HelperConnection::Reply reply, HelperConnection::Failure failure,
                           HelperConnection::Event event) {
  m_waiting.emplace(++m_lastId, Waiting{std::move(reply), std::move(failure), std::move(event)});
  return m_lastId;
}

bool Requests::cancel(Id id) {
  const auto found = m_waiting.find(id);
  if (found == m_waiting.end() || found->second.isCancelled) return false;
  found->second = {.reply = [](const auto&) {}, .failure = [](const auto&) {}, .event = {}, .isCancelled = true};
  return true;
}

bool Requests::take(const Frame& frame) {
  if (frame.kind == Frame::Kind::Message) {
    const auto found = m_waiting.extract(frame.id);
    if (found) found.mapped().reply(frame.body);
    return !found.empty();
  }
  const auto found = m_waiting.find(frame.id);
  if (frame.kind == Frame::Kind::Cancel || found == m_waiting.end()) return false;
  if (found->second.isCancelled) return true;
  const auto event = found->second.event;  // which may cancel its request
  if (event) event(frame.body);
  return static_cast<bool>(event);
}

void Requests::fail(Id id, const Error& why) {
  auto found = m_waiting.extract(id);
  if (!found.empty()) found.mapped().failure(why);
}

void Requests::refuse(const Error& why) {
  if (!m_brokenBy) m_brokenBy = why;
}

void Requests::failAll(const Error& why) {
  refuse(why);
  while (!m_waiting.empty()) fail(m_waiting.begin()->first, why);
}

}  // namespace mirvel::wire
