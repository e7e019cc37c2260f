// Starts a program as a C program does.
#pragma once

namespace tolvanix::test {

// By the C library's own spawn function, which on Windows gives the child its table of open files
// too. Arguments up to a null, the program first, none with blanks or quotes. The exit code, or -1.
int spawnAndWait(char** arguments);

}  // namespace tolvanix::test
