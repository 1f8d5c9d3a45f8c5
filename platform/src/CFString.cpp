// String creation and access. Conversion, comparison and formatting live beside this file.
#include "CFObject.h"
#include "TextEncoding.h"

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
  if (!DecodeBytes(reinterpret_cast<const uint8_t*>(text.data()), text.size(),
                   kCFStringEncodingUTF8, out))
    out.clear();
  return out;
}

std::string ToUTF8(CFStringRef string) {
  std::string out;
  const std::u16string& u = Units(string);
  for (size_t i = 0; i < u.size(); ++i) {
    char32_t cp = u[i];
    if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < u.size() && u[i + 1] >= 0xDC00 &&
        u[i + 1] <= 0xDFFF) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (u[i + 1] - 0xDC00);
      ++i;
    }
    uint8_t bytes[4];
    size_t n = EncodeCodePoint(cp, kCFStringEncodingUTF8, bytes);
    if (n == 0)
      n = EncodeCodePoint(0xFFFD, kCFStringEncodingUTF8, bytes);
    out.append(reinterpret_cast<const char*>(bytes), n);
  }
  return out;
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
    auto* s = new __CFString;
    std::u16string units;
    if (!cfstandin::DecodeBytes(reinterpret_cast<const uint8_t*>(cStr), std::strlen(cStr),
                                kCFStringEncodingUTF8, units))
      cfstandin::DecodeBytes(reinterpret_cast<const uint8_t*>(cStr), std::strlen(cStr),
                             kCFStringEncodingMacRoman, units);
    s->units = std::move(units);
    s->immortal = true;
    it->second = s;
  }
  return it->second;
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex numBytes,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation) {
  if (numBytes < 0 || (!bytes && numBytes > 0))
    return nullptr;
  std::u16string units;
  if (encoding == kCFStringEncodingUTF16 && isExternalRepresentation && numBytes >= 2) {
    // An external representation may begin with a byte-order mark.
    if (bytes[0] == 0xFE && bytes[1] == 0xFF) {
      if (numBytes % 2)
        return nullptr;
      for (CFIndex i = 2; i + 1 < numBytes; i += 2)
        units.push_back(static_cast<char16_t>((bytes[i] << 8) | bytes[i + 1]));
      return MakeString(std::move(units));
    }
    if (bytes[0] == 0xFF && bytes[1] == 0xFE) {
      bytes += 2;
      numBytes -= 2;
    }
  }
  if (!cfstandin::DecodeBytes(bytes, static_cast<size_t>(numBytes), encoding, units))
    return nullptr;
  return MakeString(std::move(units));
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef alloc, const char* cStr,
                                      CFStringEncoding encoding) {
  if (!cStr)
    return nullptr;
  return CFStringCreateWithBytes(alloc, reinterpret_cast<const UInt8*>(cStr),
                                 static_cast<CFIndex>(std::strlen(cStr)), encoding, false);
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar* chars, CFIndex numChars) {
  if (numChars < 0 || (!chars && numChars > 0))
    return nullptr;
  return MakeString(
      std::u16string(reinterpret_cast<const char16_t*>(chars), static_cast<size_t>(numChars)));
}

CFStringRef CFStringCreateWithPascalString(CFAllocatorRef alloc, ConstStringPtr pStr,
                                           CFStringEncoding encoding) {
  if (!pStr)
    return nullptr;
  return CFStringCreateWithBytes(alloc, pStr + 1, pStr[0], encoding, false);
}

CFStringRef CFStringCreateCopy(CFAllocatorRef, CFStringRef string) {
  if (!string)
    return nullptr;
  return MakeString(string->units);
}

CFIndex CFStringGetLength(CFStringRef string) {
  return static_cast<CFIndex>(cfstandin::Units(string).size());
}

UniChar CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index) {
  const std::u16string& u = cfstandin::Units(string);
  return index >= 0 && static_cast<size_t>(index) < u.size() ? u[static_cast<size_t>(index)] : 0;
}

void CFStringGetCharacters(CFStringRef string, CFRange range, UniChar* buffer) {
  const std::u16string& u = cfstandin::Units(string);
  if (!buffer || range.location < 0 || range.length <= 0 ||
      static_cast<size_t>(range.location + range.length) > u.size())
    return;
  std::memcpy(buffer, u.data() + range.location,
              static_cast<size_t>(range.length) * sizeof(UniChar));
}

const UniChar* CFStringGetCharactersPtr(CFStringRef string) {
  return string ? reinterpret_cast<const UniChar*>(string->units.c_str()) : nullptr;
}

TextEncoding GetApplicationTextEncoding(void) {
  return kCFStringEncodingMacRoman;
}
