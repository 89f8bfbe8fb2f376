#include "host/cli/plugin_setup.h"

#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "host/cli/complete_file.h"
#include "host/cli/plural.h"
#include "host/runtime/file_problem.h"
#include "host/runtime/host_error.h"

namespace {

bool isIndex(const std::string& text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

std::string executableDirectory() {
  char path[4096];
  const ssize_t length = readlink("/proc/self/exe", path, sizeof(path) - 1);
  if (length <= 0) return ".";
  const std::string executable(path, static_cast<std::size_t>(length));
  return executable.substr(0, executable.find_last_of('/'));
}

}  // namespace

std::string defaultPluginPath() {
  return executableDirectory() + "/spatiola.so";
}

LoadedPlugin loadPlugin(const std::string& path, const HostConfig& config) {
  LoadedPlugin loaded;
  loaded.module = std::make_unique<PluginModule>(path.empty() ? defaultPluginPath() : path);
  loaded.instance = std::make_unique<PluginInstance>(*loaded.module, config);
  return loaded;
}

ParameterSetting parseParameterSetting(const std::string& text) {
  const auto equals = text.find_last_of('=');
  if (equals == std::string::npos || equals == 0) {
    throw UsageError("--set '" + text + "' must be NAME=VALUE");
  }
  const std::string valueText = text.substr(equals + 1);
  char* end = nullptr;
  const double value = std::strtod(valueText.c_str(), &end);
  if (valueText.empty() || end != valueText.c_str() + valueText.size() || !std::isfinite(value)) {
    throw UsageError("--set '" + text + "': '" + valueText + "' is not a number");
  }
  if (value < 0.0 || value > 1.0) {
    throw UsageError("--set '" + text + "': " + valueText +
                     " is outside 0..1 (values are normalised)");
  }
  return ParameterSetting{text.substr(0, equals), static_cast<float>(value)};
}

int resolveParameter(PluginInstance& instance, const std::string& nameOrIndex) {
  const int byName = instance.findParameter(nameOrIndex);
  if (byName >= 0) return byName;
  if (isIndex(nameOrIndex)) {
    const long index = std::strtol(nameOrIndex.c_str(), nullptr, 10);
    if (index < instance.parameterCount()) return static_cast<int>(index);
    throw HostError("parameter index " + nameOrIndex + " is out of range: the plug-in has " +
                    counted(instance.parameterCount(), "parameter"));
  }
  throw HostError("the plug-in has no parameter named '" + nameOrIndex +
                  "' (spatiola info lists them)");
}

const PluginExtension* extensionFor(const PluginOptions& options, PluginInstance& instance) {
  const PluginExtension* extension = options.extension;
  return extension != nullptr && extension->recognises(instance.effect()) ? extension : nullptr;
}

namespace {

// Loads the block and asks the plug-in for it again: a block it would not write back byte for byte
// is not one it wrote (an older version, cut off, values out of range), and the user should know.
void loadStateBlock(PluginInstance& instance, const std::string& path, std::ostream& notes) {
  const std::vector<unsigned char> block = readStateFile(path);
  instance.setChunk(block);
  if (instance.chunk() != block) {
    notes << "note: " << path
          << " is not a block as the plug-in writes it (an older version, cut off, or values out "
             "of range); the plug-in loaded what it could of it\n";
  }
}

}  // namespace

void configurePlugin(PluginInstance& instance, const PluginOptions& options, std::ostream& notes) {
  const PluginExtension* extension = extensionFor(options, instance);
  if (!options.statePath.empty()) {
    loadStateBlock(instance, options.statePath, notes);
  } else if (extension != nullptr) {
    // Also when the count is right: the loaded setup settles the counts the plug-in announces,
    // which it would otherwise change in the first block.
    extension->setInputCount(instance, instance.config().trackChannels);
  }
  if (!options.layout.empty()) {
    if (extension == nullptr) {
      throw HostError("--layout applies to Spatiola only; " + instance.module().path() +
                      " is another plug-in");
    }
    extension->applyLayout(instance, options.layout);
  }
  for (const std::string& text : options.sets) {
    const ParameterSetting setting = parseParameterSetting(text);
    instance.setParameter(resolveParameter(instance, setting.parameter), setting.value);
  }
  instance.idle();
}

std::vector<unsigned char> readBinaryFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw HostError("cannot read " + path + ": " + fileProblem(errno));
  std::vector<unsigned char> bytes{std::istreambuf_iterator<char>(in),
                                   std::istreambuf_iterator<char>()};
  if (in.bad()) throw HostError("cannot read " + path + ": " + fileProblem(errno));
  return bytes;
}

std::vector<unsigned char> readStateFile(const std::string& path) {
  std::vector<unsigned char> bytes = readBinaryFile(path);
  if (bytes.empty()) throw HostError("the state file " + path + " is empty");
  return bytes;
}

void writeBinaryFile(const std::string& path, const std::vector<unsigned char>& bytes) {
  writeCompleteFile(path, [&](const std::string& partialPath) {
    errno = 0;
    std::ofstream out(partialPath, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    if (!out.flush()) throw HostError("cannot write " + path + ": " + fileProblem(errno));
  });
}

std::vector<std::string> outputChannelNames(PluginInstance& instance,
                                            const PluginOptions& options) {
  const PluginExtension* extension = extensionFor(options, instance);
  return extension != nullptr ? extension->outputNames(instance) : std::vector<std::string>{};
}
