#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/catalogue/Job.h"

namespace mirvel {

struct WindowContext;

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

/// Fills the menu of a job, in all modes but the timeline.
void jobContextMenu(const WindowContext& context, JobMenu& menu, const std::shared_ptr<Job>& job);
/// Fills it in the timeline: without deletion.
void jobContextMenuWithoutDelete(const WindowContext& context, JobMenu& menu, const std::shared_ptr<Job>& job);

/// The menu for a click on a job, as the current mode fills it. Empty for null and for a job without a file.
JobMenu menuForJob(const WindowContext& context, const std::shared_ptr<Job>& job);

}  // namespace mirvel
