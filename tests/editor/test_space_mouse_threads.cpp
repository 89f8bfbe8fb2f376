// A drag on the user-interface thread while the audio thread processes: no mark is lost, so the
// gains the engine ends with are those of the final positions (the tsan build checks the races).
#include <atomic>
#include <thread>

#include "space_mouse_fixture.h"
#include "tests/engine/engine_fixture.h"

namespace {

constexpr int kFrames = 64;

std::unique_ptr<PannerPlugin> makeProcessingRoom() {
  auto plugin = makeEngineInstance(2);
  plugin->view.zoom = 0.5;
  plugin->model.inputs[0].x = 0.0;
  plugin->model.inputs[0].y = 0.0;
  plugin->model.inputs[1].selected = 0;
  return plugin;
}

void processOnce(PannerPlugin& plugin) {
  processBlock(plugin, Channels(2, std::vector<double>(kFrames, 0.25)), plugin.speakerCount(),
               kFrames);
}

TEST(SpaceMouseThreads, GainsFollowADragMadeWhileTheAudioThreadRuns) {
  auto dragged = makeProcessingRoom();
  std::atomic<bool> running{true};
  std::thread audio([&] {
    while (running.load()) processOnce(*dragged);
  });
  ASSERT_TRUE(grab(*dragged, 100, 100));
  for (int step = 0; step < 300; ++step) {
    const int offset = (step * 7) % 80 - 40;
    drag(*dragged, 100 + offset, 100 - offset / 2);
  }
  finishDrag(*dragged);
  running = false;
  audio.join();
  processOnce(*dragged);

  auto reference = makeProcessingRoom();
  reference->model.inputs[0].x = dragged->model.inputs[0].x;
  reference->model.inputs[0].y = dragged->model.inputs[0].y;
  processOnce(*reference);
  ASSERT_NE(dragged->model.inputs[0].x, 0.0);
  ASSERT_EQ(dragged->mix.targetGains.size(), reference->mix.targetGains.size());
  for (int s = 0; s < dragged->speakerCount(); ++s) {
    EXPECT_EQ(dragged->mix.targetGains[s], reference->mix.targetGains[s]) << "speaker " << s;
  }
  destroyEngine(*dragged);
  destroyEngine(*reference);
}

}  // namespace
