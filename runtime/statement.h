// runtime/statement.h: one I/O statement as an object: it holds the I/O lock from its first entry
// to its end, works on its unit or internal text, and leaves through the failure handling.
#pragma once

#include "runtime/edits.h"
#include "runtime/errors.h"
#include "runtime/format.h"
#include "runtime/io.h"
#include "runtime/listinput.h"
#include "runtime/startup.h"
#include "runtime/units.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kestro::rt {

// The I/O lock for the life of a statement, and the checks of its entry: a stop asked for by
// another thread ends the program here, and the first statement reads the environment.
class StatementLock
{
public:
    StatementLock()
    {
        _f_thread_enter_io();
        endIfStopRequested();
        ensureStarted();
    }
    ~StatementLock() { _f_thread_exit_io(); }
    StatementLock(const StatementLock&) = delete;
    StatementLock& operator=(const StatementLock&) = delete;
};

enum class Op : unsigned char { read, write };

// A formatted or free-form READ or WRITE, external or internal. Made on the stack by the entry of
// the statement API under the lock that the entry holds, and gone with it when the entry returns:
// the lock is left on every path. The fatal path of a failure never returns; it leaves the lock
// itself before the process ends.
class Statement final : public RecordSource
{
public:
    Statement(const StatementLock& held, Op op, const Control& control, StatementName name);

    // The unit's block, checked for the transfer, and the start of the format (or the scanner).
    void beginExternal(Unit unit, bool list, std::string_view format);
    void beginInternal(TextRef target, std::string_view source, bool list, std::string_view format);

    // A formatted WRITE to a unit, by the prepared way where the last one was the same statement.
    Iostat writeExternal(Unit unit, std::string_view format, const detail::Item* items, std::size_t count,
                         std::uint64_t signature);
    // A free-form READ from a unit: the scanner takes the items straight from its records.
    Iostat readListExternal(Unit unit, const detail::Item* items, std::size_t count);
    // The whole list of a begun statement: an output list replays the walk recorded for its types.
    Iostat run(const detail::Item* items, std::size_t count, std::uint64_t signature = 0);

    // RecordSource: the next input record of the statement's unit or internal text.
    int nextRecord(std::string_view& record) override;

    // The context of the format cursor.
    void endRecord();
    void position(const FormatToken& edit);
    void literal(std::string_view text);
    void mode(const FormatToken& edit);
    void fail(int code)
    {
        if (!failed_) error_ = code;
        failed_ = true;
    }
    bool failed() const { return failed_; }

private:
    Iostat runItems(const detail::Item* items, std::size_t count);
    bool transfer(const detail::Item& item);
    Iostat finish(bool walked = false, bool recordWritten = false);
    void useUnit(Unit unit);
    void takeUnitModes();
    void start(std::string_view format);
    void readInputRecord();
    void emitRecord(bool advance);
    void replay(const Walk& walk, const detail::Item* items);
    void readScanned(int result);

    // One item into the record, and one out of it (transfer.cpp).
    void put(const FormatToken& edit, const detail::Item& item);
    void putText(const FormatToken& edit, const detail::Item& item);
    void get(const FormatToken& edit, const detail::Item& item);
    std::string_view field(std::size_t width, std::size_t keep = 0);

    Op op_;
    bool list_ = false;
    bool internal_ = false;
    bool internalRead_ = false;
    bool internalWritten_ = false;
    bool suppressRecordEnd_ = false;
    bool scannerUsed_ = false;
    bool failed_ = false;
    bool atEnd_ = false;
    int error_ = 0;

    const Control& control_;
    StatementName name_;
    FileControlBlock* fcb_ = nullptr;
    TextRef target_;
    std::string_view source_;
    std::size_t recordLimit_ = 0;
    FormatProgram* program_ = nullptr;
    EditModes modes_;
    std::string_view inRecord_;
    std::size_t inPos_ = 0;
};

// What statements keep from one to the next, under the I/O lock: the buffers that grow to the
// largest record and stay, and the cursor of the current statement's format.
struct StatementWorkspace
{
    Record record;
    ListScanner scanner;
    std::string padded; // an input field that runs past the end of its record
    FormatCursor<Statement> cursor;
};
extern StatementWorkspace workspace;

} // namespace kestro::rt
