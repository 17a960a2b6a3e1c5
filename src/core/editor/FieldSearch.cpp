#include "core/editor/FieldSearch.h"

#include <algorithm>

#include "core/locale/Localize.h"
#include "core/text/Strings.h"

namespace mirvel {

namespace {

using jobfile::Plist;

/// The words for the controls of a section that aren't fields of the table.
std::string_view otherKeywords(StackSection section) {
  switch (section) {
    case StackSection::General:
      return "Program ProgramArguments command run for icon user agent daemon";
    case StackSection::When:
      return "StartInterval StartCalendarInterval Minute Hour Day Weekday Month schedule time calendar repeat";
    case StackSection::LaunchEvents:
      return "event notification iokit matching";
    case StackSection::MachServices:
      return "ResetAtClose HideUntilCheckIn DrainMessagesOnCrash ExceptionServer HostSpecialPort TaskSpecialPort xpc";
    case StackSection::Sockets:
      return "SockType SockPassive SockNodeName SockServiceName SockFamily SockProtocol SockPathName "
             "SecureSocketWithKey SockPathOwner SockPathGroup SockPathMode Bonjour MulticastGroup network port listen";
    default:
      return {};
  }
}

bool isScheduleEdited(const Plist& plist, const Plist& read, const Unfinished& unfinished) {
  return !unfinished.rules.empty() || plist.startInterval != read.startInterval ||
         plist.startCalendarInterval != read.startCalendarInterval;
}

/// A key with a nested dictionary, of which the record holds only a part.
bool isTreeEdited(Plist::CodingKeys key, const Plist& plist, const Plist& read, const Unfinished& unfinished) {
  return unfinished.trees.contains(Plist::text(key)) || plist.savedValue(key) != read.savedValue(key);
}

bool isAnyEdited(std::span<const Field> fields, const Plist& plist, const Plist& read, const Unfinished& unfinished) {
  return std::any_of(fields.begin(), fields.end(),
                     [&](const Field& field) { return isEdited(field, plist, read, unfinished); });
}

}  // namespace

FieldSearch::FieldSearch(std::string_view text, const Localize& localize) : m_localize(&localize) {
  const std::string folded = String::fold(text);
  for (const std::string_view word : String::split(folded, ' ')) {
    if (!word.empty()) m_words.emplace_back(word);
  }
}

bool FieldSearch::matches(std::initializer_list<std::string_view> texts) const {
  std::string all;
  for (const std::string_view text : texts) all.append(text).append("\n");
  const std::string folded = String::fold(all);
  return std::all_of(m_words.begin(), m_words.end(),
                     [&](const std::string& word) { return folded.find(word) != std::string::npos; });
}

bool FieldSearch::matches(const Field& field) const {
  return matches({field.key, titleOf(field, *m_localize), field.keywords});
}

bool FieldSearch::matchesAnyOf(StackSection section) const {
  const auto matchesOne = [this](const Field& field) {
    return field.control != Field::Control::None && matches(field);
  };
  const auto fields = fieldsOf(section);
  const auto conditions = keepAliveFields();
  const bool isCondition =
      section == StackSection::When && std::any_of(conditions.begin(), conditions.end(), matchesOne);
  return isCondition || std::any_of(fields.begin(), fields.end(), matchesOne) || matches({otherKeywords(section)});
}

Plist readRecord(const Plist& plist) {
  auto read = plist.asRead();
  return read ? *std::move(read) : Plist();
}

bool isEdited(const Field& field, const Plist& plist, const Plist& read, const Unfinished& unfinished) {
  return unfinished.texts.contains(field.key) || unfinished.tables.contains(field.key) ||
         field.access.read(plist) != field.access.read(read);
}

bool isEdited(StackSection section, const Plist& plist, const Plist& read, const Unfinished& unfinished) {
  if (isAnyEdited(fieldsOf(section), plist, read, unfinished)) return true;
  switch (section) {
    case StackSection::General:
      return plist.run != read.run;
    case StackSection::When:
      return isScheduleEdited(plist, read, unfinished) || isAnyEdited(keepAliveFields(), plist, read, unfinished);
    case StackSection::LaunchEvents:
      return isTreeEdited(Plist::CodingKeys::LaunchEvents, plist, read, unfinished);
    case StackSection::MachServices:
      return isTreeEdited(Plist::CodingKeys::MachServices, plist, read, unfinished);
    case StackSection::Sockets:
      return isTreeEdited(Plist::CodingKeys::Sockets, plist, read, unfinished);
    default:
      return false;
  }
}

}  // namespace mirvel
