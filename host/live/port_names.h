// JACK port names of a plug-in's channels: inputs "in_1", "in_2", ...; outputs after the
// plug-in's channel names ("front left") where it tells them, else "out_1", ...
#pragma once

#include <cstddef>
#include <string>
#include <vector>

// `count` short port names. `channelNames[i]` names channel i when present and not empty; what
// JACK cannot take (':' separates client and port, control characters) becomes '_', a name is
// cut to `maxBytes` without splitting a UTF-8 character, and a name met before gets " 2", " 3"...
std::vector<std::string> portNamesFor(const std::vector<std::string>& channelNames, int count,
                                      const std::string& fallbackPrefix, std::size_t maxBytes);
