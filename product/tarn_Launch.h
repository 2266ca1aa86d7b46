// What the product does around starting its programs: the demo test, the checks before a
// game program starts, the demo's DirectX check through the setup library, and the start
// of the game's second program. (Windows only.)
#pragma once

#include <cstdint>
#include <windows.h>

class LfxMain;

// The product's own message boxes: a text and a caption from the setup library's string
// table, by number. Returns the button the player chose.
int ShowProductMessage(LfxMain* main, HWND owner, uint16_t text, uint16_t caption, UINT style);
// The product is the demo when [Startup] AppType of DataDir\setup.ini is exactly "Demo";
// the file is read again at every call.
bool IsDemoProduct();
// The checks before a game program starts: the sound device (the player may go on
// without sound) and at least one display device. Messages are owned by 'owner'.
bool CheckBeforeStart(HWND owner, LfxMain* main);
// What every start of a game program goes through first: the folder the product was
// installed from becomes the current folder, the display devices are described, and the
// checks before the start run, their boxes owned by 'owner'. True when the program may
// start.
bool PrepareGameStart(LfxMain* main, HWND owner);
// The demo's own DirectX check through the setup library's exports.
bool CheckDirectXViaSetup();
// Starts the game's second program, trnmp.exe, after the same preparation.
bool LaunchSecondProgram(LfxMain* main);
