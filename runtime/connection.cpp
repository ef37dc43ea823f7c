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

// The OPEN specifiers as indices into their lists of values: -1 where a specifier is absent.
struct Choices
{
    bool window = false; // ACCESS= beginning with "WINDOW"
    int status, access, form, action, position, blank, delim, pad, endian, decimal, encoding, sign, round;
};

// Reads and checks the specifiers: 0, or the code of the first that is wrong.
int readChoices(const OpenSpec& specifiers, Choices& c)
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

    c.window = trimmed(specifiers.access).size() >= 6 &&
               equalsIgnoringCase(trimmed(specifiers.access).substr(0, 6), "WINDOW");
    c.status = choice(specifiers.status, statuses);
    c.access = c.window ? 3 : choice(specifiers.access, accesses);
    c.form = choice(specifiers.form, forms);
    c.action = choice(specifiers.action, actions);
    c.position = choice(specifiers.position, positions);
    c.blank = choice(specifiers.blank, blanks);
    c.delim = choice(specifiers.delim, delims);
    c.pad = choice(specifiers.pad, yesNo);
    if (c.status == -2 || c.access == -2 || c.form == -2 || c.action == -2 || c.position == -2 ||
        c.blank == -2)
        return code::badIolist;
    if (c.delim == -2) return code::badDelim;
    if (c.pad == -2) return code::badPad;
    c.endian = choice(specifiers.endian, endians);
    c.decimal = choice(specifiers.decimal, decimals);
    c.encoding = choice(specifiers.encoding, encodings);
    c.sign = choice(specifiers.sign, signs);
    c.round = choice(specifiers.round, rounds);
    if (c.endian == -2) return code::badEndian;
    if (c.decimal == -2) return code::badDecimal;
    if (c.encoding == -2) return code::badEncoding;
    if (c.sign == -2) return code::badSign;
    if (c.round == -2) return code::badIolist;
    const bool unformatted = c.form == 1 || c.form == 2;
    if (specifiers.recl < 0 || (c.access == 1 && specifiers.recl == 0)) return code::badRecordLength;
    if (specifiers.recl > 0 && c.access != 1) return code::reclNotDirect;
    if (specifiers.block != 0 && !(unformatted && (c.access == -1 || c.access == 0)))
        return code::blockNotUnformatted;
    if (c.pad >= 0 && unformatted) return code::padUnformatted;
    if (c.window && (unformatted || specifiers.recl || specifiers.block || c.position >= 0 || c.status == 3))
        return code::badIolist;
    return 0;
}

// Whether every specifier given is the connection's, as an OPEN of a connected unit must have it.
bool sameConnection(const FileControlBlock& open, const Choices& c, std::string_view file,
                    const OpenSpec& specifiers)
{
    const int openAction = open.readable && open.writable ? 2 : open.readable ? 0 : 1;
    const auto differs = [](int given, int connection) { return given >= 0 && given != connection; };
    return !((!file.empty() && file != open.name) || differs(c.status, open.status) ||
             differs(c.access, static_cast<int>(open.access)) ||
             differs(c.form, static_cast<int>(open.form)) ||
             differs(c.action == 3 ? 2 : c.action, openAction) || differs(c.position, open.position) ||
             differs(c.blank, open.blankZero ? 1 : 0) || differs(c.delim, open.delim) ||
             differs(c.pad, open.padInput ? 0 : 1) || differs(c.endian, open.endian) ||
             differs(c.decimal, open.decimalComma ? 1 : 0) || differs(c.encoding, open.encoding) ||
             differs(c.sign, open.sign) || differs(c.round, open.round) ||
             (specifiers.recl > 0 && specifiers.recl != open.recl) ||
             (specifiers.block != 0 && specifiers.block != open.block));
}

// A new block's connection as the specifiers describe it; the defaults where they are absent.
void takeChoices(FileControlBlock& fcb, const Choices& c, const OpenSpec& specifiers)
{
    fcb.access = c.access < 0 ? Access::sequential : static_cast<Access>(c.access);
    fcb.form = c.form < 0 ? Form::formatted : static_cast<Form>(c.form);
    fcb.blankZero = c.blank == 1;
    fcb.padInput = c.pad != 1;
    fcb.decimalComma = c.decimal == 1;
    const auto given = [](int index, signed char fallback) {
        return index >= 0 ? static_cast<signed char>(index) : fallback;
    };
    fcb.status = given(c.status, fcb.status);
    fcb.position = given(c.position, fcb.position);
    fcb.delim = given(c.delim, fcb.delim);
    fcb.endian = given(c.endian, fcb.endian);
    fcb.encoding = given(c.encoding, fcb.encoding);
    fcb.sign = given(c.sign, fcb.sign);
    fcb.round = given(c.round, fcb.round);
    fcb.block = specifiers.block;
    fcb.recl = specifiers.recl > 0 ? specifiers.recl : sequentialRecl;
    fcb.bufferSize = fileBufferSize;
    fcb.readable = c.action != 1;
    fcb.writable = c.action != 0;
}

// A window behind the block, made by the make-window hook: 0 or a code.
int connectWindow(FileControlBlock& fcb, std::string_view file, std::string_view access)
{
    const int result =
        hooks().makeWindow
            ? hooks().makeWindow(&fcb.unit, const_cast<char*>(file.data()), const_cast<char*>(access.data()),
                                 static_cast<int>(file.size()), static_cast<long>(access.size()))
            : -10;
    if (result != 0) return result == -10 ? code::windowsUnavailable : code::badWindowSpec;
    fcb.window = true;
    fcb.fd = -1;
    fcb.name = std::string(file);
    fcb.bufferSize = windowBufferSize;
    return 0;
}

// A file behind the block: a scratch file, or the one named (or asked for, or the default name),
// opened as its status and action ask. 0 or a code.
int connectFile(FileControlBlock& fcb, const Choices& c, std::string_view file)
{
    std::string name;
    int fd = -1;
    if (c.status == 3) {
        fd = openScratch(name);
        fcb.deleteOnClose = true;
    } else {
        name = file.empty() ? (options().filePrompt ? askFileName(fcb, c.status == 1) : std::string())
                            : std::string(file);
        if (name.empty()) name = defaultName(fcb.unit);
        int flags = c.action == 0 ? O_RDONLY : c.action == 1 ? O_WRONLY : O_RDWR;
        if (c.status == 1)
            flags |= O_CREAT | O_EXCL;
        else if (c.status == 2)
            flags |= O_CREAT | O_TRUNC;
        else if (c.status != 0)
            flags |= O_CREAT;
        bool created = false;
        fd = openFile(name, flags, created);
        if (fd < 0 && c.action < 0 && (errno == EACCES || errno == EROFS)) {
            fd = openFile(name, (flags & ~O_RDWR) | O_RDONLY, created);
            fcb.writable = false;
        }
        if (fd >= 0 && c.status == 2 && !created && ::ftruncate(fd, 0) != 0) {
            ::close(fd);
            fd = -1;
        }
    }
    if (fd < 0) return errno == EEXIST && c.status == 1 ? code::newFileExists : (errno ? errno : EIO);
    fcb.fd = fd;
    fcb.name = std::move(name);
    if (c.position == 1) ::lseek(fd, 0, SEEK_END);
    return 0;
}

} // namespace

int openUnit(long unitNumber, const OpenSpec& specifiers)
{
    Choices c{};
    if (const int error = readChoices(specifiers, c)) return error;
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
    const std::string_view file = trimmed(specifiers.file);
    if (file.size() > maxNameLength) return code::badFileSpec;
    if (const FileControlBlock* open = findUnit(unit))
        return sameConnection(*open, c, file, specifiers) ? 0 : code::openMismatch;

    FileControlBlock& fcb = addBlock(unit);
    takeChoices(fcb, c, specifiers);
    const int error = c.window ? connectWindow(fcb, file, specifiers.access) : connectFile(fcb, c, file);
    if (error) removeBlock(&fcb);
    return error;
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
