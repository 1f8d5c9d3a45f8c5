// A host engine that exports no host function at all: every wrapper bound to it takes its
// fallback, and only the SDK's own logic around the calls remains.
extern "C" __attribute__((visibility("default"))) int TestHost_ExportsNoHostFunction() {
  return 1;
}
