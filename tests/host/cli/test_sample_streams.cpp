// The render's streams: frames cross chunk boundaries intact, the file's end and missing channels
// are honoured, and the meter measuring while interleaving agrees exactly with the plain one.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <string>
#include <vector>

#include "host/cli/sample_streams.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// Channel c, frame f: distinct values that survive 32-bit floats and 16-bit files exactly.
double valueAt(int channel, std::int64_t frame) {
  return (static_cast<double>((frame * 7 + channel * 131) % 4096) - 2048.0) / 4096.0;
}

std::string temporaryPath(const char* name) {
  return ::testing::TempDir() + name + std::to_string(getpid()) + ".wav";
}

OutputFormat formatOf(int sndfileFormat) {
  OutputFormat format;
  format.sndfileFormat = sndfileFormat;
  return format;
}

// Writes `frames` frames through an OutputStream in uneven pieces, returns the levels.
LevelMeter writeThroughStream(const std::string& path, int format, int channels,
                              std::int64_t frames) {
  LevelMeter levels(channels);
  AudioWriter writer(path, channels, 48000, formatOf(format));
  OutputStream stream(writer, channels, levels);
  std::vector<std::vector<double>> planar(channels);
  std::vector<const double*> pointers(channels);
  for (std::int64_t at = 0, piece = 1000; at < frames; at += piece, piece = piece * 3 % 9001 + 1) {
    const auto span = static_cast<int>(std::min(piece, frames - at));
    for (int c = 0; c < channels; ++c) {
      planar[c].resize(span);
      for (int f = 0; f < span; ++f) planar[c][f] = valueAt(c, at + f);
      pointers[c] = planar[c].data();
    }
    stream.put(pointers.data(), span);
  }
  stream.finish();
  writer.close();
  return levels;
}

}  // namespace

static_assert(streamChunkFrames(64 * 4) == 1024 && streamChunkFrames(1 << 20) == 1);

// Every coding decoded from the file's bytes, and files libsndfile converts (other byte order,
// doubles, compressed).
TEST(SampleStreams, FramesCrossChunksIntactInFloatAndIntegerFiles) {
  const std::int64_t frames = 2 * streamChunkFrames(3 * 2) + 123;
  for (int format : {SF_FORMAT_WAV | SF_FORMAT_FLOAT, SF_FORMAT_WAV | SF_FORMAT_PCM_16,
                     SF_FORMAT_WAV | SF_FORMAT_PCM_24, SF_FORMAT_WAV | SF_FORMAT_PCM_32,
                     SF_FORMAT_AIFF | SF_FORMAT_PCM_24, SF_FORMAT_WAV | SF_FORMAT_DOUBLE,
                     SF_FORMAT_FLAC | SF_FORMAT_PCM_16}) {
    const std::string path = temporaryPath("streams");
    const LevelMeter levels = writeThroughStream(path, format, 3, frames);
    EXPECT_NEAR(levels.peakDb(0), linearToDbfs(0.5), 1e-9);

    // Read back into four channels, one more than the file has, in pieces of the render's size.
    AudioReader reader(path);
    InputStream stream(reader);
    std::vector<std::vector<double>> planar(4, std::vector<double>(5000, -1.0));
    double* pointers[4] = {planar[0].data(), planar[1].data(), planar[2].data(), planar[3].data()};
    std::int64_t at = 0;
    int mismatches = 0;
    for (int got = 0; (got = stream.take(pointers, 4, 5000)) > 0; at += got) {
      for (int f = 0; f < got; ++f) {
        for (int c = 0; c < 3; ++c) mismatches += planar[c][f] != valueAt(c, at + f);
        mismatches += planar[3][f] != 0.0;
      }
    }
    EXPECT_EQ(at, frames) << format;
    EXPECT_EQ(mismatches, 0) << format;
    std::remove(path.c_str());
  }
}

TEST(LevelMeter, InterleavingMeasuresExactlyAsAddingInterleavedFrames) {
  const struct {
    const char* name;
    std::vector<double> left, right;
  } cases[] = {
      {"finite, overs on both sides", {0.5, -1.5, 0.1, 1.0}, {-0.25, 2.0, 0.0, -1.0000001}},
      {"a NaN and an infinity", {0.5, kNaN, 0.3, -0.75}, {kInf, 0.2, -3.0, 0.1}},
      {"squares beyond the largest double", {1e200, 0.5, 1.0, 0.0}, {0.1, 0.2, 0.3, 0.4}},
  };
  for (const auto& c : cases) {
    LevelMeter plain(2), fused(2);
    std::vector<double> interleaved;
    for (std::size_t f = 0; f < c.left.size(); ++f) {
      interleaved.push_back(c.left[f]);
      interleaved.push_back(c.right[f]);
    }
    // Two calls, so that a chunk measured again starts from the state of the one before.
    const double* halves[2][2] = {{c.left.data(), c.right.data()},
                                  {c.left.data() + 2, c.right.data() + 2}};
    std::vector<float> out(interleaved.size());
    plain.add(interleaved.data(), 4);
    fused.interleave(halves[0], 2, out.data());
    fused.interleave(halves[1], 2, out.data() + 4);
    for (int ch = 0; ch < 2; ++ch) {
      EXPECT_EQ(fused.peakDb(ch), plain.peakDb(ch)) << c.name;
      EXPECT_TRUE(fused.rmsDb(ch) == plain.rmsDb(ch) ||
                  (std::isnan(fused.rmsDb(ch)) && std::isnan(plain.rmsDb(ch))))
          << c.name;
      EXPECT_EQ(fused.overs(ch), plain.overs(ch)) << c.name;
    }
    EXPECT_EQ(fused.nonFinite(), plain.nonFinite()) << c.name;
    for (std::size_t k = 0; k < out.size(); ++k) {
      EXPECT_TRUE(out[k] == static_cast<float>(interleaved[k]) || std::isnan(out[k])) << c.name;
    }
  }
}
