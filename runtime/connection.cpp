// runtime/connection.cpp: OPEN, CLOSE, REWIND, BACKSPACE, ENDFILE, FLUSH and INQUIRE on the unit
// table.
#include "runtime/connection.h"

#include "runtime/options.h"
#include "runtime/units.h"

#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kestro::rt {

namespace {

constexpr std::size_t windowBufferSize = 16384;
constexpr std::size_t fileBufferSize = 64 * 1024;
constexpr std::size_t maxNameLength = 1024;

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

// After REWIND and BACKSPACE a sequential file's next write is its last record.
void truncateOnNextWrite(FileControlBlock& fcb)
{
    if (fcb.fd <= 2 || fcb.access != Access::sequential || !fcb.writable) return;
    fcb.lastWasRead = true; // so that the write stops at dropReadAhead
    fcb.truncateOnWrite = true;
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

} // namespace

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
        unit = takeNewUnit();
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
        const int result = hooks().makeWindow
                               ? hooks().makeWindow(&fcb.unit, const_cast<char*>(file.data()),
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
    flushUnit(*fcb);
    const int error = fcb->error;
    _releasefile(*fcb);
    removeBlock(fcb);
    return error;
}

int rewindUnit(long unitNumber)
{
    FileControlBlock* fcb = findUnit(_preconnected(unitNumber, false));
    if (!fcb) return 0;
    flushUnit(*fcb);
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
    flushUnit(*fcb);
    return fcb->error;
}

int endfileUnit(long unitNumber)
{
    FileControlBlock* fcb = nullptr;
    if (const int error = unitForTransfer(unitNumber, false, fcb)) return error;
    flushUnit(*fcb);
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
    flushUnit(*fcb);
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

} // namespace kestro::rt
