// Everything the engine holds, behind Engine::Instance(). Internal to the engine.
#pragma once

#include <algorithm>
#include <array>
#include <deque>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "DialogWindow.h"
#include "DocumentData.h"
#include "Engine.h"
#include "LoadedFrame.h"

namespace scribo::engine {

struct WindowSystemData {
  std::optional<ScreenRect> mainScreen = ScreenRect{0, 0, 1440, 900};
  std::unordered_map<const void*, ScreenRect> windows;
  uint64_t modifiers = 0;
  std::array<unsigned char, 16> keys{};
};

struct MassEdit {
  uint32_t jobSize = 0;
  long done = 0;
  bool drawn = false;
};

struct EngineState {
  DocumentData data;
  Document document{data};
  WindowSystemData windowData;
  WindowSystem windows{windowData};

  std::optional<EREGION> selection;
  int16_t maxLayers = kMaxLayerCount;
  std::array<bool, kMaxLayerCount> layerShown{true, true, true, true};
  std::optional<std::vector<int16_t>> instrumentSlots;

  int editDepth = 0;
  std::optional<DocumentData> editSnapshot; // taken by the outermost open edit
  std::string editDescription;
  std::optional<DocumentData> undoSnapshot; // before the last ended edit
  std::string undoDescription;

  ProgressDisplay progress = ProgressDisplay::Terminal;
  std::unordered_set<MassEdit*> massEdits;
  long massEditSteps = 0;

  // Frames a plug-in has loaded and not freed. Plug-ins hold one or a few at a time, so a list
  // searched from its end (the last loaded) is the quickest way to check the ones they pass.
  std::vector<LoadedFrame*> frames;
  LoadedFrame* spareFrame = nullptr; // the last one freed, with its array, for the next load

  std::deque<DialogScript> scripts;
  DialogActionSource interactive;
  std::vector<DialogRecord> dialogHistory;
  std::unordered_set<DialogWindow*> dialogs;

  std::vector<AlertRecord> alerts;
  bool alertEcho = true;

  std::array<long, size_t(HostCall::Count)> calls{};
  std::array<bool, size_t(HostCall::Count)> failing{};

  long& Count(HostCall call) { return calls[size_t(call)]; }
  bool Failing(HostCall call) const { return failing[size_t(call)]; }
  LoadedFrame* Frame(EXTGF2005a* frame) {
    auto* loaded = reinterpret_cast<LoadedFrame*>(frame);
    auto it = std::find(frames.rbegin(), frames.rend(), loaded);
    return it == frames.rend() ? nullptr : loaded;
  }
  DialogWindow* Dialog(const void* window) {
    auto* dialog = static_cast<DialogWindow*>(const_cast<void*>(window));
    return window && dialogs.count(dialog) ? dialog : nullptr;
  }
  MassEdit* Mass(void* handle) {
    auto* edit = static_cast<MassEdit*>(handle);
    return handle && massEdits.count(edit) ? edit : nullptr;
  }
};

// The engine's state; the host functions act on it.
inline EngineState& State() {
  return Engine::Instance().state();
}

} // namespace scribo::engine
