// runtime/prepared.cpp: recorded walks of output formats, their fixed layouts, and the prepared
// WRITE of a record loop.
#include "runtime/prepared.h"

#include <algorithm>
#include <cstring>

namespace kestro::rt {

namespace {

using detail::Item;
using detail::ItemType;

// Bounds of a recorded walk; longer lists and expansions go through the cursor each time.
constexpr std::size_t maxWalkItems = 64;
constexpr std::size_t maxWalkSteps = 1024;
constexpr std::size_t maxWalkText = 16384;
constexpr std::size_t maxWalksPerFormat = 4;

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

// The fixed layout of a walk: the leading steps whose fields have widths known in advance.
void planLayout(Walk& walk)
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
    walk.tailOfTexts = std::all_of(walk.steps.begin() + static_cast<std::ptrdiff_t>(fixed), walk.steps.end(),
                                   [](const WalkStep& step) {
                                       return step.kind == WalkStep::Kind::literal ||
                                              (step.kind == WalkStep::Kind::textA &&
                                               (!step.token->hasWidth || step.token->width <= wideField));
                                   });
    for (std::size_t i = fixed; i < walk.steps.size(); ++i) {
        const WalkStep& step = walk.steps[i];
        if (step.kind == WalkStep::Kind::literal)
            walk.textsOfKnownWidth += step.textLength;
        else if (step.token && step.token->hasWidth)
            walk.textsOfKnownWidth += static_cast<std::size_t>(step.token->width);
    }
}

// Fw.d of a layout field: the short way, or the general edit cut to the field.
void putFixedRealAt(char* at, const Walk::Field& field, float value, const EditModes& modes)
{
    if (editFixedFloatAt(at, field.width, field.decimals, value, modes)) return;
    Record text;
    editReal(text, *field.token, value, true, modes);
    std::memcpy(at, text.view().data(), std::min<std::size_t>(field.width, text.length()));
}

} // namespace

RememberedStatements remembered;

// The recorded walk of this statement's format for these item types; recorded now if the
// format has none yet. Null where a walk does not pay (long lists, huge expansions, failures).
const Walk* walkFor(FormatProgram& program, const Item* items, std::size_t count, std::uint64_t signature)
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
    for (const Walk& walk : program.walks) {
        if (walk.signature != signature || walk.types.size() != count) continue;
        if (count <= signatureItems) return &walk; // the signature holds every type
        knowTypes();
        if (std::equal(walk.types.begin(), walk.types.end(), types)) return &walk;
    }
    knowTypes();
    if (program.walks.size() >= maxWalksPerFormat) return nullptr;
    Walk walk;
    walk.signature = signature;
    walk.types.assign(types, types + count);
    WalkRecorder recorder(walk);
    FormatCursor<WalkRecorder> cursor(&program, &recorder);
    for (std::size_t i = 0; i < count; ++i) {
        const FormatToken* edit = cursor.nextDataEdit();
        if (!edit || recorder.failed()) return nullptr;
        recorder.data(*edit, i, items[i].type);
    }
    cursor.finish();
    if (recorder.failed()) return nullptr;
    planLayout(walk);
    forgetRememberedStatements(); // the walks may move
    program.walks.push_back(std::move(walk));
    return &program.walks.back();
}

// The layout of a walk with its fields filled in, at `base`.
void fillLayout(char* base, const Walk& walk, const Item* items, const EditModes& modes)
{
    std::memcpy(base, walk.layout.data(), walk.layout.size());
    // The layout ends before the first mode step, so its fields run under the modes the
    // statement starts with: only the unit's DECIMAL= and the leading-zero option count.
    const bool plainOneDecimal = !modes.decimalComma && !modes.noLeadZero && modes.sign != SignMode::plus;
    if (plainOneDecimal) {
        for (const Walk::Field& field : walk.oneDecimalFields) {
            const float value = *static_cast<const float*>(items[field.item].value);
            char* at = base + field.column;
            if (!editFixedOneDecimalOnBlanks(at, field.width, field.wholeLimit, field.negativeWholeLimit,
                                             value))
                putFixedRealAt(at, field, value, modes);
        }
    } else {
        for (const Walk::Field& field : walk.oneDecimalFields)
            putFixedRealAt(base + field.column, field, *static_cast<const float*>(items[field.item].value),
                           modes);
    }
    for (const Walk::Field& field : walk.realFields)
        putFixedRealAt(base + field.column, field, *static_cast<const float*>(items[field.item].value),
                       modes);
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

int writeInPlace(FileControlBlock& fcb, const Walk& walk, const Item* items, const EditModes& modes)
{
    // The record's size first, so that it takes one stretch of the buffer.
    std::size_t size = walk.layout.size() + walk.textsOfKnownWidth;
    for (std::size_t i = walk.fixedSteps; i < walk.steps.size(); ++i) {
        const WalkStep& step = walk.steps[i];
        if (step.kind != WalkStep::Kind::literal && !step.token->hasWidth) size += items[step.item].length;
    }
    char* at = recordSpaceInPlace(fcb, size);
    if (walk.fixedSteps > 0) fillLayout(at, walk, items, modes);
    at += walk.layout.size();
    for (std::size_t i = walk.fixedSteps; i < walk.steps.size(); ++i) {
        const WalkStep& step = walk.steps[i];
        if (step.kind == WalkStep::Kind::literal) {
            copyShort(at, walk.texts.data() + step.textOffset, step.textLength);
            at += step.textLength;
            continue;
        }
        const Item& item = items[step.item];
        const std::size_t width =
            step.token->hasWidth ? static_cast<std::size_t>(step.token->width) : item.length;
        fillText(at, width, static_cast<const char*>(item.value), item.length);
        at += width;
    }
    return endRecordInPlace(fcb, at);
}

void PreparedWrite::remember(Unit u, std::string_view f, std::size_t n, std::uint64_t s,
                             FileControlBlock* block, FormatProgram* p, const Walk* w)
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

} // namespace kestro::rt
