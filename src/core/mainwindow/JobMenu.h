#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/catalogue/Job.h"

namespace mirvel {

struct WindowContext;

/// The items of a job's context menu, for the shell to show.
class JobMenu {
 public:
  struct Item {
    enum class Type { Title, Separator, Action };

    Type type = Type::Action;
    std::string title = {};
    std::function<void()> action = {};  ///< empty unless `type` is `Action`
    std::string whyDisabled = {};       ///< a sentence, if the item can't be chosen now
  };

  /// Adds a heading, which can't be chosen.
  void addTitle(std::string title) { m_items.push_back({Item::Type::Title, std::move(title), {}, {}}); }
  void addSeparator() { m_items.push_back({Item::Type::Separator, {}, {}, {}}); }
  void add(std::string title, std::function<void()> action, std::string whyDisabled = {}) {
    m_items.push_back({Item::Type::Action, std::move(title), std::move(action), std::move(whyDisabled)});
  }
  const std::vector<Item>& items() const { return m_items; }

 private:
  std::vector<Item> m_items;
};

/// Fills the menu of a job, for all modes except the timeline. The actions keep the job alive; `context` must outlive
/// them.
void jobContextMenu(const WindowContext& context, JobMenu& menu, const std::shared_ptr<Job>& job);
/// The same for the timeline, without the item that deletes the job.
void jobContextMenuWithoutDelete(const WindowContext& context, JobMenu& menu, const std::shared_ptr<Job>& job);

/// The context menu of a job, filled by the current mode. Empty if `job` is null or hasn't been saved yet.
JobMenu menuForJob(const WindowContext& context, const std::shared_ptr<Job>& job);

}  // namespace mirvel
