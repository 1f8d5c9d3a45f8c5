// A plug-in's bundle and its localised texts, as the engine finds them: the bundle that
// encloses the code at an address, and Localizable.strings in the language the user's
// environment asks for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace scribo::engine {

// The nearest ancestor X.bundle with Contents/Info.plist of the image holding `address`;
// nullopt when the code is not inside a bundle.
std::optional<std::string> EnclosingBundle(const void* address);

// The text for `key` in the bundle's Localizable.strings, from the first of these that exists
// under Contents/Resources: <LC_ALL>.lproj, <LC_MESSAGES>.lproj, <LANG>.lproj (language part
// before '_', '.', '@'), <development region>.lproj, Base.lproj, the folder itself. Nullopt when
// there is no table or no such key. UTF-8.
std::optional<std::string> LocalizedString(const std::string& bundle, std::string_view key);

// "table,index" (or "index" when the table is 0) of a localised-string identifier.
std::string StringKey(int32_t identifier);

} // namespace scribo::engine
