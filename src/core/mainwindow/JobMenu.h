#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/catalogue/Job.h"

namespace mirvel {

class Program;

/// The contextual menu of a job, as rows for the shell to show.
class JobMenu {
 public:
  struct Item {
    enum class Type { Title, Separator, Action };

    Type type = Type::Action;
    std::string title = {};
    std::function<void()> action = {};
  };

  void clear() { m_items.clear(); }
  /// A heading, which can't be chosen.
  void addTitle(std::string title) { m_items.push_back({Item::Type::Title, std::move(title), {}}); }
  void addSeparator() { m_items.push_back({Item::Type::Separator, {}, {}}); }
  void add(std::string title, std::function<void()> action) {
    m_items.push_back({Item::Type::Action, std::move(title), std::move(action)});
  }
  const std::vector<Item>& items() const { return m_items; }

 private:
  std::vector<Item> m_items;
};

/// The menu that all modes but one give a job.
void jobContextMenu(Program& program, JobMenu& menu, const std::shared_ptr<Job>& job);
/// The menu of that one mode.
void jobContextMenuWithoutDelete(Program& program, JobMenu& menu, const std::shared_ptr<Job>& job);

}  // namespace mirvel
