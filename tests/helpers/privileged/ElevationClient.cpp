#include <unistd.h>

#include <iostream>
#include <optional>
#include <string>

#include "core/base/ThreadWorkQueue.h"
#include "helpers/privileged/SystemHelperConnections.h"
#include "helpers/process/CleanState.h"
#include "support/JobText.h"
#include "support/ThreadQueue.h"

namespace {

using namespace mirvel;

const char* nameOf(HelperConnections::Refusal refusal) {
  constexpr const char* names[] = {"unknown", "not authorised", "no agent", "no service", "no tool"};
  return names[static_cast<std::size_t>(refusal)];
}

std::string write(HelperConnections::Privileged& privileged, const std::string& label, testdata::ThreadQueue& queue) {
  std::optional<std::string> result;
  privileged.connection->run(
      {{"kind", 0},
       {"path", "/etc/mirvel/LaunchDaemons/" + label + ".plist"},
       {"string", testdata::jobText(label, {{"Program", "/bin/true"}})},
       {"authData", propertylist::Data{privileged.authData}}},
      [&](const propertylist::Dictionary& reply) { result = reply.find("error") ? "error" : "written"; },
      [&](const Error& error) { result = "failed: " + error.text(); });
  return queue.runUntil([&] { return result.has_value(); }) ? *result : "no answer";
}

}  // namespace

/// Takes the place of the application in a test of the system's real elevation: connects to the helper in a folder,
/// then writes a job for each line of the standard input. Prints the outcome of each step.
int main(int argc, char** argv) {
  if (argc != 2) return 2;
  forbidTracing();
  const Environment environment = processEnvironment();
  testdata::ThreadQueue queue;
  ThreadWorkQueue background("Authorisation");
  SystemHelperConnections connections(
      {.queue = queue,
       .background = background,
       .programs = HelperPrograms::in(argv[1], Roots::forThisMachine(environment), environment, {})});
  std::optional<HelperConnections::Privileged> answer;
  std::cout << "asking" << std::endl;
  connections.connectToPrivileged([&](auto privileged) { answer = std::move(privileged); },
                                  [&](const Error& error) {
                                    std::cout << "failed: " << error.text() << std::endl;
                                    ::_exit(1);
                                  });
  while (!answer) (void)queue.runUntil([&] { return answer.has_value(); });
  if (!answer->connection) {
    std::cout << (answer->isCancelled ? "cancelled" : nameOf(answer->refusal)) << std::endl;
    return 0;
  }
  std::cout << "connected" << std::endl;
  for (std::string label; std::getline(std::cin, label);) std::cout << write(*answer, label, queue) << std::endl;
  return 0;
}
