#include "TerminalDialog.h"

#include <memory>
#include <sstream>
#include <string>

#include "DialogItems.h"

namespace scribo::host {

using engine::ControlKind;
using engine::DialogAction;
using engine::DialogView;

namespace {

const char* KindName(ControlKind kind) {
  switch (kind) {
  case ControlKind::Button:
    return "button";
  case ControlKind::Radio:
    return "radio";
  case ControlKind::Checkbox:
    return "check box";
  case ControlKind::Number:
    return "number";
  case ControlKind::Text:
    return "text";
  case ControlKind::Label:
    return "label";
  }
  return "?";
}

void Show(const DialogView& view, std::ostream& out) {
  out << "Options dialog " << view.resource << ":\n";
  for (const auto& c : view.controls) {
    if (!c.visible || c.kind == ControlKind::Label)
      continue;
    out << "  " << (c.id < 10 ? " " : "") << c.id << "  ";
    switch (c.kind) {
    case ControlKind::Radio:
      out << (c.value ? "(*) " : "( ) ");
      break;
    case ControlKind::Checkbox:
      out << (c.value ? "[x] " : "[ ] ");
      break;
    case ControlKind::Number:
    case ControlKind::Text:
      out << "[" << c.text << "] ";
      break;
    case ControlKind::Button:
      out << (c.value ? "<*> " : "< > ");
      break;
    case ControlKind::Label:
      break;
    }
    out << c.label << " (" << KindName(c.kind) << (c.enabled ? "" : ", disabled") << ")\n";
  }
  out << "Commands: type ITEM TEXT, click ITEM, toggle ITEM, ok, cancel, show\n";
}

} // namespace

engine::DialogActionSource TerminalDialogSource(std::istream& in, std::ostream& out) {
  auto alertsSeen = std::make_shared<size_t>(0);
  return [&in, &out, alertsSeen](const DialogView& view) -> std::optional<DialogAction> {
    if (view.alerts.size() < *alertsSeen)
      *alertsSeen = 0; // a new dialog
    for (size_t i = *alertsSeen; i < view.alerts.size(); ++i)
      out << "! " << view.alerts[i].resolved << "\n";
    *alertsSeen = view.alerts.size();
    Show(view, out);
    for (;;) {
      out << "> " << std::flush;
      std::string line;
      if (!std::getline(in, line))
        return std::nullopt;
      std::istringstream words(line);
      std::string command;
      words >> command;
      if (command.empty())
        continue;
      if (command == "ok")
        return DialogAction::Click(dialog_items::kOK);
      if (command == "cancel")
        return DialogAction::Click(dialog_items::kCancel);
      if (command == "show") {
        Show(view, out);
        continue;
      }
      int item = 0;
      if (!(words >> item) || item < 1 || item > 32767) {
        out << "give an item number, e.g. \"click 13\"\n";
        continue;
      }
      if (command == "click")
        return DialogAction::Click(static_cast<int16_t>(item));
      if (command == "toggle")
        return DialogAction::Toggle(static_cast<int16_t>(item));
      if (command == "type") {
        std::string text;
        std::getline(words >> std::ws, text);
        return DialogAction::TypeText(static_cast<int16_t>(item), text);
      }
      out << "unknown command \"" << command << "\"\n";
    }
  };
}

} // namespace scribo::host
