// The host's fader law: fader positions 0..1000 against levels in dB.
//
// The curve is a fourth-power taper in amplitude, gainLinear = 10^(12/20) * (position/1000)^4,
// that is levelDb = 12 + 80 * log10(position / 1000):
//   position    0 -> -inf dB      position  250 -> -36.2 dB
//   position  100 -> -68 dB       position  500 -> -12.1 dB
//   position  708 ->   0 dB (70.8 % of the travel)
//   position 1000 -> +12 dB
// It is smooth, strictly increasing, spends most of the travel near unity where fine moves
// matter, and has a closed-form inverse, so the two conversions undo each other exactly (to
// rounding).
#pragma once

constexpr double kFaderTopPosition = 1000.0;
constexpr double kFaderTopDb = 12.0;
constexpr double kFaderDbPerDecade = 80.0;  // 20 dB per decade of amplitude, times the power 4

// Positions at or below 0 give -inf; above the top they are taken as the top.
double faderPositionToDb(double position);
// -inf (or NaN) gives 0; levels above +12 dB give 1000.
double dbToFaderPosition(double levelDb);
