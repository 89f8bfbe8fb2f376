// The straightforward mix: one loop over the samples per input-speaker pair.
#pragma once

// out[s][n] = sum over i of in[i][n] * gains[i * outputs + s], pair by pair.
void perPairMix(const double* const* in, double* const* out, const double* gains, int inputs,
                int outputs, int frames);
