// support/fileopen.cpp: opef2 and path2basename.
#include "support/fileopen.h"

#include "runtime/io.h"
#include "support/art.h"
#include "support/panels.h"
#include "support/prompts.h"
#include "support/sio.h"

#include <string>

namespace kestro {

namespace {

constexpr std::string_view lines = "(3(1x,a))";

bool opensOn(std::int32_t unit, std::string_view name, std::string_view status)
{
    // Trailing blanks are no part of the name; a blank name (no FILE= at all) is a bad name.
    const std::size_t end = name.find_last_not_of(' ');
    if (end == std::string_view::npos) return false;
    rt::OpenSpec specifiers;
    specifiers.file = name.substr(0, end + 1);
    specifiers.status = status;
    return rt::open(rt::onError, unit, specifiers).ok();
}

void couldNotOpen(std::string_view label, std::string_view name, std::int32_t unit, std::string_view last)
{
    rt::write(iocom.SOUT, lines, "COULD NOT OPEN", label, "FILE");
    rt::write(iocom.SOUT, lines, "File name =", name);
    rt::write(iocom.SOUT, "(1x,a,1x,i4)", "for unit =", unit);
    rt::write(iocom.SOUT, lines, last);
}

} // namespace

void opef2(TextRef filename, std::string_view label, std::int32_t unit, std::string_view status,
           std::int32_t mode)
{
    constexpr std::string_view name = "opef2";
    constexpr std::string_view vers = "5.3 ";
    constexpr std::string_view date = "2024-10-22";
    constexpr std::int32_t askingMode = 0;
    constexpr std::int32_t silentMode = 7;

    Text<250> file(filename.view());
    const std::string_view shownLabel = significantPart(label);
    const Text<40> question(std::string(shownLabel) + " file name");

    for (;;) {
        if (mode != silentMode) {
            submenuhead(name, vers, date);
            rt::write(iocom.SOUT, lines, "OPENING", shownLabel, "FILE");
            menutail();
        }
        if (mode == askingMode) {
            std::int32_t status0 = 0;
            inchardef(file.ref(), question, file, status0); // Return keeps the proposed name
        }
        if (opensOn(unit, file, status)) break;

        if (mode != askingMode) {
            errorhead(name, vers, date);
            couldNotOpen(shownLabel, file, unit, "===> STOPPING EXECUTION");
            errortail00();
            sorryface();
            rt::_STOP(" ");
        }
        warninghead(name, vers, date);
        couldNotOpen(shownLabel, file, unit, "===> RETRYING");
        warningtail00();
    }

    std::int32_t n = 0;
    path2basename(n, filename, file);
}

void path2basename(std::int32_t& n, TextRef base, std::string_view path)
{
    std::int32_t first = 0;
    std::int32_t last = 0;
    textlen(first, last, path);
    if (first == last) {
        base.assign(path.substr(first - 1, 1));
        n = 1;
        return;
    }
    // The last character is not looked at: "a/b/" gives "b/".
    std::int32_t start = first;
    for (std::int32_t i = last - 1; i >= first; --i) {
        if (path[i - 1] == '/') {
            start = i + 1;
            break;
        }
    }
    base.assign(path.substr(start - 1, last - start + 1));
    n = last - start + 1;
}

} // namespace kestro
