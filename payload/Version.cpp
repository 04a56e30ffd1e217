#include "morvelune/MorveluneExtension.h"

const unsigned char MorveluneExtensionVersionString[] =
    "@(#)PROGRAM:MorveluneExtension  PROJECT:Morvelune-1\n";
const double MorveluneExtensionVersionNumber = 1.0;
