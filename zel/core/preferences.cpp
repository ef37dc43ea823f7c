// zel/core/preferences.cpp: the preferences of this program. Nothing is read at run time.
#include "zel/core/preferences.h"

#include <algorithm>
#include <cstring>

namespace {
constexpr int mainWindowWidth = 340;
constexpr int mainWindowHeight = 700;
constexpr char fontFamily[] = "Monaco";

// Three quarters of a size in single precision, truncated.
constexpr int threeQuarters(int size)
{
    return static_cast<int>(0.75f * static_cast<float>(size));
}
} // namespace

extern "C" {
int _ZEL_getStackSize()
{
    return 0x2000000;
}
bool _ZEL_getMdiMode()
{
    return false;
}
bool _ZEL_getShowMaximized()
{
    return false;
}
bool _ZEL_promptSaveOnExit()
{
    return true;
}
int _ZEL_getMainWindowWidth()
{
    return mainWindowWidth;
}
int _ZEL_getMainWindowHeight()
{
    return mainWindowHeight;
}
int _ZEL_getMdiTextWindowWidth()
{
    return threeQuarters(mainWindowWidth);
}
int _ZEL_getMdiTextWindowHeight()
{
    return threeQuarters(mainWindowHeight);
}
int _ZEL_defaultFontSize()
{
    return 10;
}

void _ZEL_defaultFontFamily(char* buffer, int length)
{
    if (!buffer || length <= 0) return;
    const int n = std::min<int>(length, sizeof fontFamily - 1);
    std::memcpy(buffer, fontFamily, static_cast<std::size_t>(n));
    std::memset(buffer + n, ' ', static_cast<std::size_t>(length - n));
}

bool _ZEL_autoSave()
{
    return false;
}
bool _ZEL_closeOnProgramFinish()
{
    return true;
}
bool _ZEL_showDefaultOutputWindow()
{
    return true;
}
void _ZEL_windowDidClose(const char*, int) {}
}
