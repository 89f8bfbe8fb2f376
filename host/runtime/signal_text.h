// Text output that a signal handler may use: write(2) only, no allocation, no locks.
#pragma once

#include <unistd.h>

#include <cstring>

inline void writeSignalText(const char* text) {
  std::size_t left = std::strlen(text);
  while (left > 0) {
    const ssize_t written = write(STDERR_FILENO, text, left);
    if (written <= 0) return;
    text += written;
    left -= static_cast<std::size_t>(written);
  }
}

inline void writeSignalNumber(int value) {
  char digits[16];
  int i = sizeof(digits) - 1;
  digits[i] = '\0';
  do {
    digits[--i] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value > 0 && i > 0);
  writeSignalText(digits + i);
}
