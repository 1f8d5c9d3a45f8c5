// An open dialog: its controls and what has happened to it. The OpaqueCocoaWindow pointer the
// handler receives is the address of this object.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "DialogScript.h"
#include "HostTypes.h"

namespace scribo::engine {

struct DialogWindow {
  int16_t resource = 0;
  std::string bundle; // the plug-in bundle whose resource and strings it uses
  std::string title;  // localised
  std::vector<DialogControl> controls;
  int16_t focus = 0;
  bool ended = false;
  size_t firstAlert = 0; // index in the alert log when the dialog opened
  DialogRecord record;

  DialogControl* Find(int16_t item) {
    for (auto& c : controls)
      if (c.id == item)
        return &c;
    return nullptr;
  }
  OpaqueCocoaWindow* window() { return reinterpret_cast<OpaqueCocoaWindow*>(this); }
};

} // namespace scribo::engine
