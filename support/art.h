// support/art.h: the pictures that end the closing report, and the sad face of a fatal stop.
#pragma once

namespace kestro {

// Each writes its picture on SOUT between two empty panel lines, indented to stand centred in the
// 50 columns of the panels.
void carmag33();     // the 3 by 3 magic square
void endfun1();      // end of run cartoon
void graben();       // section of a graben
void happyface();    // a smiling face
void horst();        // section of a horst
void sator();        // word square
void sorryface();    // a sad face
void tetrakis();     // ten circles in a triangle
void tetratemple1(); // temple with a roof of ten circles, front view
void tetratemple2(); // the same temple in perspective

} // namespace kestro
