// A bundle directory read as files: its Info.plist, its resources in the user's language, its
// strings tables, and the bundle around a loaded image.
//
// The rules live here once, for the CoreFoundation stand-in (CFBundle...) and for the reference
// engine, which finds the texts of the plug-in that calls it. Thread: any.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace scribo {

// The string values of <bundleDir>/Contents/Info.plist by key, in UTF-8. False (and `values`
// untouched) when there is no readable Info.plist.
bool ReadInfoPlist(const std::string& bundleDir, std::map<std::string, std::string>& values);

// The bundle an image file lies in: its nearest ancestor directory X.bundle or X.app (symbolic
// links resolved) that has Contents/Info.plist. Empty when there is none.
std::string BundleOfImage(const std::string& imagePath);

// The .lproj directories a bundle's resources are looked up in, most preferred first.
//
// The user's language comes from LC_ALL, then LC_MESSAGES, then LANG, each taken as the part
// before '_', '.' or '@' ("de_DE.UTF-8@euro" is "de"); every variable that names a language adds
// its directory, so a language the bundle lacks falls through to the next variable. An unset or
// empty variable says nothing and is skipped. A variable set to C or POSIX asks for the
// untranslated program, as a process in that locale is: the variables after it are not read. Then
// come the development region and Base. The environment is read on every call, so a change is seen
// at once.
std::vector<std::string> LanguageDirectories(std::string_view developmentRegion);

// The path of the resource `file` (a name, or a relative path such as "Dialogs/20256.xml") under
// <bundleDir>/Contents/Resources: in the first of LanguageDirectories that has it, else at the
// top level. Empty when there is none.
std::string FindResource(const std::string& bundleDir, std::string_view developmentRegion,
                         std::string_view file);

// The text of `key` in the strings file at `path`. False when the file is missing, unreadable or
// malformed, or has no such key. Each file is read once per process: a bundle's files do not
// change while a host runs.
bool LookUpString(const std::string& path, const std::u16string& key, std::u16string& value);

} // namespace scribo
