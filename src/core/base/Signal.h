#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace mirvel {

/// Keeps a receiver subscribed to a signal. Destroying it, or assigning to it, ends the subscription. May outlive the
/// signal.
class Subscription {
 public:
  Subscription() = default;
  explicit Subscription(std::shared_ptr<void> receiver) : m_receiver(std::move(receiver)) {}

 private:
  std::shared_ptr<void> m_receiver;
};

/// An event to which any number of receivers can subscribe. For one thread.
///
///     Signal<int> changed;
///     m_subscription = changed.subscribe([this](int value) { show(value); });
///     changed.post(5);
template <typename... Arguments>
class Signal {
 public:
  using Receiver = std::function<void(const Arguments&...)>;

  /// Calls the receiver at each `post` until the subscription ends, which must be before anything that the receiver
  /// uses is destroyed.
  [[nodiscard]] Subscription subscribe(Receiver receiver) {
    auto kept = std::make_shared<Receiver>(std::move(receiver));
    m_receivers.push_back(kept);
    return Subscription(std::move(kept));
  }

  /// Calls the receivers in the order in which they subscribed. They may add and end subscriptions, also their own: a
  /// receiver whose subscription has ended isn't called any more, a new one only at the next post. They may also post.
  void post(const Arguments&... arguments) {
    std::erase_if(m_receivers, [](const auto& receiver) { return receiver.expired(); });
    const auto receivers = m_receivers;  // a copy: receivers may subscribe
    for (const auto& weak : receivers) {
      if (const auto receiver = weak.lock()) (*receiver)(arguments...);
    }
  }

 private:
  std::vector<std::weak_ptr<Receiver>> m_receivers;
};

}  // namespace mirvel
