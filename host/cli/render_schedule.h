// When a render calls the plug-in. Parameter changes take effect at their exact samples; after a
// change the plug-in gets one block of exactly the glide's length, so that a plug-in that glides
// across the block following a change (Spatiola does) glides the same whatever --block is.
// A glide of 0 keeps the blocks on the grid of --block: the glide then spans the rest of the
// block the change falls in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

struct ParameterChange {
  std::int64_t sample;
  int parameter;
  float value;
};

struct Segment {
  std::int64_t start = 0;
  int frames = 0;
  // The changes to apply before the segment: [firstChange, endChange) of the schedule's list.
  std::size_t firstChange = 0;
  std::size_t endChange = 0;
};

class RenderSchedule {
 public:
  // `changes` in time order; `totalFrames` of audio in blocks of `blockSize`; glides of
  // `glideFrames` (0: none of their own).
  RenderSchedule(std::vector<ParameterChange> changes, int blockSize, int glideFrames,
                 std::int64_t totalFrames);

  // The next segment; false when the audio is done.
  bool next(Segment& segment);
  const std::vector<ParameterChange>& changes() const { return changes_; }
  // The largest block it hands out: the plug-in's block size.
  int largestBlock() const { return glideFrames_ > blockSize_ ? glideFrames_ : blockSize_; }

 private:
  std::vector<ParameterChange> changes_;
  int blockSize_;
  int glideFrames_;
  std::int64_t totalFrames_;
  std::int64_t position_ = 0;
  std::size_t nextChange_ = 0;
};

// Lines between the points of each parameter: every `stepFrames` between two points of the same
// parameter, a change to the value on the straight line between them. Time order is kept.
std::vector<ParameterChange> interpolateChanges(const std::vector<ParameterChange>& changes,
                                                int stepFrames);
