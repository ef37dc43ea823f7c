// runtime/statement.cpp: the statement layer: begin, one transfer per item, end.
#include "runtime/edits.h"
#include "runtime/errors.h"
#include "runtime/format.h"
#include "runtime/io.h"
#include "runtime/listinput.h"
#include "runtime/startup.h"
#include "runtime/units.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace kestro::rt {

namespace {

enum class Op : unsigned char { read, write };

using detail::Item;
using detail::ItemType;

// Fields wider than this are checked against the room left in the record before they are built.
constexpr std::int32_t wideField = 4096;

// Bounds of a recorded walk; longer lists and expansions go through the cursor each time.
constexpr std::size_t maxWalkItems = 64;
constexpr std::size_t maxWalkSteps = 1024;
constexpr std::size_t maxWalkText = 16384;
constexpr std::size_t maxWalksPerFormat = 4;
constexpr std::size_t signatureItems = 20; // types that listSignature keeps whole

// Whether two texts are the same, eight characters at a time: a record loop's format string is
// compared with the remembered one on every statement.
bool sameText(std::string_view a, std::string_view b)
{
    const std::size_t n = a.size();
    if (n != b.size()) return false;
    if (n < 8) return a == b;
    std::uint64_t x, y, differ = 0;
    for (std::size_t i = 0; i + 8 < n; i += 8) {
        std::memcpy(&x, a.data() + i, 8);
        std::memcpy(&y, b.data() + i, 8);
        differ |= x ^ y;
    }
    std::memcpy(&x, a.data() + n - 8, 8);
    std::memcpy(&y, b.data() + n - 8, 8);
    return (differ | (x ^ y)) == 0;
}

// The one I/O state (`io_comm`), filled anew by each statement under the I/O lock.
class IoState final : public RecordSource
{
public:
    void beginExternal(Op op, Unit unit, bool list, std::string_view format, const Control& control)
    {
        reset(op, list, control);
        name_ = StatementName{op == Op::read ? "READ" : "WRITE", unit, false, false};
        useUnit(op, unit);
        start(format);
    }

    // A formatted WRITE to a unit. The same statement as the last one that replayed a walk (unit,
    // format text and item types alike) goes straight to that walk; any other is set up in full.
    Iostat writeExternal(Unit unit, std::string_view format, const Control& control, const Item* items,
                         std::size_t count, std::uint64_t signature)
    {
        reset(Op::write, false, control);
        name_ = StatementName{"WRITE", unit, false, false};
        if (prepared_.matches(unit, format, count, signature)) {
            // The checks of the unit passed when it was remembered, and hold while its block lives.
            fcb_ = prepared_.fcb;
            takeUnitModes();
            program_ = prepared_.program;
            if (prepared_.inPlace) return replayInPlace(*prepared_.walk, items);
            replay(*prepared_.walk, items);
            return finish(true);
        }
        useUnit(Op::write, unit);
        start(format);
        if (failed_) return finish(false);
        const Walk* walk = walkFor(items, count, signature);
        if (!walk) return runItems(items, count);
        if (count <= signatureItems) prepared_.remember(unit, format, count, signature, fcb_, program_, walk);
        replay(*walk, items);
        return finish(true);
    }

    // A free-form READ from a unit: the scanner takes the items straight from its records.
    Iostat readListExternal(Unit unit, const Control& control, const Item* items, std::size_t count)
    {
        reset(Op::read, true, control);
        name_ = StatementName{"READ", unit, false, false};
        useUnit(Op::read, unit);
        if (!failed_) {
            scanner_.start(this, modes_.decimalComma);
            const int result = scanner_.readItems(items, count);
            if (result == -1)
                atEnd_ = true, failed_ = true;
            else if (result != 0)
                fail(result);
        }
        return finish(false);
    }

    void beginInternal(Op op, TextRef target, std::string_view source, bool list, std::string_view format,
                       const Control& control)
    {
        reset(op, list, control);
        name_ = StatementName{op == Op::read ? "READ" : "WRITE", 0, true, false};
        internal_ = true;
        target_ = target;
        source_ = source;
        recordLimit_ = op == Op::write ? target.size() : std::numeric_limits<std::size_t>::max();
        start(format);
    }

    bool transfer(const Item& item)
    {
        if (failed_) return false;
        if (list_) {
            if (op_ == Op::write) {
                fail(code::badIolist);
                return false;
            }
            const int result = scanner_.next(item);
            if (result == -1)
                atEnd_ = true, failed_ = true;
            else if (result != 0)
                fail(result);
            return !failed_;
        }
        const FormatToken* edit = cursor_.nextDataEdit();
        if (!edit || failed_) return false;
        if (op_ == Op::write)
            put(*edit, item);
        else
            get(*edit, item);
        return !failed_;
    }

    // Runs a whole statement's list: an output list replays the walk recorded for its types.
    Iostat run(const Item* items, std::size_t count, std::uint64_t signature = 0)
    {
        if (!failed_ && op_ == Op::write && !list_) {
            if (const Walk* walk = walkFor(items, count, signature)) {
                replay(*walk, items);
                return finish(true);
            }
        }
        return runItems(items, count);
    }

    // Runs the list item by item, through the scanner or the format cursor.
    Iostat runItems(const Item* items, std::size_t count)
    {
        if (list_ && op_ == Op::read) {
            if (!failed_) {
                const int result = scanner_.readItems(items, count);
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

    Iostat finish(bool walked = false, bool recordWritten = false)
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
                cursor_.finish();
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
        fcb_ = nullptr;
        _f_thread_exit_io();
        return result;
    }

    // RecordSource: the next input record of the statement's unit or internal text.
    int nextRecord(std::string_view& record) override
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

    // FormatCursor context.
    void endRecord()
    {
        if (op_ == Op::write) {
            emitRecord(true);
            return;
        }
        readInputRecord();
    }

    void position(const FormatToken& edit)
    {
        const std::size_t n = static_cast<std::size_t>(edit.width);
        if (op_ == Op::write) {
            std::size_t pos = record_.position();
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
                record_.skip(n);
                return;
            }
            record_.moveTo(pos);
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

    void literal(std::string_view text)
    {
        if (op_ == Op::read) return fail(code::badFormat);
        record_.put(text);
        checkLength();
    }

    void mode(const FormatToken& edit)
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

    void fail(int code)
    {
        if (!failed_) error_ = code;
        failed_ = true;
    }
    bool failed() const { return failed_; }

private:
    // The last formatted WRITE to a unit that replayed a walk, for a record loop that runs the same
    // statement again. Its pointers hold while the epoch is unchanged.
    struct PreparedWrite
    {
        std::uint64_t epoch = 0; // 0: nothing remembered
        Unit unit = 0;
        std::string format; // compared in full: a caller may build another format in the same place
        std::size_t count = 0;
        std::uint64_t signature = 0; // holds every type of a list of `signatureItems` or fewer
        FileControlBlock* fcb = nullptr;
        FormatProgram* program = nullptr;
        const Walk* walk = nullptr;
        bool inPlace = false; // its records are built straight into the file's buffer

        bool matches(Unit u, std::string_view f, std::size_t n, std::uint64_t s) const
        {
            return epoch == rememberedStatementEpoch && unit == u && signature == s && count == n &&
                   sameText(format, f);
        }
        void remember(Unit u, std::string_view f, std::size_t n, std::uint64_t s, FileControlBlock* block,
                      FormatProgram* p, const Walk* w)
        {
            epoch = rememberedStatementEpoch;
            unit = u;
            format.assign(f.data(), f.size());
            count = n;
            signature = s;
            fcb = block;
            program = p;
            walk = w;
            inPlace = takesRecordsInPlace(*block) && w->tailOfTexts;
        }
    };

    // The block the last external statement found for its unit number: a record loop reads one
    // unit over and over. Its pointer holds while the epoch is unchanged.
    struct RememberedUnit
    {
        std::uint64_t epoch = 0; // 0: nothing remembered
        Unit unit = 0;
        bool forRead = false; // `*` is a different unit for reading and for writing
        FileControlBlock* fcb = nullptr;

        bool matches(Unit u, bool read) const
        {
            return epoch == rememberedStatementEpoch && unit == u && forRead == read;
        }
        void remember(Unit u, bool read, FileControlBlock* block)
        {
            epoch = rememberedStatementEpoch;
            unit = u;
            forRead = read;
            fcb = block;
        }
    };

    // Records the cursor's path as a walk instead of acting on it.
    class WalkRecorder
    {
    public:
        explicit WalkRecorder(Walk& walk) : walk_(walk) {}
        void endRecord() { add(WalkStep::Kind::endRecord, nullptr); }
        void position(const FormatToken& edit) { add(WalkStep::Kind::position, &edit); }
        void mode(const FormatToken& edit)
        {
            if (edit.kind == EditKind::P) scale_ = edit.width;
            add(WalkStep::Kind::mode, &edit);
        }
        void literal(std::string_view text)
        {
            WalkStep* last = walk_.steps.empty() ? nullptr : &walk_.steps.back();
            if (!last || last->kind != WalkStep::Kind::literal) {
                add(WalkStep::Kind::literal, nullptr);
                last = &walk_.steps.back();
                last->textOffset = static_cast<std::uint32_t>(walk_.texts.size());
            }
            walk_.texts.append(text.data(), text.size());
            last->textLength += static_cast<std::uint32_t>(text.size());
            if (walk_.texts.size() > maxWalkText) failed_ = true;
        }
        void data(const FormatToken& edit, std::size_t item, ItemType type)
        {
            WalkStep::Kind kind = WalkStep::Kind::data;
            if (edit.kind == EditKind::F && type == ItemType::real32 && scale_ == 0 && edit.decimals <= 12)
                kind = WalkStep::Kind::fixedSingle;
            else if (edit.kind == EditKind::A && (type == ItemType::constText || type == ItemType::text))
                kind = WalkStep::Kind::textA;
            add(kind, &edit);
            walk_.steps.back().item = static_cast<std::uint16_t>(item);
        }
        void fail(int) { failed_ = true; }
        bool failed() const { return failed_; }

    private:
        void add(WalkStep::Kind kind, const FormatToken* token)
        {
            WalkStep step;
            step.kind = kind;
            step.token = token;
            walk_.steps.push_back(step);
            if (walk_.steps.size() > maxWalkSteps) failed_ = true;
        }

        Walk& walk_;
        std::int32_t scale_ = 0;
        bool failed_ = false;
    };

    // The recorded walk of this statement's format for these item types; recorded now if the
    // format has none yet. Null where a walk does not pay (long lists, huge expansions, failures).
    const Walk* walkFor(const Item* items, std::size_t count, std::uint64_t signature)
    {
        if (count > maxWalkItems) return nullptr;
        std::uint8_t types[maxWalkItems];
        bool typesKnown = false;
        auto knowTypes = [&] {
            if (!typesKnown) {
                for (std::size_t i = 0; i < count; ++i)
                    types[i] = static_cast<std::uint8_t>(items[i].type);
                typesKnown = true;
            }
        };
        for (const Walk& walk : program_->walks) {
            if (walk.signature != signature || walk.types.size() != count) continue;
            if (count <= signatureItems) return &walk; // the signature holds every type
            knowTypes();
            if (std::equal(walk.types.begin(), walk.types.end(), types)) return &walk;
        }
        knowTypes();
        if (program_->walks.size() >= maxWalksPerFormat) return nullptr;
        Walk walk;
        walk.signature = signature;
        walk.types.assign(types, types + count);
        WalkRecorder recorder(walk);
        FormatCursor<WalkRecorder> cursor(program_, &recorder);
        for (std::size_t i = 0; i < count; ++i) {
            const FormatToken* edit = cursor.nextDataEdit();
            if (!edit || recorder.failed()) return nullptr;
            recorder.data(*edit, i, items[i].type);
        }
        cursor.finish();
        if (recorder.failed()) return nullptr;
        planLayout(walk);
        forgetRememberedStatements(); // the walks may move
        program_->walks.push_back(std::move(walk));
        return &program_->walks.back();
    }

    // The fixed layout of a walk: the leading steps whose fields have widths known in advance.
    static void planLayout(Walk& walk)
    {
        std::size_t column = 0;
        std::size_t fixed = 0;
        for (WalkStep& step : walk.steps) {
            std::size_t width = 0;
            if (step.kind == WalkStep::Kind::literal) {
                width = step.textLength;
            } else if (step.kind == WalkStep::Kind::fixedSingle && step.token->width > 0 &&
                       static_cast<std::size_t>(step.token->width) <= fixedFieldMax) {
                width = static_cast<std::size_t>(step.token->width);
            } else if (step.kind == WalkStep::Kind::textA && step.token->hasWidth &&
                       step.token->width <= wideField) {
                width = static_cast<std::size_t>(step.token->width);
            } else {
                break;
            }
            step.column = static_cast<std::uint32_t>(column);
            if (step.kind == WalkStep::Kind::literal) {
                walk.layout.append(walk.texts, step.textOffset, step.textLength);
            } else {
                walk.layout.append(width, ' ');
                Walk::Field field;
                field.column = step.column;
                field.item = step.item;
                field.width = static_cast<std::uint16_t>(width);
                field.decimals = step.token->decimals;
                field.token = step.token;
                if (step.kind == WalkStep::Kind::fixedSingle) {
                    field.wholeLimit = oneDecimalWholeLimit(width);
                    field.negativeWholeLimit = oneDecimalWholeLimit(width - 1);
                    (field.decimals == 1 ? walk.oneDecimalFields : walk.realFields).push_back(field);
                } else if (width == 1) {
                    walk.letterFields.push_back(Walk::LetterField{field.column, field.item});
                } else {
                    walk.textFields.push_back(field);
                }
            }
            column += width;
            ++fixed;
        }
        walk.fixedSteps = fixed;
        walk.tailOfTexts = std::all_of(walk.steps.begin() + static_cast<std::ptrdiff_t>(fixed),
                                       walk.steps.end(), [](const WalkStep& step) {
                                           return step.kind == WalkStep::Kind::literal ||
                                                  (step.kind == WalkStep::Kind::textA &&
                                                   (!step.token->hasWidth || step.token->width <= wideField));
                                       });
    }

    void replayLayout(const Walk& walk, const Item* items)
    {
        const std::size_t size = walk.layout.size();
        if (size > recordLimit_) return fail(code::recordTooLong);
        fillLayout(record_.reserve(size), walk, items);
    }

    // The layout of a walk with its fields filled in, at `base`.
    void fillLayout(char* base, const Walk& walk, const Item* items)
    {
        std::memcpy(base, walk.layout.data(), walk.layout.size());
        // The layout ends before the first mode step, so its fields run under the modes the
        // statement starts with: only the unit's DECIMAL= and the leading-zero option count.
        const bool plainOneDecimal =
            !modes_.decimalComma && !modes_.noLeadZero && modes_.sign != SignMode::plus;
        if (plainOneDecimal) {
            for (const Walk::Field& field : walk.oneDecimalFields) {
                const float value = *static_cast<const float*>(items[field.item].value);
                char* at = base + field.column;
                if (!editFixedOneDecimalOnBlanks(at, field.width, field.wholeLimit, field.negativeWholeLimit,
                                                 value))
                    putFixedRealAt(at, field, value);
            }
        } else {
            for (const Walk::Field& field : walk.oneDecimalFields)
                putFixedRealAt(base + field.column, field,
                               *static_cast<const float*>(items[field.item].value));
        }
        for (const Walk::Field& field : walk.realFields)
            putFixedRealAt(base + field.column, field, *static_cast<const float*>(items[field.item].value));
        for (const Walk::LetterField& field : walk.letterFields) {
            const Item& item = items[field.item];
            if (item.length >= 1)
                base[field.column] = *static_cast<const char*>(item.value); // else the blank stays
        }
        for (const Walk::Field& field : walk.textFields) {
            const Item& item = items[field.item];
            char* at = base + field.column;
            const char* text = static_cast<const char*>(item.value);
            if (item.length >= field.width) {
                copyShort(at, text, field.width); // Aw: the first w characters
            } else {
                copyShort(at + field.width - item.length, text, item.length); // right-justified on blanks
            }
        }
    }

    // A prepared WRITE whose record goes straight into its file's buffer: the layout, then the
    // literals and texts behind it, then the record end.
    Iostat replayInPlace(const Walk& walk, const Item* items)
    {
        FileControlBlock& fcb = *fcb_;
        if (walk.fixedSteps > 0) fillLayout(recordSpaceInPlace(fcb, walk.layout.size()), walk, items);
        for (std::size_t i = walk.fixedSteps; i < walk.steps.size(); ++i) {
            const WalkStep& step = walk.steps[i];
            if (step.kind == WalkStep::Kind::literal) {
                copyShort(recordSpaceInPlace(fcb, step.textLength), walk.texts.data() + step.textOffset,
                          step.textLength);
                continue;
            }
            const Item& item = items[step.item];
            const FormatToken& edit = *step.token;
            const std::size_t width = edit.hasWidth ? static_cast<std::size_t>(edit.width) : item.length;
            fillText(recordSpaceInPlace(fcb, width), width, static_cast<const char*>(item.value),
                     item.length);
        }
        if (const int error = endRecordInPlace(fcb)) fail(error);
        return finish(true, true);
    }

    // Fw.d of a layout field: the short way, or the general edit cut to the field.
    void putFixedRealAt(char* at, const Walk::Field& field, float value)
    {
        if (editFixedFloatAt(at, field.width, field.decimals, value, modes_)) return;
        Record text;
        editReal(text, *field.token, value, true, modes_);
        std::memcpy(at, text.view().data(), std::min<std::size_t>(field.width, text.length()));
    }

    void replay(const Walk& walk, const Item* items)
    {
        if (walk.fixedSteps > 0) replayLayout(walk, items);
        for (std::size_t i = walk.fixedSteps; i < walk.steps.size() && !failed_; ++i) {
            const WalkStep& step = walk.steps[i];
            switch (step.kind) {
            case WalkStep::Kind::literal:
                record_.put(std::string_view(walk.texts.data() + step.textOffset, step.textLength));
                break;
            case WalkStep::Kind::fixedSingle: {
                const Item& item = items[step.item];
                const FormatToken& edit = *step.token;
                if (!editFixedFloat(record_, static_cast<std::size_t>(edit.width), edit.decimals,
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

    void reset(Op op, bool list, const Control& control)
    {
        _f_thread_enter_io();
        endIfStopRequested();
        ensureStarted();
        op_ = op;
        list_ = list;
        internal_ = false;
        internalRead_ = false;
        internalWritten_ = false;
        suppressRecordEnd_ = false;
        scannerUsed_ = false;
        failed_ = false;
        atEnd_ = false;
        error_ = 0;
        control_ = control;
        fcb_ = nullptr;
        inRecord_ = {};
        inPos_ = 0;
        record_.clear();
        const Options& o = options();
        modes_ = EditModes{};
        modes_.noLeadZero = o.noLeadZero;
        modes_.hexUppercase = o.hexUppercase;
    }

    // The statement's unit, checked for the transfer.
    void useUnit(Op op, Unit unit)
    {
        const bool forRead = op == Op::read;
        if (lastUnit_.matches(unit, forRead)) {
            fcb_ = lastUnit_.fcb;
        } else if (const int error = unitForTransfer(unit, forRead, fcb_)) {
            endIfStopRequested(); // "-fileprompt" may have read
            return fail(error);
        } else {
            endIfStopRequested();
            lastUnit_.remember(unit, forRead, fcb_);
        }
        if (op == Op::read && !fcb_->readable) return fail(code::fileNotOpenForRead);
        if (op == Op::write && !fcb_->writable) return fail(code::fileNotOpenForWrite);
        if (fcb_->form != Form::formatted) return fail(code::notForUnitType);
        if (fcb_->access == Access::direct) return fail(code::noDirectRecord);
        takeUnitModes();
    }

    // The modes and record length the unit brings to the statement.
    void takeUnitModes()
    {
        modes_.blankZero = fcb_->blankZero;
        modes_.decimalComma = fcb_->decimalComma;
        recordLimit_ = static_cast<std::size_t>(fcb_->recl);
    }

    void start(std::string_view format)
    {
        if (failed_) return;
        if (list_) {
            scanner_.start(this, modes_.decimalComma);
            return;
        }
        int error = 0;
        program_ = cachedFormat(format, error);
        if (!program_) return fail(error);
        cursor_ = FormatCursor<IoState>(program_, this);
        if (op_ == Op::read) readInputRecord();
    }

    void readInputRecord()
    {
        inPos_ = 0;
        const int result = nextRecord(inRecord_);
        if (result == -1)
            atEnd_ = true, failed_ = true;
        else if (result != 0)
            fail(result);
    }

    void emitRecord(bool advance)
    {
        if (record_.length() > recordLimit_) return fail(code::recordTooLong);
        if (internal_) {
            if (internalWritten_) return fail(code::badInternalUse);
            internalWritten_ = true;
            target_.assign(record_.view());
        } else if (const int error = writeRecord(*fcb_, record_.view(), advance)) {
            fail(error);
        }
        record_.clear();
    }

    void checkLength()
    {
        if (record_.length() > recordLimit_) fail(code::recordTooLong);
    }

    void put(const FormatToken& edit, const Item& item)
    {
        const void* v = item.value;
        // A wide field that cannot fit in what is left of the record fails before it is built.
        if (edit.width > wideField || edit.decimals > wideField) {
            const std::size_t room = recordLimit_ - std::min(recordLimit_, record_.position());
            if (static_cast<std::size_t>(edit.width) > room || static_cast<std::size_t>(edit.decimals) > room)
                return fail(code::recordTooLong);
        }
        switch (item.type) {
        case ItemType::int32:
        case ItemType::int64: {
            const std::int64_t value = item.type == ItemType::int32 ? *static_cast<const std::int32_t*>(v)
                                                                    : *static_cast<const std::int64_t*>(v);
            switch (edit.kind) {
            case EditKind::I:
            case EditKind::B:
            case EditKind::O:
            case EditKind::Z:
            case EditKind::G:
                editInteger(record_, edit, value, item.type == ItemType::int32 ? 32 : 64, modes_);
                break;
            default:
                return fail(code::typeMismatch);
            }
            break;
        }
        case ItemType::real32:
        case ItemType::real64: {
            const bool single = item.type == ItemType::real32;
            const double value = single ? *static_cast<const float*>(v) : *static_cast<const double*>(v);
            if (single && edit.kind == EditKind::F && modes_.scale == 0 && edit.decimals <= 12 &&
                editFixedFloat(record_, static_cast<std::size_t>(edit.width), edit.decimals, value, modes_))
                break;
            switch (edit.kind) {
            case EditKind::F:
            case EditKind::E:
            case EditKind::ES:
            case EditKind::EN:
            case EditKind::D:
            case EditKind::G:
                editReal(record_, edit, value, single, modes_);
                break;
            default:
                return fail(code::typeMismatch);
            }
            break;
        }
        case ItemType::logical:
            if (edit.kind != EditKind::L && edit.kind != EditKind::G) return fail(code::typeMismatch);
            editLogical(record_, edit, *static_cast<const bool*>(v));
            break;
        case ItemType::text:
        case ItemType::constText: {
            if (edit.kind == EditKind::A) {
                putText(edit, item);
                break;
            }
            if (edit.kind != EditKind::G) return fail(code::typeMismatch);
            FormatToken a = edit;
            if (edit.kind == EditKind::G) a.hasWidth = edit.width > 0;
            editText(record_, a, std::string_view(static_cast<const char*>(v), item.length));
            break;
        }
        }
    }

    // Aw or A of a text: right-justified in w, or cut to its first w characters.
    void putText(const FormatToken& edit, const Item& item)
    {
        const char* text = static_cast<const char*>(item.value);
        const std::size_t length = item.length;
        if (!edit.hasWidth) return record_.put(std::string_view(text, length));
        const std::size_t width = static_cast<std::size_t>(edit.width);
        if (edit.width > wideField && width > recordLimit_ - std::min(recordLimit_, record_.position()))
            return fail(code::recordTooLong);
        fillText(record_.reserve(width), width, text, length);
    }

    // Aw of a text into the `width` characters at `at`: right-justified on blanks, or its first
    // `width` characters.
    static void fillText(char* at, std::size_t width, const char* text, std::size_t length)
    {
        if (width <= length) {
            copyShort(at, text, width);
        } else {
            std::memset(at, ' ', width - length);
            copyShort(at + width - length, text, length);
        }
    }

    // The next `width` characters of the input record, blank-padded past its end. Numeric fields
    // ignore the padding; a text field of `keep` characters needs at most that many of it.
    std::string_view field(std::size_t width, std::size_t keep = 0)
    {
        const std::size_t start = std::min(inPos_, inRecord_.size());
        const std::size_t available = inRecord_.size() - start;
        inPos_ = width > std::numeric_limits<std::size_t>::max() - inPos_ ? inPos_ : inPos_ + width;
        if (available >= width) return inRecord_.substr(start, width);
        padded_.assign(inRecord_.data() + start, available);
        padded_.append(std::min(width - available, keep), ' ');
        return padded_;
    }

    void get(const FormatToken& edit, const Item& item)
    {
        void* v = const_cast<void*>(item.value);
        if (edit.kind == EditKind::Q) {
            const std::int64_t left =
                inPos_ < inRecord_.size() ? static_cast<std::int64_t>(inRecord_.size() - inPos_) : 0;
            if (item.type == ItemType::int32)
                *static_cast<std::int32_t*>(v) = static_cast<std::int32_t>(left);
            else if (item.type == ItemType::int64)
                *static_cast<std::int64_t*>(v) = left;
            else
                fail(code::typeMismatch);
            return;
        }
        switch (item.type) {
        case ItemType::int32:
        case ItemType::int64: {
            if (edit.kind != EditKind::I && edit.kind != EditKind::B && edit.kind != EditKind::O &&
                edit.kind != EditKind::Z && edit.kind != EditKind::G)
                return fail(code::typeMismatch);
            std::int64_t value = 0;
            if (const int error =
                    readIntegerField(field(static_cast<std::size_t>(edit.width)), edit, modes_, value))
                return fail(error);
            if (item.type == ItemType::int32) {
                if (value < std::numeric_limits<std::int32_t>::min() ||
                    value > std::numeric_limits<std::int32_t>::max())
                    return fail(code::badNumericInput);
                *static_cast<std::int32_t*>(v) = static_cast<std::int32_t>(value);
            } else {
                *static_cast<std::int64_t*>(v) = value;
            }
            return;
        }
        case ItemType::real32:
        case ItemType::real64: {
            switch (edit.kind) {
            case EditKind::F:
            case EditKind::E:
            case EditKind::ES:
            case EditKind::EN:
            case EditKind::D:
            case EditKind::G:
                break;
            default:
                return fail(code::typeMismatch);
            }
            const bool single = item.type == ItemType::real32;
            double value = 0;
            if (const int error =
                    readRealField(field(static_cast<std::size_t>(edit.width)), edit, modes_, single, value))
                return fail(error);
            if (single)
                *static_cast<float*>(v) = static_cast<float>(value);
            else
                *static_cast<double*>(v) = value;
            return;
        }
        case ItemType::logical: {
            if (edit.kind != EditKind::L && edit.kind != EditKind::G) return fail(code::typeMismatch);
            bool value = false;
            const std::size_t width = edit.hasWidth ? static_cast<std::size_t>(edit.width) : 2;
            if (const int error = readLogicalField(field(width), value)) return fail(error);
            *static_cast<bool*>(v) = value;
            return;
        }
        case ItemType::text: {
            if (edit.kind != EditKind::A && edit.kind != EditKind::G) return fail(code::typeMismatch);
            FormatToken a = edit;
            if (edit.kind == EditKind::G) a.hasWidth = edit.width > 0;
            const std::size_t width = a.hasWidth ? static_cast<std::size_t>(a.width) : item.length;
            readTextField(field(width, item.length), a, TextRef(static_cast<char*>(v), item.length));
            return;
        }
        case ItemType::constText:
            return fail(code::badIolist);
        }
    }

    // What reset() sets anew for each statement, side by side so that it takes few stores.
    Op op_ = Op::read;
    bool list_ = false;
    bool internal_ = false;
    bool internalRead_ = false;
    bool internalWritten_ = false;
    bool suppressRecordEnd_ = false;
    bool scannerUsed_ = false;
    bool failed_ = false;
    bool atEnd_ = false;
    int error_ = 0;

    Control control_;
    StatementName name_;
    FileControlBlock* fcb_ = nullptr;
    RememberedUnit lastUnit_;
    TextRef target_;
    std::string_view source_;
    std::size_t recordLimit_ = 0;

    FormatProgram* program_ = nullptr;
    PreparedWrite prepared_;
    FormatCursor<IoState> cursor_;
    EditModes modes_;
    Record record_;

    std::string_view inRecord_;
    std::size_t inPos_ = 0;
    std::string padded_;
    ListScanner scanner_;
};

IoState io_comm;

// OPEN, CLOSE and the other statements on connections: lock, act, report.
template <typename Action>
Iostat connectionStatement(std::string_view verb, Unit unit, const Control& control, Action action)
{
    _f_thread_enter_io();
    endIfStopRequested();
    ensureStarted();
    const int error = action();
    endIfStopRequested(); // "-fileprompt" may have read
    Iostat result;
    if (error)
        result = _ioerr(error, control, StatementName{verb, unit, false, false});
    else if (control.status)
        *control.status = 0;
    _f_thread_exit_io();
    return result;
}

} // namespace

namespace detail {

Iostat writeStatement(Unit unit, std::string_view format, const Control& control, const Item* items,
                      std::size_t count, std::uint64_t signature)
{
    return io_comm.writeExternal(unit, format, control, items, count, signature);
}

Iostat readStatement(Unit unit, std::string_view format, const Control& control, const Item* items,
                     std::size_t count)
{
    io_comm.beginExternal(Op::read, unit, false, format, control);
    return io_comm.run(items, count);
}

Iostat readListStatement(Unit unit, const Control& control, const Item* items, std::size_t count)
{
    return io_comm.readListExternal(unit, control, items, count);
}

Iostat writeInternalStatement(TextRef target, std::string_view format, const Control& control,
                              const Item* items, std::size_t count, std::uint64_t signature)
{
    io_comm.beginInternal(Op::write, target, {}, false, format, control);
    return io_comm.run(items, count, signature);
}

Iostat readInternalStatement(std::string_view source, std::string_view format, const Control& control,
                             const Item* items, std::size_t count)
{
    io_comm.beginInternal(Op::read, {}, source, false, format, control);
    return io_comm.run(items, count);
}

Iostat readListInternalStatement(std::string_view source, const Control& control, const Item* items,
                                 std::size_t count)
{
    io_comm.beginInternal(Op::read, {}, source, true, {}, control);
    return io_comm.run(items, count);
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
