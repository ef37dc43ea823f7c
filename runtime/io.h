// runtime/io.h: the statement API of the record I/O runtime. One call is one statement.
//
//   WRITE(6, '(1x,a,1x,f7.1)') 'strike', strike     rt::write(6, "(1x,a,1x,f7.1)", "strike", strike);
//   READ(25, *, END=100, ERR=200) a, b               rt::readList(rt::onEnd | rt::onError, 25, a, b);
//   READ(buf, *, IOSTAT=ios) n                       rt::readListInternal(rt::withStatus(ios), buf, n);
//
// A statement without handlers stops the program on failure: "? " lines on the error unit, every
// unit closed, exit status -1. A statement with handlers returns its outcome; nothing throws.
#pragma once

#include "runtime/iostat.h"
#include "runtime/text.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kestro::rt {

using Unit = long;
inline constexpr Unit defaultUnit = -1; // the unit `*`
inline constexpr Unit stdIn = -2;
inline constexpr Unit stdOut = -3;
inline constexpr Unit stdErr = -4;

// Which failures the caller takes over. END= is `onEnd`, ERR= is `onError`, IOSTAT= is
// `withStatus`, IOMSG= is `withMessage`; they combine with `|`.
struct Control
{
    bool endBranch = false;
    bool errorBranch = false;
    int* status = nullptr;
    TextRef message{};

    constexpr bool handlesAnything() const
    {
        return endBranch || errorBranch || status != nullptr || !message.empty();
    }
};

inline constexpr Control onEnd{true, false, nullptr, {}};
inline constexpr Control onError{false, true, nullptr, {}};
inline Control withStatus(int& status)
{
    return Control{false, false, &status, {}};
}
inline Control withMessage(TextRef message)
{
    return Control{false, false, nullptr, message};
}
inline Control operator|(Control a, const Control& b)
{
    a.endBranch |= b.endBranch;
    a.errorBranch |= b.errorBranch;
    if (b.status) a.status = b.status;
    if (!b.message.empty()) a.message = b.message;
    return a;
}

namespace detail {

enum class ItemType : unsigned char { int32, int64, real32, real64, logical, text, constText };

// One item of an I/O list: a typed pointer to the caller's variable (or value, on output).
struct Item
{
    ItemType type;
    const void* value;
    std::size_t length; // text items only
};

// The types of an output list folded into one number; the compiler works it out at each call.
template <std::size_t N> constexpr std::uint64_t listSignature(const std::array<Item, N>& items)
{
    std::uint64_t signature = N;
    for (const Item& item : items)
        signature = (signature << 3 | static_cast<std::uint64_t>(item.type)) ^ (signature >> 61);
    return signature;
}

// One statement with its whole I/O list: the lock is taken and left inside.
Iostat writeStatement(Unit, std::string_view format, const Control&, const Item* items, std::size_t count,
                      std::uint64_t signature);
Iostat readStatement(Unit, std::string_view format, const Control&, const Item* items, std::size_t count);
Iostat readListStatement(Unit, const Control&, const Item* items, std::size_t count);
Iostat writeInternalStatement(TextRef target, std::string_view format, const Control&, const Item* items,
                              std::size_t count, std::uint64_t signature);
Iostat readInternalStatement(std::string_view source, std::string_view format, const Control&,
                             const Item* items, std::size_t count);
Iostat readListInternalStatement(std::string_view source, const Control&, const Item* items,
                                 std::size_t count);

inline Item outItem(const std::int32_t& v)
{
    return {ItemType::int32, &v, 0};
}
inline Item outItem(const std::int64_t& v)
{
    return {ItemType::int64, &v, 0};
}
inline Item outItem(const float& v)
{
    return {ItemType::real32, &v, 0};
}
inline Item outItem(const double& v)
{
    return {ItemType::real64, &v, 0};
}
inline Item outItem(const bool& v)
{
    return {ItemType::logical, &v, 0};
}
inline Item outItem(std::string_view v)
{
    return {ItemType::constText, v.data(), v.size()};
}
inline Item outItem(const std::string& v)
{
    return {ItemType::constText, v.data(), v.size()};
}
inline Item outItem(const char* v)
{
    return outItem(std::string_view(v));
}
inline Item outItem(const TextRef& v)
{
    return {ItemType::constText, v.data(), v.size()};
}
template <std::size_t N> Item outItem(const Text<N>& v)
{
    return {ItemType::constText, v.data(), N};
}

inline Item inItem(std::int32_t& v)
{
    return {ItemType::int32, &v, 0};
}
inline Item inItem(std::int64_t& v)
{
    return {ItemType::int64, &v, 0};
}
inline Item inItem(float& v)
{
    return {ItemType::real32, &v, 0};
}
inline Item inItem(double& v)
{
    return {ItemType::real64, &v, 0};
}
inline Item inItem(bool& v)
{
    return {ItemType::logical, &v, 0};
}
inline Item inItem(const TextRef& v)
{
    return {ItemType::text, v.data(), v.size()};
}
template <std::size_t N> Item inItem(Text<N>& v)
{
    return {ItemType::text, v.data(), N};
}

} // namespace detail

// Formatted WRITE to a unit.
template <typename... Items>
Iostat write(const Control& control, Unit unit, std::string_view format, const Items&... items)
{
    const std::array<detail::Item, sizeof...(Items)> list{detail::outItem(items)...};
    return detail::writeStatement(unit, format, control, list.data(), list.size(),
                                  detail::listSignature(list));
}
template <typename... Items> Iostat write(Unit unit, std::string_view format, const Items&... items)
{
    return write(Control{}, unit, format, items...);
}

// Formatted READ from a unit.
template <typename... Items>
Iostat read(const Control& control, Unit unit, std::string_view format, Items&&... items)
{
    const std::array<detail::Item, sizeof...(Items)> list{detail::inItem(items)...};
    return detail::readStatement(unit, format, control, list.data(), list.size());
}
template <typename... Items> Iostat read(Unit unit, std::string_view format, Items&&... items)
{
    return read(Control{}, unit, format, items...);
}

// Free-form READ from a unit: each item takes the next value.
template <typename... Items> Iostat readList(const Control& control, Unit unit, Items&&... items)
{
    const std::array<detail::Item, sizeof...(Items)> list{detail::inItem(items)...};
    return detail::readListStatement(unit, control, list.data(), list.size());
}
template <typename... Items> Iostat readList(Unit unit, Items&&... items)
{
    return readList(Control{}, unit, items...);
}

// Formatted WRITE into a caller's text (an internal file of one record per `size()` characters).
template <typename... Items>
Iostat writeInternal(const Control& control, TextRef target, std::string_view format, const Items&... items)
{
    const std::array<detail::Item, sizeof...(Items)> list{detail::outItem(items)...};
    return detail::writeInternalStatement(target, format, control, list.data(), list.size(),
                                          detail::listSignature(list));
}
template <typename... Items>
Iostat writeInternal(TextRef target, std::string_view format, const Items&... items)
{
    return writeInternal(Control{}, target, format, items...);
}

// Formatted and free-form READ of a text: the end of the text is its end of file.
template <typename... Items>
Iostat readInternal(const Control& control, std::string_view source, std::string_view format,
                    Items&&... items)
{
    const std::array<detail::Item, sizeof...(Items)> list{detail::inItem(items)...};
    return detail::readInternalStatement(source, format, control, list.data(), list.size());
}
template <typename... Items>
Iostat readListInternal(const Control& control, std::string_view source, Items&&... items)
{
    const std::array<detail::Item, sizeof...(Items)> list{detail::inItem(items)...};
    return detail::readListInternalStatement(source, control, list.data(), list.size());
}
template <typename... Items> Iostat readListInternal(std::string_view source, Items&&... items)
{
    return readListInternal(Control{}, source, items...);
}

// OPEN specifiers; an empty text is an absent specifier. Values compare ignoring case.
struct OpenSpec
{
    std::string_view file, status, access, form, action, position, blank, delim, pad, endian, decimal,
        encoding, sign, round;
    long recl = 0;  // 0: absent
    long block = 0; // 0: absent
    Unit* newunit = nullptr;
};

Iostat open(const Control& control, Unit unit, const OpenSpec& specifiers);
inline Iostat open(Unit unit, const OpenSpec& specifiers)
{
    return open(Control{}, unit, specifiers);
}

// CLOSE with STATUS= "KEEP", "SAVE", "DELETE", "PRINT", "SUBMIT", "PRINT/DELETE" or "SUBMIT/DELETE".
Iostat close(const Control& control, Unit unit, std::string_view status = {});
inline Iostat close(Unit unit, std::string_view status = {})
{
    return close(Control{}, unit, status);
}

Iostat rewind(const Control& control, Unit unit);
inline Iostat rewind(Unit unit)
{
    return rewind(Control{}, unit);
}
Iostat flush(const Control& control, Unit unit);
inline Iostat flush(Unit unit)
{
    return flush(Control{}, unit);
}
Iostat endfile(const Control& control, Unit unit);
inline Iostat endfile(Unit unit)
{
    return endfile(Control{}, unit);
}
Iostat backspace(const Control& control, Unit unit);
inline Iostat backspace(Unit unit)
{
    return backspace(Control{}, unit);
}

// INQUIRE by unit: whether it is connected and to which name.
struct UnitInquiry
{
    bool opened = false;
    bool exists = false;
    std::string name;
};
Iostat inquire(const Control& control, Unit unit, UnitInquiry& answer);

// Start-up: reads the environment once ("UMASK", "TARNIX_RT_FLAGS"). Idempotent.
void startRuntime();

// Runs a main program inside the runtime: start-up, the program, then the orderly end.
[[noreturn]] void runMain(void (*program)());

// The orderly stop of the main program (STOP 'text'), and the end of the main program.
[[noreturn]] void _STOP(std::string_view text);
[[noreturn]] void _END();

// Options set by the program at run time; accepts the negative forms as well.
void setRuntimeFlags(std::string_view flags);

// Closes every unit, writing out what is buffered. Used by the stop paths and by environments
// that end the process themselves.
void closeAllUnits();

// Asks the main program to end from another thread. The program's next statement, or a read that
// a hook is holding, ends it as a STOP does: every unit closed, then the stop hook. A statement
// in progress always completes its record first.
void requestStop();
bool stopRequested();

} // namespace kestro::rt

// The hook table through which a window environment takes over standard input, output, error and
// window units. `unit` points at the unit number of the connection (a long).
extern "C" {
typedef long (*QuorReadHook)(char* buffer, long size, long* unit);
typedef long (*QuorWriteHook)(char* text, long* length, int descriptor, long* unit);
typedef long (*QuorStopHook)(long* code);
typedef long (*QuorYieldHook)(void);
typedef int (*QuorMakeWindowHook)(long* unit, char* name, char* access, int nameLength, long accessLength);
typedef int (*QuorCloseWindowHook)(long* unit, long* status);
typedef long (*QuorFileNameHook)(char* buffer, long* length, long* unit, bool* newFile);

// Installs the seven hooks; a null entry keeps the console stub of that slot.
void quor_f_init(QuorReadHook, QuorWriteHook, QuorStopHook, QuorYieldHook, QuorMakeWindowHook,
                 QuorCloseWindowHook, QuorFileNameHook);

// Sets runtime options from a program: the text and its length (-1: NUL-terminated).
void TARNIX_SET_RT_FLAGS(const char* flags, long length);
}
