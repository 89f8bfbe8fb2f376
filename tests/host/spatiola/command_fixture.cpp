#include "tests/host/spatiola/command_fixture.h"

#include <fcntl.h>
#include <sndfile.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <thread>

#include "host/cli/audio_file.h"

namespace {

int exitCodeOf(int status) {
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void redirect(const std::string& path, int fd, int flags) {
  const int file = open(path.c_str(), flags, 0644);
  if (file >= 0) {
    dup2(file, fd);
    close(file);
  }
}

}  // namespace

CommandResult runCommand(const std::vector<std::string>& argv, const std::string& stdinPath) {
  return finishCommand(startCommand(argv, stdinPath));
}

RunningCommand startCommand(const std::vector<std::string>& argv, const std::string& stdinPath) {
  char outPattern[] = "/tmp/spatiola-out-XXXXXX";
  char errPattern[] = "/tmp/spatiola-err-XXXXXX";
  close(mkstemp(outPattern));
  close(mkstemp(errPattern));
  const pid_t child = fork();
  if (child == 0) {
    redirect(outPattern, STDOUT_FILENO, O_WRONLY | O_TRUNC);
    redirect(errPattern, STDERR_FILENO, O_WRONLY | O_TRUNC);
    redirect(stdinPath.empty() ? "/dev/null" : stdinPath, STDIN_FILENO, O_RDONLY);
    std::vector<char*> args;
    args.reserve(argv.size() + 1);
    for (const std::string& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
    args.push_back(nullptr);
    alarm(kCommandSeconds);  // a program caught in a loop fails its test, not the whole run
    execv(args[0], args.data());
    _exit(127);
  }
  return {child, outPattern, errPattern};
}

CommandResult finishCommand(const RunningCommand& command) {
  int status = 0;
  waitpid(command.pid, &status, 0);
  CommandResult result;
  result.exitCode = exitCodeOf(status);
  result.out = readFile(command.outPath);
  result.err = readFile(command.errPath);
  std::remove(command.outPath.c_str());
  std::remove(command.errPath.c_str());
  return result;
}

int exitCodeIfEnded(int pid) {
  int status = 0;
  return waitpid(pid, &status, WNOHANG) == pid ? exitCodeOf(status) : -1;
}

bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
  const auto end = std::chrono::steady_clock::now() + timeout;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return true;
}

std::string readFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

double AudioData::peakDb(int channel) const {
  double peak = 0.0;
  for (std::int64_t f = 0; f < frames; ++f) peak = std::max(peak, std::fabs(at(f, channel)));
  return 20.0 * std::log10(peak);
}

AudioData readAudio(const std::string& path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
  EXPECT_NE(file, nullptr) << path;
  AudioData audio;
  if (file == nullptr) return audio;
  audio = {info.channels, info.samplerate, info.format, info.frames, {}, {}};
  std::vector<int> map(static_cast<std::size_t>(info.channels));
  const int mapBytes = static_cast<int>(map.size() * sizeof(int));
  if (sf_command(file, SFC_GET_CHANNEL_MAP_INFO, map.data(), mapBytes) == SF_TRUE) {
    audio.channelMap = map;
  }
  audio.samples.resize(static_cast<std::size_t>(info.frames * info.channels));
  sf_readf_double(file, audio.samples.data(), info.frames);
  sf_close(file);
  return audio;
}

void writeAudio(const std::string& path, int channels, const std::vector<double>& samples,
                int sampleRate) {
  OutputFormat format;
  format.sndfileFormat = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  AudioWriter writer(path, channels, sampleRate, format);
  writer.write(samples.data(), static_cast<std::int64_t>(samples.size()) / channels);
  writer.close();
}

void writeLevels(const std::string& path, const std::vector<double>& levels, std::int64_t frames) {
  std::vector<double> samples;
  for (std::int64_t f = 0; f < frames; ++f)
    samples.insert(samples.end(), levels.begin(), levels.end());
  writeAudio(path, static_cast<int>(levels.size()), samples);
}

CommandResult CommandTest::spatiola(std::vector<std::string> args, const std::string& stdinPath) {
  args.insert(args.begin(), SPATIOLA_EXE);
  return runCommand(args, stdinPath);
}
