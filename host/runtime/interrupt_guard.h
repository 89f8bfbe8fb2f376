// Ctrl-C, SIGTERM and SIGHUP while the program writes files: every unfinished temporary file is
// removed, one line says what was interrupted, e.g. "spatiola: interrupted by SIGINT while
// writing out.wav; the unfinished file was removed", and the program exits with 128 + the signal
// number (130, 143, 129). A crash inside a plug-in removes the unfinished files too.
#pragma once

#include <string>

// Installs the handlers of SIGINT, SIGTERM and SIGHUP (once per process).
void installInterruptHandlers();

// For programs that run until told to stop (live audio): from now on the same signals only ask to
// quit, so that the loop ends as quitting does and the files it writes are complete; from then on
// interruptedToQuit() answers true.
void quitOnInterrupts();
bool interruptedToQuit();

// [signal handlers] Removes the temporary files of every write in progress; async-signal-safe.
// Returns the number removed.
int removeUnfinishedFiles();

// Marks a file being written for the lifetime of the object: `temporaryPath` is removed on an
// interruption, `shownPath` (the path the user gave) is named. Up to four at once. [main thread]
class UnfinishedFile {
 public:
  UnfinishedFile(const std::string& temporaryPath, const std::string& shownPath);
  ~UnfinishedFile();
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

 private:
  int slot_ = -1;  // -1 when every slot was taken: the file is then not removed
};
