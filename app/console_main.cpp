// app/console_main.cpp: kestrometry-console, the program on a plain standard input and output.
#include "app/kestrometry.h"
#include "runtime/io.h"

int main()
{
    kestro::rt::runMain(kestro::app::kestrometry);
}
