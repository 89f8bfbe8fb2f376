#include "bench/per_pair_mix.h"

#include <cstring>

void perPairMix(const double* const* in, double* const* out, const double* gains, int inputs,
                int outputs, int frames) {
  for (int s = 0; s < outputs; ++s) std::memset(out[s], 0, sizeof(double) * frames);
  for (int i = 0; i < inputs; ++i) {
    for (int s = 0; s < outputs; ++s) {
      const double g = gains[i * outputs + s];
      for (int n = 0; n < frames; ++n) out[s][n] += in[i][n] * g;
    }
  }
}
