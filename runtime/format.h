// runtime/format.h: format strings translated into edit programs, and the cursor that walks one.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kestro::rt {

enum class EditKind : std::uint8_t {
    end,        // the closing parenthesis of the whole format
    groupOpen,  // repeat = the group's count; partner = index of its close
    groupClose, // partner = index of its open
    // data edits
    A,
    I,
    F,
    E,
    ES,
    EN,
    D,
    G,
    L,
    B,
    O,
    Z,
    Q,
    // control edits
    X,
    T,
    TL,
    TR,
    S,
    SP,
    SS,
    BN,
    BZ,
    DC,
    DP,
    P,
    literal,
    slash,
    dollar,
    backslash,
    colon,
};

constexpr bool isDataEdit(EditKind kind)
{
    return kind >= EditKind::A && kind <= EditKind::Q;
}

struct FormatToken
{
    EditKind kind = EditKind::end;
    bool hasWidth = false;
    bool hasDecimals = false; // also the `.m` of Iw.m
    bool hasExponent = false;
    std::int32_t repeat = 1; // nX, Tn, kP keep their number in `width`
    std::int32_t width = 0;
    std::int32_t decimals = 0;
    std::int32_t exponent = 0;
    std::uint32_t textOffset = 0; // literal text in FormatProgram::texts
    std::uint32_t textLength = 0;
    std::int32_t partner = 0;
};

inline constexpr int maxGroupDepth = 20;

// One step of a recorded walk: what the cursor did, in order, for one I/O list.
struct WalkStep
{
    enum class Kind : std::uint8_t { literal, fixedSingle, textA, data, endRecord, position, mode };
    Kind kind = Kind::literal;
    std::uint16_t item = 0;             // data steps: index in the I/O list
    const FormatToken* token = nullptr; // data, position and mode steps
    std::uint32_t textOffset = 0;       // literal steps: in Walk::texts
    std::uint32_t textLength = 0;
    std::uint32_t column = 0; // steps of the fixed layout: where the field starts
};

// The walk of a format for one I/O list of `types`, recorded once: the cursor's path depends only
// on the number of items, and the edit for each on its type, so a later statement with the same
// list replays the steps without the cursor.
struct Walk
{
    std::uint64_t signature = 0; // the types, three bits each, for a quick match
    std::vector<std::uint8_t> types;
    std::vector<WalkStep> steps;
    std::string texts;
    // The first `fixedSteps` steps write fields of known widths: their record starts as `layout`
    // (literals in place, blanks elsewhere) and each field goes straight to its column, the real
    // ones from `oneDecimalFields` (Fw.1) and `realFields` (other Fw.d), one-letter texts from
    // `letterFields`, the other texts from `textFields`.
    struct Field
    {
        // Fw.d of a single-precision item, or Aw (w > 1) of a text.
        std::uint16_t item = 0;
        std::uint32_t column = 0;
        std::uint16_t width = 0;
        std::int32_t decimals = 0;
        std::uint32_t wholeLimit = 0; // Fw.1: oneDecimalWholeLimit(width), and of width - 1
        std::uint32_t negativeWholeLimit = 0;
        const FormatToken* token = nullptr;
    };
    std::size_t fixedSteps = 0;
    bool tailOfTexts = false;          // the steps behind the layout are literals and texts of A or Aw only
    std::size_t textsOfKnownWidth = 0; // of such a tail: the literals and the Aw texts
    std::string layout;
    std::vector<Field> oneDecimalFields;
    std::vector<Field> realFields;
    std::vector<Field> textFields;
    struct LetterField
    { // A1 of a text: its first character, or the blank for an empty text
        std::uint32_t column = 0;
        std::uint16_t item = 0;
    };
    std::vector<LetterField> letterFields;
};

struct FormatProgram
{
    std::vector<FormatToken> tokens; // ends with EditKind::end
    std::string texts;
    std::int32_t revertTo = 0; // where the format starts again when it runs out with items left
    bool hasDataEdit = false;  // without one, an item fails at once (10076)
    std::vector<Walk> walks;   // recorded output walks of this program; cleared when it changes

    std::string_view text(const FormatToken& token) const
    {
        return std::string_view(texts).substr(token.textOffset, token.textLength);
    }
};

// Translates a format string. Returns 0 or the code of the first translation error.
int _trans_format(std::string_view format, FormatProgram& program);

// The translated program of a format, from a cache of recent formats; null with `error` set when
// the format does not translate. The program stays valid until the cache is cleared, which only
// happens between statements.
FormatProgram* cachedFormat(std::string_view format, int& error);
void clearFormatCache();

// Walks a program item by item. `Context` receives the control edits:
//   void endRecord();                        "/" and format reversion
//   void position(const FormatToken&);       X, T, TL, TR
//   void literal(std::string_view);          quoted text and nH
//   void mode(const FormatToken&);           S, SP, SS, BN, BZ, DC, DP, P, "$", "\"
//   void fail(int code);                     a run-time format failure
template <typename Context> class FormatCursor
{
public:
    FormatCursor() = default;
    FormatCursor(const FormatProgram* program, Context* context) : program_(program), context_(context) {}

    // Runs the control edits up to the next data edit and returns it; null after a failure.
    const FormatToken* nextDataEdit()
    {
        if (repeatLeft_ > 0) {
            --repeatLeft_;
            return current_;
        }
        if (!program_->hasDataEdit) {
            context_->fail(10076);
            return nullptr;
        }
        for (;;) {
            const FormatToken& token = program_->tokens[static_cast<std::size_t>(pc_)];
            if (isDataEdit(token.kind)) {
                current_ = &token;
                repeatLeft_ = token.repeat - 1;
                sawData_ = true;
                ++pc_;
                return current_;
            }
            if (token.kind == EditKind::end) {
                if (!sawData_) {
                    context_->fail(10076);
                    return nullptr;
                }
                sawData_ = false;
                depth_ = 0;
                context_->endRecord();
                pc_ = program_->revertTo;
                continue;
            }
            if (!step(token)) return nullptr;
        }
    }

    // The items are used up: runs the control edits up to the next data edit, a ":" or the end.
    void finish()
    {
        if (repeatLeft_ > 0) return;
        for (;;) {
            const FormatToken& token = program_->tokens[static_cast<std::size_t>(pc_)];
            if (isDataEdit(token.kind) || token.kind == EditKind::end || token.kind == EditKind::colon)
                return;
            if (!step(token)) return;
        }
    }

private:
    struct Group
    {
        std::int32_t open;
        std::int32_t left;
    };

    bool step(const FormatToken& token)
    {
        switch (token.kind) {
        case EditKind::groupOpen:
            stack_[depth_++] = Group{pc_, token.repeat};
            ++pc_;
            return true;
        case EditKind::groupClose:
            if (depth_ > 0 && --stack_[depth_ - 1].left > 0) {
                pc_ = stack_[depth_ - 1].open + 1;
            } else {
                if (depth_ > 0) --depth_;
                ++pc_;
            }
            return true;
        case EditKind::slash:
            for (std::int32_t i = 0; i < token.repeat; ++i)
                context_->endRecord();
            break;
        case EditKind::X:
        case EditKind::T:
        case EditKind::TL:
        case EditKind::TR:
            context_->position(token);
            break;
        case EditKind::literal:
            context_->literal(program_->text(token));
            break;
        case EditKind::colon:
            break;
        default:
            context_->mode(token);
            break;
        }
        ++pc_;
        return !context_->failed();
    }

    const FormatProgram* program_ = nullptr;
    Context* context_ = nullptr;
    const FormatToken* current_ = nullptr;
    std::int32_t pc_ = 0;
    std::int32_t repeatLeft_ = 0;
    bool sawData_ = false;
    int depth_ = 0;
    Group stack_[maxGroupDepth + 1]; // entries below depth_ only
};

} // namespace kestro::rt
