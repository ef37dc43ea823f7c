// runtime/statement.cpp: the statement layer: begin, one transfer per item, end; the entries of
// the statement API.
#include "runtime/statement.h"

#include "runtime/prepared.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace kestro::rt {

using detail::Item;
using detail::ItemType;

StatementWorkspace workspace;

Statement::Statement(const StatementLock&, Op op, const Control& control, StatementName name)
    : op_(op), control_(control), name_(name)
{
    workspace.record.clear();
    const Options& o = options();
    modes_.noLeadZero = o.noLeadZero;
    modes_.hexUppercase = o.hexUppercase;
}

void Statement::beginExternal(Unit unit, bool list, std::string_view format)
{
    list_ = list;
    useUnit(unit);
    start(format);
}

void Statement::beginInternal(TextRef target, std::string_view source, bool list, std::string_view format)
{
    list_ = list;
    internal_ = true;
    target_ = target;
    source_ = source;
    recordLimit_ = op_ == Op::write ? target.size() : std::numeric_limits<std::size_t>::max();
    start(format);
}

Iostat Statement::writeExternal(Unit unit, std::string_view format, const Item* items, std::size_t count,
                                std::uint64_t signature)
{
    if (remembered.write.matches(unit, format, count, signature)) {
        // The checks of the unit passed when it was remembered, and hold while its block lives.
        fcb_ = remembered.write.fcb;
        takeUnitModes();
        program_ = remembered.write.program;
        replay(*remembered.write.walk, items);
        return finish(true);
    }
    useUnit(unit);
    start(format);
    if (failed_) return finish(false);
    const Walk* walk = walkFor(*program_, items, count, signature);
    if (!walk) return runItems(items, count);
    if (count <= signatureItems)
        remembered.write.remember(unit, format, count, signature, fcb_, program_, walk);
    replay(*walk, items);
    return finish(true);
}

Iostat Statement::readListExternal(Unit unit, const Item* items, std::size_t count)
{
    list_ = true;
    useUnit(unit);
    if (!failed_) {
        workspace.scanner.start(this, modes_.decimalComma);
        readScanned(workspace.scanner.readItems(items, count));
    }
    return finish(false);
}

Iostat Statement::run(const Item* items, std::size_t count, std::uint64_t signature)
{
    if (!failed_ && op_ == Op::write && !list_) {
        if (const Walk* walk = walkFor(*program_, items, count, signature)) {
            replay(*walk, items);
            return finish(true);
        }
    }
    return runItems(items, count);
}

// Runs the list item by item, through the scanner or the format cursor.
Iostat Statement::runItems(const Item* items, std::size_t count)
{
    if (list_ && op_ == Op::read) {
        if (!failed_) {
            const int result = workspace.scanner.readItems(items, count);
            if (result == -1)
                atEnd_ = true, failed_ = true;
            else if (result != 0)
                fail(result);
        }
        return finish(false);
    }
    for (std::size_t i = 0; i < count && transfer(items[i]); ++i) {
    }
    return finish(false);
}

bool Statement::transfer(const Item& item)
{
    if (failed_) return false;
    if (list_) {
        if (op_ == Op::write) {
            fail(code::badIolist);
            return false;
        }
        readScanned(workspace.scanner.next(item));
        return !failed_;
    }
    const FormatToken* edit = workspace.cursor.nextDataEdit();
    if (!edit || failed_) return false;
    if (op_ == Op::write)
        put(*edit, item);
    else
        get(*edit, item);
    return !failed_;
}

Iostat Statement::finish(bool walked, bool recordWritten)
{
    if (!failed_) {
        if (list_) {
            // A free-form read without items still passes over one record.
            if (!scannerUsed_ && op_ == Op::read) {
                std::string_view record;
                const int result = nextRecord(record);
                if (result == -1)
                    atEnd_ = true, failed_ = true;
                else if (result != 0)
                    fail(result);
            }
        } else if (!walked) {
            workspace.cursor.finish();
        }
    }
    if (!failed_ && op_ == Op::write && !list_ && !recordWritten) emitRecord(!suppressRecordEnd_);
    if (fcb_ && fcb_->error) { // a transfer's failure belongs to this statement alone
        const int error = fcb_->error;
        fcb_->error = 0;
        fail(error);
    }
    Iostat result;
    if (failed_)
        result = atEnd_ ? _ioend(control_, name_) : _ioerr(error_, control_, name_);
    else if (control_.status)
        *control_.status = 0;
    return result;
}

// What the scanner returned: 0, -1 at end of file, or an error code.
void Statement::readScanned(int result)
{
    if (result == -1)
        atEnd_ = true, failed_ = true;
    else if (result != 0)
        fail(result);
}

int Statement::nextRecord(std::string_view& record)
{
    scannerUsed_ = true;
    if (internal_) {
        if (internalRead_) return -1;
        internalRead_ = true;
        record = source_;
        return 0;
    }
    const int result = readRecord(*fcb_, record);
    endIfStopRequested(); // a read hook gives the read back when the program is to stop
    return result;
}

void Statement::endRecord()
{
    if (op_ == Op::write) {
        emitRecord(true);
        return;
    }
    readInputRecord();
}

void Statement::position(const FormatToken& edit)
{
    const std::size_t n = static_cast<std::size_t>(edit.width);
    if (op_ == Op::write) {
        std::size_t pos = workspace.record.position();
        switch (edit.kind) {
        case EditKind::T:
            pos = n - 1;
            if (pos > recordLimit_) return fail(code::recordTooLong);
            break;
        case EditKind::TL:
            pos = pos > n ? pos - n : 0;
            break;
        default: // X and TR: the record runs on with blanks
            if (pos + n > recordLimit_) return fail(code::recordTooLong);
            workspace.record.skip(n);
            return;
        }
        workspace.record.moveTo(pos);
        return;
    }
    switch (edit.kind) {
    case EditKind::T:
        inPos_ = n - 1;
        break;
    case EditKind::TL:
        inPos_ = inPos_ > n ? inPos_ - n : 0;
        break;
    default:
        inPos_ += n;
        break;
    }
}

void Statement::literal(std::string_view text)
{
    if (op_ == Op::read) return fail(code::badFormat);
    workspace.record.put(text);
    if (workspace.record.length() > recordLimit_) fail(code::recordTooLong);
}

void Statement::mode(const FormatToken& edit)
{
    switch (edit.kind) {
    case EditKind::S:
        modes_.sign = SignMode::processor;
        break;
    case EditKind::SP:
        modes_.sign = SignMode::plus;
        break;
    case EditKind::SS:
        modes_.sign = SignMode::suppress;
        break;
    case EditKind::BN:
        modes_.blankZero = false;
        break;
    case EditKind::BZ:
        modes_.blankZero = true;
        break;
    case EditKind::DC:
        modes_.decimalComma = true;
        break;
    case EditKind::DP:
        modes_.decimalComma = false;
        break;
    case EditKind::P:
        modes_.scale = edit.width;
        break;
    case EditKind::dollar:
    case EditKind::backslash:
        suppressRecordEnd_ = true;
        break;
    default:
        break;
    }
}

// The statement's unit, checked for the transfer.
void Statement::useUnit(Unit unit)
{
    RememberedUnit& last = remembered.units[static_cast<int>(op_)];
    fcb_ = last.find(unit);
    if (!fcb_) {
        const int error = unitForTransfer(unit, op_ == Op::read, fcb_);
        endIfStopRequested(); // "-fileprompt" may have read
        if (error) return fail(error);
        if (op_ == Op::read && !fcb_->readable) return fail(code::fileNotOpenForRead);
        if (op_ == Op::write && !fcb_->writable) return fail(code::fileNotOpenForWrite);
        if (fcb_->form != Form::formatted) return fail(code::notForUnitType);
        if (fcb_->access == Access::direct) return fail(code::noDirectRecord);
        last.remember(unit, fcb_); // its checks hold while the block lives
    }
    takeUnitModes();
}

// The modes and record length the unit brings to the statement.
void Statement::takeUnitModes()
{
    modes_.blankZero = fcb_->blankZero;
    modes_.decimalComma = fcb_->decimalComma;
    recordLimit_ = static_cast<std::size_t>(fcb_->recl);
}

void Statement::start(std::string_view format)
{
    if (failed_) return;
    if (list_) {
        workspace.scanner.start(this, modes_.decimalComma);
        return;
    }
    int error = 0;
    program_ = cachedFormat(format, error);
    if (!program_) return fail(error);
    workspace.cursor = FormatCursor<Statement>(program_, this);
    if (op_ == Op::read) readInputRecord();
}

void Statement::readInputRecord()
{
    inPos_ = 0;
    const int result = nextRecord(inRecord_);
    if (result == -1)
        atEnd_ = true, failed_ = true;
    else if (result != 0)
        fail(result);
}

void Statement::emitRecord(bool advance)
{
    if (workspace.record.length() > recordLimit_) return fail(code::recordTooLong);
    if (internal_) {
        if (internalWritten_) return fail(code::badInternalUse);
        internalWritten_ = true;
        target_.assign(workspace.record.view());
    } else if (const int error = writeRecord(*fcb_, workspace.record.view(), advance)) {
        fail(error);
    }
    workspace.record.clear();
}

void Statement::replay(const Walk& walk, const Item* items)
{
    if (walk.fixedSteps > 0) {
        if (walk.layout.size() > recordLimit_) return fail(code::recordTooLong);
        fillLayout(workspace.record.reserve(walk.layout.size()), walk, items, modes_);
    }
    for (std::size_t i = walk.fixedSteps; i < walk.steps.size() && !failed_; ++i) {
        const WalkStep& step = walk.steps[i];
        switch (step.kind) {
        case WalkStep::Kind::literal:
            workspace.record.put(std::string_view(walk.texts.data() + step.textOffset, step.textLength));
            break;
        case WalkStep::Kind::fixedSingle: {
            const Item& item = items[step.item];
            const FormatToken& edit = *step.token;
            if (!editFixedFloat(workspace.record, static_cast<std::size_t>(edit.width), edit.decimals,
                                *static_cast<const float*>(item.value), modes_))
                put(edit, item);
            break;
        }
        case WalkStep::Kind::textA:
            putText(*step.token, items[step.item]);
            break;
        case WalkStep::Kind::data:
            put(*step.token, items[step.item]);
            break;
        case WalkStep::Kind::endRecord:
            emitRecord(true);
            break;
        case WalkStep::Kind::position:
            position(*step.token);
            break;
        case WalkStep::Kind::mode:
            mode(*step.token);
            break;
        }
    }
}

} // namespace kestro::rt
