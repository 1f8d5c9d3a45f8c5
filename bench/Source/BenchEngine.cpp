// The smallest possible host: one layer query, so that a benchmark measures the call itself.
#include "HostExports.h"

int32_t SX_GetShowLayer(int32_t layer, uint32_t) {
  return layer + 1;
}
