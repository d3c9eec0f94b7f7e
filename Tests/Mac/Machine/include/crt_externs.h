// How a Mac program finds its arguments; declared for the tests' own build, which answers itself.
#pragma once

extern "C" {
int* _NSGetArgc(void);
char*** _NSGetArgv(void);
}
