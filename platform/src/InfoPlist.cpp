// Info.plist files: XML property lists whose top-level dictionary holds the bundle's keys.
#include "CFObject.h"

#include <pugixml.hpp>

namespace cfstandin {

bool ReadInfoPlist(const std::string& bundleDir, std::map<std::string, CFStringRef>& info) {
  pugi::xml_document doc;
  if (!doc.load_file((bundleDir + "/Contents/Info.plist").c_str()))
    return false;
  pugi::xml_node dict = doc.child("plist").child("dict");
  for (pugi::xml_node key = dict.child("key"); key; key = key.next_sibling("key")) {
    pugi::xml_node value = key.next_sibling();
    if (value && std::string_view(value.name()) == "string") {
      std::u16string units = FromUTF8(value.text().get());
      auto [it, inserted] = info.try_emplace(key.text().get(), nullptr);
      if (!inserted)
        CFRelease(it->second);
      it->second = MakeString(std::move(units));
    }
  }
  return true;
}

} // namespace cfstandin
