#pragma once

#include <signal.h>

#include <memory>
#include <string>
#include <vector>

#include "core/files/ReadFile.h"
#include "core/files/Roots.h"
#include "core/propertylist/Reader.h"
#include "core/settings/Store.h"
#include "helpers/agent/AgentLock.h"
#include "helpers/agent/NotificationService.h"
#include "helpers/host/HostFixture.h"

namespace mirvel::agent {

/// The real agent on a temporary machine, with a bus and a notification service of its own.
class AgentFixture : public host::HostFixture {
 protected:
  void SetUp() override {
    if (!bus.start()) GTEST_SKIP() << "there is no dbus-daemon";
    serve();
  }
  ~AgentFixture() override { endAgent(); }

  void serve() { service = std::make_unique<NotificationService>(bus.address()); }

  /// Starts the agent, and returns when it watches and knows what was there before.
  void startAgent() { startAgent(machine); }
  void startAgent(const std::filesystem::path& where) {
    const auto started =
        agentRunner.run(MIRVEL_AGENT, {"--detach", "--root", where, "--program", program}, std::chrono::seconds(60));
    ASSERT_TRUE(started) << started.error().text();
    ASSERT_EQ(started->exitStatus, 0) << started->complaints;
    ASSERT_TRUE(host::eventually([&] {
      const auto bytes = readFile(Roots::below(where).ownAgent() / "known.plist", Store::largestFile);
      const auto memory = bytes ? propertylist::readDictionary(*bytes) : bytes.error();
      const auto* const kinds = memory ? memory->get<propertylist::Array>("Kinds") : nullptr;
      return kinds && kinds->size() == Kind::monitoredKinds.size();
    }));
  }
  /// Ends it, and returns when it has ended.
  void endAgent() const {
    const auto holder = AgentLock::holder(roots);
    if (!holder) return;
    ::kill(*holder, SIGTERM);
    EXPECT_TRUE(AgentLock::take(roots, AgentLock::Wait::Yes));
  }

  std::filesystem::path pathOf(Kind kind, const std::string& name) const { return *kind.folderURL(roots) / name; }
  std::filesystem::path write(Kind kind, const std::string& label, const std::string& command = "/bin/true") const {
    const auto file = pathOf(kind, label + ".plist");
    return folder.write(file.lexically_relative(folder.path()), testdata::jobText(label, {{"Program", command}}));
  }
  /// The titles and bodies of the notifications from a number on, once there are `count` in all.
  std::vector<std::string> told(std::size_t count, std::size_t from = 0) {
    std::vector<std::string> result;
    const auto shown = service->wait(count);
    for (std::size_t i = from; i < shown.size(); ++i) result.push_back(shown[i].title + ": " + shown[i].body);
    return result;
  }

  const std::filesystem::path machine = folder.path();
  const Roots roots = Roots::below(machine);
  PrivateBus bus{machine / "run"};
  std::unique_ptr<NotificationService> service;
  host::Signpost opened{machine / "opened"};
  /// Stands for the application: writes its argument and token to the signpost.
  const std::filesystem::path program = makeProgram();
  SystemProcessRunner agentRunner{{{"PATH", "/usr/bin:/bin"},
                                   {"HOME", machine},
                                   {"LC_ALL", "C.UTF-8"},
                                   {"DBUS_SESSION_BUS_ADDRESS", bus.address()}}};

 private:
  std::filesystem::path makeProgram() const {
    const auto file =
        folder.write("program", "#!/bin/sh\necho \"$1\" \"token:$XDG_ACTIVATION_TOKEN\" > " + opened.quoted() + "\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return file;
  }
};

}  // namespace mirvel::agent
