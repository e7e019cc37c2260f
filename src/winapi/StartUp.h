// What the layer under the program needs before all else.
#pragma once

namespace tolvanix::winapi {

#ifdef _WIN32
inline void startUp() {}
#else
// Makes this process behave as one of the platform: signals, standard output, and the name of the
// presented computer, which is meant where the program was started. Called first of all in main,
// since the program changes its directory. Throws nothing and takes no memory for good.
void startUp();
#endif

}  // namespace tolvanix::winapi
