#include "host/cli/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int kBarWidth = 30;
constexpr auto kRedrawInterval = std::chrono::milliseconds(100);

}  // namespace

ProgressBar::ProgressBar(std::string label, std::int64_t total)
    : label_(std::move(label)),
      total_(std::max<std::int64_t>(total, 1)),
      enabled_(isatty(STDERR_FILENO) != 0) {}

ProgressBar::~ProgressBar() {
  if (drawn_) std::fputc('\n', stderr);
}

void ProgressBar::update(std::int64_t done) {
  if (!enabled_) return;
  const auto now = std::chrono::steady_clock::now();
  if (drawn_ && now - lastDraw_ < kRedrawInterval) return;
  lastDraw_ = now;
  draw(done);
}

void ProgressBar::finish() {
  if (enabled_) draw(total_);
}

void ProgressBar::draw(std::int64_t done) {
  const double fraction =
      std::clamp(static_cast<double>(done) / static_cast<double>(total_), 0.0, 1.0);
  const int filled = static_cast<int>(fraction * kBarWidth);
  std::string bar(static_cast<std::size_t>(filled), '#');
  bar.resize(kBarWidth, '-');
  std::fprintf(stderr, "\r%s [%s] %3d%%", label_.c_str(), bar.c_str(),
               static_cast<int>(fraction * 100.0));
  std::fflush(stderr);
  drawn_ = true;
}
