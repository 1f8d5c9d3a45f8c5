// Export marker of the engine's C++ API. The engine is built with hidden visibility; only the
// host functions, the window-system functions and what carries this marker leave the image.
#pragma once

#if defined(__GNUC__)
#define SCRIBO_ENGINE_API __attribute__((visibility("default")))
#else
#define SCRIBO_ENGINE_API
#endif
