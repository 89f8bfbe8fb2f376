// The constants of the panning law, shared by the scalar law and the vector kernels.
#pragma once

constexpr double kLfeFactor = 0.25;        // gain to an LFE speaker per unit of lfeSend
constexpr double kDeadZone = 0.02;         // distances up to it count as 0
constexpr double kDeadZoneDivisor = 0.98;  // stretches the rest back to the full range
constexpr double kRelativeSlope = 4.0;     // relative law: 2^(-4 d)
constexpr double kNear = 0.1;  // closeness that fades the other speakers; width of the wall fade
constexpr double kBiasFloor = 1e-6;  // what is left of the spread on an axis at bias +-1
constexpr double kCentreBand = 0.5;  // centerTrim acts on speakers with |x| below it
static_assert(kDeadZone + kDeadZoneDivisor == 1.0, "a distance of 1 stays 1");
constexpr double kTurnPerAngle = 3.14159265358979323846;  // diffuseAngle 1 turns the spread by pi
