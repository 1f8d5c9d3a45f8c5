// String creation and access. Conversion, comparison and formatting live beside this file.
#include "CFObject.h"
#include "TextCodec.h"

#include <cstring>
#include <unordered_map>

namespace cfstandin {

CFStringRef MakeString(std::u16string units) {
  auto* s = new __CFString;
  s->units = std::move(units);
  return s;
}

const std::u16string& Units(CFStringRef string) {
  static const std::u16string kEmpty;
  return string ? string->units : kEmpty;
}

std::u16string FromUTF8(const std::string& text) {
  std::u16string out;
  scribo::DecodeUtf8(text, out);
  return out;
}

std::string ToUTF8(CFStringRef string) {
  return scribo::Utf16ToUtf8(Units(string));
}

} // namespace cfstandin

using cfstandin::MakeString;

CFStringRef __CFStringMakeConstantString(const char* cStr) {
  // Constant strings live for the whole process, one per distinct literal text.
  static std::mutex lock;
  static auto* table = new std::unordered_map<std::string, __CFString*>;
  std::lock_guard<std::mutex> guard(lock);
  auto [it, inserted] = table->try_emplace(cStr, nullptr);
  if (inserted) {
    // A literal is UTF-8 source text; an old one may still be written in Mac Roman.
    auto* s = new __CFString;
    const std::string_view text(cStr);
    if (!scribo::DecodeUtf8(text, s->units))
      for (char c : text)
        s->units.push_back(scribo::MacRomanToUnicode(static_cast<uint8_t>(c)));
    s->immortal = true;
    it->second = s;
  }
  return it->second;
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* cStr, CFStringEncoding encoding) {
  std::u16string units;
  if (!cStr || !cfstandin::DecodeBytes(reinterpret_cast<const UInt8*>(cStr), std::strlen(cStr),
                                       encoding, units))
    return nullptr;
  return MakeString(std::move(units));
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar* chars, CFIndex numChars) {
  if (numChars < 0 || (!chars && numChars > 0))
    return nullptr;
  return MakeString(
      std::u16string(reinterpret_cast<const char16_t*>(chars), static_cast<size_t>(numChars)));
}

CFIndex CFStringGetLength(CFStringRef string) {
  return static_cast<CFIndex>(cfstandin::Units(string).size());
}

void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer) {
  const std::u16string& u = cfstandin::Units(string);
  if (!buffer || range.location < 0 || range.length <= 0 ||
      static_cast<size_t>(range.location + range.length) > u.size())
    return;
  std::memcpy(buffer, u.data() + range.location,
              static_cast<size_t>(range.length) * sizeof(UniChar));
}

TextEncoding GetApplicationTextEncoding(void) {
  return kCFStringEncodingMacRoman;
}
