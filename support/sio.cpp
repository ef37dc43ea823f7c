// support/sio.cpp: set-up and report of the standard input/output record iocom.
#include "support/sio.h"

#include "runtime/io.h"
#include "support/panels.h"

#include <string_view>

namespace kestro {

Iocom iocom;

void initsio2(std::int32_t inter)
{
    constexpr std::string_view name = "initsio2";
    constexpr std::string_view vers = "4.1 ";
    constexpr std::string_view date = "2024-10-25";

    // CMDUNIT and CMDINDEX are left as they are: no command file is ever opened.
    iocom.SIN = 5;
    iocom.SOUT = 6;
    iocom.EIN = 5;
    iocom.EOUT = 6;
    iocom.LPLOT = false;
    iocom.LCMD = false;
    iocom.LWITO[0] = true;
    iocom.LWITO[1] = true;
    iocom.LWITO[2] = false;
    iocom.LPAUSE = true;

    submenuhead(name, vers, date);
    rt::write(iocom.SOUT, "(1x,a)", "INITIALIZING INPUT/OUTPUT");
    if (inter == 0) writesio(iocom.SOUT);
}

void writesio(std::int32_t unit)
{
    constexpr std::string_view name = "writesio";
    constexpr std::string_view vers = "2.1 ";
    constexpr std::string_view date = "2024-10-25";
    constexpr std::string_view unitLine = "(1x,a,1x,i2)";
    constexpr std::string_view flagLine = "(1x,a,1x,l2)";

    submenuhead(name, vers, date);
    rt::write(unit, "(1x,a)", "INPUT/OUTPUT SET UP:");
    rt::write(unit, unitLine, "standard  input unit        =", iocom.SIN);
    rt::write(unit, unitLine, "standard output unit        =", iocom.SOUT);
    rt::write(unit, unitLine, "error     input unit        =", iocom.EIN);
    rt::write(unit, unitLine, "error    output unit        =", iocom.EOUT);
    rt::write(unit, flagLine, "minimum output enabled      :", iocom.LWITO[0]);
    rt::write(unit, flagLine, "more    output enabled      :", iocom.LWITO[1]);
    rt::write(unit, flagLine, "maximum output enabled      :", iocom.LWITO[2]);
    rt::write(unit, flagLine, "command file open status    :", iocom.LCMD);
    if (iocom.LCMD) {
        rt::write(unit, unitLine, "command file input unit     =", iocom.CMDUNIT);
        rt::write(unit, unitLine, "command file input index    =", iocom.CMDINDEX);
    }
    rt::write(unit, flagLine, "plot    file open status    :", iocom.LPLOT);
    rt::write(unit, flagLine, "pause after warning or error:", iocom.LPAUSE);
    menutail();
}

} // namespace kestro
