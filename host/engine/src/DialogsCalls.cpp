// Modal dialogs: SX_Dialog plays a script (or an interactive source) against the plug-in's
// handler; the control calls read and write the open dialog's controls.
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "BundleStrings.h"
#include "DialogResource.h"
#include "EngineState.h"
#include "HostExport.h"
#include "TextCodec.h"

using namespace scribo::engine;
using scribo::MacRomanToUtf8, scribo::Utf16ToUtf8, scribo::Utf8ToMacRoman, scribo::Utf8ToUtf16;

namespace {

constexpr long kCodeFieldChanged =
    0x202; // notification code of a typed field, in bits 16..31 of `extra`
constexpr int16_t kCancelItem = 2;

bool IsField(const DialogControl& c) {
  return c.kind == ControlKind::Number || c.kind == ControlKind::Text;
}

// A field's numeric value is what its text shows: the leading integer, 0 when there is none.
int32_t NumberOf(const std::string& text) {
  errno = 0;
  long value = std::strtol(text.c_str(), nullptr, 10);
  if (errno == ERANGE)
    return value < 0 ? INT32_MIN : INT32_MAX;
  return int32_t(std::clamp<long>(value, INT32_MIN, INT32_MAX));
}

void SetFieldText(DialogControl& c, std::string text) {
  c.value = NumberOf(text);
  c.text = std::move(text);
}

DialogView ViewOf(const EngineState& s, const DialogWindow& d) {
  DialogView view;
  view.resource = d.resource;
  view.title = d.title;
  if (auto frame = s.windowData.windows.find(&d); frame != s.windowData.windows.end())
    view.frame = frame->second;
  view.controls = d.controls;
  view.focus = d.focus;
  if (d.firstAlert < s.alerts.size())
    view.alerts.assign(s.alerts.begin() + long(d.firstAlert), s.alerts.end());
  return view;
}

void Send(DialogWindow& d, SF_DialogHandlerUPP handler, unsigned int message, long item, long extra,
          void* user) {
  DialogMessage sent{message, item, extra, 0};
  sent.result = handler(d.window(), message, item, extra, user);
  d.record.messages.push_back(sent);
}

ScreenRect OpeningFrame(const EngineState& s) {
  ScreenRect frame{0, 0, kDefaultDialogWidth, kDefaultDialogHeight};
  if (const auto& screen = s.windowData.mainScreen) {
    frame.x = screen->x + (screen->width - frame.width) / 2;
    frame.y = screen->y + (screen->height - frame.height) / 2;
  }
  return frame;
}

void Refuse(const DialogWindow& d, const DialogAction& action, const char* why) {
  std::fprintf(stderr, "dialog %d: item %d %s; action ignored\n", d.resource, action.item, why);
}

void Play(EngineState& s, DialogWindow& d, const DialogAction& action, SF_DialogHandlerUPP handler,
          void* user) {
  if (action.kind == DialogAction::Kind::Move) {
    auto& frame = s.windowData.windows[&d];
    frame.x = action.left;
    frame.y = action.top - frame.height;
    return;
  }
  DialogControl* c = d.Find(action.item);
  if (!c)
    return Refuse(d, action, "does not exist");
  if (!c->enabled || !c->visible)
    return Refuse(d, action, "is disabled or hidden");
  switch (action.kind) {
  case DialogAction::Kind::Type:
    if (!IsField(*c))
      return Refuse(d, action, "is not a text field");
    SetFieldText(*c, action.text);
    return Send(d, handler, kDialogMessageAction, c->id, kCodeFieldChanged << 16, user);
  case DialogAction::Kind::Click:
    if (c->kind == ControlKind::Checkbox)
      c->value = c->value ? 0 : 1;
    else if (c->kind != ControlKind::Button && c->kind != ControlKind::Radio)
      return Refuse(d, action, "cannot be clicked");
    return Send(d, handler, kDialogMessageAction, c->id, 0, user);
  case DialogAction::Kind::Toggle:
    if (c->kind != ControlKind::Checkbox)
      return Refuse(d, action, "is not a check box");
    c->value = c->value ? 0 : 1;
    return Send(d, handler, kDialogMessageAction, c->id, 0, user);
  case DialogAction::Kind::Move:
    return;
  }
}

template <class Char> void CopyOut(const std::basic_string<Char>& text, Char* buffer, int size) {
  if (!buffer || size < 1)
    return;
  size_t n = std::min(text.size(), size_t(size - 1));
  std::copy_n(text.begin(), n, buffer);
  buffer[n] = Char(0);
}

DialogControl* ControlOf(OpaqueCocoaWindow* window, int item) {
  DialogWindow* d = State().Dialog(window);
  return d ? d->Find(int16_t(item)) : nullptr;
}

// Fields show their text; other controls their label.
std::string& ShownText(DialogControl& c) {
  return IsField(c) ? c.text : c.label;
}

void SetShownText(DialogControl& c, std::string text) {
  if (IsField(c))
    SetFieldText(c, std::move(text));
  else
    c.label = std::move(text);
}

void SetControlValue(DialogControl& c, std::optional<std::string> text, int32_t value) {
  if (IsField(c))
    SetFieldText(c, text ? std::move(*text) : std::to_string(value));
  else
    c.value = value;
}

} // namespace

// Returns 1 once the dialog has run and closed; 0 without calling the handler when the
// handler is null or its bundle has no such resource.
SX_EXPORT intptr_t SX_Dialog(int resource, SF_DialogHandlerUPP handler, OpaqueCocoaWindow* parent,
                             int flags, void* userData, uint32_t version) {
  EngineState& s = State();
  ++s.Count(HostCall::Dialog);
  if (!handler)
    return 0;
  auto bundle = EnclosingBundle(reinterpret_cast<const void*>(handler));
  if (!bundle)
    return 0;
  std::string title;
  auto controls = LoadDialogResource(*bundle, resource, &title);
  if (!controls)
    return 0;
  auto* d = new (std::nothrow) DialogWindow;
  if (!d)
    return 0;
  d->resource = int16_t(resource);
  d->bundle = *bundle;
  d->title = std::move(title);
  d->controls = std::move(*controls);
  d->firstAlert = s.alerts.size();
  d->record.resource = d->resource;
  s.dialogs.insert(d);
  s.windowData.windows[d] = OpeningFrame(s);

  std::optional<DialogScript> script;
  DialogActionSource interactive;
  if (!s.scripts.empty()) {
    script = std::move(s.scripts.front());
    s.scripts.pop_front();
  } else {
    interactive = s.interactive;
  }

  Send(*d, handler, kDialogMessageSetUp, 0, 0, userData);
  size_t next = 0;
  while (!d->ended) {
    std::optional<DialogAction> action;
    if (script) {
      if (next < script->size())
        action = (*script)[next++];
    } else if (interactive) {
      action = interactive(ViewOf(s, *d));
    }
    if (!action)
      break;
    ++d->record.actionsPlayed;
    Play(s, *d, *action, handler, userData);
  }
  if (d->ended) {
    d->record.end = DialogEnd::ByHandler;
  } else {
    Send(*d, handler, kDialogMessageAction, kCancelItem, 0, userData);
    d->record.end = d->ended ? DialogEnd::ByCancel : DialogEnd::ForcedByHost;
    d->ended = true;
  }
  d->record.finalState = ViewOf(s, *d);
  Send(*d, handler, kDialogMessageClose, 0, 0, userData);

  s.dialogs.erase(d);
  s.windowData.windows.erase(d);
  s.dialogHistory.push_back(std::move(d->record));
  delete d;
  return 1;
}

SX_EXPORT void SX_EndDialog(OpaqueCocoaWindow* window, uint32_t version) {
  if (DialogWindow* d = State().Dialog(window))
    d->ended = true;
}

SX_EXPORT void SX_EnableDlgItem(OpaqueCocoaWindow* window, int item, int enable, uint32_t version) {
  if (DialogControl* c = ControlOf(window, item))
    c->enabled = enable != 0;
}

SX_EXPORT void SX_ShowHideDlgItem(OpaqueCocoaWindow* window, int item, int visible,
                                  uint32_t version) {
  if (DialogControl* c = ControlOf(window, item))
    c->visible = visible != 0;
}

SX_EXPORT void SX_SetDlgFocus(OpaqueCocoaWindow* window, int item, uint32_t version) {
  DialogWindow* d = State().Dialog(window);
  if (!d || !d->Find(int16_t(item)))
    return;
  d->focus = int16_t(item);
  d->record.focusChanges.push_back(int16_t(item));
}

// The control's numeric value (a field's leading integer; an empty field reads 0). A buffer,
// when given, receives the text shown.
SX_EXPORT int32_t SX_GetDlgCntlVal(OpaqueCocoaWindow* window, int item, char* buffer, int size,
                                   uint32_t version) {
  DialogControl* c = ControlOf(window, item);
  if (!c)
    return 0;
  CopyOut(Utf8ToMacRoman(ShownText(*c)), buffer, size);
  return c->value;
}

SX_EXPORT int32_t SX_GetDlgCntlVal_UTF16(OpaqueCocoaWindow* window, int item, uint16_t* buffer,
                                         int size, uint32_t version) {
  DialogControl* c = ControlOf(window, item);
  if (!c)
    return 0;
  std::u16string text = Utf8ToUtf16(ShownText(*c));
  CopyOut(text, reinterpret_cast<char16_t*>(buffer), size);
  return c->value;
}

// A field shows `text` when given (an empty text clears it), else the number `value`; other
// controls take `value`.
SX_EXPORT void SX_SetDlgCntlVal(OpaqueCocoaWindow* window, int item, const char* text,
                                int32_t value, uint32_t version) {
  if (DialogControl* c = ControlOf(window, item))
    SetControlValue(*c, text ? std::optional(MacRomanToUtf8(text)) : std::nullopt, value);
}

SX_EXPORT void SX_SetDlgCntlVal_UTF16(OpaqueCocoaWindow* window, int item, const uint16_t* text,
                                      int32_t value, uint32_t version) {
  if (DialogControl* c = ControlOf(window, item))
    SetControlValue(*c, text ? std::optional(Utf16ToUtf8(text)) : std::nullopt, value);
}

SX_EXPORT void SX_GetDlgString(OpaqueCocoaWindow* window, int item, char* buffer, int size,
                               uint32_t version) {
  if (DialogControl* c = ControlOf(window, item))
    CopyOut(Utf8ToMacRoman(ShownText(*c)), buffer, size);
}

SX_EXPORT void SX_GetDlgString_UTF16(OpaqueCocoaWindow* window, int item, uint16_t* buffer,
                                     int size, uint32_t version) {
  if (DialogControl* c = ControlOf(window, item))
    CopyOut(Utf8ToUtf16(ShownText(*c)), reinterpret_cast<char16_t*>(buffer), size);
}

SX_EXPORT void SX_SetDlgString(OpaqueCocoaWindow* window, int item, const char* text,
                               uint32_t version) {
  DialogControl* c = ControlOf(window, item);
  if (c && text)
    SetShownText(*c, MacRomanToUtf8(text));
}

SX_EXPORT void SX_SetDlgString_UTF16(OpaqueCocoaWindow* window, int item, const uint16_t* text,
                                     uint32_t version) {
  DialogControl* c = ControlOf(window, item);
  if (c && text)
    SetShownText(*c, Utf16ToUtf8(text));
}

SX_EXPORT int SX_IsCocoaSXDLG(OpaqueCocoaWindow* window, uint32_t version) {
  return State().Dialog(window) ? 1 : 0;
}
