// zel/core/textfunctions.cpp: the text hooks of the runtime and the text window functions.
#include "zel/core/environment.h"
#include "zel/core/gluemanager.h"
#include "zel/core/zel.h"

#include <QCoreApplication>
#include <QString>

#include <algorithm>
#include <cstring>

namespace {

// A text argument: `length` -1 (in its low 32 bits) means NUL-terminated.
void processEventsOffProgramThread()
{
    if (!onProgramThread()) QCoreApplication::processEvents();
}

} // namespace

extern "C" {

long ZEL_writeText(char* text, long* length, int, long* unit)
{
    if (!length || !unit || !glue_manager.load(std::memory_order_acquire)) return -1;
    const long count = static_cast<int>(*length) == -1 ? static_cast<long>(std::strlen(text)) : *length;
    if (!GlueManager::writeTextToUnit(*unit, text, count)) return -1;
    processEventsOffProgramThread();
    return *length;
}

long ZEL_readText(char* buffer, long size, long* unit)
{
    if (size == 0 || !unit || !glue_manager.load(std::memory_order_acquire)) return -1;
    if (!GlueManager::readInput(*unit)) return -1;
    if (const long code =
            GlueManager::waitCode(GlueManager::Flag::read, GlueManager::GuiWait::sleepAndProcessEvents);
        code != 1)
        return code;
    if (GlueManager::readWasCancelled()) return -1;
    const QString text = GlueManager::takeReadText();
    if (text.size() > size) return -3;
    const QByteArray line = (text + '\n').toLatin1();
    std::strncpy(buffer, line.constData(), static_cast<std::size_t>(size));
    processEventsOffProgramThread();
    return std::min<long>(size, line.size());
}

int ZEL_makewindow(long* unit, char* name, char* access, int nameLength, long accessLength)
{
    if (!unit) return 0;
    if (*unit == -1000) *unit = currentInternalId++;
    GlueManager::createWindowForUnit(*unit, latin1Text(name, nameLength), latin1Text(access, accessLength));
    return 0;
}

int ZEL_closewindow(long* unit, long*)
{
    if (!unit) return 0;
    const long key = static_cast<int>(*unit);
    GlueManager::call([key](GlueManager& g) { emit g.closeWindow(key); });
    return 0;
}

long ZEL_createTextWindow(int* unit, char* title, int* width, int* height, long titleLength)
{
    if (!unit) return 0;
    *unit = static_cast<int>(currentInternalId++);
    if (!glue_manager.load(std::memory_order_acquire)) return 0;
    const QString access = QString("ACCESS=window,%1,%2").arg(width ? *width : 0).arg(height ? *height : 0);
    GlueManager::createWindowForUnit(*unit, latin1Text(title, titleLength), access);
    return 0;
}

long ZEL_writeTextWindow(int* unit, char* text, int length)
{
    if (!unit || !glue_manager.load(std::memory_order_acquire)) return 0;
    QByteArray line = length == -1 ? QByteArray(text) : QByteArray(text, std::max(0, length));
    line.append('\n');
    long count = line.size();
    long key = *unit;
    ZEL_writeText(line.data(), &count, -1, &key);
    return 0;
}

long ZEL_readTextWindow(int* unit, char* buffer, long length)
{
    if (!unit) return -1;
    long key = *unit;
    const long result = ZEL_readText(buffer, length, &key);
    if (length <= 0) return result;
    const QString text = QString::fromLatin1(buffer, static_cast<int>(length));
    const int newline = text.indexOf('\n');
    if (newline >= 0) {
        const QByteArray padded = text.left(newline).leftJustified(static_cast<int>(length), ' ').toLatin1();
        std::strncpy(buffer, padded.constData(), static_cast<std::size_t>(length));
    }
    return result;
}

long ZEL_closeTextWindow(int* unit)
{
    if (!unit) return 0;
    const long key = *unit;
    GlueManager::call([key](GlueManager& g) { emit g.closeWindow(key); });
    return 0;
}

} // extern "C"
