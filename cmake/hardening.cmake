# What distributions ask of programs that they ship; for the folders of what is shipped. The
# sanitizers look for more than this, and do not go together with all of it.
if(TOLVANIX_SANITIZE OR TOLVANIX_FUZZ)
  return()
endif()
add_compile_options(-fstack-protector-strong)
if(NOT WIN32)
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  add_compile_definitions($<$<CONFIG:Release,RelWithDebInfo>:_FORTIFY_SOURCE=2>)
  add_link_options(-Wl,-z,relro,-z,now $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:-pie>)
endif()
