// CoreFoundation stand-in: the umbrella header, as on macOS.
#pragma once

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFBundle.h>
#include <CoreFoundation/CFString.h>
#include <CoreFoundation/CFURL.h>
#include <assert_rtn.h>
