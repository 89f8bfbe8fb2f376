// spatiola edit --headless --script: Spatiola's editor driven and drawn without a display, the
// automation log, and a click on a control not yet enabled.
#include <gtest/gtest.h>

#include <fstream>

#include "host/graphics/png_io.h"
#include "tests/host/spatiola/command_fixture.h"

namespace {

class EditCommand : public CommandTest {
 protected:
  CommandResult edit(const std::string& script, std::vector<std::string> extra = {}) {
    std::ofstream(path("s.txt")) << script;
    std::vector<std::string> args = {"edit", "--headless", "--script", path("s.txt")};
    args.insert(args.end(), extra.begin(), extra.end());
    return spatiola(args);
  }
  // The log's lines that report edits (automation and ends of edits).
  std::vector<std::string> editReports() const {
    std::vector<std::string> lines;
    std::ifstream in(path("log.jsonl"));
    for (std::string line; std::getline(in, line);) {
      if (line.find("Automate") != std::string::npos || line.find("EndEdit") != std::string::npos)
        lines.push_back(line);
    }
    return lines;
  }
};

}  // namespace

// Input 1 of a stereo track sits at (-0.25, 0.25), within a pixel of (203, 188) of the editor at
// 100 %. Grabbed there and dragged right by 10 pixels in four steps, it follows the pointer to the
// pixel (x -0.2417 at the first step, -0.2083 at the end; y 0.2491 from the grab on), reports x, y
// and z at each step and ends each at the release; a parameter set as automation reaches the state;
// the pictures and states are written.
TEST_F(EditCommand, AScriptDrivesTheEditorAndTheLogKeepsItsReports) {
  const std::string script = "wait 100\ndrag 203 188 10 0\nset in 2 gain 0.125\nwait 50\n";
  const CommandResult run =
      edit(script + "snapshot " + path("during.png") + "\nsave-state " + path("during.bin") + "\n",
           {"--automation-log", path("log.jsonl"), "--save-state", path("after.bin")});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  EXPECT_EQ(run.out, "saved the state of Spatiola to " + path("after.bin") + "\n");
  const std::vector<std::string> reports = editReports();
  ASSERT_EQ(reports.size(), 4u * 3 + 6) << "x, y and z at four steps, then each ended";
  EXPECT_EQ(reports[0], R"({"opcode":"audioMasterAutomate","index":5,"value":0.379166663})");
  EXPECT_EQ(reports[1], R"({"opcode":"audioMasterAutomate","index":6,"value":0.624547124})");
  EXPECT_EQ(reports[9], R"({"opcode":"audioMasterAutomate","index":5,"value":0.395833343})");
  EXPECT_EQ(reports.back(), R"({"opcode":"audioMasterEndEdit","index":7,"value":0})");
  const auto picture = graphics::readPng(path("during.png"));
  ASSERT_NE(picture, nullptr);
  EXPECT_EQ(std::pair(picture->getWidth(), picture->getHeight()), std::pair(851, 571));
  EXPECT_EQ(readFile(path("during.bin")), readFile(path("after.bin")));
  const CommandResult scene = spatiola({"scene", "export", path("after.bin")});
  EXPECT_NE(scene.out.find("\"x\": -0.2083333333333333"), std::string::npos) << scene.out;
  EXPECT_NE(scene.out.find("\"gain\": 0.5"), std::string::npos);
}

// "user setup" enables the speaker count and "LFE" at the editor's next 50 ms refresh: a click
// before it does nothing, and the script says so rather than leave keys to the layout combo.
TEST_F(EditCommand, AClickOnADisabledControlIsNoted) {
  const std::string note =
      path("s.txt") +
      ":3: note: control #1230 is disabled and ignores the mouse (an editor may enable it on "
      "its timer: wait first)\n";
  const struct {
    const char* between;
    bool lfe;
  } cases[] = {{"", false}, {"wait 50\n", true}};
  for (const auto& c : cases) {
    const CommandResult run =
        edit(std::string("wait 100\nchoose #1131 0\n") + c.between + "click #1230\n",
             {"--layout", "octophonic", "--save-state", path("after.bin")});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.err, c.lfe ? "" : note);
    const std::string scene = spatiola({"scene", "export", path("after.bin")}).out;
    EXPECT_EQ(scene.find(R"("name": "LFE")") != std::string::npos, c.lfe) << c.between;
  }
}
