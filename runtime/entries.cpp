// runtime/entries.cpp: the entries of the statement API: each takes the I/O lock for its
// statement, goes the prepared way where a record loop repeats itself, and else runs a Statement.
#include "runtime/connection.h"
#include "runtime/prepared.h"
#include "runtime/statement.h"

namespace kestro::rt {

using detail::Item;

namespace {

// The modes a statement on a unit starts with: the options', then the unit's.
EditModes startingModes(const FileControlBlock& fcb)
{
    EditModes modes;
    modes.noLeadZero = options().noLeadZero;
    modes.hexUppercase = options().hexUppercase;
    modes.blankZero = fcb.blankZero;
    modes.decimalComma = fcb.decimalComma;
    return modes;
}

// The records of a unit for the scanner of a prepared READ.
class UnitRecords final : public RecordSource
{
public:
    explicit UnitRecords(FileControlBlock& fcb) : fcb_(fcb) {}
    int nextRecord(std::string_view& record) override
    {
        const int result = readRecord(fcb_, record);
        endIfStopRequested(); // a read hook gives the read back when the program is to stop
        return result;
    }

private:
    FileControlBlock& fcb_;
};

// How a statement that went the prepared way leaves: the failure of its own work (`result`: 0,
// -1 at end of file, or a code) comes first, then one that a transfer left in the unit.
Iostat leavePrepared(int result, FileControlBlock& fcb, const Control& control, const StatementName& name)
{
    if (fcb.error) {
        if (result == 0) result = fcb.error;
        fcb.error = 0;
    }
    if (result == -1) return _ioend(control, name);
    if (result != 0) return _ioerr(result, control, name);
    if (control.status) *control.status = 0;
    return Iostat{};
}

// OPEN, CLOSE and the other statements on connections: lock, act, report.
template <typename Action>
Iostat connectionStatement(std::string_view verb, Unit unit, const Control& control, Action action)
{
    const StatementLock lock;
    const int error = action();
    endIfStopRequested(); // "-fileprompt" may have read
    if (error) return _ioerr(error, control, StatementName{verb, unit, false, false});
    if (control.status) *control.status = 0;
    return Iostat{};
}

} // namespace

namespace detail {

Iostat writeStatement(Unit unit, std::string_view format, const Control& control, const Item* items,
                      std::size_t count, std::uint64_t signature)
{
    const StatementLock lock;
    if (remembered.write.inPlace && remembered.write.matches(unit, format, count, signature)) {
        // The record loop's WRITE again: its record goes straight into the file's buffer.
        FileControlBlock& fcb = *remembered.write.fcb;
        const int error = writeInPlace(fcb, *remembered.write.walk, items, startingModes(fcb));
        return leavePrepared(error, fcb, control, StatementName{"WRITE", unit});
    }
    return Statement(lock, Op::write, control, {"WRITE", unit})
        .writeExternal(unit, format, items, count, signature);
}

Iostat readStatement(Unit unit, std::string_view format, const Control& control, const Item* items,
                     std::size_t count)
{
    const StatementLock lock;
    Statement statement(lock, Op::read, control, {"READ", unit});
    statement.beginExternal(unit, false, format);
    return statement.run(items, count);
}

Iostat readListStatement(Unit unit, const Control& control, const Item* items, std::size_t count)
{
    const StatementLock lock;
    if (FileControlBlock* fcb = remembered.units[static_cast<int>(Op::read)].find(unit); fcb && count > 0) {
        // A unit read before, its checks passed: the scanner takes the items from its records.
        UnitRecords records(*fcb);
        workspace.scanner.start(&records, fcb->decimalComma);
        const int result = workspace.scanner.readItems(items, count);
        return leavePrepared(result, *fcb, control, StatementName{"READ", unit});
    }
    return Statement(lock, Op::read, control, {"READ", unit}).readListExternal(unit, items, count);
}

Iostat writeInternalStatement(TextRef target, std::string_view format, const Control& control,
                              const Item* items, std::size_t count, std::uint64_t signature)
{
    const StatementLock lock;
    Statement statement(lock, Op::write, control, {"WRITE", 0, true});
    statement.beginInternal(target, {}, false, format);
    return statement.run(items, count, signature);
}

Iostat readInternalStatement(std::string_view source, std::string_view format, const Control& control,
                             const Item* items, std::size_t count)
{
    const StatementLock lock;
    Statement statement(lock, Op::read, control, {"READ", 0, true});
    statement.beginInternal({}, source, false, format);
    return statement.run(items, count);
}

Iostat readListInternalStatement(std::string_view source, const Control& control, const Item* items,
                                 std::size_t count)
{
    const StatementLock lock;
    Statement statement(lock, Op::read, control, {"READ", 0, true});
    statement.beginInternal({}, source, true, {});
    return statement.run(items, count);
}

} // namespace detail

Iostat open(const Control& control, Unit unit, const OpenSpec& specifiers)
{
    return connectionStatement("OPEN", unit, control, [&] { return openUnit(unit, specifiers); });
}

Iostat close(const Control& control, Unit unit, std::string_view status)
{
    return connectionStatement("CLOSE", unit, control, [&] { return closeUnit(unit, status); });
}

Iostat rewind(const Control& control, Unit unit)
{
    return connectionStatement("REWIND", unit, control, [&] { return rewindUnit(unit); });
}

Iostat flush(const Control& control, Unit unit)
{
    return connectionStatement("FLUSH", unit, control, [&] { return flushUnitNumber(unit); });
}

Iostat endfile(const Control& control, Unit unit)
{
    return connectionStatement("ENDFILE", unit, control, [&] { return endfileUnit(unit); });
}

Iostat backspace(const Control& control, Unit unit)
{
    return connectionStatement("BACKSPACE", unit, control, [&] { return backspaceUnit(unit); });
}

Iostat inquire(const Control& control, Unit unit, UnitInquiry& answer)
{
    return connectionStatement("INQUIRE", unit, control, [&] { return inquireUnit(unit, answer); });
}

} // namespace kestro::rt
