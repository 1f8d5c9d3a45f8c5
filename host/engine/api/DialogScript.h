// Scripting the engine's modal dialogs.
//
// SX_Dialog builds the controls of the plug-in's dialog resource, sends 272, then plays
// actions one by one until the handler calls SX_EndDialog; then it sends 2 and returns:
//   TypeText(item, text)  the field's text and numeric value change, then 273 with 0x202 << 16
//   Click(item)           273 with extra 0 (buttons, radios and palette buttons change no value
//                         themselves: the handler sets them)
//   Toggle(item)          a check box's value flips, then 273 with extra 0
//   MoveTo(left, top)     the user drags the dialog: its top-left corner goes to (left, top) in
//                         screen coordinates (y upward); no message
// Actions come from the scripts queued for the next dialogs, one script per SX_Dialog; without
// a script from the interactive source; without either, or when a script runs out, the host
// presses Cancel (item 2) and, if the handler still does not end the dialog, ends it itself.
//
// Thread: host's main thread.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "AlertLog.h"
#include "EngineApi.h"
#include "WindowSystem.h"

namespace scribo::engine {

struct DialogAction {
  enum class Kind : uint8_t { Type, Click, Toggle, Move };
  Kind kind = Kind::Click;
  int16_t item = 0;
  std::string text; // Type: UTF-8
  double left = 0;  // Move
  double top = 0;   // Move

  static DialogAction TypeText(int16_t item, std::string text) {
    return {Kind::Type, item, std::move(text)};
  }
  static DialogAction Click(int16_t item) { return {Kind::Click, item, {}}; }
  static DialogAction Toggle(int16_t item) { return {Kind::Toggle, item, {}}; }
  static DialogAction MoveTo(double left, double top) { return {Kind::Move, 0, {}, left, top}; }
};
using DialogScript = std::vector<DialogAction>;

enum class ControlKind : uint8_t { Button, Radio, Checkbox, Number, Text, Label };

struct DialogControl {
  int16_t id = 0;
  ControlKind kind = ControlKind::Label;
  std::string group;    // "" when none (palette buttons and radios carry one)
  std::string labelKey; // key into the plug-in's strings table, e.g. "20256,1"
  std::string label;    // the localised label (UTF-8); the key when no text was found
  int32_t value = 0;    // numeric value; 0/1 for radios, check boxes and palette buttons
  std::string text;     // text of number and text fields (UTF-8)
  bool enabled = true;
  bool visible = true;
};

// What an interactive source (the terminal, the web page) sees before it picks the next action.
struct DialogView {
  int16_t resource = 0;
  std::string title; // the localised title; "" when the resource names none
  ScreenRect frame;  // the dialog window's frame on the simulated screen
  std::vector<DialogControl> controls;
  int16_t focus = 0;               // item that has the focus; 0: none
  std::vector<AlertRecord> alerts; // raised since the dialog opened, oldest first
  const DialogControl* Find(int16_t item) const {
    for (const auto& c : controls)
      if (c.id == item)
        return &c;
    return nullptr;
  }
};

// Gives the next action, or nullopt to give up (the host then presses Cancel).
using DialogActionSource = std::function<std::optional<DialogAction>(const DialogView&)>;

// One message the host sent to the handler, and what the handler answered.
struct DialogMessage {
  unsigned int message = 0;
  long item = 0;
  long extra = 0;
  unsigned char result = 0;
};

enum class DialogEnd : uint8_t {
  ByHandler,    // the handler called SX_EndDialog during a scripted or interactive action
  ByCancel,     // actions ran out; the handler ended the dialog on the host's Cancel
  ForcedByHost, // actions ran out and the handler did not end the dialog on Cancel
};

// What one SX_Dialog did, for inspection after it returned.
struct DialogRecord {
  int16_t resource = 0;
  std::vector<DialogMessage> messages; // 272, the 273s, 2
  std::vector<int16_t> focusChanges;   // items given to SX_SetDlgFocus, in order
  DialogView finalState;               // controls when message 2 was sent
  DialogEnd end = DialogEnd::ByHandler;
  size_t actionsPlayed = 0; // scripted or interactive, excluding the host's Cancel
};

} // namespace scribo::engine
