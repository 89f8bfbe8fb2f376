// Pictures of a plug-in's inline view: the plug-in paints into a host bitmap of the requested
// size and display scale, the host writes it as PNG.
#pragma once

#include <memory>
#include <string>

#include "host/cli/plugin_setup.h"
#include "platform/daub.h"

struct BitmapSize {
  int widthPx = 0;
  int heightPx = 0;
};

// Larger pictures are no inline view any more, and a side this long is already 256 MB of pixels.
constexpr int kMaxSnapshotSidePx = 8192;

// "WxH" in pixels, each side 1..kMaxSnapshotSidePx; throws HostError saying what is wrong.
BitmapSize parseBitmapSize(const std::string& text);

// The advisory scales a host offers: 256 (100 %), 384 (150 %), 512 (200 %); throws HostError
// for any other value.
int checkedAdvisoryScale(int scale256);

struct SnapshotOptions {
  PluginOptions plugin;
  std::string outputPath;
  std::string size = "480x480";
  int scale256 = 256;
  int trackChannels = 2;  // answered to the plug-in's channel-count query
  bool editor = false;    // the whole editor instead of the inline view; --size does not apply
};

struct SnapshotResult {
  std::string effectName;
  BitmapSize size;
};

// Loads and sets up the plug-in as render does, paints its inline view and writes the PNG.
// Throws HostError when the plug-in has no inline view or declines to paint; no file is written
// then, and an existing file at the output path is left as it was.
SnapshotResult writeSnapshot(const SnapshotOptions& options);

// Loads and sets up the plug-in as writeSnapshot does, opens its editor in a headless window at
// the scale, lets its timers run for a moment and writes the whole editor. Throws HostError for a
// plug-in without an editor; no file is written then.
SnapshotResult writeEditorSnapshot(const SnapshotOptions& options);

// The picture of the instance's inline view in a new host bitmap; throws HostError as above.
std::unique_ptr<DAUB_IBitmap> paintSnapshot(PluginInstance& instance, BitmapSize size,
                                            int scale256);

// Writes beside the target first and renames, so a failed write leaves no partial file.
void writePngReplacing(DAUB_IBitmap* bitmap, const std::string& path);
