// zel/core/preferences.h: the environment's compile-time preferences.
#pragma once

extern "C" {
int _ZEL_getStackSize();
bool _ZEL_getMdiMode();
bool _ZEL_getShowMaximized();
bool _ZEL_promptSaveOnExit();
int _ZEL_getMainWindowWidth();
int _ZEL_getMainWindowHeight();
int _ZEL_getMdiTextWindowWidth();
int _ZEL_getMdiTextWindowHeight();
int _ZEL_defaultFontSize();
// Fills the whole buffer: the family, then blanks.
void _ZEL_defaultFontFamily(char* buffer, int length);
bool _ZEL_autoSave();
bool _ZEL_closeOnProgramFinish();
bool _ZEL_showDefaultOutputWindow();
// Called with a window's title just before the window goes; does nothing here.
void _ZEL_windowDidClose(const char* name, int length);
}
