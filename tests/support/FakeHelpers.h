#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/ports/HelperConnection.h"
#include "core/propertylist/Reader.h"

namespace mirvel::testdata {

/// Replaces both helpers: records the requests, which the test answers.
class FakeHelpers final : public HelperConnections {
 public:
  struct Request {
    bool isPrivileged = false;
    propertylist::Dictionary body;
    HelperConnection::Reply reply;
    HelperConnection::Failure failure;
    HelperConnection::Event event = {};
    bool isCancelled = false;

    const propertylist::Value& at(const std::string& key) const {
      const propertylist::Value* value = body.find(key);
      if (!value) throw std::runtime_error("no " + key);
      return *value;
    }
    std::string text(const std::string& key) const {
      const auto* text = body.get<std::string>(key);
      return text ? *text : "(none)";
    }
    int kind() const { return static_cast<int>(*at("kind").as<propertylist::Integer>()->toInt64()); }
  };

  std::vector<Request> requests = {};
  std::vector<std::string> ended = {};  ///< labels of invalidated connections
  /// The content of the last job file that was to be written; empty if there is none.
  propertylist::Dictionary written() const {
    if (requests.empty()) return {};
    const auto document = propertylist::read(requests.back().text("string"));
    const propertylist::Value value = document ? document->value() : propertylist::Value(false);
    const auto* content = value.as<propertylist::Dictionary>();
    return content ? *content : propertylist::Dictionary();
  }

  bool canConnect = true;
  bool failsWithConnection = true;  ///< a failing request means that the helper has died
  bool isHandshakeHeld = false;     ///< until the user has answered the password dialog
  std::function<void()> whenAsked = [] {};
  PrivilegedReply privilegedReply;
  HelperConnection::Failure privilegedFailure;

  std::unique_ptr<HelperConnection> connectToAction() override {
    return canConnect ? std::make_unique<Connection>(*this, false) : nullptr;
  }
  void connectToPrivileged(PrivilegedReply reply, HelperConnection::Failure failure) override {
    privilegedReply = std::move(reply);
    privilegedFailure = std::move(failure);
    if (!isHandshakeHeld) authorise();
  }
  void authorise() { privilegedReply({.connection = std::make_unique<Connection>(*this, true), .authData = "secret"}); }

 private:
  class Connection final : public HelperConnection {
   public:
    Connection(FakeHelpers& owner, bool isPrivileged) : m_owner(owner), m_isPrivileged(isPrivileged) {}
    Id run(const propertylist::Dictionary& request, Reply reply, Failure failure, Event event) override {
      m_owner.requests.push_back({m_isPrivileged, request, std::move(reply), std::move(failure), std::move(event)});
      const auto id = static_cast<Id>(m_owner.requests.size());
      m_owner.whenAsked();
      return id;
    }
    void cancel(Id request) override { m_owner.requests.at(static_cast<std::size_t>(request) - 1).isCancelled = true; }
    bool hasFailed() const override { return m_owner.failsWithConnection; }
    void invalidate() override { m_owner.ended.push_back(m_isPrivileged ? "privileged" : "action"); }

   private:
    FakeHelpers& m_owner;
    bool m_isPrivileged;
  };
};

}  // namespace mirvel::testdata
