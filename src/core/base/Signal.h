#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace mirvel {

/// A place among the receivers of a signal, given up when it ends.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::shared_ptr<void> place) : m_place(std::move(place)) {}

 private:
  std::shared_ptr<void> m_place;
};

/// News of one kind. For the main thread.
template <typename... Arguments>
class Signal {
 public:
  using Receiver = std::function<void(const Arguments&...)>;

  /// Calls the receiver at each `post` for as long as the subscription lives.
  [[nodiscard]] Subscription subscribe(Receiver receiver) {
    auto place = std::make_shared<Receiver>(std::move(receiver));
    m_receivers.push_back(place);
    return Subscription(std::move(place));
  }

  /// Calls the receivers in the order of their subscriptions. They may subscribe and end subscriptions meanwhile: who
  /// has left isn't called any more, who is new is called at the next post.
  void post(const Arguments&... arguments) {
    std::erase_if(m_receivers, [](const auto& place) { return place.expired(); });
    const auto receivers = m_receivers;
    for (const auto& place : receivers) {
      if (const auto receiver = place.lock()) (*receiver)(arguments...);
    }
  }

 private:
  std::vector<std::weak_ptr<Receiver>> m_receivers;
};

}  // namespace mirvel
