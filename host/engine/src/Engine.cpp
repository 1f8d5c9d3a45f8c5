// The Engine facade: reset, view state, edits with undo, dialog scripts, logs and counters.
#include "Engine.h"

#include "EngineState.h"

namespace scribo::engine {

Engine& Engine::Instance() {
  static Engine engine;
  return engine;
}

Engine::Engine() : state_(new EngineState) {
  state_->data.ResetToEmpty();
}

Engine::~Engine() {
  // Frames and mass edits a plug-in never gave back are the host's to release at exit.
  for (LoadedFrame* frame : state_->frames)
    DeleteLoadedFrame(frame);
  if (state_->spareFrame)
    DeleteLoadedFrame(state_->spareFrame);
  for (MassEdit* edit : state_->massEdits)
    delete edit;
  delete state_;
}

void Engine::Reset() {
  EngineState& s = *state_;
  s.data.ResetToEmpty();
  s.windowData = WindowSystemData{};
  // Open dialogs keep their windows registered until they close.
  for (DialogWindow* dialog : s.dialogs)
    s.windowData.windows[dialog] = ScreenRect{0, 0, kDefaultDialogWidth, kDefaultDialogHeight};
  s.selection.reset();
  s.maxLayers = kMaxLayerCount;
  s.layerShown.fill(true);
  s.instrumentSlots.reset();
  s.editDepth = 0;
  s.editSnapshot.reset();
  s.editDescription.clear();
  s.undoSnapshot.reset();
  s.undoDescription.clear();
  s.progress = ProgressDisplay::Terminal;
  s.massEditSteps = 0;
  s.scripts.clear();
  s.interactive = nullptr;
  s.dialogHistory.clear();
  s.alerts.clear();
  s.alertEcho = true;
  s.calls.fill(0);
  s.failing.fill(false);
}

Document& Engine::document() {
  return state_->document;
}
WindowSystem& Engine::windows() {
  return state_->windows;
}

void Engine::SetSelection(const EREGION& region) {
  state_->selection = region;
}

void Engine::SetMaxLayers(int16_t count) {
  if (count >= 1 && count <= kMaxLayerCount)
    state_->maxLayers = count;
}

void Engine::SetLayerShown(int16_t layer, bool shown) {
  if (layer >= 0 && layer < kMaxLayerCount)
    state_->layerShown[size_t(layer)] = shown;
}
bool Engine::LayerShown(int16_t layer) const {
  return layer >= 0 && layer < state_->maxLayers && state_->layerShown[size_t(layer)];
}

void Engine::SetInstrumentSlots(std::vector<int16_t> instruments) {
  state_->instrumentSlots = std::move(instruments);
}

bool Engine::BeginEdit(std::string_view description) {
  EngineState& s = *state_;
  if (s.editDepth++ == 0) {
    s.editSnapshot = s.data;
    s.editDescription = std::string(description);
  }
  return true;
}

bool Engine::EndEdit() {
  EngineState& s = *state_;
  if (s.editDepth < 1)
    return false;
  if (--s.editDepth == 0) {
    s.undoSnapshot = std::move(s.editSnapshot);
    s.undoDescription = std::move(s.editDescription);
    s.editSnapshot.reset();
  }
  return true;
}

bool Engine::CancelEdit() {
  EngineState& s = *state_;
  if (s.editDepth < 1)
    return false;
  // Cancelling any level abandons the whole outermost edit: the document goes back to where
  // it started and the remaining brackets close without effect.
  if (s.editSnapshot)
    s.data = std::move(*s.editSnapshot);
  s.editSnapshot.reset();
  --s.editDepth;
  return true;
}

bool Engine::CanUndo() const {
  return state_->undoSnapshot.has_value();
}

bool Engine::Undo() {
  EngineState& s = *state_;
  if (!s.undoSnapshot || s.editDepth > 0)
    return false;
  s.data = std::move(*s.undoSnapshot);
  s.undoSnapshot.reset();
  s.undoDescription.clear();
  return true;
}

std::string Engine::LastEditDescription() const {
  return state_->undoDescription;
}

void Engine::SetProgressDisplay(ProgressDisplay mode) {
  state_->progress = mode;
}
int Engine::OpenMassEdits() const {
  return int(state_->massEdits.size());
}
long Engine::MassEditStepsReported() const {
  return state_->massEditSteps;
}

void Engine::QueueDialogScript(DialogScript script) {
  state_->scripts.push_back(std::move(script));
}
void Engine::SetInteractiveDialogs(DialogActionSource source) {
  state_->interactive = std::move(source);
}
void Engine::ClearDialogScripts() {
  state_->scripts.clear();
}
size_t Engine::QueuedDialogScripts() const {
  return state_->scripts.size();
}
const std::vector<DialogRecord>& Engine::DialogHistory() const {
  return state_->dialogHistory;
}

const std::vector<AlertRecord>& Engine::Alerts() const {
  return state_->alerts;
}
void Engine::ClearAlerts() {
  state_->alerts.clear();
}
void Engine::SetAlertEcho(bool toStandardError) {
  state_->alertEcho = toStandardError;
}

long Engine::CallCount(HostCall call) const {
  return call < HostCall::Count ? state_->calls[size_t(call)] : 0;
}
void Engine::ResetCallCounts() {
  state_->calls.fill(0);
}
int Engine::LoadedFrames() const {
  return int(state_->frames.size());
}

void Engine::SetFailing(HostCall call, bool failing) {
  if (call < HostCall::Count)
    state_->failing[size_t(call)] = failing;
}

} // namespace scribo::engine
