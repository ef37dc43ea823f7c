// runtime/format.cpp: translates format strings into edit programs, and keeps the recent ones.
#include "runtime/format.h"

#include "runtime/iostat.h"
#include "runtime/options.h"

#include <array>
#include <cctype>
#include <cstring>
#include <limits>
#include <memory>

namespace kestro::rt {

namespace {

class Translator
{
public:
    Translator(std::string_view format, FormatProgram& program) : text_(format), program_(program) {}

    int run()
    {
        program_.tokens.clear();
        program_.texts.clear();
        program_.walks.clear();
        program_.revertTo = 0;
        program_.hasDataEdit = false;
        skipBlanks();
        if (!take('(')) return code::badFormatStart;
        if (int error = list(0)) return error;
        FormatToken end;
        end.kind = EditKind::end;
        program_.tokens.push_back(end);
        for (const FormatToken& token : program_.tokens)
            program_.hasDataEdit |= isDataEdit(token.kind);
        return 0;
    }

private:
    void skipBlanks()
    {
        while (pos_ < text_.size() && (text_[pos_] == ' ' || text_[pos_] == '\t'))
            ++pos_;
    }
    bool atEnd() const { return pos_ >= text_.size(); }
    char peek() const
    {
        return atEnd() ? '\0' : static_cast<char>(std::toupper(static_cast<unsigned char>(text_[pos_])));
    }
    bool take(char c)
    {
        skipBlanks();
        if (peek() != c) return false;
        ++pos_;
        return true;
    }
    bool digitNext()
    {
        skipBlanks();
        return !atEnd() && std::isdigit(static_cast<unsigned char>(text_[pos_]));
    }

    // An unsigned number, blanks inside ignored. Returns false on overflow.
    bool number(std::int32_t& value)
    {
        long long n = 0;
        skipBlanks();
        while (!atEnd() && (std::isdigit(static_cast<unsigned char>(text_[pos_])) || text_[pos_] == ' ')) {
            if (text_[pos_] != ' ') {
                n = n * 10 + (text_[pos_] - '0');
                if (n > std::numeric_limits<std::int32_t>::max()) return false;
            }
            ++pos_;
        }
        value = static_cast<std::int32_t>(n);
        return true;
    }

    FormatToken& add(EditKind kind)
    {
        program_.tokens.emplace_back();
        program_.tokens.back().kind = kind;
        return program_.tokens.back();
    }

    int literal(char quote)
    {
        std::string value;
        for (;;) {
            if (atEnd()) return code::unmatchedQuotes;
            const char c = text_[pos_++];
            if (c == quote) {
                if (!atEnd() && text_[pos_] == quote) {
                    value += quote;
                    ++pos_;
                    continue;
                }
                break;
            }
            value += c;
        }
        addLiteral(value);
        return 0;
    }

    void addLiteral(std::string_view value)
    {
        FormatToken& token = add(EditKind::literal);
        token.textOffset = static_cast<std::uint32_t>(program_.texts.size());
        token.textLength = static_cast<std::uint32_t>(value.size());
        program_.texts.append(value.data(), value.size());
    }

    // Items up to the closing parenthesis of the list that starts at depth `depth`.
    int list(int depth)
    {
        bool expectItem = true; // right after "(" or ","
        for (;;) {
            skipBlanks();
            if (atEnd()) return code::unmatchedParens;
            const char c = peek();
            if (c == ')') {
                ++pos_;
                if (expectItem && !program_.tokens.empty() && lastWasComma_) return code::badFormat;
                return 0;
            }
            if (c == ',') {
                if (expectItem) return code::badFormat;
                ++pos_;
                expectItem = true;
                lastWasComma_ = true;
                continue;
            }
            lastWasComma_ = false;
            if (int error = item(depth)) return error;
            expectItem = false;
        }
    }

    int item(int depth)
    {
        const char c = peek();
        if (c == '\'' || c == '"') {
            ++pos_;
            return literal(c);
        }
        if (c == '/' || c == ':' || c == '$' || c == '\\') {
            ++pos_;
            add(c == '/'   ? EditKind::slash
                : c == ':' ? EditKind::colon
                : c == '$' ? EditKind::dollar
                           : EditKind::backslash);
            return 0;
        }
        if (c == '+' || c == '-') { // signed scale factor
            ++pos_;
            std::int32_t k = 0;
            if (!digitNext() || !number(k)) return code::badFormat;
            if (!take('P')) return code::badFormat;
            FormatToken& token = add(EditKind::P);
            token.width = c == '-' ? -k : k;
            return 0;
        }
        bool hasRepeat = false;
        std::int32_t repeat = 1;
        if (digitNext()) {
            if (!number(repeat)) return code::badRepeatCount;
            hasRepeat = true;
            skipBlanks();
            const char next = peek();
            if (next == 'H') {
                ++pos_;
                if (repeat == 0) return code::badRepeatCount;
                if (text_.size() - pos_ < static_cast<std::size_t>(repeat)) return code::hollerithTooLong;
                addLiteral(text_.substr(pos_, static_cast<std::size_t>(repeat)));
                pos_ += static_cast<std::size_t>(repeat);
                return 0;
            }
            if (next == 'P') {
                ++pos_;
                FormatToken& token = add(EditKind::P);
                token.width = repeat;
                return 0;
            }
            if (next == 'X') {
                ++pos_;
                FormatToken& token = add(EditKind::X);
                token.width = repeat;
                if (repeat == 0) return code::badRepeatCount;
                return 0;
            }
            if (repeat == 0) return code::badRepeatCount;
        }
        skipBlanks();
        const char d = peek();
        if (d == '(') {
            ++pos_;
            if (depth + 1 > maxGroupDepth) return code::groupOverflow;
            const std::int32_t open = static_cast<std::int32_t>(program_.tokens.size());
            add(EditKind::groupOpen).repeat = repeat;
            if (depth == 0) program_.revertTo = open;
            if (int error = list(depth + 1)) return error;
            const std::int32_t close = static_cast<std::int32_t>(program_.tokens.size());
            add(EditKind::groupClose).partner = open;
            program_.tokens[static_cast<std::size_t>(open)].partner = close;
            return 0;
        }
        if (d == '/') {
            ++pos_;
            add(EditKind::slash).repeat = repeat;
            return 0;
        }
        if (d == '\'' || d == '"' || d == ':' || d == '$' || d == '\\')
            return hasRepeat ? code::notRepeatable : code::badFormat;
        return descriptor(hasRepeat, repeat);
    }

    int descriptor(bool hasRepeat, std::int32_t repeat)
    {
        const char c = peek();
        if (atEnd() || !std::isalpha(static_cast<unsigned char>(c))) return code::badFormat;
        ++pos_;
        const char next = peek();
        EditKind kind;
        switch (c) {
        case 'A':
            kind = EditKind::A;
            break;
        case 'I':
            kind = EditKind::I;
            break;
        case 'F':
            kind = EditKind::F;
            break;
        case 'E':
            if (next == 'S')
                ++pos_, kind = EditKind::ES;
            else if (next == 'N')
                ++pos_, kind = EditKind::EN;
            else
                kind = EditKind::E;
            break;
        case 'D':
            if (next == 'C')
                ++pos_, kind = EditKind::DC;
            else if (next == 'P')
                ++pos_, kind = EditKind::DP;
            else
                kind = EditKind::D;
            break;
        case 'G':
            kind = EditKind::G;
            break;
        case 'L':
            kind = EditKind::L;
            break;
        case 'B':
            if (next == 'N')
                ++pos_, kind = EditKind::BN;
            else if (next == 'Z')
                ++pos_, kind = EditKind::BZ;
            else
                kind = EditKind::B;
            break;
        case 'O':
            kind = EditKind::O;
            break;
        case 'Z':
            kind = EditKind::Z;
            break;
        case 'Q':
            kind = EditKind::Q;
            break;
        case 'X':
            kind = EditKind::X;
            break;
        case 'T':
            if (next == 'L')
                ++pos_, kind = EditKind::TL;
            else if (next == 'R')
                ++pos_, kind = EditKind::TR;
            else
                kind = EditKind::T;
            break;
        case 'S':
            if (next == 'P')
                ++pos_, kind = EditKind::SP;
            else if (next == 'S')
                ++pos_, kind = EditKind::SS;
            else
                kind = EditKind::S;
            break;
        default:
            return code::badFormat;
        }

        FormatToken token;
        token.kind = kind;
        token.repeat = repeat;
        switch (kind) {
        case EditKind::X:
            token.width = 1;
            token.repeat = 1;
            break;
        case EditKind::T:
        case EditKind::TL:
        case EditKind::TR:
            if (hasRepeat) return code::notRepeatable;
            if (!digitNext() || !number(token.width)) return code::badFormat;
            if (kind == EditKind::T && token.width == 0) return code::badFormat;
            token.repeat = 1;
            break;
        case EditKind::S:
        case EditKind::SP:
        case EditKind::SS:
        case EditKind::BN:
        case EditKind::BZ:
        case EditKind::DC:
        case EditKind::DP:
            if (hasRepeat) return code::notRepeatable;
            break;
        case EditKind::Q:
            break;
        case EditKind::A:
        case EditKind::L:
            if (digitNext()) {
                if (!number(token.width)) return code::badFormat;
                token.hasWidth = true;
                if (token.width == 0) return code::badFormat;
            }
            break;
        case EditKind::I:
        case EditKind::B:
        case EditKind::O:
        case EditKind::Z:
            if (!digitNext() || !number(token.width)) return code::badFormat;
            token.hasWidth = true;
            if (take('.')) {
                if (!digitNext() || !number(token.decimals)) return code::badFormat;
                token.hasDecimals = true;
            }
            break;
        default: // F E ES EN D G
            if (!digitNext() || !number(token.width)) return code::badFormat;
            token.hasWidth = true;
            if (take('.')) {
                if (!digitNext() || !number(token.decimals)) return code::badFormat;
                token.hasDecimals = true;
            } else if (!(kind == EditKind::G && token.width == 0)) {
                return code::badFormat;
            }
            if (kind != EditKind::F && kind != EditKind::D) {
                skipBlanks();
                if (peek() == 'E') {
                    ++pos_;
                    if (!digitNext() || !number(token.exponent) || token.exponent == 0)
                        return code::badFormat;
                    token.hasExponent = true;
                }
            }
            break;
        }
        program_.tokens.push_back(token);
        return 0;
    }

    std::string_view text_;
    std::size_t pos_ = 0;
    FormatProgram& program_;
    bool lastWasComma_ = false;
};

// A small cache of translated formats. Formats are mostly literals, so a slot is found by the
// address of the text and confirmed by its contents; a format built at run time is found by its
// contents after that.
struct CacheSlot
{
    const char* address = nullptr;
    std::string text;
    FormatProgram program;
    bool used = false;
};

constexpr std::size_t cacheSlots = 64;
std::array<CacheSlot, cacheSlots> cache;

std::size_t slotFor(std::string_view format)
{
    std::uint64_t h = reinterpret_cast<std::uintptr_t>(format.data()) ^ (format.size() << 48);
    h *= 0x9e3779b97f4a7c15ull;
    return static_cast<std::size_t>(h >> 58); // 64 slots
}

bool holds(const CacheSlot& slot, std::string_view format)
{
    return slot.used && slot.text.size() == format.size() &&
           std::memcmp(slot.text.data(), format.data(), format.size()) == 0;
}

} // namespace

int _trans_format(std::string_view format, FormatProgram& program)
{
    return Translator(format, program).run();
}

FormatProgram* cachedFormat(std::string_view format, int& error)
{
    error = 0;
    CacheSlot& slot = cache[slotFor(format)];
    if (slot.address == format.data() && holds(slot, format)) return &slot.program;
    for (CacheSlot& other : cache) {
        if (holds(other, format)) return &other.program;
    }
    slot.used = false;
    forgetRememberedStatements(); // the slot's program and walks are about to be replaced
    error = _trans_format(format, slot.program);
    if (error) return nullptr;
    slot.address = format.data();
    slot.text.assign(format.data(), format.size());
    slot.used = true;
    return &slot.program;
}

void clearFormatCache()
{
    forgetRememberedStatements();
    for (CacheSlot& slot : cache)
        slot = CacheSlot{};
}

} // namespace kestro::rt
