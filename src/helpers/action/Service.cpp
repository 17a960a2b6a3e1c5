#include "helpers/action/Service.h"

#include "helpers/wire/FrameSocket.h"

namespace mirvel {

Result<void> serve(int socket, const std::function<propertylist::Dictionary(const propertylist::Dictionary&)>& handle,
                   const std::function<bool()>& isDone) {
  wire::ignoreHangUps(socket);
  wire::FrameReader reader(wire::largestRequest);
  while (!isDone()) {
    const auto frame = wire::receiveFrame(socket, reader);
    if (!frame) return frame.error();
    if (!*frame) return {};
    auto sent = wire::sendFrame(socket, {.id = (*frame)->id, .body = handle((*frame)->body)});
    if (!sent) return sent;
  }
  return {};
}

}  // namespace mirvel
