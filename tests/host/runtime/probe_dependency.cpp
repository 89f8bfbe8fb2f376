// The library that the needs-library probe links and the loader never finds.
extern "C" __attribute__((visibility("default"))) int probeDependencyVersion() {
  return 3;
}
