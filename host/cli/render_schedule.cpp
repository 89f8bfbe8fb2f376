#include "host/cli/render_schedule.h"

#include <algorithm>
#include <map>

RenderSchedule::RenderSchedule(std::vector<ParameterChange> changes, int blockSize, int glideFrames,
                               std::int64_t totalFrames)
    : changes_(std::move(changes)),
      blockSize_(blockSize),
      glideFrames_(glideFrames),
      totalFrames_(totalFrames) {}

bool RenderSchedule::next(Segment& segment) {
  if (position_ >= totalFrames_) return false;
  segment.start = position_;
  segment.firstChange = nextChange_;
  while (nextChange_ < changes_.size() && changes_[nextChange_].sample <= position_) ++nextChange_;
  segment.endChange = nextChange_;
  const bool changed = segment.endChange > segment.firstChange;
  std::int64_t frames = blockSize_;
  if (glideFrames_ == 0) {
    frames = blockSize_ - position_ % blockSize_;
  } else if (changed) {
    frames = glideFrames_;
  }
  if (nextChange_ < changes_.size())
    frames = std::min(frames, changes_[nextChange_].sample - position_);
  frames = std::min(frames, totalFrames_ - position_);
  segment.frames = static_cast<int>(frames);
  position_ += frames;
  return true;
}

std::vector<ParameterChange> interpolateChanges(const std::vector<ParameterChange>& changes,
                                                int stepFrames) {
  if (stepFrames < 1) return changes;
  std::vector<ParameterChange> lines;
  std::map<int, ParameterChange> previous;  // by parameter
  for (const ParameterChange& change : changes) {
    const auto found = previous.find(change.parameter);
    if (found != previous.end()) {
      const ParameterChange& from = found->second;
      const auto span = static_cast<double>(change.sample - from.sample);
      for (std::int64_t at = from.sample + stepFrames; at < change.sample; at += stepFrames) {
        const double t = static_cast<double>(at - from.sample) / span;
        lines.push_back({at, change.parameter,
                         static_cast<float>(from.value + (change.value - from.value) * t)});
      }
    }
    lines.push_back(change);
    previous[change.parameter] = change;
  }
  std::stable_sort(
      lines.begin(), lines.end(),
      [](const ParameterChange& a, const ParameterChange& b) { return a.sample < b.sample; });
  return lines;
}
