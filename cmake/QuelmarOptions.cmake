# One target carries what every target of ours is compiled with: the warnings,
# the hardening of release builds, the sanitizers when they are asked for.
add_library(quelmar_options INTERFACE)
target_compile_features(quelmar_options INTERFACE cxx_std_20)
target_include_directories(quelmar_options INTERFACE "${PROJECT_SOURCE_DIR}")

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
              -Werror)
endif()

if(QUELMAR_SANITIZE)
  target_compile_options(quelmar_options INTERFACE -fsanitize=address,undefined
                                                   -fno-sanitize-recover=all
                                                   -fno-omit-frame-pointer)
  target_link_options(quelmar_options INTERFACE -fsanitize=address,undefined)
elseif(NOT CMAKE_BUILD_TYPE STREQUAL "Debug")
  target_compile_options(quelmar_options INTERFACE -fstack-protector-strong -U_FORTIFY_SOURCE
                                                   -D_FORTIFY_SOURCE=2)
  if(NOT WIN32)
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
  target_link_libraries(${name} PUBLIC quelmar_options)
endfunction()
