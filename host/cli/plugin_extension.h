// What the commands know of one particular plug-in beyond VST 2.x: its speaker layouts, inputs
// beyond the 63 the host's channel-count query can announce, the names of its output channels and
// the parameters a moving benchmark turns. The program hands Spatiola's in (host/spatiola); the
// commands ask it only about an effect it recognises and treat every other plug-in alike.
#pragma once

#include <string>
#include <vector>

#include "platform/vst2.h"

class PluginInstance;

class PluginExtension {
 public:
  virtual ~PluginExtension() = default;

  virtual bool recognises(const AEffect& effect) const = 0;
  // --layout; throws HostError for a layout the plug-in does not have.
  virtual void applyLayout(PluginInstance& instance, const std::string& layout) const = 0;
  // Throws HostError for a count the plug-in cannot take.
  virtual void setInputCount(PluginInstance& instance, int inputs) const = 0;
  // Empty when the plug-in does not tell them.
  virtual std::vector<std::string> outputNames(PluginInstance& instance) const = 0;
  // One step of `bench --moving` at `phase` (radians).
  virtual void moveParameters(PluginInstance& instance, double phase) const = 0;
  // What in the plug-in's setup the user would want to know before a render: inputs that reach
  // no output, for instance. One sentence each.
  virtual std::vector<std::string> setupWarnings(PluginInstance& instance) const = 0;
};
