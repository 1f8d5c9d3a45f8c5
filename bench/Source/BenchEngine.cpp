// The smallest possible host: one layer query, so that a benchmark measures the call itself.
#include <cstdint>

extern "C" __attribute__((visibility("default"))) int SX_GetShowLayer(int layer, uint32_t) { return layer + 1; }
