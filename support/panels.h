// support/panels.h: the 50-column panels through which every routine reports: errors framed in
// '*', warnings in '/', menus in '@'.
#pragma once

#include <string_view>

namespace kestro {

// Heads take the routine's own name, version (4 characters) and date (10 characters). Error and
// warning heads show the name alone, right-justified in 13 columns, and go to EOUT.
void errorhead(std::string_view name, std::string_view vers, std::string_view date);
void warninghead(std::string_view name, std::string_view vers, std::string_view date);
// Menu heads go to SOUT: prefix and name in 33 columns, "v" and version in 5, then the date.
void mainmenuhead(std::string_view name, std::string_view vers, std::string_view date);
void submenuhead(std::string_view name, std::string_view vers, std::string_view date);

// Tails of error and warning panels pause for Return on EIN first if LPAUSE is set; the end of
// input counts as Return.
void errortail00();
void warningtail00();
void menutail();

} // namespace kestro
