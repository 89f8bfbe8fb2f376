// The built spatiola program on files made here: channel counts, lengths and levels of what it
// writes, automation at exact samples, state files, third-party plug-ins, a file made by sox,
// crash reports and error messages.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "host/cli/audio_file.h"
#include "model/counts.h"
#include "model/layouts.h"
#include "model/panner_plugin.h"
#include "plugin/state_chunk.h"
#include "tests/host/command_runner.h"
#include "tests/host/temp_config.h"

namespace {

const std::string kSpatiola = SPATIOLA_EXE;
const std::string kProbe = std::string(PROBE_DIR) + "/probe.so";
const std::string kIemDir = IEM_PLUGIN_DIR;

struct Audio {
  AudioFileInfo info;
  int format = 0;
  std::vector<double> samples;  // interleaved
  double at(std::int64_t frame, int channel) const {
    return samples[static_cast<std::size_t>(frame * info.channels + channel)];
  }
};

Audio readAudio(const std::string& path) {
  SF_INFO sfInfo{};
  SNDFILE* file = sf_open(path.c_str(), SFM_READ, &sfInfo);
  EXPECT_NE(file, nullptr) << path;
  Audio audio;
  if (file == nullptr) return audio;
  audio.info = AudioFileInfo{sfInfo.channels, sfInfo.samplerate, sfInfo.frames};
  audio.format = sfInfo.format;
  audio.samples.resize(static_cast<std::size_t>(sfInfo.frames * sfInfo.channels));
  sf_readf_double(file, audio.samples.data(), sfInfo.frames);
  sf_close(file);
  return audio;
}

// Channel c carries a sine of 0.5 amplitude at 100 * (c + 1) Hz.
void writeSines(const std::string& path, int channels, std::int64_t frames, int rate = 48000) {
  OutputFormat format;
  format.sndfileFormat = (channels > 2 ? SF_FORMAT_WAVEX : SF_FORMAT_WAV) | SF_FORMAT_FLOAT;
  AudioWriter writer(path, channels, rate, format);
  std::vector<double> samples;
  for (std::int64_t f = 0; f < frames; ++f) {
    for (int c = 0; c < channels; ++c) {
      samples.push_back(0.5 * std::sin(2.0 * M_PI * 100.0 * (c + 1) * f / rate));
    }
  }
  writer.write(samples.data(), frames);
  writer.close();
}

void writeConstant(const std::string& path, double value, std::int64_t frames) {
  OutputFormat format;
  format.sndfileFormat = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  AudioWriter writer(path, 1, 48000, format);
  const std::vector<double> samples(static_cast<std::size_t>(frames), value);
  writer.write(samples.data(), frames);
  writer.close();
}

double peakDb(const Audio& audio, int channel) {
  double peak = 0.0;
  for (std::int64_t f = 0; f < audio.info.frames; ++f)
    peak = std::max(peak, std::fabs(audio.at(f, channel)));
  return 20.0 * std::log10(peak);
}

class EndToEnd : public ::testing::Test {
 protected:
  std::string path(const std::string& name) const { return config_.dir() + "/" + name; }
  CommandResult spatiola(std::vector<std::string> args, const std::string& stdinPath = "") {
    args.insert(args.begin(), kSpatiola);
    return runCommand(args, stdinPath);
  }

  TempConfig config_;
};

}  // namespace

TEST_F(EndToEnd, RenderKeepsLengthAndAppliesTheParameters) {
  writeSines(path("in.wav"), 3, 62401);  // not a whole number of blocks
  const CommandResult run = spatiola(
      {"render", "--plugin", kProbe, "--set", "gain=0.25", path("in.wav"), path("out.wav")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const Audio in = readAudio(path("in.wav"));
  const Audio out = readAudio(path("out.wav"));
  EXPECT_EQ(out.info.channels, 3);
  EXPECT_EQ(out.info.frames, 62401);
  EXPECT_EQ(out.info.sampleRate, 48000);
  EXPECT_EQ(out.format, SF_FORMAT_WAV | SF_FORMAT_FLOAT);  // outputs without known positions
  for (std::int64_t f = 0; f < out.info.frames; f += 997) {
    for (int c = 0; c < 3; ++c) ASSERT_NEAR(out.at(f, c), 0.5 * in.at(f, c), 1e-7) << f;
  }
  EXPECT_NEAR(peakDb(out, 0), 20.0 * std::log10(0.25), 0.01);
  // The level table: 0.25 peak is -12.04 dBFS, a sine's RMS 3.01 dB below.
  EXPECT_NE(run.out.find("rendered 62401 samples (3 -> 3 channels, 48000 Hz)"), std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find("1                               -12.04     -15.05"), std::string::npos)
      << run.out;
  EXPECT_FALSE(std::filesystem::exists(path("out.wav.partial")));
}

TEST_F(EndToEnd, AutomationTakesEffectAtItsExactSample) {
  writeConstant(path("ones.wav"), 0.5, 1000);
  std::ofstream(path("moves.csv")) << "time,parameter,value\n0.0125,0,1\n0.01,gain,0.25\n";
  const CommandResult run =
      spatiola({"render", "--plugin", kProbe, "--block", "256", "--automation", path("moves.csv"),
                path("ones.wav"), path("out.w64")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const Audio out = readAudio(path("out.w64"));
  EXPECT_EQ(out.format & SF_FORMAT_TYPEMASK, SF_FORMAT_W64);
  ASSERT_EQ(out.info.frames, 1000);
  EXPECT_DOUBLE_EQ(out.at(0, 0), 0.5);
  EXPECT_DOUBLE_EQ(out.at(479, 0), 0.5);  // 0.01 s at 48 kHz is sample 480
  EXPECT_DOUBLE_EQ(out.at(480, 0), 0.25);
  EXPECT_DOUBLE_EQ(out.at(599, 0), 0.25);  // 0.0125 s is sample 600, inside the third block
  EXPECT_DOUBLE_EQ(out.at(600, 0), 1.0);
  EXPECT_DOUBLE_EQ(out.at(999, 0), 1.0);
}

TEST_F(EndToEnd, StateBlocksLoadAndSaveAsBytes) {
  writeConstant(path("ones.wav"), 0.5, 100);
  std::ofstream(path("state.bin")) << "gain=0.125\n";
  const CommandResult run =
      spatiola({"render", "--plugin", kProbe, "--state", path("state.bin"), "--save-state",
                path("saved.bin"), "--sample-format", "pcm24", path("ones.wav"), path("out.flac")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const Audio out = readAudio(path("out.flac"));
  EXPECT_EQ(out.format, SF_FORMAT_FLAC | SF_FORMAT_PCM_24);
  EXPECT_NEAR(out.at(50, 0), 0.125, 1e-6);
  std::ifstream saved(path("saved.bin"));
  const std::string report((std::istreambuf_iterator<char>(saved)),
                           std::istreambuf_iterator<char>());
  EXPECT_NE(report.find("gain=0.125000\n"), std::string::npos) << report;
  EXPECT_NE(report.find("bound_names=335\n"), std::string::npos) << report;
  EXPECT_NE(report.find("track_channels=1\n"), std::string::npos) << report;  // the file's
  EXPECT_NE(report.find("process_calls=2\n"), std::string::npos) << report;   // empty block first
}

TEST_F(EndToEnd, RendersAFileMadeBySox) {
  const std::string input = path("sox.wav");
  ASSERT_EQ(runCommand({"/usr/bin/sox", "-n", "-r", "44100", "-c", "2", "-b", "24", input, "synth",
                        "0.5", "sine", "1000", "gain", "-6"})
                .exitCode,
            0);
  const CommandResult run =
      spatiola({"render", "--plugin", kProbe, input, path("out.aiff"), "--sample-format", "pcm16"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const Audio out = readAudio(path("out.aiff"));
  EXPECT_EQ(out.format, SF_FORMAT_AIFF | SF_FORMAT_PCM_16);
  EXPECT_EQ(out.info.channels, 2);
  EXPECT_EQ(out.info.frames, 22050);
  EXPECT_EQ(out.info.sampleRate, 44100);
  EXPECT_NEAR(peakDb(out, 0), -6.0, 0.05);
  EXPECT_NEAR(peakDb(out, 1), -6.0, 0.05);
}

TEST_F(EndToEnd, RendersThroughAThirdPartyPlugin) {
  const std::string encoder = kIemDir + "/libStereoEncoder.so";
  if (!std::filesystem::exists(encoder)) GTEST_SKIP() << "iem-plugin-suite-vst is not installed";
  writeSines(path("stereo.wav"), 2, 24000);
  const CommandResult run = spatiola(
      {"render", "--plugin", encoder, "--ambisonic", path("stereo.wav"), path("ambi.wav")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const Audio out = readAudio(path("ambi.wav"));
  EXPECT_EQ(out.info.channels, 64);  // the encoder's 7th-order output
  EXPECT_EQ(out.info.frames, 24000);
  // Both sources straight ahead: W carries their sum, the left-right component nothing.
  const Audio in = readAudio(path("stereo.wav"));
  double sumPeak = 0.0;
  for (std::int64_t f = 0; f < in.info.frames; ++f) {
    sumPeak = std::max(sumPeak, std::fabs(in.at(f, 0) + in.at(f, 1)));
  }
  EXPECT_NEAR(peakDb(out, 0), 20.0 * std::log10(sumPeak), 0.5);
  EXPECT_LT(peakDb(out, 1), -60.0);
  EXPECT_NE(run.err.find("note: the plug-in has 64 inputs; inputs 3..64 receive silence"),
            std::string::npos)
      << run.err;
  const CommandResult info = spatiola({"info", "--json", "--plugin", encoder});
  ASSERT_EQ(info.exitCode, 0) << info.err;
  const auto json = nlohmann::json::parse(info.out);
  EXPECT_EQ(json["effect"], "StereoEncoder");
  EXPECT_EQ(json["outputs"], 64);
  EXPECT_EQ(json["parameters"][6]["name"], "Azimuth Angle");
}

TEST_F(EndToEnd, InfoDescribesThePlugin) {
  const CommandResult run =
      spatiola({"info", "--json", "--channels", "4", "--plugin", kProbe, "--set", "1=0.5"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const auto info = nlohmann::json::parse(run.out);
  EXPECT_EQ(info["effect"], "Probe");
  EXPECT_EQ(info["vendor"], "Host Tests");
  EXPECT_EQ(info["uniqueId"], "prbe");
  EXPECT_EQ(info["version"], 3);
  EXPECT_EQ(info["inputs"], 4);
  EXPECT_EQ(info["flags"], nlohmann::json({"replacing", "program chunks", "double replacing"}));
  ASSERT_EQ(info["parameters"].size(), 2u);
  EXPECT_EQ(info["parameters"][1]["name"], "mode, with comma");
  EXPECT_EQ(info["parameters"][1]["value"], 0.5);
  EXPECT_EQ(info["parameters"][1]["display"], "0.500");
  const CommandResult text = spatiola({"info", "--plugin", kProbe});
  EXPECT_NE(text.out.find("unique id     prbe (0x70726265)"), std::string::npos) << text.out;
  EXPECT_NE(text.out.find("    0  gain"), std::string::npos) << text.out;
}

TEST_F(EndToEnd, BenchReportsRealTimeFactorAndBlockCost) {
  const CommandResult run = spatiola({"bench", "--plugin", kProbe, "--inputs", "6", "--seconds",
                                      "0.5", "--block", "128", "--repeat", "3", "--moving"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_NE(run.out.find("shape       6 in -> 6 out, block 128, 0.5 s at 48000 Hz, moving "
                         "automation"),
            std::string::npos)
      << run.out;
  EXPECT_NE(run.out.find("real time   x"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("(median of 3 runs)"), std::string::npos) << run.out;
  EXPECT_NE(run.out.find("per block   "), std::string::npos) << run.out;
  const CommandResult speakers = spatiola({"bench", "--plugin", kProbe, "--outputs", "8"});
  EXPECT_EQ(speakers.exitCode, 1);
  EXPECT_NE(speakers.err.find("--outputs applies to Spatiola only"), std::string::npos)
      << speakers.err;
}

TEST_F(EndToEnd, ACrashingPluginIsNamedWithItsCall) {
  writeConstant(path("ones.wav"), 0.5, 100);
  std::ofstream(path("state.bin")) << "anything";
  const std::string crashing = std::string(PROBE_DIR) + "/probe_crash.so";
  const CommandResult run = spatiola({"render", "--plugin", crashing, "--state", path("state.bin"),
                                      path("ones.wav"), path("out.wav")});
  EXPECT_EQ(run.exitCode, 128 + 11);
  EXPECT_EQ(run.err, "spatiola: the plug-in " + crashing + " crashed in effSetChunk (signal 11)\n");
  EXPECT_FALSE(std::filesystem::exists(path("out.wav")));
}

TEST_F(EndToEnd, UserErrorsAreClearAndExitNonZero) {
  writeConstant(path("ones.wav"), 0.5, 100);
  std::ofstream(path("text.so")) << "hello";
  std::ofstream(path("bad.csv")) << "0,gain,0.5\n1,volume,0.5\n";
  struct Case {
    std::vector<std::string> args;
    std::string message;
  };
  const std::vector<Case> cases = {
      {{"render", "--plugin", path("text.so"), path("ones.wav"), path("o.wav")},
       "spatiola: " + path("text.so") + " is not a plug-in: "},
      {{"render", "--plugin", std::string(PROBE_DIR) + "/probe_refusing.so", path("ones.wav"),
        path("o.wav")},
       "spatiola: the plug-in " + std::string(PROBE_DIR) +
           "/probe_refusing.so refused to create an instance (its entry point returned null)\n"},
      {{"render", "--plugin", kProbe, "--set", "volume=1", path("ones.wav"), path("o.wav")},
       "spatiola: the plug-in has no parameter named 'volume' (spatiola info lists them)\n"},
      {{"render", "--plugin", kProbe, "--set", "7=1", path("ones.wav"), path("o.wav")},
       "spatiola: parameter index 7 is out of range: the plug-in has 2 parameters\n"},
      {{"render", "--plugin", kProbe, "--automation", path("bad.csv"), path("ones.wav"),
        path("o.wav")},
       "spatiola: automation line 2: the plug-in has no parameter named 'volume'"},
      {{"render", "--plugin", kProbe, path("text.so"), path("o.wav")},
       "spatiola: cannot read the audio file " + path("text.so") + ": "},
      {{"render", "--plugin", kProbe, "--layout", "5.1 surround", path("ones.wav"), path("o.wav")},
       "spatiola: --layout applies to Spatiola only; " + kProbe + " is another plug-in\n"},
      {{"render", "--plugin", kProbe, path("ones.wav"), path("o.xyz")},
       "spatiola: cannot tell the output format from '" + path("o.xyz") + "'"},
  };
  for (const Case& c : cases) {
    const CommandResult run = spatiola(c.args);
    EXPECT_EQ(run.exitCode, 1) << c.message;
    EXPECT_EQ(run.err.rfind(c.message, 0), 0u) << run.err;
  }
  EXPECT_FALSE(std::filesystem::exists(path("o.wav")));
}

TEST_F(EndToEnd, SceneExportImportRoundTripIsByteExact) {
  PannerPlugin plugin;
  setInputCount(plugin, 4);
  applyLayoutPreset(plugin, kLayoutSurround51);
  plugin.inputs[2].x = 0.3141592653589793;
  void* data = nullptr;
  const std::int32_t length = writeStateChunk(plugin, &data);
  const std::string block(static_cast<const char*>(data), static_cast<std::size_t>(length));
  std::ofstream(path("state.bin"), std::ios::binary) << block;
  const CommandResult exported = spatiola({"scene", "export", path("state.bin")});
  ASSERT_EQ(exported.exitCode, 0) << exported.err;
  EXPECT_EQ(exported.err, "");
  EXPECT_EQ(nlohmann::json::parse(exported.out)["speakers"][2]["name"], "front center");
  std::ofstream(path("scene.json")) << exported.out;
  const CommandResult imported = spatiola({"scene", "import", path("scene.json")});
  ASSERT_EQ(imported.exitCode, 0) << imported.err;
  EXPECT_EQ(imported.out, block);
  const CommandResult fromStdin =
      spatiola({"scene", "import", "-", "-o", path("again.bin")}, path("scene.json"));
  ASSERT_EQ(fromStdin.exitCode, 0) << fromStdin.err;
  std::ifstream again(path("again.bin"), std::ios::binary);
  EXPECT_EQ(std::string((std::istreambuf_iterator<char>(again)), std::istreambuf_iterator<char>()),
            block);
  std::ofstream(path("cut.bin"), std::ios::binary) << block.substr(0, 40);
  const CommandResult cut = spatiola({"scene", "export", path("cut.bin")});
  EXPECT_EQ(cut.exitCode, 0);
  EXPECT_NE(cut.err.find("is not a block as the plug-in writes it"), std::string::npos) << cut.err;
  std::ofstream(path("bad.json")) << R"({"inputs": [{}, {"gain": 7.5}]})";
  const CommandResult bad = spatiola({"scene", "import", path("bad.json")});
  EXPECT_EQ(bad.exitCode, 1);
  EXPECT_EQ(bad.err, "spatiola: inputs[1].gain: 7.5 is outside 0..4\n");
}
