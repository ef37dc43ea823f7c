// runtime/options.cpp: the start-up options: "TARNIX_RT_FLAGS", "UMASK" and "TABSIZE".
#include "runtime/options.h"

#include <cstdlib>

namespace kestro::rt {

namespace {

// The byte order of unformatted files is fixed when the runtime is built.
constexpr bool byteOrderFixedAtBuild = true;

Options& theOptions = entry::options;

enum class Flag {
    defaultCarriage,
    fileprompt,
    vaxnames,
    unixnames,
    bigendian,
    littleendian,
    noleadzero,
    reclen32,
    f90nlexts,
    nounit9,
    printstop,
    connectunit9,
    maceol,
    doseol,
    unixeol,
    hexUppercase,
    relaxedInput,
    strictNanInput,
    // only from the program
    nodefaultcarriage,
    nofileprompt,
    leadzero,
    noreclen32,
    nof90nlexts,
    noprintstop,
    hexLowercase,
    norelaxedInput,
    nostrictNanInput,
};

struct FlagWord
{
    std::string_view text;
    Flag flag;
    bool negative;
};

constexpr FlagWord flagWords[] = {
    {"-defaultcarriage", Flag::defaultCarriage, false},
    {"-fileprompt", Flag::fileprompt, false},
    {"-vaxnames", Flag::vaxnames, false},
    {"-unixnames", Flag::unixnames, false},
    {"-bigendian", Flag::bigendian, false},
    {"-littleendian", Flag::littleendian, false},
    {"-noleadzero", Flag::noleadzero, false},
    {"-reclen32", Flag::reclen32, false},
    {"-f90nlexts", Flag::f90nlexts, false},
    {"-nounit9", Flag::nounit9, false},
    {"-printstop", Flag::printstop, false},
    {"-connectunit9", Flag::connectunit9, false},
    {"-maceol", Flag::maceol, false},
    {"-doseol", Flag::doseol, false},
    {"-unixeol", Flag::unixeol, false},
    {"-hex_uppercase", Flag::hexUppercase, false},
    {"-relaxed_input", Flag::relaxedInput, false},
    {"-strict_nan_input", Flag::strictNanInput, false},
    {"-nodefaultcarriage", Flag::nodefaultcarriage, true},
    {"-nofileprompt", Flag::nofileprompt, true},
    {"-leadzero", Flag::leadzero, true},
    {"-noreclen32", Flag::noreclen32, true},
    {"-nof90nlexts", Flag::nof90nlexts, true},
    {"-noprintstop", Flag::noprintstop, true},
    {"-hex_lowercase", Flag::hexLowercase, true},
    {"-norelaxed_input", Flag::norelaxedInput, true},
    {"-nostrict_nan_input", Flag::nostrictNanInput, true},
};

// Applies one option; a warning it draws goes to `warnings`.
void apply(Flag flag, std::string& warnings)
{
    Options& o = theOptions;
    switch (flag) {
    case Flag::defaultCarriage:
        o.defaultCarriage = true;
        break;
    case Flag::fileprompt:
        o.filePrompt = true;
        break;
    case Flag::vaxnames:
        o.vaxNames = true;
        break;
    case Flag::unixnames:
        o.unixNames = true;
        break;
    case Flag::bigendian:
        if (byteOrderFixedAtBuild)
            warnings += "Warning: compile time option overrides -bigendian\n";
        else
            o.bigEndian = true, o.littleEndian = false;
        break;
    case Flag::littleendian:
        if (byteOrderFixedAtBuild)
            warnings += "Warning: compile time option overrides -littleendian\n";
        else
            o.littleEndian = true, o.bigEndian = false;
        break;
    case Flag::noleadzero:
        o.noLeadZero = true;
        break;
    case Flag::reclen32:
        o.reclen32 = true;
        break;
    case Flag::f90nlexts:
        o.f90nlexts = true;
        break;
    case Flag::nounit9:
        o.connectUnit9 = false;
        break;
    case Flag::printstop:
        o.printStop = true;
        break;
    case Flag::connectunit9:
        o.connectUnit9 = true;
        break;
    case Flag::maceol:
        o.erecChr = '\r', o.nonErec = '\n', o.erecSize = 1;
        break;
    case Flag::doseol:
        o.erecChr = '\n', o.nonErec = '\r', o.erecSize = 2;
        break;
    case Flag::unixeol:
        o.erecChr = '\n', o.nonErec = '\r', o.erecSize = 1;
        break;
    case Flag::hexUppercase:
        o.hexUppercase = true;
        break;
    case Flag::relaxedInput:
        o.relaxedInput = true;
        break;
    case Flag::strictNanInput:
        o.strictNanInput = true;
        break;
    case Flag::nodefaultcarriage:
        o.defaultCarriage = false;
        break;
    case Flag::nofileprompt:
        o.filePrompt = false;
        break;
    case Flag::leadzero:
        o.noLeadZero = false;
        break;
    case Flag::noreclen32:
        o.reclen32 = false;
        break;
    case Flag::nof90nlexts:
        o.f90nlexts = false;
        break;
    case Flag::noprintstop:
        o.printStop = false;
        break;
    case Flag::hexLowercase:
        o.hexUppercase = false;
        break;
    case Flag::norelaxedInput:
        o.relaxedInput = false;
        break;
    case Flag::nostrictNanInput:
        o.strictNanInput = false;
        break;
    }
}

std::string_view skipBlanks(std::string_view text)
{
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || text[i] == '\t'))
        ++i;
    return text.substr(i);
}

} // namespace

std::string parseFlags(std::string_view text, bool allowNegative)
{
    std::string warnings;
    forgetRememberedStatements(); // unit 9 may map elsewhere, and the edit modes change
    text = skipBlanks(text);
    while (!text.empty()) {
        const FlagWord* match = nullptr;
        for (const FlagWord& word : flagWords) {
            if ((!word.negative || allowNegative) && text.substr(0, word.text.size()) == word.text) {
                if (!match || word.text.size() > match->text.size()) match = &word;
            }
        }
        if (!match) {
            warnings += "Warning: unknown runtime option ";
            warnings += text;
            warnings += '\n';
            return warnings;
        }
        apply(match->flag, warnings);
        text = skipBlanks(text.substr(match->text.size()));
    }
    return warnings;
}

std::string _parse_env_args()
{
    if (const char* mask = std::getenv("UMASK"); mask && *mask) {
        char* end = nullptr;
        const long value = std::strtol(mask, &end, 8);
        if (end != mask && value >= 0) {
            theOptions.umaskSet = true;
            theOptions.umask = static_cast<mode_t>(value & 0777);
        }
    }
    const char* flags = std::getenv("TARNIX_RT_FLAGS");
    return flags && *flags ? parseFlags(flags, false) : std::string();
}

int _gettabsize()
{
    static const int size = [] {
        const char* text = std::getenv("TABSIZE");
        if (!text || !*text) return 8;
        const int value = std::atoi(text);
        return value > 0 ? value : 8;
    }();
    return size;
}

void _f_init_iolib_mutex() {}

} // namespace kestro::rt
