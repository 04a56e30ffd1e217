// MORVELUNE_API: marks what leaves a shared library. Everything else stays inside.
#pragma once

// The build defines MORVELUNE_SHARED for a shared library and for whoever links it.
#ifdef MORVELUNE_SHARED
#define MORVELUNE_API __attribute__((visibility("default")))
#else
#define MORVELUNE_API
#endif
