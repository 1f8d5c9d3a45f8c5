// The reference host engine as host programs see it: the process's one document, the view state
// the host functions report (selection, layers), dialog scripts, the alert log, the simulated
// window system, edit brackets with undo, call counters and failure switches for tests.
//
// The host functions (SX_...) exported by the engine act on Engine::Instance(). A host program
// links the engine and drives it through this API; a plug-in reaches it only through the
// exported C functions.
//
// Thread: host's main thread. Nothing here is guarded.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "AlertLog.h"
#include "DialogScript.h"
#include "Document.h"
#include "EREGION.h"
#include "EngineApi.h"
#include "WindowSystem.h"

namespace scribo::engine {

// Host functions the engine counts, and the ones a test can make fail.
enum class HostCall : uint8_t {
  LoadTGF,
  FreeTGF,
  SaveTGF,
  InsertEXENTRY,
  DeleteEXENTRY,
  RebeamRegion,
  LoadEData,
  SaveEData,
  CreateEData,
  DeleteEData,
  NextEData,
  PreviousEData,
  StartScriboEdit,
  EndScriboEdit,
  CancelScriboEdit,
  StartMassEdit,
  MassEditProgress,
  EndMassEdit,
  Dialog,
  AlertMessage,
  Count
};

// How mass edits show their progress.
enum class ProgressDisplay : uint8_t {
  Terminal, // a bar on standard error when it is a terminal, nothing otherwise (default)
  Off,      // never
};

struct EngineState;

class SCRIBO_ENGINE_API Engine {
public:
  static Engine& Instance();

  // Back to a fresh start: empty document, no selection, four layers all shown, no scripts,
  // empty logs, counters at 0, no failures, default screen and keyboard, no undo. Frames still
  // loaded stay valid for SX_FreeTGF.
  void Reset();

  Document& document();
  WindowSystem& windows();

  // --- View state the host functions report ----------------------------------------------
  void SetSelection(const EREGION& region); // SX_GetCurERegions answers it; none after Reset
  // SX_GetMaxLayers (1..4; default 4) and SX_GetShowLayer (default: all shown).
  void SetMaxLayers(int16_t count);
  void SetLayerShown(int16_t layer, bool shown);
  bool LayerShown(int16_t layer) const;
  // Instruments of the slots SX_SlotToInst answers for (slot 1 first). Default: one slot per
  // staff, answering the staff number.
  void SetInstrumentSlots(std::vector<int16_t> instruments);

  // --- Edits ---------------------------------------------------------------------------------
  // The same brackets as SX_StartScriboEdit / SX_EndScriboEdit / SX_CancelScriboEdit: the
  // outermost start takes a snapshot of the document; cancel restores it; end keeps it as the
  // undo step.
  bool BeginEdit(std::string_view description);
  bool EndEdit();    // false when no edit is open
  bool CancelEdit(); // false when no edit is open
  bool CanUndo() const;
  bool Undo(); // restores the document as it was before the last ended edit
  std::string LastEditDescription() const;

  void SetProgressDisplay(ProgressDisplay mode);
  int OpenMassEdits() const;
  long MassEditStepsReported() const; // sum of SX_MassEditProgress steps since Reset

  // --- Dialogs -------------------------------------------------------------------------------
  void QueueDialogScript(DialogScript script);           // for the next SX_Dialog not yet scripted
  void SetInteractiveDialogs(DialogActionSource source); // empty function: none
  void ClearDialogScripts();
  size_t QueuedDialogScripts() const;
  const std::vector<DialogRecord>& DialogHistory() const;

  // --- Alerts --------------------------------------------------------------------------------
  const std::vector<AlertRecord>& Alerts() const;
  void ClearAlerts();
  void SetAlertEcho(bool toStandardError); // default true

  // --- Counters and failure switches for tests ---------------------------------------------
  long CallCount(HostCall call) const;
  void ResetCallCounts();
  int LoadedFrames() const; // loaded and not yet freed
  // While set, the call refuses: SX_LoadTGF gives null, SX_InsertEXENTRY, SX_SaveTGF and
  // SX_CreateEData give 0 and change nothing. Other calls ignore the switch.
  void SetFailing(HostCall call, bool failing);

  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  EngineState& state() { return *state_; } // the engine's own implementation

private:
  Engine();
  ~Engine();
  EngineState* state_;
};

} // namespace scribo::engine
