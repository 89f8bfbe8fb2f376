#include "host/live/file_player.h"

#include <sndfile.h>

#include <chrono>
#include <vector>

#include "host/runtime/host_error.h"

namespace {

constexpr std::size_t kDecodeFrames = 4096;
constexpr auto kDecodePause = std::chrono::milliseconds(5);

SNDFILE* openFile(const std::string& path, SF_INFO& info) {
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  if (file == nullptr) throw HostError("cannot read " + path + ": " + sf_strerror(nullptr));
  if (info.frames <= 0 || info.channels <= 0) {
    sf_close(file);
    throw HostError(path + " has no samples to play");
  }
  return file;
}

SF_INFO checkedInfo(const std::string& path, int sampleRate, SNDFILE*& file) {
  SF_INFO info{};
  file = openFile(path, info);
  if (info.samplerate != sampleRate) {
    sf_close(file);
    throw HostError(path + " is at " + std::to_string(info.samplerate) +
                    " Hz and the JACK server runs at " + std::to_string(sampleRate) +
                    " Hz; convert it first (e.g. sox in.wav -r " + std::to_string(sampleRate) +
                    " out.wav)");
  }
  return info;
}

}  // namespace

FilePlayer::FilePlayer(const std::string& path, int sampleRate) {
  SNDFILE* file = nullptr;
  const SF_INFO info = checkedInfo(path, sampleRate, file);
  file_ = file;
  channels_ = info.channels;
  frames_ = info.frames;
  ring_ = std::make_unique<SpscRing<float>>(static_cast<std::size_t>(kAheadSeconds * sampleRate) *
                                            static_cast<std::size_t>(channels_));
  fill();
  decoder_ = std::thread([this] { decode(); });
}

FilePlayer::~FilePlayer() {
  running_.store(false);
  decoder_.join();
  sf_close(static_cast<SNDFILE*>(file_));
}

// Decodes while the ring has room for a whole chunk, from the start again at the end.
void FilePlayer::fill() {
  auto* file = static_cast<SNDFILE*>(file_);
  std::vector<float> chunk(kDecodeFrames * static_cast<std::size_t>(channels_));
  while (ring_->writable() >= chunk.size()) {
    sf_count_t got = sf_readf_float(file, chunk.data(), static_cast<sf_count_t>(kDecodeFrames));
    if (got <= 0) {
      sf_seek(file, 0, SEEK_SET);
      got = sf_readf_float(file, chunk.data(), static_cast<sf_count_t>(kDecodeFrames));
      if (got <= 0) return;  // unreadable after all: the audio thread plays silence
    }
    ring_->write(chunk.data(), static_cast<std::size_t>(got) * static_cast<std::size_t>(channels_));
  }
}

void FilePlayer::decode() {
  while (running_.load()) {
    fill();
    std::this_thread::sleep_for(kDecodePause);
  }
}
