// The modifier and key state the host tracks for the window layer's GetAsyncKeyState. Tests and
// the on-screen back-end set it; plug-ins read it. [any thread]
#pragma once

void setKeyHeld(int virtualKey, bool held);
bool isHostKeyHeld(int virtualKey);
void releaseAllKeys();

// Win32 convention: the high bit (a negative result) means the key is down now.
short hostAsyncKeyState(int virtualKey);
