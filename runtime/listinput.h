// runtime/listinput.h: free-form input: cuts records into values, item by item.
#pragma once

#include "runtime/io.h"

#include <string>
#include <string_view>

namespace kestro::rt {

// Where the scanner's records come from: a unit or an internal text.
class RecordSource
{
public:
    virtual ~RecordSource() = default;
    // The next record: 0, -1 at end of file, or an error code.
    virtual int nextRecord(std::string_view& record) = 0;
};

// The scanner of one statement (`_ldinput`). Each item takes the next value; an item for which the
// input gives no value (a null value, or anything after "/") keeps its value.
class ListScanner
{
public:
    void start(RecordSource* source, bool decimalComma);

    // Fills one item. Returns 0, -1 at end of file, or an error code.
    int next(const detail::Item& item);

    // Fills the items in order, up to the first that does not return 0; returns what it returned.
    int readItems(const detail::Item* items, std::size_t count);

private:
    int skipToValue();
    std::size_t takeCommonValues(const detail::Item* items, std::size_t count);
    int value(const detail::Item& item);
    int quoted(char quote, std::string_view& value);
    void afterValue();
    int assign(const detail::Item& item, std::string_view token, bool quoted);

    RecordSource* source_ = nullptr;
    std::string_view record_;
    std::size_t pos_ = 0;
    bool haveRecord_ = false;
    bool slash_ = false;
    char separator_ = ',';
    bool decimalComma_ = false;

    // r*c: the value c and how often it still stands; a null value for r*.
    long repeatLeft_ = 0;
    bool repeatNull_ = false;
    bool repeatQuoted_ = false;
    std::string repeatToken_;

    std::string token_; // the token buffer; grows as values need
};

} // namespace kestro::rt
