#include "DialogResource.h"

#include <cstdio>
#include <filesystem>
#include <pugixml.hpp>
#include <set>
#include <string_view>

#include "BundleStrings.h"

namespace scribo::engine {

namespace {

std::optional<ControlKind> KindOf(std::string_view kind) {
  if (kind == "button")
    return ControlKind::Button;
  if (kind == "radio")
    return ControlKind::Radio;
  if (kind == "checkbox")
    return ControlKind::Checkbox;
  if (kind == "number")
    return ControlKind::Number;
  if (kind == "text")
    return ControlKind::Text;
  if (kind == "label")
    return ControlKind::Label;
  return std::nullopt;
}

std::nullopt_t Malformed(const std::filesystem::path& file, const std::string& why) {
  std::fprintf(stderr, "dialog resource %s: %s\n", file.c_str(), why.c_str());
  return std::nullopt;
}

} // namespace

std::optional<std::vector<DialogControl>> LoadDialogResource(const std::string& bundle,
                                                             int resource, std::string* title) {
  namespace fs = std::filesystem;
  fs::path file =
      fs::path(bundle) / "Contents" / "Resources" / "Dialogs" / (std::to_string(resource) + ".xml");
  std::error_code ec;
  if (!fs::is_regular_file(file, ec))
    return std::nullopt;
  pugi::xml_document doc;
  pugi::xml_parse_result parsed = doc.load_file(file.c_str());
  if (!parsed)
    return Malformed(file, parsed.description());
  pugi::xml_node dialog = doc.child("dialog");
  if (!dialog)
    return Malformed(file, "no <dialog> element");
  if (title) {
    std::string key = dialog.attribute("title").value();
    auto text = key.empty() ? std::nullopt : LocalizedString(bundle, key);
    *title = text ? *text : key;
  }
  std::vector<DialogControl> controls;
  std::set<int> seen;
  for (pugi::xml_node item : dialog.children("item")) {
    int id = item.attribute("id").as_int(0);
    if (id < 1 || id > 32767 || !seen.insert(id).second)
      return Malformed(file, "item without a unique identifier 1..32767");
    auto kind = KindOf(item.attribute("kind").value());
    if (!kind)
      return Malformed(file, std::string("item ") + std::to_string(id) + " has an unknown kind");
    DialogControl control;
    control.id = int16_t(id);
    control.kind = *kind;
    control.group = item.attribute("group").value();
    control.labelKey = item.attribute("label").value();
    auto label =
        control.labelKey.empty() ? std::nullopt : LocalizedString(bundle, control.labelKey);
    control.label = label ? *label : control.labelKey;
    controls.push_back(std::move(control));
  }
  return controls;
}

} // namespace scribo::engine
