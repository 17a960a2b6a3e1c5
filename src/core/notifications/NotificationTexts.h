#pragma once

#include <string>

#include "core/base/Const.h"
#include "core/locale/Localize.h"
#include "core/text/Bidirectional.h"

namespace mirvel {

/// The texts of the notifications in the preferences.
class NotificationTexts : public Texts {
 public:
  explicit NotificationTexts(const Localize& localize) : Texts(localize), m_localize(localize) {}

  std::string notifications() const { return text("Notifications"); }
  std::string explanation() const {
    return text(
        "Tells you when a background job is added, changed or removed, also while Mirvel isn’t running. Changes that "
        "you make in Mirvel aren’t announced.");
  }
  std::string runAgent() const { return text("Notify about background jobs"); }
  std::string runAgentDescription() const { return joined(text("Agent"), m_localize.run()); }
  std::string tellFailures() const { return text("Also when one of your jobs fails, and when it works again"); }
  std::string cantSwitch() const { return text("The notifications couldn’t be switched on or off"); }
  std::string unavailable() const { return text("Notifications aren’t available on this computer."); }

  std::string all() const { return text("All"); }
  std::string exclude() const { return text("Exclude"); }
  std::string changes() const { return text("Changes"); }
  std::string failures() const { return text("Failures"); }
  std::string prefix() const { return text("Prefix"); }
  std::string add() const { return text("Add"); }
  std::string addPrefix() const { return joined(add(), prefix()); }
  std::string deletePrefix() const { return joined(m_localize.delete_(), prefix()); }
  std::string excludeExplanation() const {
    return text("There are no notifications about jobs whose names begin with one of these.");
  }
  std::string noJobs() const { return text("No Jobs"); }

 private:
  std::string joined(const std::string& first, const std::string& second) const {
    return bidirectionalString({first, second}, Const::separator, m_localize.isRightToLeft());
  }

  const Localize& m_localize;
};

}  // namespace mirvel
