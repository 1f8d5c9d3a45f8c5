// Object model behind the CoreFoundation stand-in: every CF object derives from CFObjectBase and
// is reference counted. Constant strings and cached bundles are immortal.
#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <atomic>
#include <map>
#include <mutex>
#include <string>

enum CFStandInType : CFTypeID { kTypeString = 7, kTypeURL = 29, kTypeBundle = 31 };

struct CFObjectBase {
  explicit CFObjectBase(CFTypeID t) : type(t) {}
  virtual ~CFObjectBase() = default;
  CFObjectBase(const CFObjectBase&) = delete;
  CFObjectBase& operator=(const CFObjectBase&) = delete;

  const CFTypeID type;
  std::atomic<long> refs{1};
  bool immortal = false;
};

struct __CFString : CFObjectBase {
  __CFString() : CFObjectBase(kTypeString) {}
  std::u16string units;
};

struct __CFURL : CFObjectBase {
  __CFURL() : CFObjectBase(kTypeURL) {}
  std::string path; // file-system path, without a trailing slash (except "/")
};

struct __CFBundle : CFObjectBase {
  __CFBundle() : CFObjectBase(kTypeBundle) {}
  ~__CFBundle() override;
  std::string path;                        // the bundle directory
  std::map<std::string, CFStringRef> info; // Info.plist string values
  bool isMain = false;                     // lookups search the main program's exports
  std::mutex handleLock;
  void* handle = nullptr; // dlopen handle of the loaded executable, taken on first lookup
};

namespace cfstandin {

// A new string holding `units` (reference count 1).
CFStringRef MakeString(std::u16string units);
// The units of a string (empty for null).
const std::u16string& Units(CFStringRef string);
// UTF-8 form of a string, for file names and symbol names.
std::string ToUTF8(CFStringRef string);
// The units of UTF-8 text; empty when it is not well-formed.
std::u16string FromUTF8(const std::string& text);

// Appends the decoded units of `bytes` in one of the stand-in's encodings (Mac Roman, UTF-8);
// false when the encoding is another or the bytes are not valid in it.
bool DecodeBytes(const uint8_t* bytes, size_t count, CFStringEncoding encoding,
                 std::u16string& out);
// The executable path of a bundle: Contents/MacOS/<CFBundleExecutable>, or empty.
std::string ExecutablePath(CFBundleRef bundle);

} // namespace cfstandin
