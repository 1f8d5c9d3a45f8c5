#include "TerminalDialog.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "DialogItems.h"
#include "Engine.h"

namespace scribo::host {

using engine::ControlKind;
using engine::DialogAction;
using engine::DialogControl;
using engine::DialogView;

namespace {

constexpr const char* kHelp =
    "Commands (ITEM is the number shown before a control):\n"
    "  ITEM             click button or radio ITEM, or tick or clear check box ITEM\n"
    "  ITEM TEXT        type TEXT into field ITEM\n"
    "  click ITEM, toggle ITEM, type ITEM TEXT\n"
    "                   the same, said in full\n"
    "  ok               press OK: the plug-in checks the values and says what to change\n"
    "  cancel           press Cancel\n"
    "  show             show the whole dialog again\n"
    "  help             show these commands\n"
    "After each action only the controls that changed are shown again. The end of the input "
    "presses Cancel.\n";

// Palette buttons and other runs of buttons are listed this many to a line.
constexpr size_t kButtonsPerLine = 4;

struct Command {
  // The verbs from OK on take no item.
  enum class Verb : uint8_t { None, Use, Type, Click, Toggle, OK, Cancel, Show, Help };
  Verb verb = Verb::None;
  int16_t item = 0;
  std::string text;
  std::string error; // set when the line is not a command
};

std::optional<int16_t> ItemNumber(std::string_view word) {
  int value = 0;
  if (word.empty() || word.size() > 5 ||
      !std::all_of(word.begin(), word.end(), [](char c) { return c >= '0' && c <= '9'; }))
    return std::nullopt;
  for (char c : word)
    value = value * 10 + (c - '0');
  if (value < 1 || value > 32767)
    return std::nullopt;
  return static_cast<int16_t>(value);
}

// "WORD REST": the first word and everything after the blanks that follow it.
std::pair<std::string, std::string> SplitWord(std::string_view line) {
  size_t start = line.find_first_not_of(" \t");
  if (start == std::string_view::npos)
    return {};
  size_t end = std::min(line.find_first_of(" \t", start), line.size());
  size_t rest = std::min(line.find_first_not_of(" \t", end), line.size());
  return {std::string(line.substr(start, end - start)), std::string(line.substr(rest))};
}

Command Parse(std::string_view line) {
  while (!line.empty() && std::isspace(static_cast<unsigned char>(line.back())))
    line.remove_suffix(1);
  auto [word, rest] = SplitWord(line);
  Command command;
  if (word.empty())
    return command;
  if (auto item = ItemNumber(word)) {
    command.verb = rest.empty() ? Command::Verb::Use : Command::Verb::Type;
    command.item = *item;
    command.text = rest;
    return command;
  }
  std::transform(word.begin(), word.end(), word.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  static const std::map<std::string, Command::Verb> kVerbs = {
      {"ok", Command::Verb::OK},       {"cancel", Command::Verb::Cancel},
      {"show", Command::Verb::Show},   {"help", Command::Verb::Help},
      {"click", Command::Verb::Click}, {"toggle", Command::Verb::Toggle},
      {"type", Command::Verb::Type}};
  auto verb = kVerbs.find(word);
  if (verb == kVerbs.end()) {
    command.error = "unknown command \"" + word + "\"; type help for the commands";
    return command;
  }
  command.verb = verb->second;
  if (command.verb >= Command::Verb::OK) // needs no item
    return command;
  auto [itemWord, text] = SplitWord(rest);
  auto item = ItemNumber(itemWord);
  if (!item)
    command.error = "give an item number, e.g. \"" + word + " 13\"";
  command.item = item.value_or(0);
  command.text = text;
  return command;
}

// A script's commands: its lines, each of which may hold several separated by ";".
std::string ScriptLines(std::string_view script) {
  std::string lines(script);
  std::replace(lines.begin(), lines.end(), ';', '\n');
  return lines;
}

bool IsField(const DialogControl* c) {
  return c && (c->kind == ControlKind::Number || c->kind == ControlKind::Text);
}

// A label right after a field of its own group is the field's unit ("TDU").
bool IsUnit(const DialogView& view, const DialogControl& c) {
  const DialogControl* before = view.Find(static_cast<int16_t>(c.id - 1));
  return c.kind == ControlKind::Label && IsField(before) && before->group == c.group;
}

// A group's heading: the last of its visible labels that is not a unit.
const DialogControl* HeadingOf(const DialogView& view, const std::string& group) {
  const DialogControl* heading = nullptr;
  for (const auto& c : view.controls)
    if (!group.empty() && c.group == group && c.kind == ControlKind::Label && c.visible &&
        !IsUnit(view, c) && (!heading || c.id > heading->id))
      heading = &c;
  return heading;
}

// One control as the user sees it: item number, state, label.
std::string Cell(const DialogView& view, const DialogControl& c) {
  if (c.kind == ControlKind::Label)
    return "     " + c.label; // a caption: nothing to act on
  std::string id = std::to_string(c.id);
  std::string text = std::string(4 - std::min<size_t>(4, id.size()), ' ') + id + " ";
  switch (c.kind) {
  case ControlKind::Radio:
    text += (c.value ? "(*) " : "( ) ") + c.label;
    break;
  case ControlKind::Checkbox:
    text += (c.value ? "[x] " : "[ ] ") + c.label;
    break;
  case ControlKind::Button:
    text += (c.value ? "<*> " : "< > ") + c.label;
    break;
  case ControlKind::Number:
  case ControlKind::Text: {
    text += c.label + ": [" + c.text + "]";
    const DialogControl* unit = view.Find(static_cast<int16_t>(c.id + 1));
    if (unit && IsUnit(view, *unit))
      text += " " + unit->label;
    break;
  }
  case ControlKind::Label:
    break;
  }
  return c.enabled ? text : text + " (disabled)";
}

struct Section {
  const DialogControl* heading = nullptr;
  std::vector<const DialogControl*> controls; // in item order
};

// The visible controls by group, groups in the order of their first item, each under its
// heading; a control without a group stands alone. The group holding OK comes last.
std::vector<Section> Sections(const DialogView& view) {
  std::vector<const DialogControl*> sorted;
  for (const auto& c : view.controls)
    sorted.push_back(&c);
  std::sort(sorted.begin(), sorted.end(),
            [](const DialogControl* a, const DialogControl* b) { return a->id < b->id; });
  std::vector<Section> sections;
  std::map<std::string, size_t> sectionOf;
  for (const DialogControl* c : sorted) {
    const DialogControl* heading = HeadingOf(view, c->group);
    if (!c->visible || IsUnit(view, *c) || c == heading)
      continue;
    if (c->group.empty()) {
      sections.push_back({nullptr, {c}});
      continue;
    }
    auto [at, added] = sectionOf.emplace(c->group, sections.size());
    if (added)
      sections.push_back({heading, {}});
    sections[at->second].controls.push_back(c);
  }
  std::stable_partition(sections.begin(), sections.end(), [](const Section& s) {
    return std::none_of(s.controls.begin(), s.controls.end(),
                        [](const DialogControl* c) { return c->id == dialog_items::kOK; });
  });
  return sections;
}

void ShowAll(const DialogView& view, std::ostream& out) {
  out << "Dialog " << view.resource << " (type help for the commands)\n";
  for (const Section& section : Sections(view)) {
    if (section.heading)
      out << "  " << section.heading->label << "\n";
    const auto& controls = section.controls;
    for (size_t i = 0; i < controls.size();) {
      // A run of buttons with consecutive items (a palette) shares lines.
      size_t run = 1;
      while (i + run < controls.size() && controls[i]->kind == ControlKind::Button &&
             controls[i + run]->kind == ControlKind::Button &&
             controls[i + run]->id == controls[i]->id + static_cast<int>(run))
        ++run;
      for (size_t k = 0; k < run; ++k) {
        std::string cell = Cell(view, *controls[i + k]);
        bool endOfLine = k + 1 == run || (k + 1) % kButtonsPerLine == 0;
        if (!endOfLine)
          cell.resize(std::max<size_t>(cell.size() + 1, 22), ' ');
        out << cell << (endOfLine ? "\n" : "");
      }
      i += run;
    }
  }
}

// What each control showed, to list only what an action changed.
using Snapshot = std::map<int16_t, std::string>;

Snapshot SnapshotOf(const DialogView& view) {
  Snapshot shown;
  for (const auto& c : view.controls)
    shown[c.id] = c.visible ? Cell(view, c) : "";
  return shown;
}

void ShowChanges(const DialogView& view, const Snapshot& before, std::ostream& out) {
  for (const Section& section : Sections(view)) {
    bool headed = false;
    for (const DialogControl* c : section.controls) {
      auto was = before.find(c->id);
      std::string now = Cell(view, *c);
      if (was != before.end() && was->second == now)
        continue;
      if (section.heading && !headed)
        out << "  " << section.heading->label << "\n";
      headed = true;
      out << now << "\n";
    }
  }
  for (const auto& c : view.controls) {
    auto was = before.find(c.id);
    if (!c.visible && was != before.end() && !was->second.empty())
      out << std::string(4 - std::min<size_t>(4, std::to_string(c.id).size()), ' ') << c.id
          << " (hidden)\n";
  }
}

struct SourceState {
  std::shared_ptr<std::istream> in;
  bool interactive = true;
  size_t dialogsClosed = static_cast<size_t>(-1); // dialogs done when the current one opened
  Snapshot shown;
  size_t alertsSeen = 0;
};

engine::DialogActionSource MakeSource(std::shared_ptr<std::istream> in, std::ostream& out,
                                      bool interactive) {
  auto state = std::make_shared<SourceState>();
  state->in = std::move(in);
  state->interactive = interactive;
  return [state, &out](const DialogView& view) -> std::optional<DialogAction> {
    SourceState& s = *state;
    size_t closed = engine::Engine::Instance().DialogHistory().size();
    if (closed != s.dialogsClosed) {
      s.dialogsClosed = closed;
      s.alertsSeen = 0;
      if (s.interactive)
        ShowAll(view, out);
    } else if (s.interactive) {
      ShowChanges(view, s.shown, out);
    }
    s.shown = SnapshotOf(view);
    // The alerts of the last action stay on screen until the next action.
    std::string alerts;
    for (size_t i = s.alertsSeen; i < view.alerts.size(); ++i)
      alerts += "! " + view.alerts[i].resolved + "\n";
    s.alertsSeen = view.alerts.size();
    if (s.interactive)
      out << alerts;
    for (;;) {
      if (s.interactive)
        out << "> " << std::flush;
      std::string line;
      if (!std::getline(*s.in, line))
        return std::nullopt;
      Command command = Parse(line);
      std::string complaint = command.error;
      const DialogControl* control = view.Find(command.item);
      switch (command.verb) {
      case Command::Verb::None:
        break;
      case Command::Verb::OK:
        return DialogAction::Click(dialog_items::kOK);
      case Command::Verb::Cancel:
        return DialogAction::Click(dialog_items::kCancel);
      case Command::Verb::Help:
      case Command::Verb::Show:
        if (s.interactive) {
          if (command.verb == Command::Verb::Help)
            out << kHelp;
          else
            ShowAll(view, out);
          out << alerts;
        }
        break;
      case Command::Verb::Use:
      case Command::Verb::Click:
      case Command::Verb::Toggle:
      case Command::Verb::Type:
        if (!complaint.empty())
          break;
        if (!control || !control->visible) {
          complaint = "there is no item " + std::to_string(command.item) + " in this dialog";
        } else if (command.verb == Command::Verb::Type ||
                   (command.verb == Command::Verb::Use && IsField(control))) {
          if (command.verb == Command::Verb::Use)
            complaint = "item " + std::to_string(command.item) + " is a field: type \"" +
                        std::to_string(command.item) + " TEXT\"";
          else
            return DialogAction::TypeText(command.item, command.text);
        } else if (command.verb == Command::Verb::Toggle ||
                   (command.verb == Command::Verb::Use && control->kind == ControlKind::Checkbox)) {
          return DialogAction::Toggle(command.item);
        } else {
          return DialogAction::Click(command.item);
        }
        break;
      }
      if (!complaint.empty())
        out << (s.interactive ? "" : "scribo-host: --actions: ") << complaint << "\n";
    }
  };
}

} // namespace

std::string CheckDialogCommands(std::string_view script) {
  std::istringstream lines(ScriptLines(script));
  std::string line;
  while (std::getline(lines, line)) {
    Command command = Parse(line);
    if (!command.error.empty()) {
      size_t start = line.find_first_not_of(" \t");
      return "\"" + line.substr(start) + "\": " + command.error;
    }
  }
  return "";
}

engine::DialogActionSource TerminalDialogSource(std::istream& in, std::ostream& out) {
  return MakeSource(std::shared_ptr<std::istream>(&in, [](std::istream*) {}), out, true);
}

engine::DialogActionSource ScriptedDialogSource(std::string_view script, std::ostream& err) {
  return MakeSource(std::make_shared<std::istringstream>(ScriptLines(script)), err, false);
}

engine::DialogActionSource StartingWith(engine::DialogScript first,
                                        engine::DialogActionSource then) {
  auto played = std::make_shared<size_t>(0);
  return [first = std::move(first), then = std::move(then),
          played](const DialogView& view) -> std::optional<DialogAction> {
    if (*played < first.size())
      return first[(*played)++];
    return then(view);
  };
}

} // namespace scribo::host
