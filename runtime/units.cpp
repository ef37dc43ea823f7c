// runtime/units.cpp: the unit table, OPEN and CLOSE, implicit open, and record transfer.
#include "runtime/units.h"

#include "runtime/options.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestro::rt {

namespace {

constexpr std::size_t standardBufferSize = 16834;
constexpr std::size_t windowBufferSize = 16384;
constexpr std::size_t fileBufferSize = 64 * 1024;
constexpr std::size_t maxNameLength = 1024;
constexpr long firstNewUnit = -10;

std::vector<std::unique_ptr<FileControlBlock>> blocks; // in the order of their creation
// The blocks found last, by the low bits of their unit: a record loop alternates between two.
std::array<FileControlBlock*, 8> recent{};
HookTable hookTable;
bool closing = false;
long nextNewUnit = firstNewUnit;

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    return text;
}

// Writes out the buffer: what closing needs before the connection goes.
void settle(FileControlBlock& fcb)
{
    flushUnit(fcb);
}

void makeStandard(long unit)
{
    FileControlBlock& fcb = addBlock(unit);
    fcb.fd = unit == stdIn ? 0 : unit == stdOut ? 1 : 2;
    fcb.readable = unit == stdIn;
    fcb.writable = unit != stdIn;
    fcb.bufferSize = standardBufferSize;
    fcb.flushEachRecord = unit == stdErr || (unit == stdOut && isatty(1));
}

int implicitOpen(long unit, FileControlBlock*& result)
{
    FileControlBlock& fcb = addBlock(unit);
    std::string name = options().filePrompt ? askFileName(fcb, false) : std::string();
    if (name.empty()) name = defaultName(unit);
    bool created = false;
    int fd = openFile(name, O_RDWR | O_CREAT, created);
    if (fd < 0 && (errno == EACCES || errno == EROFS)) {
        fd = openFile(name, O_RDONLY, created);
        fcb.writable = false;
    }
    if (fd < 0) {
        const int error = errno ? errno : EIO;
        removeBlock(&fcb);
        return error;
    }
    fcb.fd = fd;
    fcb.name = std::move(name);
    fcb.bufferSize = fileBufferSize;
    result = &fcb;
    return 0;
}

// The record end the options ask for, at `dest`: `erecSize` characters.
void putRecordEnd(char* dest, const Options& o)
{
    if (o.erecSize == 2) *dest++ = o.nonErec;
    *dest = o.erecChr;
}

} // namespace

FileControlBlock& addBlock(long unit)
{
    blocks.push_back(std::make_unique<FileControlBlock>());
    FileControlBlock& fcb = *blocks.back();
    fcb.unit = unit;
    fcb.tabSize = _gettabsize();
    fcb.carriageControl = options().defaultCarriage && unit >= stdErr && unit <= stdOut;
    return fcb;
}

std::string defaultName(long unit)
{
    char name[40];
    if (options().unixNames)
        std::snprintf(name, sizeof name, "fort.%ld", unit);
    else
        std::snprintf(name, sizeof name, "FOR%03ld.DAT", unit);
    return name;
}

void removeBlock(FileControlBlock* fcb)
{
    forgetRememberedStatements();
    for (FileControlBlock*& entry : recent) {
        if (entry == fcb) entry = nullptr;
    }
    blocks.erase(std::remove_if(blocks.begin(), blocks.end(),
                                [fcb](const std::unique_ptr<FileControlBlock>& b) { return b.get() == fcb; }),
                 blocks.end());
}

void _releasefile(FileControlBlock& fcb)
{
    if (fcb.window) {
        if (hookTable.closeWindow) {
            long status = 0;
            hookTable.closeWindow(&fcb.unit, &status);
        }
        return;
    }
    if (fcb.fd > 2) ::close(fcb.fd);
    fcb.fd = -1;
    if (fcb.deleteOnClose && !fcb.name.empty()) ::unlink(fcb.name.c_str());
}

// Cuts the file at its position: 0, or code 10027.
int truncateHere(FileControlBlock& fcb)
{
    const off_t here = ::lseek(fcb.fd, 0, SEEK_CUR);
    if (here < 0 || ::ftruncate(fcb.fd, here) != 0) return code::cannotTruncate;
    return 0;
}

int openFile(const std::string& name, int flags, bool& created)
{
    created = false;
    int fd = -1;
    if (flags & O_CREAT) {
        fd = ::open(name.c_str(), (flags & ~O_CREAT & ~O_TRUNC) | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0) {
            created = true;
        } else if (errno == EEXIST && !(flags & O_EXCL)) {
            fd = ::open(name.c_str(), (flags & ~O_CREAT) | O_CLOEXEC);
        }
    } else {
        fd = ::open(name.c_str(), flags | O_CLOEXEC);
    }
    if (fd < 0) return -1;
    struct stat info
    {
    };
    if (::fstat(fd, &info) == 0 && S_ISDIR(info.st_mode)) {
        ::close(fd);
        errno = EISDIR;
        return -1;
    }
    if (created && options().umaskSet) ::fchmod(fd, 0666 & ~options().umask);
    return fd;
}

// Asks for the name of an implicitly opened file: the file-name hook, or a prompt on the console.
std::string askFileName(FileControlBlock& fcb, bool newFile)
{
    if (hookTable.fileName) {
        char buffer[maxNameLength];
        long length = static_cast<long>(sizeof buffer);
        const long n = hookTable.fileName(buffer, &length, &fcb.unit, &newFile);
        return n > 0 ? std::string(buffer, static_cast<std::size_t>(std::min<long>(n, length)))
                     : std::string();
    }
    FileControlBlock* out = nullptr;
    FileControlBlock* in = nullptr;
    if (unitForTransfer(stdOut, false, out) != 0 || unitForTransfer(stdIn, true, in) != 0) return {};
    const std::string prompt = "Enter file name for OPEN on UNIT " + std::to_string(fcb.unit) + ": ";
    out->out.append(prompt);
    flushUnit(*out);
    std::string_view record;
    if (readRecord(*in, record) != 0) return {};
    return std::string(trimmed(record.substr(0, maxNameLength)));
}

HookTable& hooks()
{
    return hookTable;
}

long _preconnected(long unit, bool forRead)
{
    switch (unit) {
    case defaultUnit:
        return forRead ? stdIn : stdOut;
    case 0:
        return stdErr;
    case 5:
        return stdIn;
    case 6:
        return stdOut;
    case 9:
        return options().connectUnit9 ? (forRead ? stdIn : stdOut) : 9;
    default:
        return unit;
    }
}

FileControlBlock* findUnit(long unit)
{
    FileControlBlock*& entry = recent[static_cast<unsigned long>(unit) & 7];
    if (entry && entry->unit == unit) return entry;
    for (const auto& block : blocks) {
        if (block->unit == unit) return entry = block.get();
    }
    return nullptr;
}

int unitForTransfer(long unit, bool forRead, FileControlBlock*& fcb)
{
    const long mapped = _preconnected(unit, forRead);
    fcb = findUnit(mapped);
    if (fcb) return 0;
    if (mapped == stdIn || mapped == stdOut) {
        if (!findUnit(stdIn)) makeStandard(stdIn);
        if (!findUnit(stdOut)) makeStandard(stdOut);
        fcb = findUnit(mapped);
        return 0;
    }
    if (mapped == stdErr) {
        makeStandard(stdErr);
        fcb = findUnit(stdErr);
        return 0;
    }
    if (mapped < 0) return code::badUnit;
    return implicitOpen(mapped, fcb);
}

long _f_read(FileControlBlock& fcb, char* buffer, long size)
{
    long n;
    if ((fcb.fd == 0 || fcb.fd == -1) && hookTable.read) {
        n = hookTable.read(buffer, size, &fcb.unit);
        if (n < 0 && errno == 0) errno = EIO;
    } else {
        do {
            n = static_cast<long>(::read(fcb.fd, buffer, static_cast<std::size_t>(size)));
        } while (n < 0 && errno == EINTR);
    }
    return n;
}

long _f_write(FileControlBlock& fcb, const char* text, long size)
{
    if ((fcb.fd == -1 || fcb.fd == 1 || fcb.fd == 2) && hookTable.write) {
        long length = size;
        const long n = hookTable.write(const_cast<char*>(text), &length, fcb.fd, &fcb.unit);
        if (n < 0 && errno == 0) errno = EIO;
        return n;
    }
    long n;
    do {
        n = static_cast<long>(::write(fcb.fd, text, static_cast<std::size_t>(size)));
    } while (n < 0 && errno == EINTR);
    return n;
}

int readRecord(FileControlBlock& fcb, std::string_view& record)
{
    const Options& o = options();
    if (!fcb.lastWasRead) {
        if (fcb.fd <= 0) flushStandardUnits();
        if (!fcb.out.empty() && flushUnit(fcb) != 0) return fcb.error;
        fcb.lastWasRead = true;
    }
    for (;;) {
        char* data = fcb.in.data();
        if (fcb.inEnd > fcb.inPos) {
            const void* hit = std::memchr(data + fcb.inPos, o.erecChr, fcb.inEnd - fcb.inPos);
            if (hit) {
                const std::size_t end = static_cast<std::size_t>(static_cast<const char*>(hit) - data);
                std::size_t length = end - fcb.inPos;
                if (length > 0 && data[end - 1] == o.nonErec) --length;
                record = std::string_view(data + fcb.inPos, length);
                fcb.inPos = end + 1;
                return 0;
            }
        }
        // No record end in the buffer: keep the partial record, make room, read more.
        if (fcb.inPos > 0) {
            std::memmove(data, data + fcb.inPos, fcb.inEnd - fcb.inPos);
            fcb.inEnd -= fcb.inPos;
            fcb.inPos = 0;
        }
        const std::size_t chunk = fcb.fd <= 0 ? windowBufferSize : std::max(fcb.bufferSize, fileBufferSize);
        if (fcb.in.size() - fcb.inEnd < chunk) fcb.in.resize(fcb.inEnd + chunk);
        data = fcb.in.data();
        const long n = _f_read(fcb, data + fcb.inEnd, static_cast<long>(fcb.in.size() - fcb.inEnd));
        if (n < 0) {
            fcb.error = errno ? errno : EIO;
            return fcb.error;
        }
        if (n == 0) {
            if (fcb.inEnd == 0) return -1;
            std::size_t length = fcb.inEnd; // a last record without its record end
            if (data[length - 1] == o.nonErec) --length;
            record = std::string_view(data, length);
            fcb.inPos = fcb.inEnd;
            return 0;
        }
        fcb.inEnd += static_cast<std::size_t>(n);
    }
}

int writeRecord(FileControlBlock& fcb, std::string_view record, bool advance)
{
    const Options& o = options();
    dropReadAhead(fcb);
    if (fcb.carriageControl && !record.empty()) {
        const char control = record.front();
        record.remove_prefix(1);
        if (control == '0')
            *fcb.out.extend(1) = o.erecChr;
        else if (control == '1')
            *fcb.out.extend(1) = '\f';
    }
    // One growth and one copy for the record and its end.
    const std::size_t end = advance ? static_cast<std::size_t>(o.erecSize) : 0;
    char* dest = fcb.out.extend(record.size() + end);
    if (!record.empty()) std::memcpy(dest, record.data(), record.size());
    if (advance) putRecordEnd(dest + record.size(), o);
    const bool immediate =
        fcb.flushEachRecord || ((fcb.fd == 1 || fcb.window) && hookTable.write) || (!advance && fcb.fd <= 2);
    if (immediate || fcb.out.size() >= fcb.bufferSize) return flushUnit(fcb);
    return 0;
}

// Position of the next byte a read would take, for a switch from reading to writing.
void dropReadAheadNow(FileControlBlock& fcb)
{
    fcb.lastWasRead = false;
    if (fcb.fd > 2 && fcb.inEnd > fcb.inPos)
        ::lseek(fcb.fd, -static_cast<off_t>(fcb.inEnd - fcb.inPos), SEEK_CUR);
    fcb.inPos = fcb.inEnd = 0;
    if (fcb.truncateOnWrite) {
        fcb.truncateOnWrite = false;
        if (const int error = truncateHere(fcb)) fcb.error = error;
    }
}

bool takesRecordsInPlace(const FileControlBlock& fcb)
{
    return fcb.fd > 2 && !fcb.window && !fcb.carriageControl && !fcb.flushEachRecord && fcb.writable &&
           fcb.form == Form::formatted && fcb.access == Access::sequential && fcb.recl == sequentialRecl;
}

int endRecordInPlace(FileControlBlock& fcb, char* end)
{
    putRecordEnd(end, options());
    return fcb.out.size() >= fcb.bufferSize ? flushUnit(fcb) : 0;
}

int flushUnit(FileControlBlock& fcb)
{
    std::size_t done = 0;
    int result = 0;
    while (done < fcb.out.size()) {
        const long n = _f_write(fcb, fcb.out.data() + done, static_cast<long>(fcb.out.size() - done));
        if (n <= 0) {
            fcb.error = errno ? errno : EIO;
            result = fcb.error;
            break;
        }
        done += static_cast<std::size_t>(n);
    }
    fcb.out.clear();
    return result;
}

void flushStandardUnits()
{
    if (FileControlBlock* out = findUnit(stdOut); out && !out->out.empty()) flushUnit(*out);
}

void _close_all()
{
    if (closing) return;
    closing = true;
    // Standard output last, so that what a file unit's close may report still follows it.
    for (const auto& block : blocks)
        settle(*block);
    for (const auto& block : blocks)
        _releasefile(*block);
    blocks.clear();
    forgetRememberedStatements();
    recent.fill(nullptr);
    closing = false;
}

long takeNewUnit()
{
    return nextNewUnit--;
}

void resetUnitTable()
{
    blocks.clear();
    forgetRememberedStatements();
    recent.fill(nullptr);
    nextNewUnit = firstNewUnit;
}

void _write_stderror(std::string_view text)
{
    flushStandardUnits();
    FileControlBlock* err = findUnit(stdErr);
    FileControlBlock stub;
    stub.unit = stdErr;
    stub.fd = 2;
    FileControlBlock& target = err ? *err : stub;
    if (err) flushUnit(*err);
    std::size_t done = 0;
    while (done < text.size()) {
        const long n = _f_write(target, text.data() + done, static_cast<long>(text.size() - done));
        if (n <= 0) break;
        done += static_cast<std::size_t>(n);
    }
}

} // namespace kestro::rt

extern "C" void quor_f_init(QuorReadHook read, QuorWriteHook write, QuorStopHook stop, QuorYieldHook yield,
                            QuorMakeWindowHook makeWindow, QuorCloseWindowHook closeWindow,
                            QuorFileNameHook fileName)
{
    using namespace kestro::rt;
    _f_thread_enter_io();
    hooks() = HookTable{read, write, stop, yield, makeWindow, closeWindow, fileName};
    _f_thread_exit_io();
}
