#include "WebJson.h"

#include <cmath>

namespace scribo::web {

namespace {

const char* KindName(engine::ControlKind kind) {
  switch (kind) {
  case engine::ControlKind::Button:
    return "button";
  case engine::ControlKind::Radio:
    return "radio";
  case engine::ControlKind::Checkbox:
    return "checkbox";
  case engine::ControlKind::Number:
    return "number";
  case engine::ControlKind::Text:
    return "text";
  case engine::ControlKind::Label:
    return "label";
  }
  return "label";
}

Json RectJson(const engine::ScreenRect& r) {
  return {{"x", r.x}, {"y", r.y}, {"width", r.width}, {"height", r.height}};
}

// Typed texts longer than this are refused: no field of a dialog holds more.
constexpr size_t kMaxTypedText = 1024;

} // namespace

Json DialogJson(const engine::DialogView& view, const engine::ScreenRect& screen) {
  Json controls = Json::array();
  for (const auto& c : view.controls)
    controls.push_back({{"id", c.id},
                        {"kind", KindName(c.kind)},
                        {"group", c.group},
                        {"label", c.label},
                        {"value", c.value},
                        {"text", c.text},
                        {"enabled", c.enabled},
                        {"visible", c.visible}});
  return {{"resource", view.resource},  {"title", view.title},
          {"focus", view.focus},        {"frame", RectJson(view.frame)},
          {"screen", RectJson(screen)}, {"controls", std::move(controls)}};
}

Json AlertJson(const engine::AlertRecord& alert) {
  return {{"kind", alert.kind}, {"text", alert.resolved}};
}

std::optional<engine::DialogAction> ActionFromJson(const Json& action) {
  using engine::DialogAction;
  if (!action.is_object() || !action.contains("kind") || !action["kind"].is_string())
    return std::nullopt;
  const std::string kind = action["kind"];
  if (kind == "move") {
    const Json& left = action.value("left", Json());
    const Json& top = action.value("top", Json());
    if (!left.is_number() || !top.is_number() || !std::isfinite(left.get<double>()) ||
        !std::isfinite(top.get<double>()))
      return std::nullopt;
    return DialogAction::MoveTo(left.get<double>(), top.get<double>());
  }
  const Json& item = action.value("item", Json());
  if (!item.is_number_integer() || item.get<long>() < 1 || item.get<long>() > 32767)
    return std::nullopt;
  auto id = static_cast<int16_t>(item.get<long>());
  if (kind == "click")
    return DialogAction::Click(id);
  if (kind == "toggle")
    return DialogAction::Toggle(id);
  if (kind == "type") {
    const Json& text = action.value("text", Json());
    if (!text.is_string() || text.get_ref<const std::string&>().size() > kMaxTypedText)
      return std::nullopt;
    return DialogAction::TypeText(id, text.get<std::string>());
  }
  return std::nullopt;
}

std::optional<std::string> DecodeBase64(std::string_view text) {
  auto value = [](char c) -> int {
    if (c >= 'A' && c <= 'Z')
      return c - 'A';
    if (c >= 'a' && c <= 'z')
      return c - 'a' + 26;
    if (c >= '0' && c <= '9')
      return c - '0' + 52;
    if (c == '+')
      return 62;
    if (c == '/')
      return 63;
    return -1;
  };
  if (text.size() % 4 != 0)
    return std::nullopt;
  size_t padding = 0;
  while (padding < 2 && padding < text.size() && text[text.size() - 1 - padding] == '=')
    ++padding;
  std::string out;
  out.reserve(text.size() / 4 * 3);
  uint32_t bits = 0;
  int count = 0;
  for (size_t i = 0; i < text.size() - padding; ++i) {
    int v = value(text[i]);
    if (v < 0)
      return std::nullopt;
    bits = (bits << 6) | uint32_t(v);
    if (++count == 4) {
      out += char(bits >> 16);
      out += char(bits >> 8);
      out += char(bits);
      bits = 0;
      count = 0;
    }
  }
  if (count == 3) {
    bits <<= 6;
    out += char(bits >> 16);
    out += char(bits >> 8);
  } else if (count == 2) {
    bits <<= 12;
    out += char(bits >> 16);
  } else if (count == 1) {
    return std::nullopt;
  }
  return out;
}

} // namespace scribo::web
