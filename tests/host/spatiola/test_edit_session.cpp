// A scripted session of `spatiola edit --headless` that operates every kind of control of
// Spatiola's editor; the saved state and the automation log show what the session did.
#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>

#include "tests/host/spatiola/command_fixture.h"

namespace {

// Clears an edit of up to eight characters and types `text`, once the refresh of earlier edits has
// rewritten the edits; the typed edits act 500 ms after the last key.
std::string typeInto(int id, const std::string& text) {
  std::string lines = "wait 100\nclick #" + std::to_string(id) + "\nkey end\n";
  for (int k = 0; k < 8; ++k) lines += "key backspace\n";
  return lines + "type " + text + "\nwait 500\n";
}

// A track of four channels in a user setup of six speakers: every kind of control in turn; two
// group modes through the knob, fine and coarse (the modes themselves are the editor's tests).
std::string session() {
  std::ostringstream s;
  s << "wait 100\nclick 180 502\nclick 180 534 shift\n"
    << typeInto(1222, "8") << "click #1230\n"
    << "click #1290\nclick #1291\nclick #1288\n"
    << "fader #1075 -20\nfader #1076 10\nfader #1077 5\nfader #1078 10\nfader #1079 -10\n"
    << typeInto(1257, "-6")
    << "click #1142 ctrl alt\nclick #1162\nclick #1293\nclick #1183\nclick #1202 ctrl alt\n"
    << "fader #1239 -10\nfader #1260 -10\nfader #1241 10 ctrl alt\n"
    << "choose #1277 1\nfader #1240 -5\nchoose #1277 0\n"
    << "choose #1283 1\nfader #1261 20\nchoose #1283 0\n"
    << "click #1134\n";
  for (int mode : {0, 10}) s << "choose #1128 " << mode << "\nknob #1134 6\nknob #1134 -2 shift\n";
  s << "click #1236\nclick #1233\nchoose #1129 5\nchoose #1130 8\n"
    << "dblclick 180 518\ntype Lead\nkey tab\ntype Pad\nkey return\n"
    << "click #1286\nclick #1142\nfader #1239 30\nclick #1286\n"
    << "menu Adjust inputs/outputs to match changes in track channel count\nrclick 600 500\n"
    << typeInto(1231, "20") << "wait 100\nchoose #1279 1\nwait 100\n";
  return s.str();
}

using EditSession = CommandTest;

// Every automated parameter is ended by the end of the session: no gesture is left open.
TEST_F(EditSession, EveryControlActsAndEveryGestureEnds) {
  std::ofstream(path("s.txt")) << session();
  const CommandResult result =
      spatiola({"edit", "--headless", "--script", path("s.txt"), "--channels", "4", "--layout", "6",
                "--automation-log", path("log.jsonl"), "--save-state", path("after.bin")});
  ASSERT_EQ(result.exitCode, 0) << result.err;
  std::set<std::string> automated, ended;
  std::ifstream log(path("log.jsonl"));
  for (std::string line; std::getline(log, line);) {
    const auto index =
        line.substr(line.find("\"index\""), line.find(",\"value\"") - line.find("\"index\""));
    if (line.find("audioMasterAutomate") != std::string::npos) automated.insert(index);
    if (line.find("audioMasterEndEdit") != std::string::npos) ended.insert(index);
  }
  EXPECT_EQ(automated, ended);
  EXPECT_GT(automated.size(), 20u);
  const std::string json = spatiola({"scene", "export", path("after.bin")}).out;
  for (const char* expected :
       {R"("layout": "user setup")", R"("name": "LFE")", R"("centerTrim": 0.5011872336272722)",
        R"("name": "Lead")", R"("name": "Pad")"}) {
    EXPECT_NE(json.find(expected), std::string::npos) << expected << "\n" << json;
  }
}

}  // namespace
