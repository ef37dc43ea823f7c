// runtime/prepared.h: what statements remember of the ones before them: the unit a record loop
// reads or writes, the recorded walk of an output format, and the last WRITE that replayed one.
#pragma once

#include "runtime/edits.h"
#include "runtime/format.h"
#include "runtime/io.h"
#include "runtime/options.h"
#include "runtime/units.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kestro::rt {

// The number of item types that listSignature keeps whole: a longer list is compared type by type.
inline constexpr std::size_t signatureItems = 20;

// Fields wider than this are checked against the room left in the record before they are built.
inline constexpr std::int32_t wideField = 4096;

// The walk of `program` for an output list of these items; recorded now if the program has none
// for their types yet. Null where a walk does not pay (long lists, huge expansions, failures).
const Walk* walkFor(FormatProgram& program, const detail::Item* items, std::size_t count,
                    std::uint64_t signature);

// The fixed layout of a walk with the items' fields filled in, at `base` (walk.layout.size()
// characters), under the modes a statement starts with.
void fillLayout(char* base, const Walk& walk, const detail::Item* items, const EditModes& modes);

// A whole record of a walk whose steps behind the layout are literals and texts only
// (`tailOfTexts`), built at the end of the unit's buffer with its record end. 0 or an errno.
int writeInPlace(FileControlBlock& fcb, const Walk& walk, const detail::Item* items, const EditModes& modes);

// Aw of a text into the `width` characters at `at`: right-justified on blanks, or its first
// `width` characters.
inline void fillText(char* at, std::size_t width, const char* text, std::size_t length)
{
    if (width <= length) {
        copyShort(at, text, width);
    } else {
        std::memset(at, ' ', width - length);
        copyShort(at + width - length, text, length);
    }
}

// Whether two texts are the same: a record loop's format string is compared with the remembered
// one on every statement, so the library's vector compare does the long ones.
inline bool sameText(std::string_view a, std::string_view b)
{
    const std::size_t n = a.size();
    if (n != b.size()) return false;
    if (n >= 16) return std::memcmp(a.data(), b.data(), n) == 0;
    return a == b;
}

// The block and the checks of the unit that the last statement of each direction found: a record
// loop reads one unit and writes another over and over. Holds while the epoch is unchanged.
struct RememberedUnit
{
    std::uint64_t epoch = 0; // 0: nothing remembered
    Unit unit = 0;
    FileControlBlock* fcb = nullptr;

    FileControlBlock* find(Unit u) const
    {
        return epoch == rememberedStatementEpoch && unit == u ? fcb : nullptr;
    }
    void remember(Unit u, FileControlBlock* block)
    {
        epoch = rememberedStatementEpoch;
        unit = u;
        fcb = block;
    }
};

// The last formatted WRITE to a unit that replayed a walk, for a record loop that runs the same
// statement again: the same unit, format text and item types go straight to the walk.
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
                  FormatProgram* p, const Walk* w);
};

// What statements remember, by the direction of the statement (0 read, 1 write) for the units.
struct RememberedStatements
{
    RememberedUnit units[2];
    PreparedWrite write;
};
extern RememberedStatements remembered;

} // namespace kestro::rt
