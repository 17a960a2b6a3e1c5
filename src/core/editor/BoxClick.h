#pragma once

#include <optional>

namespace mirvel {

/// A click on a check box, which then is on or off.
struct BoxClick {
  bool isOn = false;
  bool isOptionHeld = false;

  /// What most boxes make of their key: true, false, or with Option held when the box goes off, no key at all.
  std::optional<bool> value() const {
    if (!isOn && isOptionHeld) return std::nullopt;
    return isOn;
  }
};

}  // namespace mirvel
