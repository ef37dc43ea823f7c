// support/panels.cpp: heads and tails of the error, warning and menu panels.
#include "support/panels.h"

#include "runtime/io.h"
#include "support/prompts.h"
#include "support/sio.h"

#include <string>

namespace kestro {

namespace {

constexpr std::string_view errorRule = "(1x,50('*'))";
constexpr std::string_view errorCentred = "(1x,'***',19x,a6,19x,'***')";
constexpr std::string_view warningRule = "(1x,50('/'))";
constexpr std::string_view menuRule = "(1x,50('@'))";

void menuhead(std::string_view prefix, std::string_view name, std::string_view vers, std::string_view date)
{
    const Text<33> head(std::string(prefix) + std::string(name));
    const Text<6> version("v" + std::string(significantPart(vers)));

    rt::write(iocom.SOUT, menuRule);
    rt::write(iocom.SOUT, "(1x,a33,1x,a5,1x,a10)", head, significantPart(version), date);
    rt::write(iocom.SOUT, "(1x,1('@'),49('='))");
}

// Waits for Return on EIN. A failed read asks again; the end of input goes on.
void pauseForReturn()
{
    if (!iocom.LPAUSE) return;
    const std::string_view prompt =
        iocom.LCMD ? "===> HIT RETURN TO RESUME COMMANDS" : "===> HIT RETURN TO CONTINUE";
    for (;;) {
        rt::write(iocom.EOUT, "(5(1x,a))", prompt);
        Text<1> answer;
        if (rt::read(rt::onEnd | rt::onError, iocom.EIN, "(a)", answer) != rt::Outcome::error) return;
    }
}

} // namespace

void errorhead(std::string_view name, std::string_view /*vers*/, std::string_view /*date*/)
{
    rt::write(iocom.EOUT, errorRule);
    rt::write(iocom.EOUT, errorRule);
    rt::write(iocom.EOUT, errorCentred, " ");
    rt::write(iocom.EOUT, "(1x,'***',10x,'subroutine ',a13,10x,'***')", name);
    rt::write(iocom.EOUT, errorCentred, "ERROR ");
    rt::write(iocom.EOUT, errorCentred, " ");
    rt::write(iocom.EOUT, errorRule);
    rt::write(iocom.EOUT, errorRule);
}

void warninghead(std::string_view name, std::string_view /*vers*/, std::string_view /*date*/)
{
    rt::write(iocom.EOUT, warningRule);
    rt::write(iocom.EOUT, "(1x,'///',10x,'subroutine ',a13,10x,'///')", name);
    rt::write(iocom.EOUT, "(1x,'///',18x,a8,18x,'///')", "WARNING ");
    rt::write(iocom.EOUT, warningRule);
}

void mainmenuhead(std::string_view name, std::string_view vers, std::string_view date)
{
    menuhead("@ main program ", name, vers, date);
}

void submenuhead(std::string_view name, std::string_view vers, std::string_view date)
{
    menuhead("@ subroutine ", name, vers, date);
}

void errortail00()
{
    pauseForReturn();
    rt::write(iocom.EOUT, errorRule);
    rt::write(iocom.EOUT, "(1x,'***',17x,a10,17x,'***')", "ERROR END ");
    rt::write(iocom.EOUT, errorRule);
}

void warningtail00()
{
    pauseForReturn();
    rt::write(iocom.EOUT, warningRule);
    rt::write(iocom.EOUT, "(1x,'///',16x,a12,16x,'///')", "WARNING END ");
    rt::write(iocom.EOUT, warningRule);
}

void menutail()
{
    rt::write(iocom.SOUT, menuRule);
}

} // namespace kestro
