#pragma once

#include <memory>
#include <set>
#include <string>
#include <utility>

namespace mirvel {

/// What is being worked on, by name. Each piece of work holds a claim for as long as it lasts, so that no other begins
/// with the same thing. For the main thread.
class Claims {
  using Names = std::multiset<std::string>;

 public:
  /// Ends when it is destroyed or assigned to. May outlive the `Claims`.
  class Claim {
   public:
    Claim() = default;
    Claim(Claim&& other) noexcept : m_names(std::exchange(other.m_names, {})), m_name(std::move(other.m_name)) {}
    Claim& operator=(Claim&& other) noexcept {
      const Claim before(std::move(*this));
      m_names = std::exchange(other.m_names, {});
      m_name = std::move(other.m_name);
      return *this;
    }
    Claim(const Claim&) = delete;
    Claim& operator=(const Claim&) = delete;
    ~Claim() {
      if (const auto names = m_names.lock()) names->erase(names->find(m_name));
    }

   private:
    friend class Claims;
    Claim(const std::shared_ptr<Names>& names, std::string name) : m_names(names), m_name(std::move(name)) {}
    std::weak_ptr<Names> m_names;
    std::string m_name;
  };

  [[nodiscard]] Claim claim(const std::string& name) {
    m_names->insert(name);
    return {m_names, name};
  }
  bool isClaimed(const std::string& name) const { return m_names->contains(name); }

 private:
  std::shared_ptr<Names> m_names = std::make_shared<Names>();
};

}  // namespace mirvel
