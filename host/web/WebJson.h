// What the page and the server say to each other, as JSON: dialog states, actions, alerts and
// the outcome of a command; and the base64 of uploaded files.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

#include "AlertLog.h"
#include "DialogScript.h"
#include "WindowSystem.h"

namespace scribo::web {

using Json = nlohmann::json;

// {"resource", "title", "focus", "frame": {x, y, width, height}, "screen": {width, height},
//  "controls": [{id, kind, group, label, value, text, enabled, visible}...]}; frames in screen
// points, origin bottom left, y upward.
Json DialogJson(const engine::DialogView& view, const engine::ScreenRect& screen);

// {"kind": 0 notice | 16 rejected entry | 48 error, "text": what the user reads}
Json AlertJson(const engine::AlertRecord& alert);

// {"kind": "type", "item", "text"}, {"kind": "click" | "toggle", "item"} or
// {"kind": "move", "left", "top"} (the dialog's new top-left corner in screen points); nullopt
// for anything else.
std::optional<engine::DialogAction> ActionFromJson(const Json& action);

// Standard base64 with padding; nullopt for any other character or a bad length.
std::optional<std::string> DecodeBase64(std::string_view text);

} // namespace scribo::web
