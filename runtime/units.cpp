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
unsigned long scratchCounter = 0;

bool equalsIgnoringCase(std::string_view a, std::string_view b)
{
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::toupper(static_cast<unsigned char>(a[i])) != std::toupper(static_cast<unsigned char>(b[i])))
            return false;
    }
    return true;
}

std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    return text;
}

// Index of `value` among `choices`, ignoring case; -1 if absent, -2 if not among them.
template <std::size_t N> int choice(std::string_view value, const std::string_view (&choices)[N])
{
    value = trimmed(value);
    if (value.empty()) return -1;
    for (std::size_t i = 0; i < N; ++i) {
        if (equalsIgnoringCase(value, choices[i])) return static_cast<int>(i);
    }
    return -2;
}

FileControlBlock& addBlock(long unit)
{
    blocks.push_back(std::make_unique<FileControlBlock>());
    FileControlBlock& fcb = *blocks.back();
    fcb.unit = unit;
    fcb.tabSize = _gettabsize();
    fcb.carriageControl = options().defaultCarriage && unit >= stdErr && unit <= stdOut;
    return fcb;
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

// Writes out the buffer: what closing needs before the connection goes.
void settle(FileControlBlock& fcb)
{
    flushUnit(fcb);
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

// After REWIND and BACKSPACE a sequential file's next write is its last record.
void truncateOnNextWrite(FileControlBlock& fcb)
{
    if (fcb.fd <= 2 || fcb.access != Access::sequential || !fcb.writable) return;
    fcb.lastWasRead = true; // so that the write stops at dropReadAhead
    fcb.truncateOnWrite = true;
}

// The record end the options ask for, at `dest`: `erecSize` characters.
void putRecordEnd(char* dest, const Options& o)
{
    if (o.erecSize == 2) *dest++ = o.nonErec;
    *dest = o.erecChr;
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

// Opens a scratch file: "tnxPPPPPXXXXXX" in TMPDIR if that is a folder, else here.
int openScratch(std::string& name)
{
    std::string folder;
    if (const char* tmp = std::getenv("TMPDIR"); tmp && *tmp) {
        struct stat info
        {
        };
        if (::stat(tmp, &info) == 0 && S_ISDIR(info.st_mode)) {
            folder = tmp;
            if (folder.back() != '/') folder += '/';
        }
    }
    if (scratchCounter == 0) scratchCounter = static_cast<unsigned long>(std::time(nullptr));
    const unsigned long pid = static_cast<unsigned long>(::getpid()) % 100000;
    for (int attempt = 0; attempt < 100000; ++attempt) {
        char base[32];
        std::snprintf(base, sizeof base, "tnx%05lu%06lu", pid, scratchCounter++ % 1000000);
        name = folder + base;
        const int fd = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd >= 0) return fd;
        if (errno != EEXIST) return -1;
    }
    return -1;
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

} // namespace

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

int endRecordInPlace(FileControlBlock& fcb)
{
    const Options& o = options();
    putRecordEnd(fcb.out.extend(static_cast<std::size_t>(o.erecSize)), o);
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

void resetUnitTable()
{
    blocks.clear();
    forgetRememberedStatements();
    recent.fill(nullptr);
    nextNewUnit = firstNewUnit;
}

int openUnit(long unitNumber, const OpenSpec& specifiers)
{
    static constexpr std::string_view statuses[] = {"OLD", "NEW", "REPLACE", "SCRATCH", "UNKNOWN"};
    static constexpr std::string_view accesses[] = {"SEQUENTIAL", "DIRECT", "STREAM", "WINDOW",
                                                    "TRANSPARENT"};
    static constexpr std::string_view forms[] = {"FORMATTED", "UNFORMATTED", "BINARY"};
    static constexpr std::string_view actions[] = {"READ", "WRITE", "READWRITE", "BOTH"};
    static constexpr std::string_view positions[] = {"REWIND", "APPEND", "ASIS"};
    static constexpr std::string_view blanks[] = {"NULL", "ZERO"};
    static constexpr std::string_view delims[] = {"NONE", "APOSTROPHE", "QUOTE"};
    static constexpr std::string_view yesNo[] = {"YES", "NO"};
    static constexpr std::string_view endians[] = {"BIG_ENDIAN", "LITTLE_ENDIAN", "NATIVE"};
    static constexpr std::string_view decimals[] = {"POINT", "COMMA"};
    static constexpr std::string_view encodings[] = {"DEFAULT", "UTF-8", "ASCII"};
    static constexpr std::string_view signs[] = {"PLUS", "SUPPRESS", "PROCESSOR_DEFINED"};
    static constexpr std::string_view rounds[] = {"UP",      "DOWN",       "ZERO",
                                                  "NEAREST", "COMPATIBLE", "PROCESSOR_DEFINED"};

    const bool windowAccess = trimmed(specifiers.access).size() >= 6 &&
                              equalsIgnoringCase(trimmed(specifiers.access).substr(0, 6), "WINDOW");
    const int status = choice(specifiers.status, statuses);
    const int access = windowAccess ? 3 : choice(specifiers.access, accesses);
    const int form = choice(specifiers.form, forms);
    const int action = choice(specifiers.action, actions);
    const int position = choice(specifiers.position, positions);
    const int blank = choice(specifiers.blank, blanks);
    const int delim = choice(specifiers.delim, delims);
    const int pad = choice(specifiers.pad, yesNo);
    if (status == -2 || access == -2 || form == -2 || action == -2 || position == -2 || blank == -2)
        return code::badIolist;
    if (delim == -2) return code::badDelim;
    if (pad == -2) return code::badPad;
    const int endian = choice(specifiers.endian, endians);
    const int decimal = choice(specifiers.decimal, decimals);
    const int encoding = choice(specifiers.encoding, encodings);
    const int sign = choice(specifiers.sign, signs);
    const int round = choice(specifiers.round, rounds);
    if (endian == -2) return code::badEndian;
    if (decimal == -2) return code::badDecimal;
    if (encoding == -2) return code::badEncoding;
    if (sign == -2) return code::badSign;
    if (round == -2) return code::badIolist;
    const bool unformatted = form == 1 || form == 2;
    if (specifiers.recl < 0 || (access == 1 && specifiers.recl == 0)) return code::badRecordLength;
    if (specifiers.recl > 0 && access != 1) return code::reclNotDirect;
    if (specifiers.block != 0 && !(unformatted && (access == -1 || access == 0)))
        return code::blockNotUnformatted;
    if (pad >= 0 && unformatted) return code::padUnformatted;
    if (windowAccess && (unformatted || specifiers.recl || specifiers.block || position >= 0 || status == 3))
        return code::badIolist;

    long unit = unitNumber;
    if (specifiers.newunit) {
        unit = nextNewUnit--;
        *specifiers.newunit = unit;
    } else {
        if (unit == defaultUnit) return code::badUnit;
        unit = _preconnected(unit, false);
        if (unit < 0 && unit != stdIn && unit != stdOut && unit != stdErr && !findUnit(unit))
            return code::badUnit;
    }
    std::string_view file = trimmed(specifiers.file);
    if (file.size() > maxNameLength) return code::badFileSpec;

    if (FileControlBlock* open = findUnit(unit)) {
        // Every specifier given must be the connection's.
        const int openAction = open->readable && open->writable ? 2 : open->readable ? 0 : 1;
        const auto differs = [](int given, int connection) { return given >= 0 && given != connection; };
        if ((!file.empty() && file != open->name) || differs(status, open->status) ||
            differs(access, static_cast<int>(open->access)) || differs(form, static_cast<int>(open->form)) ||
            differs(action == 3 ? 2 : action, openAction) || differs(position, open->position) ||
            differs(blank, open->blankZero ? 1 : 0) || differs(delim, open->delim) ||
            differs(pad, open->padInput ? 0 : 1) || differs(endian, open->endian) ||
            differs(decimal, open->decimalComma ? 1 : 0) || differs(encoding, open->encoding) ||
            differs(sign, open->sign) || differs(round, open->round) ||
            (specifiers.recl > 0 && specifiers.recl != open->recl) ||
            (specifiers.block != 0 && specifiers.block != open->block))
            return code::openMismatch;
        return 0;
    }

    FileControlBlock& fcb = addBlock(unit);
    fcb.access = access < 0 ? Access::sequential : static_cast<Access>(access);
    fcb.form = form < 0 ? Form::formatted : static_cast<Form>(form);
    fcb.blankZero = blank == 1;
    fcb.padInput = pad != 1;
    fcb.decimalComma = decimal == 1;
    const auto given = [](int index, signed char fallback) {
        return index >= 0 ? static_cast<signed char>(index) : fallback;
    };
    fcb.status = given(status, fcb.status);
    fcb.position = given(position, fcb.position);
    fcb.delim = given(delim, fcb.delim);
    fcb.endian = given(endian, fcb.endian);
    fcb.encoding = given(encoding, fcb.encoding);
    fcb.sign = given(sign, fcb.sign);
    fcb.round = given(round, fcb.round);
    fcb.block = specifiers.block;
    fcb.recl = specifiers.recl > 0 ? specifiers.recl : sequentialRecl;
    fcb.bufferSize = fileBufferSize;
    fcb.readable = action != 1;
    fcb.writable = action != 0;

    if (windowAccess) {
        const int result = hookTable.makeWindow
                               ? hookTable.makeWindow(&fcb.unit, const_cast<char*>(file.data()),
                                                      const_cast<char*>(specifiers.access.data()),
                                                      static_cast<int>(file.size()),
                                                      static_cast<long>(specifiers.access.size()))
                               : -10;
        if (result != 0) {
            removeBlock(&fcb);
            return result == -10 ? code::windowsUnavailable : code::badWindowSpec;
        }
        fcb.window = true;
        fcb.fd = -1;
        fcb.name = std::string(file);
        fcb.bufferSize = windowBufferSize;
        return 0;
    }

    std::string name;
    int fd = -1;
    if (status == 3) {
        fd = openScratch(name);
        fcb.deleteOnClose = true;
    } else {
        name = file.empty() ? (options().filePrompt ? askFileName(fcb, status == 1) : std::string())
                            : std::string(file);
        if (name.empty()) name = defaultName(unit);
        int flags = action == 0 ? O_RDONLY : action == 1 ? O_WRONLY : O_RDWR;
        if (status == 1)
            flags |= O_CREAT | O_EXCL;
        else if (status == 2)
            flags |= O_CREAT | O_TRUNC;
        else if (status != 0)
            flags |= O_CREAT;
        bool created = false;
        fd = openFile(name, flags, created);
        if (fd < 0 && action < 0 && (errno == EACCES || errno == EROFS)) {
            fd = openFile(name, (flags & ~O_RDWR) | O_RDONLY, created);
            fcb.writable = false;
        }
        if (fd >= 0 && status == 2 && !created && ::ftruncate(fd, 0) != 0) {
            ::close(fd);
            fd = -1;
        }
    }
    if (fd < 0) {
        const int error = errno == EEXIST && status == 1 ? code::newFileExists : (errno ? errno : EIO);
        removeBlock(&fcb);
        return error;
    }
    fcb.fd = fd;
    fcb.name = std::move(name);
    if (position == 1) ::lseek(fd, 0, SEEK_END);
    return 0;
}

int closeUnit(long unitNumber, std::string_view status)
{
    static constexpr std::string_view statuses[] = {"KEEP",   "SAVE",         "DELETE",       "PRINT",
                                                    "SUBMIT", "PRINT/DELETE", "SUBMIT/DELETE"};
    const int which = choice(status, statuses);
    if (which == -2) return code::badIolist;
    if (unitNumber == defaultUnit) return code::badUnit;
    FileControlBlock* fcb = findUnit(_preconnected(unitNumber, false));
    if (!fcb) return 0;
    if (which == 2 || which == 5 || which == 6) fcb->deleteOnClose = true;
    settle(*fcb);
    const int error = fcb->error;
    _releasefile(*fcb);
    removeBlock(fcb);
    return error;
}

int rewindUnit(long unitNumber)
{
    FileControlBlock* fcb = findUnit(_preconnected(unitNumber, false));
    if (!fcb) return 0;
    settle(*fcb);
    fcb->inPos = fcb->inEnd = 0;
    fcb->lastWasRead = false;
    if (fcb->fd > 2) ::lseek(fcb->fd, 0, SEEK_SET);
    truncateOnNextWrite(*fcb);
    return 0;
}

int flushUnitNumber(long unitNumber)
{
    FileControlBlock* fcb = findUnit(_preconnected(unitNumber, false));
    if (!fcb) return 0;
    settle(*fcb);
    return fcb->error;
}

int endfileUnit(long unitNumber)
{
    FileControlBlock* fcb = nullptr;
    if (const int error = unitForTransfer(unitNumber, false, fcb)) return error;
    settle(*fcb);
    fcb->truncateOnWrite = false; // cut here and now
    dropReadAhead(*fcb);
    if (fcb->fd <= 2) return 0;
    return truncateHere(*fcb);
}

int backspaceUnit(long unitNumber)
{
    FileControlBlock* fcb = findUnit(_preconnected(unitNumber, false));
    if (!fcb || fcb->fd <= 2) return 0;
    if (fcb->access == Access::stream) return code::backspaceStream;
    settle(*fcb);
    fcb->truncateOnWrite = false; // until the position is found
    dropReadAhead(*fcb);
    const off_t here = ::lseek(fcb->fd, 0, SEEK_CUR);
    if (here > 0) {
        // Back over the record end of the previous record, then to the record end before it.
        off_t pos = here - 1;
        char c;
        while (pos > 0) {
            if (::pread(fcb->fd, &c, 1, pos - 1) != 1) break;
            if (c == options().erecChr) break;
            --pos;
        }
        ::lseek(fcb->fd, pos, SEEK_SET);
    }
    truncateOnNextWrite(*fcb);
    return 0;
}

int inquireUnit(long unitNumber, UnitInquiry& answer)
{
    answer = UnitInquiry{};
    const long unit = _preconnected(unitNumber, false);
    FileControlBlock* fcb = findUnit(unit);
    answer.exists = unit >= stdErr || fcb != nullptr;
    if (fcb) {
        answer.opened = true;
        answer.name = fcb->name;
    }
    return 0;
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
