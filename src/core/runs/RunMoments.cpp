#include "core/runs/RunMoments.h"

#include <chrono>
#include <cmath>
#include <utility>

namespace mirvel {

namespace {

std::chrono::sys_seconds wholeSecond(double seconds) {
  return std::chrono::sys_seconds(std::chrono::seconds(static_cast<std::int64_t>(std::floor(seconds))));
}

}  // namespace

RunMoments::RunMoments(const Localize& localize, Zone zone) : m_localize(localize), m_zone(std::move(zone)) {}

std::string RunMoments::text(double moment, double now) const {
  constexpr double latest = 253'402'300'799;  // the end of the year 9999
  if (!(moment >= 0 && moment <= latest && now >= 0 && now <= latest)) return {};
  constexpr double minute = 60;
  if (!m_texts || std::abs(now - m_checked) >= minute) {
    m_checked = now;
    std::string zone = m_zone();
    if (!m_texts || m_texts->zone() != zone) m_texts = std::make_unique<const MomentTexts>(m_localize, std::move(zone));
  }
  return m_texts->text(wholeSecond(moment), wholeSecond(now));
}

RunMoments::Day RunMoments::dayOf(double moment) const {
  using std::chrono::days;
  const auto second = wholeSecond(moment);
  const ZoneStretches zone(m_zone(), second - days(2), second + days(2));
  const auto day = std::chrono::floor<days>(zone.local(second));
  const auto secondsOf = [&](std::chrono::local_days of) {
    return static_cast<double>(zone.moment(of).time_since_epoch().count());
  };
  return {secondsOf(day), secondsOf(day + days(1))};
}

}  // namespace mirvel
