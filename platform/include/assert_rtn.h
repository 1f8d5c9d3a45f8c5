// The C library's assertion report, as on macOS: prints
// "Assertion failed: (EXPR), function FUNC, file FILE, line LINE." on standard error and aborts.
#pragma once

#ifdef __cplusplus
extern "C" {
#endif
[[noreturn]] void __assert_rtn(const char* func, const char* file, int line, const char* expr);
#ifdef __cplusplus
}
#endif
