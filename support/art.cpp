// support/art.cpp: the text pictures.
#include "support/art.h"

#include "runtime/io.h"
#include "support/sio.h"

#include <string_view>

namespace kestro {

namespace {

template <std::size_t N> void drawLines(std::string_view format, const std::string_view (&lines)[N])
{
    for (std::string_view line : lines)
        rt::write(iocom.SOUT, format, line);
}

// An empty panel line, the lines of the picture's parts through its indentation format, an empty line.
template <std::size_t... N> void draw(std::string_view format, const std::string_view (&... parts)[N])
{
    rt::write(iocom.SOUT, "(1x,a)", " ");
    (drawLines(format, parts), ...);
    rt::write(iocom.SOUT, "(1x,a)", " ");
}

// The faces differ only in the three lines of the mouth.
constexpr std::string_view faceTop[] = {
    "            &&&&&&&&&&&&            ", "        &&                &&        ",
    "     &&                      &&     ", "   &&                          &&   ",
    "  &&                            &&  ", " &&                              && ",
    " &        &&&          &&&        & ", "&&        &&&          &&&        &&",
    "&&                                &&", "&&                                &&",
    "&&                                &&",
};
constexpr std::string_view happyMouth[] = {
    " &     &&                  &&     & ",
    " &&      &&&            &&&      && ",
    "  &&        &&&&&&&&&&&&        &&  ",
};
constexpr std::string_view sorryMouth[] = {
    " &          &&&&&&&&&&&&          & ",
    " &&      &&&            &&&      && ",
    "  &&   &&                  &&   &&  ",
};
constexpr std::string_view faceChin[] = {
    "   &&                          &&   ",
    "     &&                      &&     ",
    "        &&                &&        ",
    "            &&&&&&&&&&&&            ",
};

} // namespace

void carmag33()
{
    static constexpr std::string_view lines[] = {
        "-------------", "| 8 | 1 | 6 |", "|---|---|---|", "| 3 | 5 | 7 |",
        "|---|---|---|", "| 4 | 9 | 2 |", "-------------",
    };
    draw("(19x,a)", lines);
}

void endfun1()
{
    static constexpr std::string_view lines[] = {
        "                \\|/ ____ \\|/    -     -     ", "       \\|/       @~/ ,. \\~@   o' \\,=./ `o   ",
        "      (o -)     /_( \\__/ )_\\     (o o)      ", "|-oo0--(_)--0oo----\\--U-/----oo0--(_)--0oo-|",
        "|                                          |",   "|            THAT'S ALL FOLKS !            |",
        "|                                          |",   "|------------------------------------------|",
    };
    draw("(4x,a)", lines);
}

void graben()
{
    static constexpr std::string_view lines[] = {
        "-+                                    +-",    "@@\\-----+                      +-----/@@",
        "@@@\\@@@@@\\---+            +---/@@@@@/@@@",  "====\\@@@@@\\@@@\\----------/@@@/@@@@@/====",
        "#####\\=====\\@@@\\@@@@@@@@/@@@/=====/#####", "######\\#####\\===\\@@@@@@/===/#####/######",
        "#######\\#####\\###\\====/###/#####/#######", "########\\#####\\###\\##/###/#####/########",
    };
    draw("(6x,a)", lines);
}

void happyface()
{
    draw("(8x,a)", faceTop, happyMouth, faceChin);
}

void horst()
{
    static constexpr std::string_view lines[] = {
        "           +----------------+           ",    "        +---\\@@@@@@@@@@@@@@/---+        ",
        "   +-----\\@@@\\@@@@@@@@@@@@/@@@/-----+   ",  "----\\@@@@@\\@@@\\==========/@@@/@@@@@/----",
        "@@@@@\\@@@@@\\===\\########/===/@@@@@/@@@@@", "@@@@@@\\=====\\###\\######/###/=====/@@@@@@",
        "=======\\#####\\###\\####/###/#####/=======", "########\\#####\\###\\##/###/#####/########",
    };
    draw("(6x,a)", lines);
}

void sator()
{
    static constexpr std::string_view lines[] = {
        "S A T O R", "A R E P O", "T E N E T", "O P E R A", "R O T A S",
    };
    draw("(21x,a)", lines);
}

void sorryface()
{
    draw("(8x,a)", faceTop, sorryMouth, faceChin);
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
        "          O          ", "       O     O       ", "    O     O     O    ", " O     O     O     O ",
        " =================== ", "   | |   | |   | |   ", "   | |   | |   | |   ", "   | |   | |   | |   ",
        "   | |   | |   | |   ", "   | |   | |   | |   ", " =================== ", "=====================",
    };
    draw("(15x,a)", lines);
}

void tetratemple2()
{
    static constexpr std::string_view lines[] = {
        "               O          ", "            O /   O       ", "         O   /       O    ",
        "      O     /           O ", "     /     O           / /", "    /   O     O       / / ",
        "   / O     O     O   / /  ", "  O     O     O     O /   ", "  ===================/    ",
        "    | |   | |   | | ||    ", "    | |   | |   | | ||===/", "    | |   | |   | |     / ",
        "   /| |   | |   | |    /  ", "  / | |   | |   | |   /   ", " /===================/    ",
        "=====================     ",
    };
    draw("(13x,a)", lines);
}

} // namespace kestro
