#include "host/services/fader_law.h"

#include <cmath>
#include <limits>

double faderPositionToDb(double position) {
  if (!(position > 0.0)) return -std::numeric_limits<double>::infinity();
  if (position >= kFaderTopPosition) return kFaderTopDb;
  return kFaderTopDb + kFaderDbPerDecade * std::log10(position / kFaderTopPosition);
}

double dbToFaderPosition(double levelDb) {
  if (std::isnan(levelDb) || levelDb == -std::numeric_limits<double>::infinity()) return 0.0;
  if (levelDb >= kFaderTopDb) return kFaderTopPosition;
  return kFaderTopPosition * std::pow(10.0, (levelDb - kFaderTopDb) / kFaderDbPerDecade);
}
