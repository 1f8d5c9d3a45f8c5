#include "BundleStrings.h"

#include <dlfcn.h>

#include "BundleFiles.h"
#include "TextCodec.h"

namespace scribo::engine {

std::optional<std::string> EnclosingBundle(const void* address) {
  Dl_info info{};
  if (!address || !dladdr(address, &info) || !info.dli_fname)
    return std::nullopt;
  std::string bundle = BundleOfImage(info.dli_fname);
  if (bundle.empty())
    return std::nullopt;
  return bundle;
}

std::optional<std::string> LocalizedString(const std::string& bundle, std::string_view key) {
  std::map<std::string, std::string> info;
  ReadInfoPlist(bundle, info);
  const std::string table =
      FindResource(bundle, info["CFBundleDevelopmentRegion"], "Localizable.strings");
  std::u16string text;
  if (table.empty() || !LookUpString(table, Utf8ToUtf16(key), text))
    return std::nullopt;
  return Utf16ToUtf8(text);
}

std::string StringKey(int32_t identifier) {
  int table = int16_t(uint16_t(uint32_t(identifier) >> 16));
  int index = int16_t(uint16_t(uint32_t(identifier) & 0xFFFF));
  if (table == 0)
    return std::to_string(index);
  return std::to_string(table) + "," + std::to_string(index);
}

} // namespace scribo::engine
