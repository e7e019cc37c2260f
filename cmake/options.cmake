# What every target is built with. The warnings are for our own targets: link to tolvanix_options.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)  # a test and the lint read them
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

add_library(tolvanix_options INTERFACE)
target_compile_options(tolvanix_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wshadow)

if(TOLVANIX_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
    -fno-omit-frame-pointer -g1)  # a stack trace needs lines, no variables
  # The sanitizers do not see an empty optional that is read.
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
  add_link_options(-fsanitize=address,undefined)
elseif(TOLVANIX_FUZZ)
  # Without the tests of every pointer: the address sanitizer sees what comes of a wrong one.
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
    -fno-sanitize=alignment,null,object-size,pointer-overflow,vptr -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=address,undefined)
elseif(CMAKE_SYSTEM_NAME STREQUAL "Windows")
  # No time stamp in the image: two builds of one commit give the same bytes.
  add_link_options(-Wl,--no-insert-timestamp)
  add_link_options(-fstack-protector-strong)  # what it calls; cmake/hardening.cmake asks for it
else()
  # A command-line tool is started thousands of times: bring the C++ runtime along instead of
  # having the loader find and relocate it at every start.
  target_link_options(tolvanix_options INTERFACE
    -static-libstdc++ -static-libgcc -Wl,--as-needed -Wl,--gc-sections)
  add_compile_options(-ffunction-sections -fdata-sections)
endif()
# Paths of the build machine stay out of the binaries.
cmake_path(GET CMAKE_CURRENT_LIST_DIR PARENT_PATH root)
add_compile_options(-ffile-prefix-map=${root}=.)
