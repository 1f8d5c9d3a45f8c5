// CoreFoundation stand-in: bundles.
//
// A bundle is a directory Name.bundle with Contents/Info.plist (an XML property list),
// Contents/MacOS/<CFBundleExecutable> (an ELF shared object) and Contents/Resources/.
// A bundle is "loaded" when its executable is mapped in the process; lookups by identifier
// only see loaded bundles, as on macOS. Thread: any.
#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>

CF_EXTERN_C_BEGIN

extern const CFStringRef kCFBundleIdentifierKey;
extern const CFStringRef kCFBundleExecutableKey;
extern const CFStringRef kCFBundleDevelopmentRegionKey;

// The loaded bundle with that identifier, or null. "Get" rule: do not release.
CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef bundleID);
// The bundle of the running program (or of its directory). "Get" rule: do not release.
// Function lookup in it searches what the main program exports.
CFBundleRef CFBundleGetMainBundle(void);
// A new bundle object for a directory; null when the directory does not exist.
CFBundleRef CFBundleCreate(CFAllocatorRef alloc, CFURLRef bundleURL);
// Address of an exported function of the bundle's loaded executable; null when absent.
void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef functionName);
// A value of the Info.plist dictionary (strings only in the stand-in), or null. "Get" rule.
CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key);
CFStringRef CFBundleGetIdentifier(CFBundleRef bundle);
// Resource lookup in Contents/Resources: the language directories of the user's environment
// first, then the development region, Base.lproj and the top level (the order is
// LanguageDirectories in BundleFiles.h). Null when absent. Copy rule.
CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef resourceName,
                                 CFStringRef resourceType, CFStringRef subDirName);
// The translation of `key` in table `tableName` (null: "Localizable"), or `value` when the key is
// missing (or the key itself when `value` is null or empty). Copy rule.
CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value,
                                        CFStringRef tableName);

CF_EXTERN_C_END

CF_EXTERN_C_BEGIN
// Stand-in diagnostics: how many function-pointer lookups the process has made so far.
long __CFBundleFunctionLookupCount(void);
CF_EXTERN_C_END
