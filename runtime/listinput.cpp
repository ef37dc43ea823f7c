// runtime/listinput.cpp: free-form input: cuts records into values, item by item.
#include "runtime/listinput.h"

#include "runtime/conversion.h"

#include <cctype>
#include <limits>

namespace kestro::rt {

namespace {

constexpr std::size_t initialTokenSize = 1024;

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

} // namespace

void ListScanner::start(RecordSource* source, bool decimalComma)
{
    source_ = source;
    record_ = {};
    pos_ = 0;
    haveRecord_ = false;
    slash_ = false;
    decimalComma_ = decimalComma;
    separator_ = decimalComma ? ';' : ',';
    repeatLeft_ = 0;
    repeatNull_ = false;
    if (token_.capacity() < initialTokenSize) token_.reserve(initialTokenSize);
}

// Skips blanks and tabs, across as many records as it takes.
int ListScanner::skipToValue()
{
    for (;;) {
        if (!haveRecord_) {
            if (const int result = source_->nextRecord(record_)) return result;
            haveRecord_ = true;
            pos_ = 0;
        }
        const std::size_t size = record_.size();
        std::size_t p = pos_;
        while (p < size && isBlank(record_[p]))
            ++p;
        pos_ = p;
        if (p < size) return 0;
        haveRecord_ = false;
    }
}

// A quoted value from the opening mark at pos_ to its matching mark, across records; a doubled
// mark stands for one.
int ListScanner::quoted(char quote, std::string_view& value)
{
    ++pos_;
    // The common case: the closing mark on the same record and no doubled mark inside.
    const std::size_t close = record_.find(quote, pos_);
    if (close != std::string_view::npos && (close + 1 >= record_.size() || record_[close + 1] != quote)) {
        value = record_.substr(pos_, close - pos_);
        pos_ = close + 1;
        return 0;
    }
    token_.clear();
    for (;;) {
        if (pos_ >= record_.size()) {
            if (const int result = source_->nextRecord(record_)) return result;
            pos_ = 0;
            continue;
        }
        const char c = record_[pos_++];
        if (c == quote) {
            if (pos_ < record_.size() && record_[pos_] == quote) {
                token_ += quote;
                ++pos_;
                continue;
            }
            value = token_;
            return 0;
        }
        token_ += c;
    }
}

// Behind a value: blanks and tabs, and one separator if it stands there.
void ListScanner::afterValue()
{
    while (pos_ < record_.size() && isBlank(record_[pos_]))
        ++pos_;
    if (pos_ < record_.size() && record_[pos_] == separator_) ++pos_;
}

namespace {

// The values a data record is made of, taken at `p` without the general path: up to seven plain
// digits ending the value for a real or integer item, a one-letter quoted value for a text.
// Returns false, nothing consumed, for anything else; else `p` stands behind the value, its
// blanks and its separator. Inline: it is the loop of every data record.
inline bool takeCommonValue(const char* data, std::size_t size, std::size_t& at, char separator,
                            const detail::Item& item)
{
    using detail::ItemType;
    constexpr std::size_t maxDigits = 7;
    const std::size_t begin = at;
    std::size_t p = begin;
    std::uint32_t number = 0;
    const bool numeric = item.type == ItemType::real32 || item.type == ItemType::int32;
    if (numeric) {
        // The value starts at a character that is no blank.
        std::uint32_t digit = static_cast<std::uint32_t>(static_cast<unsigned char>(data[p])) - '0';
        if (digit > 9) return false;
        number = digit;
        while (++p < size &&
               (digit = static_cast<std::uint32_t>(static_cast<unsigned char>(data[p])) - '0') <= 9)
            number = number * 10 + digit; // wraps harmlessly past seven digits, which go the general way
        if (p - begin > maxDigits) return false;
    } else if (item.type == ItemType::text) {
        const char quote = data[p];
        if (quote != '\'' && quote != '"') return false;
        // One letter between the marks, neither a mark itself nor followed by a doubled mark.
        if (size - p < 3 || data[p + 2] != quote || data[p + 1] == quote ||
            (size - p > 3 && data[p + 3] == quote))
            return false;
        p += 3;
    } else {
        return false;
    }
    // Behind the value: blanks and tabs, and one separator if it stands there; anything else
    // right behind a number is more of the value.
    if (p < size && !isBlank(data[p])) {
        if (data[p] == separator)
            ++p;
        else if (numeric)
            return false;
    } else {
        while (p < size && isBlank(data[p]))
            ++p;
        if (p < size && data[p] == separator) ++p;
    }
    at = p;

    void* target = const_cast<void*>(item.value);
    if (item.type == ItemType::real32) {
        *static_cast<float*>(target) = static_cast<float>(number);
    } else if (item.type == ItemType::int32) {
        *static_cast<std::int32_t*>(target) = static_cast<std::int32_t>(number);
    } else if (item.length == 1) {
        *static_cast<char*>(target) = data[begin + 1];
    } else {
        TextRef(static_cast<char*>(target), item.length).assign(std::string_view(data + begin + 1, 1));
    }
    return true;
}

} // namespace

// Common values one after the other from pos_, up to the end of the record or the first value
// that is not one; the position is kept in locals, which the stores into the items cannot touch.
// Returns how many items it filled.
std::size_t ListScanner::takeCommonValues(const detail::Item* items, std::size_t count)
{
    const char* const data = record_.data();
    const std::size_t size = record_.size();
    const char separator = separator_;
    std::size_t p = pos_;
    std::size_t taken = 0;
    for (; taken < count; ++taken) {
        while (p < size && isBlank(data[p]))
            ++p;
        if (p == size || !takeCommonValue(data, size, p, separator, items[taken])) break;
    }
    pos_ = p;
    return taken;
}

int ListScanner::next(const detail::Item& item)
{
    if (slash_) return 0;
    if (repeatLeft_ > 0) {
        --repeatLeft_;
        return repeatNull_ ? 0 : assign(item, repeatToken_, repeatQuoted_);
    }
    if (const int result = skipToValue()) return result;
    if (takeCommonValue(record_.data(), record_.size(), pos_, separator_, item)) return 0;
    return value(item);
}

int ListScanner::readItems(const detail::Item* items, std::size_t count)
{
    std::size_t i = 0;
    while (i < count) {
        if (!slash_ && repeatLeft_ == 0) {
            if (const int result = skipToValue()) return result;
            i += takeCommonValues(items + i, count - i);
            if (i == count) break;
        }
        if (const int result = next(items[i])) return result;
        ++i;
    }
    return 0;
}

// The general path of a value at pos_: repeat counts, null values, quoted texts, any number.
int ListScanner::value(const detail::Item& item)
{
    const char c = record_[pos_];
    if (c == '/') {
        slash_ = true;
        ++pos_;
        return 0;
    }
    if (c == separator_) {
        ++pos_;
        return 0;
    }

    // r*c: digits and a star at the start of the value make a repeat count.
    long repeat = 0;
    bool hasRepeat = false;
    std::size_t p = pos_;
    while (p < record_.size() && record_[p] >= '0' && record_[p] <= '9') {
        if (repeat < std::numeric_limits<int>::max()) repeat = repeat * 10 + (record_[p] - '0');
        ++p;
    }
    if (p > pos_ && p < record_.size() && record_[p] == '*') {
        if (repeat == 0) return code::badRepeatCount;
        hasRepeat = true;
        pos_ = p + 1;
        if (pos_ >= record_.size() || isBlank(record_[pos_]) || record_[pos_] == separator_ ||
            record_[pos_] == '/') {
            afterValue();
            repeatNull_ = true;
            repeatLeft_ = repeat - 1;
            return 0;
        }
    }

    const char first = record_[pos_];
    const bool text = item.type == detail::ItemType::text;
    std::string_view token;
    bool isQuoted = false;
    if (text && (first == '\'' || first == '"')) {
        if (const int result = quoted(first, token)) return result;
        isQuoted = true;
    } else {
        const std::size_t begin = pos_;
        if (!hasRepeat) pos_ = p; // the digits already passed over belong to the value
        while (pos_ < record_.size()) {
            const char d = record_[pos_];
            if (isBlank(d) || d == separator_ || d == '/') break;
            ++pos_;
        }
        token = record_.substr(begin, pos_ - begin);
    }
    afterValue();
    if (hasRepeat) {
        repeatToken_.assign(token.data(), token.size());
        repeatQuoted_ = isQuoted;
        repeatNull_ = false;
        repeatLeft_ = repeat - 1;
    }
    return assign(item, token, isQuoted);
}

int ListScanner::assign(const detail::Item& item, std::string_view token, bool)
{
    using detail::ItemType;
    switch (item.type) {
    case ItemType::text: {
        char* field = static_cast<char*>(const_cast<void*>(item.value));
        if (item.length == 1) { // a direction letter
            *field = token.empty() ? ' ' : token[0];
            return 0;
        }
        TextRef(field, item.length).assign(token);
        return 0;
    }
    case ItemType::int32:
    case ItemType::int64: {
        std::int64_t value = 0;
        if (const int error = numberToInteger(token, value)) return error;
        if (item.type == ItemType::int32) {
            if (value < std::numeric_limits<std::int32_t>::min() ||
                value > std::numeric_limits<std::int32_t>::max())
                return code::badNumericInput;
            *static_cast<std::int32_t*>(const_cast<void*>(item.value)) = static_cast<std::int32_t>(value);
        } else {
            *static_cast<std::int64_t*>(const_cast<void*>(item.value)) = value;
        }
        return 0;
    }
    case ItemType::real32:
    case ItemType::real64: {
        double value = 0;
        const bool single = item.type == ItemType::real32;
        if (const int error = numberToReal(token, single, decimalComma_, value)) return error;
        if (single)
            *static_cast<float*>(const_cast<void*>(item.value)) = static_cast<float>(value);
        else
            *static_cast<double*>(const_cast<void*>(item.value)) = value;
        return 0;
    }
    case ItemType::logical: {
        std::size_t i = !token.empty() && token[0] == '.' ? 1 : 0;
        if (i >= token.size()) return code::badNumericInput;
        const char c = static_cast<char>(std::toupper(static_cast<unsigned char>(token[i])));
        if (c != 'T' && c != 'F') return code::badNumericInput;
        *static_cast<bool*>(const_cast<void*>(item.value)) = c == 'T';
        return 0;
    }
    case ItemType::constText:
        return code::badIolist;
    }
    return code::unknownDataType;
}

} // namespace kestro::rt
