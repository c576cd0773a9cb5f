# What linking a library of ours brings to others: the language and the project's
# root as include path.
add_library(quelmar_root INTERFACE)
target_compile_features(quelmar_root INTERFACE cxx_std_20)
target_include_directories(quelmar_root INTERFACE "${PROJECT_SOURCE_DIR}")

# What only our own targets are compiled with: the warnings, the hardening of
# optimised builds, the sanitizers when they are asked for.
add_library(quelmar_options INTERFACE)

if(PROJECT_IS_TOP_LEVEL)
  target_compile_options(
    quelmar_options
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Wconversion
              -Wsign-conversion
              -Wdouble-promotion
              -Wformat=2
              -Wimplicit-fallthrough
              -Wnon-virtual-dtor
              -Woverloaded-virtual
              -Wshadow
              -Wundef
              -Wold-style-cast
              -Wcast-align
              -Wnull-dereference
              # People who only want to run the program should not be stopped by what a
              # compiler that we have not tried warns of. (The optimiser of GCC 12 takes
              # a plain operator+ of strings for overlapping copies at -O3.)
              $<IF:$<CONFIG:Release>,$<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>,-Werror>)
endif()

include(CheckCXXCompilerFlag)
check_cxx_compiler_flag(-fcf-protection QUELMAR_HAS_CF_PROTECTION)

if(QUELMAR_SANITIZE)
  # Some optimisation, or the tests that read large files take minutes.
  target_compile_options(quelmar_options INTERFACE -O1 -fsanitize=address,undefined
                                                   -fno-sanitize-recover=all
                                                   -fno-omit-frame-pointer)
  target_link_options(quelmar_options INTERFACE -fsanitize=address,undefined)
elseif(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  target_compile_options(quelmar_options INTERFACE -fstack-protector-strong -U_FORTIFY_SOURCE
                                                   -D_FORTIFY_SOURCE=2)
  # Returns and calls that were bent elsewhere end the program, on processors that can tell.
  if(QUELMAR_HAS_CF_PROTECTION)
    target_compile_options(quelmar_options INTERFACE -fcf-protection)
  endif()
  if(WIN32)
    # There the protector is a library of its own.
    target_link_options(quelmar_options INTERFACE -fstack-protector-strong)
  else()
    target_link_options(quelmar_options INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
  endif()
endif()
target_compile_definitions(quelmar_options INTERFACE _GLIBCXX_ASSERTIONS)
if(QUELMAR_FUZZ)
  target_compile_options(quelmar_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined
                                                   -fno-sanitize-recover=all)
  target_link_options(quelmar_options INTERFACE -fsanitize=address,undefined)
endif()

# quelmar_folder(NAME SOURCES... ): the static library of one folder.
function(quelmar_folder name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC quelmar_root PRIVATE quelmar_options)
endfunction()

# quelmar_whole_folder(NAME): the same of all that lies there, so that a new file needs no line.
function(quelmar_whole_folder name)
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
  quelmar_folder(${name} ${sources})
endfunction()
