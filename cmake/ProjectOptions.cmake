# Language standard, warnings and sanitizers of all targets.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 12)
  message(FATAL_ERROR "The compiler is too old: GCC 12 or newer is needed, this is ${CMAKE_CXX_COMPILER_VERSION}.")
endif()

set(SNMPSUBAGENT_SANITIZE "" CACHE STRING
    "Sanitizers, as for -fsanitize (for example address,undefined or thread)")

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
                    -Wformat=2 -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 reports a false overlap in every "literal" + std::string.
  add_compile_options(-Wno-restrict)
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  # Fakes in tests define all functions of a class but may not use all of its fields.
  # Some generated string literals are longer than the standard guarantees.
  add_compile_options(-Wno-unused-private-field -Wno-overlength-strings)
endif()
if(SNMPSUBAGENT_SANITIZE)
  add_compile_options(-fsanitize=${SNMPSUBAGENT_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${SNMPSUBAGENT_SANITIZE})
  if(SNMPSUBAGENT_SANITIZE MATCHES "thread")
    # GCC warns that ThreadSanitizer ignores std::atomic_thread_fence, which is not used here.
    add_compile_options(-Wno-tsan)
  endif()
endif()

# Hardening, because the daemon runs as root: address tables are read-only after start-up, and a buffer overflow aborts
# the program. Sanitizers detect more than these checks, so builds with sanitizers omit them.
add_link_options(-Wl,-z,relro,-z,now)
if(NOT SNMPSUBAGENT_SANITIZE)
  add_compile_options(-fstack-protector-strong -fstack-clash-protection
                      "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()

option(SNMPSUBAGENT_COVERAGE "Build for line coverage" OFF)
if(SNMPSUBAGENT_COVERAGE)
  # The daemon exits with _exit, which would lose the counts.
  add_library(count_at_exit OBJECT "${CMAKE_CURRENT_LIST_DIR}/countAtExit.cpp")
  link_libraries(count_at_exit -Wl,--wrap=_exit)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()
