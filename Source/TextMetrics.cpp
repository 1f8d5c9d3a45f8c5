#include "HostFunctions.h"

#include <cstring>

// A host without text metrics answers with an all-zero record (ten 64-bit words); a caller
// that passes no record gets nothing written.
void SX_GetTextMetrics_UTF16(void* a1, void* a2, int32_t a3, void* metrics, uint32_t version,
                             double a6) {
  if (!sxhost::SX_GetTextMetrics_UTF16_Available()) {
    if (metrics)
      std::memset(metrics, 0, 80);
    return;
  }
  sxhost::SX_GetTextMetrics_UTF16(a1, a2, a3, metrics, version, a6);
}
