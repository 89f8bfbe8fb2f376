// The three entry points are the only symbols the plug-in exports.
#pragma once

#define SPATIOLA_EXPORT __attribute__((visibility("default")))
