// The built spatiola program with the probe plug-in on files made here: channel counts, lengths and
// levels of what it writes, automation at exact samples, state files, third-party plug-ins, a file
// made by sox, crash reports and error messages.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "tests/host/runtime/test_support.h"
#include "tests/host/spatiola/command_fixture.h"

namespace {

const std::string kProbe = std::string(PROBE_DIR) + "/probe.so";

using EndToEnd = CommandTest;

}  // namespace

// Values at time 0 are set before the plug-in starts, like --set; a later change lands on its
// nearest sample (0.006 s at 44.1 kHz is 264.6: sample 265), and after it the plug-in gets one
// block of the glide's length (10 ms), cut short by the next change.
TEST_F(EndToEnd, AutomationTakesEffectAtItsNearestSample) {
  std::ofstream(path("moves.csv"))
      << "time,parameter,value\n0.0125,0,1\n0.01,gain,0.25\n0.006,gain,0.375\n0,0,0.75\n";
  const struct {
    int rate;
    std::array<std::int64_t, 3> samples;  // 0.006 s, 0.01 s, 0.0125 s
    const char* calls;
  } cases[] = {{44100,
                {265, 441, 551},
                "rate 44100,block 441,precision 1,set 1 0.500,set 0 0.750,mains 1,start,"
                "process 256,process 9,set 0 0.375,process 176,set 0 0.250,process 110,"
                "set 0 1.000,process 441,process 8,stop,mains 0\n"}};
  for (const auto& c : cases) {
    writeAudio(path("ones.wav"), 1, std::vector<double>(1000, 0.5), c.rate);
    const CommandResult run = spatiola({"render", "--plugin", kProbe, "--block", "256", "--set",
                                        "1=0.5", "--automation", path("moves.csv"), "--save-state",
                                        path("state.txt"), path("ones.wav"), path("out.w64")});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    const AudioData out = readAudio(path("out.w64"));
    ASSERT_EQ(out.shape(), std::tuple(1, 1000, c.rate, SF_FORMAT_W64 | SF_FORMAT_FLOAT));
    const auto [first, second, third] = c.samples;
    EXPECT_EQ((std::array{out.at(first - 1, 0), out.at(first, 0), out.at(second - 1, 0),
                          out.at(second, 0), out.at(third - 1, 0), out.at(third, 0)}),
              (std::array{0.75, 0.375, 0.375, 0.25, 0.25, 1.0}))
        << c.rate;
    EXPECT_TRUE(contains(readFile(path("state.txt")), c.calls)) << readFile(path("state.txt"));
  }
}

// A 24-bit file made by sox, not a whole number of blocks long, through a state block loaded and
// saved as bytes.
TEST_F(EndToEnd, RendersAFileMadeBySoxWithStateBlocks) {
  const std::string input = path("sox.wav");
  ASSERT_EQ(runCommand({"/usr/bin/sox", "-n", "-r", "44100", "-c", "2", "-b", "24", input, "synth",
                        "0.5", "sine", "1000", "gain", "-6"})
                .exitCode,
            0);
  std::ofstream(path("state.bin")) << "gain=0.125\n";
  const CommandResult run =
      spatiola({"render", "--plugin", kProbe, "--state", path("state.bin"), "--save-state",
                path("saved.bin"), input, path("out.aiff"), "--sample-format", "pcm16"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_TRUE(run.out.starts_with("rendered 22050 samples (2 -> 2 channels, 44100 Hz)")) << run.out;
  const AudioData out = readAudio(path("out.aiff"));
  ASSERT_EQ(out.shape(), std::tuple(2, 22050, 44100, SF_FORMAT_AIFF | SF_FORMAT_PCM_16));
  for (int c : {0, 1}) EXPECT_NEAR(out.peakDb(c), -6.0 + 20.0 * std::log10(0.25), 0.05) << c;
  // The loaded gain and the file's channel count, offered to the plug-in.
  EXPECT_TRUE(contains(readFile(path("saved.bin")), "track_channels=2\n"));
  EXPECT_TRUE(contains(readFile(path("saved.bin")), "gain=0.125000\n"));
  EXPECT_FALSE(std::filesystem::exists(path("out.aiff.partial")));
}

TEST_F(EndToEnd, RendersThroughAThirdPartyPlugin) {
  const std::string encoder = std::string(IEM_PLUGIN_DIR) + "/libStereoEncoder.so";
  if (!std::filesystem::exists(encoder)) GTEST_SKIP() << "iem-plugin-suite-vst is not installed";
  writeLevels(path("stereo.wav"), {0.5, 0.25}, 24000);
  const CommandResult run = spatiola(
      {"render", "--plugin", encoder, "--ambisonic", path("stereo.wav"), path("ambi.wav")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const AudioData out = readAudio(path("ambi.wav"));
  // The encoder's 7th-order output, marked ambisonic.
  ASSERT_EQ(out.shape(), std::tuple(64, 24000, 48000, SF_FORMAT_WAVEX | SF_FORMAT_FLOAT));
  // Both sources straight ahead: W carries their sum, the left-right component nothing.
  EXPECT_NEAR(out.peakDb(0), 20.0 * std::log10(0.75), 0.5);
  EXPECT_LT(out.peakDb(1), -60.0);
  EXPECT_TRUE(contains(run.err, "note: the plug-in has 64 inputs; inputs 3..64 receive silence"))
      << run.err;
}

TEST_F(EndToEnd, InfoDescribesThePlugin) {
  const CommandResult run =
      spatiola({"info", "--json", "--channels", "4", "--plugin", kProbe, "--set", "1=0.5"});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  expectJsonAt(nlohmann::json::parse(run.out), nlohmann::json::parse(R"({
      "/effect": "Probe", "/vendor": "Host Tests", "/vendorVersion": 7, "/uniqueId": "prbe",
      "/inputs": 4, "/flags": ["replacing", "program chunks", "double replacing"],
      "/parameters/2": null, "/parameters/1/name": "mode, with comma",
      "/parameters/1/display": "0.500"})"));
  const CommandResult text = spatiola({"info", "--plugin", kProbe});
  EXPECT_TRUE(contains(text.out, "unique id     prbe (0x70726265)")) << text.out;
}

TEST_F(EndToEnd, ACrashingPluginIsNamedWithItsCall) {
  writeLevels(path("ones.wav"), {0.5}, 100);
  std::ofstream(path("state.bin")) << "anything";
  const std::string crashing = std::string(PROBE_DIR) + "/probe_crash.so";
  const CommandResult run = spatiola({"render", "--plugin", crashing, "--state", path("state.bin"),
                                      path("ones.wav"), path("out.wav")});
  EXPECT_EQ(run.exitCode, 128 + 11);
  EXPECT_EQ(run.err, "spatiola: the plug-in " + crashing + " crashed in effSetChunk (signal 11)\n");
  EXPECT_FALSE(std::filesystem::exists(path("out.wav")));
}

// Mistakes exit with 1, or with 2 for a wrong command line, and write nothing: outputs that would
// lose a file are refused before anything is read, an earlier picture is kept.
TEST_F(EndToEnd, MistakesAreNamedAndWriteNothing) {
  writeLevels(path("in.wav"), {0.5, 0.25}, 100);
  const std::string in = path("in.wav"), out = path("o.wav"), kept = readFile(in);
  std::filesystem::create_symlink(in, path("link.wav"));
  std::filesystem::create_directory(path("folder"));
  std::ofstream(path("empty.bin")).close();
  std::ofstream(path("text.so")) << "hello";
  std::ofstream(path("bad.csv")) << "0,gain,0.5\n1,volume,0.5\n";
  std::ofstream(path("kept.png")) << "an earlier picture";
  std::ofstream(path("s.txt")) << "choose #1131 11\n";
  const std::string refusing = std::string(PROBE_DIR) + "/probe_refusing.so";
  const std::string synth = std::string(PROBE_DIR) + "/probe_synth.so";
  const std::string inlineProbe = std::string(PROBE_DIR) + "/probe_inline.so";
  const auto probe = [&](std::vector<std::string> args) {
    args.insert(args.begin(), {"render", "--plugin", kProbe});
    return args;
  };
  const struct {
    std::vector<std::string> args;
    int exitCode;
    std::string message;
  } cases[] = {
      {probe({in, path("link.wav")}), 1,
       "the output " + path("link.wav") + " is the file " + in +
           " that the command reads; choose another name"},
      {probe({in, path("folder")}), 1,
       "the output " + path("folder") + " is a folder; give a file name"},
      {probe({in, path("none/out.wav")}), 1,
       "cannot write the output " + path("none/out.wav") + ": the folder " + path("none") +
           " does not exist"},
      {probe({"--save-state", in, in, out}), 1,
       "--save-state " + in + " is the file " + in +
           " that the command reads; choose another name"},
      {probe({"--state", path("empty.bin"), in, out}), 1,
       "the state file " + path("empty.bin") + " is empty"},
      {{"render", "--plugin", synth, "--save-state", path("s.bin"), in, out},
       1,
       "--save-state: the plug-in " + synth + " keeps no state block; nothing rendered"},
      {{"render", "--plugin", refusing, in, out},
       1,
       "the plug-in " + refusing +
           " refused to create an instance (its entry point returned null)"},
      {probe({"--set", "Gain=1", in, out}), 1,  // names match exactly
       "the plug-in has no parameter named 'Gain' (spatiola info lists them)"},
      {probe({"--set", "7=1", in, out}), 1,
       "parameter index 7 is out of range: the plug-in has 2 parameters"},
      {probe({"--automation", path("bad.csv"), in, out}), 1,
       path("bad.csv") + ":2: the plug-in has no parameter named 'volume'"},
      {probe({path("text.so"), out}), 1,
       "cannot read the audio file " + path("text.so") +
           ": not an audio file in a format libsndfile reads"},
      {probe({"--layout", "5.1 surround", in, out}), 1,
       "--layout applies to Spatiola only; " + kProbe + " is another plug-in"},
      {{"bench", "--rate", "0"}, 2, "--rate must be a sample rate from 1 to 768000 Hz"},
      {{"--ui-scale", "7", "info"},
       2,
       "--ui-scale 7 is not a display scale: use 64 to 1024, where 256 is 100 %"},
      {{"snapshot", path("x.jpg")},
       2,
       "the picture " + path("x.jpg") + " must have a .png name: snapshot writes PNG only"},
      {{"render", "--layout", "6.1", in, out},
       2,
       "--layout '6.1' is neither a speaker count (\"12\", \"40 ring\") nor one of \"stereo\","},
      {probe({in, path("o.xyz")}), 2, "cannot tell the output format from '" + path("o.xyz") + "'"},
      {{"snapshot", "--plugin", kProbe, path("kept.png")},
       1,
       " has no inline view (it does not answer canDo \"hasTolvekEmbeddedUI\"); no picture "
       "written"},
      {{"snapshot", "--plugin", inlineProbe, "--set", "1=1", path("new.png")},
       1,
       " did not paint its inline view (WM_PAINT answered 0); no picture written"},
      {{"snapshot", "--plugin", path("missing.so"), path("kept.png")}, 1, "no such file or folder"},
      {{"snapshot", "--scale", "300", path("kept.png")},
       2,
       "--scale 300 is not a display scale: use 256 (100 %), 384 (150 %) or 512 (200 %)"},
      {{"snapshot", "--plugin", inlineProbe, path("none/p.png")},
       1,
       "cannot write the picture " + path("none/p.png") + ": the folder " + path("none") +
           " does not exist"},
      {{"edit", "--headless", "--script", path("s.txt"), "--save-state", path("s.bin")},
       1,
       path("s.txt") + ":1: control #1131 has no item 11"},
      {{"edit", "--headless", "--script", path("s.txt"), "--plugin", kProbe},
       1,
       " has no editor (effFlagsHasEditor is clear)"},
  };
  for (const auto& c : cases) {
    const CommandResult run = spatiola(c.args);
    EXPECT_EQ(run.exitCode, c.exitCode) << c.message;
    EXPECT_TRUE(run.err.starts_with("spatiola: ") && contains(run.err, c.message)) << run.err;
  }
  EXPECT_EQ(readFile(in), kept);
  EXPECT_EQ(readFile(path("kept.png")), "an earlier picture");
  for (const char* written : {"o.wav", "s.bin", "new.png"})
    EXPECT_FALSE(std::filesystem::exists(path(written))) << written;
}

// Export and import invert each other on every block (the scene tests); here the command's doors:
// a file or standard input in, standard output or -o out.
TEST_F(EndToEnd, SceneCommandsRoundTripABlockByteExact) {
  std::ofstream(path("scene.json")) << R"({"speakers": [{"x": -1}], "inputs": [{"x": 0.3141}]})";
  ASSERT_EQ(spatiola({"scene", "import", "-", "-o", path("a.bin")}, path("scene.json")).exitCode,
            0);
  const CommandResult exported = spatiola({"scene", "export", path("a.bin")});
  ASSERT_EQ(std::pair(exported.exitCode, exported.err), std::pair(0, std::string()));
  EXPECT_TRUE(contains(exported.out, "\"x\": 0.3141")) << exported.out;
  std::ofstream(path("again.json")) << exported.out;
  const CommandResult imported = spatiola({"scene", "import", path("again.json")});
  ASSERT_EQ(imported.exitCode, 0) << imported.err;
  EXPECT_EQ(imported.out, readFile(path("a.bin")));
}
