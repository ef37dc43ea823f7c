// runtime/units.h: the unit table, file connections, and the transfer of records through hooks.
#pragma once

#include "runtime/buffer.h"
#include "runtime/io.h"
#include "runtime/options.h"

#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kestro::rt {

// Bytes waiting to be written.
class OutBuffer
{
public:
    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    const char* data() const { return bytes_.data(); }
    void clear() { size_ = 0; }

    // Room for `n` more bytes, counted as written; the caller fills them.
    char* extend(std::size_t n)
    {
        bytes_.ensure(size_ + n, size_);
        char* at = bytes_.data() + size_;
        size_ += n;
        return at;
    }
    void append(std::string_view text)
    {
        if (!text.empty()) std::memcpy(extend(text.size()), text.data(), text.size());
    }

private:
    ByteBuffer bytes_;
    std::size_t size_ = 0;
};

enum class Access : unsigned char { sequential, direct, stream, window, transparent };
enum class Form : unsigned char { formatted, unformatted, binary };

inline constexpr long sequentialRecl = 2147483647;

// One connection. `unit` comes first: hooks receive a pointer to it and read it as a long.
struct FileControlBlock
{
    long unit = 0;
    int fd = -1;
    std::string name;
    Access access = Access::sequential;
    Form form = Form::formatted;
    bool readable = true;
    bool writable = true;
    bool window = false;
    bool deleteOnClose = false;
    bool blankZero = false;    // BLANK='ZERO'
    bool decimalComma = false; // DECIMAL='COMMA'
    bool padInput = true;      // PAD='YES'
    bool carriageControl = false;
    // The specifiers of the OPEN that made the connection, as indices into their lists of values
    // (the defaults where it gave none), for an OPEN of the connected unit to be checked against.
    signed char status = 4;   // UNKNOWN
    signed char position = 2; // ASIS
    signed char delim = 0;    // NONE
    signed char endian = 2;   // NATIVE
    signed char encoding = 0; // DEFAULT
    signed char sign = 2;     // PROCESSOR_DEFINED
    signed char round = 5;    // PROCESSOR_DEFINED
    long block = 0;
    long recl = sequentialRecl;
    int tabSize = 8;
    int error = 0; // errno of the last failed transfer, reported when its statement ends
    std::size_t bufferSize = 8192;

    // Output: finished records waiting to be written. A record ended by "$" or "\\" stands here
    // without its record end, so the next record goes on in the same line.
    OutBuffer out;
    bool flushEachRecord = false;

    // Input: bytes read and not yet consumed, as in[inPos, in.size()).
    std::vector<char> in;
    std::size_t inPos = 0;
    std::size_t inEnd = 0;
    // Set while reading, and after REWIND and BACKSPACE: the next write first drops the read-ahead
    // and, with `truncateOnWrite`, cuts the file where it begins, so that the record it writes is
    // the file's last.
    bool lastWasRead = false;
    bool truncateOnWrite = false;
    long long nextRecordNumber = 1; // direct access
};

// Finds the block of a unit number that is already mapped to its standard unit; null if none.
FileControlBlock* findUnit(long unit);

// Maps a unit number to a standard unit (-2, -3, -4) where one applies; `forRead` decides `*`.
long _preconnected(long unit, bool forRead);

// The block for a statement: a standard unit is made on first use, an unconnected unit of 0 or
// above is opened implicitly. Returns 0 or an error code.
int unitForTransfer(long unit, bool forRead, FileControlBlock*& fcb);

// Reads the next record of a unit into `record` (valid until the next read on the unit): 0, -1
// at end of file, or an errno.
int readRecord(FileControlBlock& fcb, std::string_view& record);

// Adds a finished record to the unit's output, with the record end unless `advance` is false.
// Returns 0 or an errno.
int writeRecord(FileControlBlock& fcb, std::string_view record, bool advance = true);

// A record built in place at the end of the unit's buffer, for a file whose records need no
// carriage control and no flush of their own (`takesRecordsInPlace`). `recordSpaceInPlace` adds
// room for `n` characters of the record and its record end and returns it; `endRecordInPlace`
// writes the record end at `end`, behind the record's characters, and writes the buffer out when
// it is full (0 or an errno).
bool takesRecordsInPlace(const FileControlBlock& fcb);
int endRecordInPlace(FileControlBlock& fcb, char* end);

// The file position of the next byte a read would take, for a switch from reading to writing; the
// file cut there after a REWIND or BACKSPACE (a failure is code 10027, left in `error`).
void dropReadAheadNow(FileControlBlock& fcb);
inline void dropReadAhead(FileControlBlock& fcb)
{
    if (fcb.lastWasRead) dropReadAheadNow(fcb);
}

inline char* recordSpaceInPlace(FileControlBlock& fcb, std::size_t n)
{
    dropReadAhead(fcb);
    return fcb.out.extend(n + static_cast<std::size_t>(options().erecSize));
}

// Writes out what the unit has buffered. Returns 0 or an errno.
int flushUnit(FileControlBlock& fcb);

// Writes out every standard unit's buffer (before a read of a standard unit, and the like).
void flushStandardUnits();

// Writes text to the error unit, outside any statement's record.
void _write_stderror(std::string_view text);

// Closes every unit: pending records ended, buffers written, connections closed, blocks freed.
void _close_all();

// The table's own steps, for the connection statements (connection.h).
FileControlBlock& addBlock(long unit); // a new block at the end of the list
void removeBlock(FileControlBlock* fcb);
long takeNewUnit();                 // the next unit of NEWUNIT=, counting down from -10
std::string defaultName(long unit); // "FORnnn.DAT", or "fort.N" with "-unixnames"
// The name of a file that the program did not name: the file-name hook, or a prompt on the console.
std::string askFileName(FileControlBlock& fcb, bool newFile);
// open(2) of a file, created with the mask of "UMASK" where `flags` ask for it; -1 and errno.
int openFile(const std::string& name, int flags, bool& created);
void _releasefile(FileControlBlock& fcb); // closes the connection, unlinking a file to be deleted
int truncateHere(FileControlBlock& fcb);  // cuts the file at its position: 0, or code 10027

// The hook table; null entries fall back to the console stubs.
struct HookTable
{
    QuorReadHook read = nullptr;
    QuorWriteHook write = nullptr;
    QuorStopHook stop = nullptr;
    QuorYieldHook yield = nullptr;
    QuorMakeWindowHook makeWindow = nullptr;
    QuorCloseWindowHook closeWindow = nullptr;
    QuorFileNameHook fileName = nullptr;
};
HookTable& hooks();

// Transfers through a hook or the system: `_f_read` gives descriptors 0 and -1 to the read hook,
// `_f_write` gives -1, 1 and 2 to the write hook. Results as read(2)/write(2). A read hook may give
// a read back because another thread asked the program to stop: the statement above looks.
long _f_read(FileControlBlock& fcb, char* buffer, long size);
long _f_write(FileControlBlock& fcb, const char* text, long size);

// Drops every block without writing anything (tests only restart from a clean table).
void resetUnitTable();

} // namespace kestro::rt
