// Host alerts of the dialogs family: every alert is logged, and shown on standard error with the
// text the user would read (the localised text of an identifier, looked up in the calling
// plug-in's bundle). Also the family's build-kind query.
#include <cstdio>
#include <optional>

#include "BundleStrings.h"
#include "EngineState.h"
#include "HostExport.h"
#include "TextCodec.h"

using namespace scribo::engine;
using scribo::MacRomanToUtf8, scribo::Utf16ToUtf8;

namespace {

const char* KindName(uint16_t kind) {
  switch (kind) {
  case kAlertPlain:
    return "notice";
  case kAlertRejected:
    return "rejected";
  case kAlertInternal:
    return "error";
  default:
    return "alert";
  }
}

int ShowAlert(OpaqueCocoaWindow* owner, uint32_t kind, int32_t identifier,
              std::optional<std::string> literal, const void* caller) {
  EngineState& s = State();
  ++s.Count(HostCall::AlertMessage);
  if (identifier == 0 && !literal)
    return 0;
  AlertRecord alert;
  alert.kind = uint16_t(kind);
  alert.identifier = identifier;
  DialogWindow* dialog = s.Dialog(owner);
  alert.dialog = dialog ? dialog->resource : 0;
  if (literal)
    alert.text = *literal;
  if (identifier != 0) {
    alert.key = StringKey(identifier);
    std::optional<std::string> bundle = EnclosingBundle(caller);
    if (!bundle && dialog)
      bundle = dialog->bundle;
    std::optional<std::string> localized =
        bundle ? LocalizedString(*bundle, alert.key) : std::nullopt;
    alert.resolved = localized ? *localized : literal ? *literal : alert.key;
  } else {
    alert.resolved = alert.text;
  }
  if (s.alertEcho)
    std::fprintf(stderr, "[%s] %s\n", KindName(alert.kind), alert.resolved.c_str());
  s.alerts.push_back(std::move(alert));
  return 1;
}

} // namespace

SX_EXPORT int SX_AlertMessage(OpaqueCocoaWindow* owner, uint32_t kind, int32_t identifier,
                              const char* text, uint32_t version) {
  return ShowAlert(owner, kind, identifier,
                   text ? std::optional(MacRomanToUtf8(text)) : std::nullopt,
                   __builtin_return_address(0));
}

SX_EXPORT int SX_AlertMessage_UTF16(OpaqueCocoaWindow* owner, uint32_t kind, int32_t identifier,
                                    const uint16_t* text, uint32_t version) {
  return ShowAlert(owner, kind, identifier, text ? std::optional(Utf16ToUtf8(text)) : std::nullopt,
                   __builtin_return_address(0));
}

// The engine runs plug-ins as bundles with the host's calling conventions.
SX_EXPORT int SX_IsMachO(uint32_t version) {
  return 1;
}
