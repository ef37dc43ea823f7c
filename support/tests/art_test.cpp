// support/tests/art_test.cpp: the pictures, line for line with their indentation.
#include "support/art.h"

#include "support_console.h"

namespace kestro {
namespace {

using Art = SupportConsole;

// Each picture: an empty panel line ("(1x,a)" of a blank), its lines behind the indentation of
// its format, another empty panel line.
const std::vector<std::string> carmag33Lines{
    "  |",
    "                   -------------|",
    "                   | 8 | 1 | 6 ||",
    "                   |---|---|---||",
    "                   | 3 | 5 | 7 ||",
    "                   |---|---|---||",
    "                   | 4 | 9 | 2 ||",
    "                   -------------|",
    "  |",
};

const std::vector<std::string> endfun1Lines{
    "  |",
    "                    \\|/ ____ \\|/    -     -     |",
    "           \\|/       @~/ ,. \\~@   o' \\,=./ `o   |",
    "          (o -)     /_( \\__/ )_\\     (o o)      |",
    "    |-oo0--(_)--0oo----\\--U-/----oo0--(_)--0oo-||",
    "    |                                          ||",
    "    |            THAT'S ALL FOLKS !            ||",
    "    |                                          ||",
    "    |------------------------------------------||",
    "  |",
};

const std::vector<std::string> grabenLines{
    "  |",
    "      -+                                    +-|",
    "      @@\\-----+                      +-----/@@|",
    "      @@@\\@@@@@\\---+            +---/@@@@@/@@@|",
    "      ====\\@@@@@\\@@@\\----------/@@@/@@@@@/====|",
    "      #####\\=====\\@@@\\@@@@@@@@/@@@/=====/#####|",
    "      ######\\#####\\===\\@@@@@@/===/#####/######|",
    "      #######\\#####\\###\\====/###/#####/#######|",
    "      ########\\#####\\###\\##/###/#####/########|",
    "  |",
};

const std::vector<std::string> happyfaceLines{
    "  |",
    "                    &&&&&&&&&&&&            |",
    "                &&                &&        |",
    "             &&                      &&     |",
    "           &&                          &&   |",
    "          &&                            &&  |",
    "         &&                              && |",
    "         &        &&&          &&&        & |",
    "        &&        &&&          &&&        &&|",
    "        &&                                &&|",
    "        &&                                &&|",
    "        &&                                &&|",
    "         &     &&                  &&     & |",
    "         &&      &&&            &&&      && |",
    "          &&        &&&&&&&&&&&&        &&  |",
    "           &&                          &&   |",
    "             &&                      &&     |",
    "                &&                &&        |",
    "                    &&&&&&&&&&&&            |",
    "  |",
};

const std::vector<std::string> horstLines{
    "  |",
    "                 +----------------+           |",
    "              +---\\@@@@@@@@@@@@@@/---+        |",
    "         +-----\\@@@\\@@@@@@@@@@@@/@@@/-----+   |",
    "      ----\\@@@@@\\@@@\\==========/@@@/@@@@@/----|",
    "      @@@@@\\@@@@@\\===\\########/===/@@@@@/@@@@@|",
    "      @@@@@@\\=====\\###\\######/###/=====/@@@@@@|",
    "      =======\\#####\\###\\####/###/#####/=======|",
    "      ########\\#####\\###\\##/###/#####/########|",
    "  |",
};

const std::vector<std::string> satorLines{
    "  |",
    "                     S A T O R|",
    "                     A R E P O|",
    "                     T E N E T|",
    "                     O P E R A|",
    "                     R O T A S|",
    "  |",
};

const std::vector<std::string> sorryfaceLines{
    "  |",
    "                    &&&&&&&&&&&&            |",
    "                &&                &&        |",
    "             &&                      &&     |",
    "           &&                          &&   |",
    "          &&                            &&  |",
    "         &&                              && |",
    "         &        &&&          &&&        & |",
    "        &&        &&&          &&&        &&|",
    "        &&                                &&|",
    "        &&                                &&|",
    "        &&                                &&|",
    "         &          &&&&&&&&&&&&          & |",
    "         &&      &&&            &&&      && |",
    "          &&   &&                  &&   &&  |",
    "           &&                          &&   |",
    "             &&                      &&     |",
    "                &&                &&        |",
    "                    &&&&&&&&&&&&            |",
    "  |",
};

const std::vector<std::string> tetrakisLines{
    "  |",
    "                         O      |",
    "                       O   O    |",
    "                     O   O   O  |",
    "                   O   O   O   O|",
    "  |",
};

const std::vector<std::string> tetratemple1Lines{
    "  |",
    "                         O          |",
    "                      O     O       |",
    "                   O     O     O    |",
    "                O     O     O     O |",
    "                =================== |",
    "                  | |   | |   | |   |",
    "                  | |   | |   | |   |",
    "                  | |   | |   | |   |",
    "                  | |   | |   | |   |",
    "                  | |   | |   | |   |",
    "                =================== |",
    "               =====================|",
    "  |",
};

const std::vector<std::string> tetratemple2Lines{
    "  |",
    "                            O          |",
    "                         O /   O       |",
    "                      O   /       O    |",
    "                   O     /           O |",
    "                  /     O           / /|",
    "                 /   O     O       / / |",
    "                / O     O     O   / /  |",
    "               O     O     O     O /   |",
    "               ===================/    |",
    "                 | |   | |   | | ||    |",
    "                 | |   | |   | | ||===/|",
    "                 | |   | |   | |     / |",
    "                /| |   | |   | |    /  |",
    "               / | |   | |   | |   /   |",
    "              /===================/    |",
    "             =====================     |",
    "  |",
};
TEST_F(Art, EachPictureIsDrawnLineForLineBetweenTwoEmptyLines)
{
    struct Case
    {
        const char* name;
        void (*draw)();
        const std::vector<std::string>& expected;
    };
    const Case cases[]{
        {"carmag33", carmag33, carmag33Lines},
        {"endfun1", endfun1, endfun1Lines},
        {"graben", graben, grabenLines},
        {"happyface", happyface, happyfaceLines},
        {"horst", horst, horstLines},
        {"sator", sator, satorLines},
        {"sorryface", sorryface, sorryfaceLines},
        {"tetrakis", tetrakis, tetrakisLines},
        {"tetratemple1", tetratemple1, tetratemple1Lines},
        {"tetratemple2", tetratemple2, tetratemple2Lines},
    };
    for (const Case& c : cases) {
        console.screen.clear();
        c.draw();
        const std::vector<std::string> shown = screen();
        EXPECT_EQ(shown, c.expected) << c.name;
        // Indentation and picture stay inside the blank and 50 columns of a panel line.
        for (const std::string& line : shown) EXPECT_LE(line.size(), 1 + 50 + 1u) << c.name << ": " << line;
    }
}

}  // namespace
}  // namespace kestro
