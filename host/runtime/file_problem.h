// The cause of a failed file operation in a few words, for messages that name the path the user
// gave: "no such file or folder", "no permission", "the disk is full".
#pragma once

#include <string>

// From an errno value; the system's own text for causes without words of their own.
std::string fileProblem(int errorNumber);
