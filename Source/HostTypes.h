// Types that the host-function tables name: windows, dialog handlers, the version stamp.
#pragma once

#include <cstdint>

#include "EREGION.h"
#include "EXTGF2005a.h"

// The host version stamp: the last argument of every host call and the plug-in's version.
constexpr uint32_t kScriboHostVersion = 0x19500000;

// A host window or dialog window; opaque to plug-ins.
struct OpaqueCocoaWindow;

// Dialog handler messages.
constexpr unsigned int kDialogMessageSetUp = 272;  // 0x110: fill the controls
constexpr unsigned int kDialogMessageAction = 273; // 0x111: the user acted on `item`
constexpr unsigned int kDialogMessageClose = 2;    // the dialog is closing

// The handler a host calls during SX_Dialog: window, message, item, extra (bits 16..31: the
// notification code of message 273), user data. Returns an 8-bit flag.
typedef unsigned char (*SF_DialogHandlerProcPtr)(OpaqueCocoaWindow* dialog, unsigned int message,
                                                 long item, long extra, void* userData);
// The handle SX_Dialog takes: the handler's own address.
typedef SF_DialogHandlerProcPtr SF_DialogHandlerUPP;

// Alert kinds of SX_AlertMessage.
constexpr unsigned short kAlertPlain = 0;     // a plain notice
constexpr unsigned short kAlertRejected = 16; // a rejected dialog entry
constexpr unsigned short kAlertInternal = 48; // an internal error
