#include "helpers/wire/Requests.h"

#include <utility>

namespace mirvel::wire {

std::int64_t Requests::add(HelperConnection::Reply reply, HelperConnection::Failure failure) {
  m_waiting.emplace(++m_lastId, Waiting{std::move(reply), std::move(failure)});
  return m_lastId;
}

bool Requests::answer(const Frame& frame) {
  auto found = m_waiting.extract(frame.id);
  if (found.empty()) return false;
  const propertylist::Value* const error = frame.body.find("error");
  if (error && !error->as<propertylist::Dictionary>()) {
    found.mapped().failure({.code = Error::Code::Malformed, .message = "the helper's answer can't be understood"});
  } else {
    found.mapped().reply(frame.body);
  }
  return true;
}

void Requests::fail(std::int64_t id, const Error& why) {
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
