// A multichannel file played in a loop into a live session's inputs. A thread of its own decodes
// ahead into a lock-free ring; the audio thread only reads the ring, never the disk.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>

#include "host/live/spsc_ring.h"

class FilePlayer {
 public:
  static constexpr double kAheadSeconds = 2.0;

  // Opens the file and decodes the first seconds before it returns. Throws HostError for a file
  // that cannot be read, has no samples, or is not at `sampleRate`.
  FilePlayer(const std::string& path, int sampleRate);
  ~FilePlayer();
  FilePlayer(const FilePlayer&) = delete;
  FilePlayer& operator=(const FilePlayer&) = delete;

  int channels() const { return channels_; }
  std::int64_t frames() const { return frames_; }
  // [audio thread] Interleaved samples; fewer than asked when the decoder fell behind.
  std::size_t read(float* samples, std::size_t count) { return ring_->read(samples, count); }
  void skip(std::size_t frames) { ring_->discard(frames * static_cast<std::size_t>(channels_)); }

 private:
  void fill();
  void decode();

  void* file_ = nullptr;  // SNDFILE
  int channels_ = 0;
  std::int64_t frames_ = 0;
  std::unique_ptr<SpscRing<float>> ring_;
  std::atomic<bool> running_{true};
  std::thread decoder_;
};
