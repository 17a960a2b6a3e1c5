#pragma once

#include <memory>
#include <set>
#include <string>
#include <utility>

namespace mirvel {

/// Names of things that are being worked on, such as the path of a file that is being written. An operation holds a
/// claim while it lasts; others check `isClaimed` before they start. A claim doesn't exclude others: the same name can
/// be claimed several times. For one thread.
///
///     if (claims.isClaimed(path)) return;
///     m_claim = claims.claim(path);  // released when m_claim is assigned to or destroyed
class Claims {
  using Names = std::multiset<std::string>;

 public:
  /// Releases its name when it is destroyed or assigned to. Can be moved, and may outlive the `Claims`.
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

  /// Always succeeds.
  [[nodiscard]] Claim claim(const std::string& name) {
    m_names->insert(name);
    return {m_names, name};
  }
  /// Whether at least one claim for the name exists.
  bool isClaimed(const std::string& name) const { return m_names->contains(name); }

 private:
  std::shared_ptr<Names> m_names = std::make_shared<Names>();
};

}  // namespace mirvel
