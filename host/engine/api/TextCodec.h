// Text conversions at the host-function boundary: plug-ins hand the host 8-bit text in the
// application's encoding (Mac Roman) or UTF-16; the engine's API speaks UTF-8. Host programs use
// the same conversions. Malformed input becomes U+FFFD (or '?' in Mac Roman); nothing throws.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "EngineApi.h"

namespace scribo::engine {

SCRIBO_ENGINE_API std::string MacRomanToUtf8(std::string_view text);
// Characters Mac Roman lacks become '?'.
SCRIBO_ENGINE_API std::string Utf8ToMacRoman(std::string_view text);
SCRIBO_ENGINE_API std::u16string Utf8ToUtf16(std::string_view text);
SCRIBO_ENGINE_API std::string Utf16ToUtf8(std::u16string_view text);
// A zero-terminated UTF-16 text as plug-ins pass it.
SCRIBO_ENGINE_API std::string Utf16ToUtf8(const uint16_t* text);
SCRIBO_ENGINE_API std::u16string Utf16FromHost(const uint16_t* text);

} // namespace scribo::engine
