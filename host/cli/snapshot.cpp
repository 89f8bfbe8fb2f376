#include "host/cli/snapshot.h"

#include <strings.h>

#include <string>

#include "host/cli/complete_file.h"
#include "host/cli/inline_view_call.h"
#include "host/cli/output_checks.h"
#include "host/graphics/drawing.h"
#include "host/graphics/png_io.h"
#include "host/runtime/host_error.h"

namespace {

constexpr int kScales256[] = {256, 384, 512};
constexpr std::size_t kMaxSideDigits = 5;

// A side in pixels; -1 for anything but digits, past the limit for numbers too long to convert.
int parseSide(const std::string& text) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return -1;
  if (text.size() > kMaxSideDigits) return kMaxSnapshotSidePx + 1;
  return std::stoi(text);
}

std::string sizeError(const std::string& text, const std::string& reason) {
  return "--size '" + text + "' " + reason;
}

std::string describe(PluginInstance& instance) {
  const std::string name = instance.effectName();
  return name.empty() ? instance.module().path() : name + " (" + instance.module().path() + ")";
}

// A bitmap of the host's graphics library, as a host hands it to an inline view.
std::unique_ptr<DAUB_IBitmap> newHostBitmap(BitmapSize size, int scale256) {
  std::unique_ptr<DAUB_IBitmap> bitmap(
      graphics::DAUB_CreateBitmap(DAUB_BITMAP_WITH_DC, size.widthPx, size.heightPx));
  if (!bitmap) {
    throw HostError("cannot make a bitmap of " + std::to_string(size.widthPx) + "x" +
                    std::to_string(size.heightPx) + " pixels");
  }
  bitmap->Extended(DAUB_EXT_SET_ADVISORY_SCALE, &scale256);
  return bitmap;
}

}  // namespace

BitmapSize parseBitmapSize(const std::string& text) {
  const auto cross = text.find('x');
  if (cross == std::string::npos) {
    throw UsageError(sizeError(text, "must be WIDTHxHEIGHT in pixels, for instance 480x480"));
  }
  const BitmapSize size{parseSide(text.substr(0, cross)), parseSide(text.substr(cross + 1))};
  if (size.widthPx < 0 || size.heightPx < 0) {
    throw UsageError(sizeError(text, "must be two whole numbers of pixels, for instance 480x480"));
  }
  if (size.widthPx < 1 || size.heightPx < 1 || size.widthPx > kMaxSnapshotSidePx ||
      size.heightPx > kMaxSnapshotSidePx) {
    throw UsageError(sizeError(text, "is out of range: each side is 1 to " +
                                         std::to_string(kMaxSnapshotSidePx) + " pixels"));
  }
  return size;
}

int checkedAdvisoryScale(int scale256) {
  for (const int accepted : kScales256) {
    if (scale256 == accepted) return scale256;
  }
  throw UsageError("--scale " + std::to_string(scale256) +
                   " is not a display scale: use 256 (100 %), 384 (150 %) or 512 (200 %)");
}

// [UI thread] The host owns the bitmap; the plug-in only draws into it during the call.
std::unique_ptr<DAUB_IBitmap> paintSnapshot(PluginInstance& instance, BitmapSize size,
                                            int scale256) {
  if (!hasInlineView(instance)) {
    throw HostError(describe(instance) +
                    " has no inline view (it does not answer canDo \"hasTolvekEmbeddedUI\"); "
                    "no picture written");
  }
  std::unique_ptr<DAUB_IBitmap> bitmap = newHostBitmap(size, scale256);
  InlineDrawInfo info(size.widthPx, size.heightPx);
  if (!paintInlineView(instance, bitmap.get(), info)) {
    throw HostError(describe(instance) +
                    " did not paint its inline view (WM_PAINT answered 0); no picture written");
  }
  return bitmap;
}

void checkSnapshotOptions(const SnapshotOptions& options) {
  parseBitmapSize(options.size);
  checkedAdvisoryScale(options.scale256);
  const std::string& path = options.outputPath;
  const auto slash = path.find_last_of('/');
  const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
  if (name.size() < 5 || strcasecmp(name.c_str() + name.size() - 4, ".png") != 0) {
    throw UsageError("the picture " + path + " must have a .png name: snapshot writes PNG only");
  }
}

SnapshotResult writeSnapshot(const SnapshotOptions& options, std::ostream& notes) {
  checkSnapshotOptions(options);
  const BitmapSize size = parseBitmapSize(options.size);
  const int scale256 = options.scale256;
  checkWritablePath(options.outputPath, "the picture");
  checkNotOverwriting(options.outputPath, "the picture", {options.plugin.statePath});
  HostConfig config;
  config.trackChannels = options.trackChannels;
  LoadedPlugin plugin = loadPlugin(options.plugin.pluginPath, config);
  configurePlugin(*plugin.instance, options.plugin, notes);
  plugin.instance->start();  // hosts picture plug-ins that are open and running
  const std::unique_ptr<DAUB_IBitmap> picture = paintSnapshot(*plugin.instance, size, scale256);
  writeCompleteFile(options.outputPath, [&picture, &options](const std::string& partialPath) {
    std::string error;
    if (!graphics::writePng(picture.get(), partialPath, &error)) {
      throw HostError("cannot write " + options.outputPath + ": " + error);
    }
  });
  return SnapshotResult{plugin.instance->effectName(), size};
}
