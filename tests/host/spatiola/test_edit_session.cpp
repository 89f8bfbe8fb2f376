// A scripted session of `spatiola edit --headless` that operates every control of Spatiola's
// editor and every group mode; the saved state and the automation log show what each did.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
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

std::string everyGroupMode() {
  std::string lines;
  for (int mode = 0; mode <= 10; ++mode) {
    lines += "choose #1128 " + std::to_string(mode) + "\nknob #1134 6\nknob #1134 -2 shift\n";
  }
  return lines + "click #1236\nclick #1237\nclick #1238\nclick #1233\nclick #1234\nclick #1235\n";
}

// A track of four channels in a user setup of six speakers: every control in turn.
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
    << "click #1134\n"
    << everyGroupMode() << "choose #1129 5\nchoose #1130 8\n"
    << "dblclick 180 518\ntype Lead\nkey tab\ntype Pad\nkey return\n"
    << "click #1286\nclick #1142\nfader #1239 30\nclick #1286\n"
    << "menu Adjust inputs/outputs to match changes in track channel count\nrclick 600 500\n"
    << typeInto(1231, "20") << "wait 100\nchoose #1279 1\nwait 100\n";
  return s.str();
}

class EditSession : public CommandTest {
 protected:
  CommandResult run(const std::string& script) {
    std::ofstream(path("s.txt")) << script;
    return spatiola({"edit", "--headless", "--script", path("s.txt"), "--channels", "4", "--layout",
                     "6", "--automation-log", path("log.jsonl"), "--save-state",
                     path("after.bin")});
  }
  std::string scene() { return spatiola({"scene", "export", path("after.bin")}).out; }
};

// Every automated parameter is ended by the end of the session: no gesture is left open.
TEST_F(EditSession, EveryControlActsAndEveryGestureEnds) {
  const CommandResult result = run(session());
  ASSERT_EQ(result.exitCode, 0) << result.err;
  std::map<std::string, int> opcodes;
  std::set<std::string> automated;
  std::set<std::string> ended;
  std::ifstream log(path("log.jsonl"));
  for (std::string line; std::getline(log, line);) {
    const auto index =
        line.substr(line.find("\"index\""), line.find(",\"value\"") - line.find("\"index\""));
    if (line.find("audioMasterAutomate") != std::string::npos) automated.insert(index);
    if (line.find("audioMasterEndEdit") != std::string::npos) ended.insert(index);
  }
  EXPECT_EQ(automated, ended);
  EXPECT_GT(automated.size(), 20u);
  for (const char* name : {"Lead", "Pad"}) {
    EXPECT_NE(scene().find(std::string("\"name\": \"") + name + "\""), std::string::npos) << name;
  }
  const std::string json = scene();
  for (const char* expected :
       {R"("layout": "user setup")", R"("name": "LFE")", R"("centerTrim": 0.5011872336272722)"}) {
    EXPECT_NE(json.find(expected), std::string::npos) << expected << "\n" << json;
  }
}

}  // namespace
