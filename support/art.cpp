// support/art.cpp: the text pictures.
#include "support/art.h"

#include "runtime/io.h"
#include "support/sio.h"

#include <string_view>

namespace kestro {

namespace {

// An empty panel line, the lines of the picture through its indentation format, an empty line.
template <std::size_t N>
void draw(std::string_view format, const std::string_view (&lines)[N])
{
    rt::write(iocom.SOUT, "(1x,a)", " ");
    for (std::string_view line : lines) rt::write(iocom.SOUT, format, line);
    rt::write(iocom.SOUT, "(1x,a)", " ");
}

}  // namespace

void carmag33()
{
    static constexpr std::string_view lines[] = {
        "-------------",
        "| 8 | 1 | 6 |",
        "|---|---|---|",
        "| 3 | 5 | 7 |",
        "|---|---|---|",
        "| 4 | 9 | 2 |",
        "-------------",
    };
    draw("(19x,a)", lines);
}

void endfun1()
{
    static constexpr std::string_view lines[] = {
        "                \\|/ ____ \\|/    -     -     ",
        "       \\|/       @~/ ,. \\~@   o' \\,=./ `o   ",
        "      (o -)     /_( \\__/ )_\\     (o o)      ",
        "|-oo0--(_)--0oo----\\--U-/----oo0--(_)--0oo-|",
        "|                                          |",
        "|            THAT'S ALL FOLKS !            |",
        "|                                          |",
        "|------------------------------------------|",
    };
    draw("(4x,a)", lines);
}

void graben()
{
    static constexpr std::string_view lines[] = {
        "-+                                    +-",
        "@@\\-----+                      +-----/@@",
        "@@@\\@@@@@\\---+            +---/@@@@@/@@@",
        "====\\@@@@@\\@@@\\----------/@@@/@@@@@/====",
        "#####\\=====\\@@@\\@@@@@@@@/@@@/=====/#####",
        "######\\#####\\===\\@@@@@@/===/#####/######",
        "#######\\#####\\###\\====/###/#####/#######",
        "########\\#####\\###\\##/###/#####/########",
    };
    draw("(6x,a)", lines);
}

void happyface()
{
    static constexpr std::string_view lines[] = {
        "            &&&&&&&&&&&&            ",
        "        &&                &&        ",
        "     &&                      &&     ",
        "   &&                          &&   ",
        "  &&                            &&  ",
        " &&                              && ",
        " &        &&&          &&&        & ",
        "&&        &&&          &&&        &&",
        "&&                                &&",
        "&&                                &&",
        "&&                                &&",
        " &     &&                  &&     & ",
        " &&      &&&            &&&      && ",
        "  &&        &&&&&&&&&&&&        &&  ",
        "   &&                          &&   ",
        "     &&                      &&     ",
        "        &&                &&        ",
        "            &&&&&&&&&&&&            ",
    };
    draw("(8x,a)", lines);
}

void horst()
{
    static constexpr std::string_view lines[] = {
        "           +----------------+           ",
        "        +---\\@@@@@@@@@@@@@@/---+        ",
        "   +-----\\@@@\\@@@@@@@@@@@@/@@@/-----+   ",
        "----\\@@@@@\\@@@\\==========/@@@/@@@@@/----",
        "@@@@@\\@@@@@\\===\\########/===/@@@@@/@@@@@",
        "@@@@@@\\=====\\###\\######/###/=====/@@@@@@",
        "=======\\#####\\###\\####/###/#####/=======",
        "########\\#####\\###\\##/###/#####/########",
    };
    draw("(6x,a)", lines);
}

void sator()
{
    static constexpr std::string_view lines[] = {
        "S A T O R",
        "A R E P O",
        "T E N E T",
        "O P E R A",
        "R O T A S",
    };
    draw("(21x,a)", lines);
}

void sorryface()
{
    static constexpr std::string_view lines[] = {
        "            &&&&&&&&&&&&            ",
        "        &&                &&        ",
        "     &&                      &&     ",
        "   &&                          &&   ",
        "  &&                            &&  ",
        " &&                              && ",
        " &        &&&          &&&        & ",
        "&&        &&&          &&&        &&",
        "&&                                &&",
        "&&                                &&",
        "&&                                &&",
        " &          &&&&&&&&&&&&          & ",
        " &&      &&&            &&&      && ",
        "  &&   &&                  &&   &&  ",
        "   &&                          &&   ",
        "     &&                      &&     ",
        "        &&                &&        ",
        "            &&&&&&&&&&&&            ",
    };
    draw("(8x,a)", lines);
}

void tetrakis()
{
    static constexpr std::string_view lines[] = {
        "      O      ",
        "    O   O    ",
        "  O   O   O  ",
        "O   O   O   O",
    };
    draw("(19x,a)", lines);
}

void tetratemple1()
{
    static constexpr std::string_view lines[] = {
        "          O          ",
        "       O     O       ",
        "    O     O     O    ",
        " O     O     O     O ",
        " =================== ",
        "   | |   | |   | |   ",
        "   | |   | |   | |   ",
        "   | |   | |   | |   ",
        "   | |   | |   | |   ",
        "   | |   | |   | |   ",
        " =================== ",
        "=====================",
    };
    draw("(15x,a)", lines);
}

void tetratemple2()
{
    static constexpr std::string_view lines[] = {
        "               O          ",
        "            O /   O       ",
        "         O   /       O    ",
        "      O     /           O ",
        "     /     O           / /",
        "    /   O     O       / / ",
        "   / O     O     O   / /  ",
        "  O     O     O     O /   ",
        "  ===================/    ",
        "    | |   | |   | | ||    ",
        "    | |   | |   | | ||===/",
        "    | |   | |   | |     / ",
        "   /| |   | |   | |    /  ",
        "  / | |   | |   | |   /   ",
        " /===================/    ",
        "=====================     ",
    };
    draw("(13x,a)", lines);
}

}  // namespace kestro

