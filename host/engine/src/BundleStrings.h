// A plug-in's bundle and its localised texts, as the engine finds them: the bundle that
// encloses the code at an address, and Localizable.strings in the language the user's
// environment asks for.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace scribo::engine {

// The bundle of the image holding `address` (scribo::BundleOfImage); nullopt when the code is
// not inside a bundle.
std::optional<std::string> EnclosingBundle(const void* address);

// The text for `key` in the bundle's Localizable.strings, chosen in the user's language as a
// plug-in's own lookup chooses it (scribo::LanguageDirectories). Nullopt when there is no table
// or no such key. UTF-8.
std::optional<std::string> LocalizedString(const std::string& bundle, std::string_view key);

// "table,index" (or "index" when the table is 0) of a localised-string identifier.
std::string StringKey(int32_t identifier);

} // namespace scribo::engine
