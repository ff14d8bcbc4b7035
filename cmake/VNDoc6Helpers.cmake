# Functions that several of the build's files use.

# Sets `result` to the files that match `pattern` in the given folders of src, tests included.
function(vndoc6_glob result pattern)
  set(patterns ${ARGN})
  list(TRANSFORM patterns REPLACE "(.+)" "${PROJECT_SOURCE_DIR}/src/\\1/${pattern}")
  file(GLOB files CONFIGURE_DEPENDS ${patterns})
  set(${result} ${files} PARENT_SCOPE)
endfunction()

# The same in every folder that does not belong to one platform. Files that end in _posix or _windows
# are for that platform: x_posix.cpp and x_windows.cpp are two versions of one thing.
function(vndoc6_model_files result pattern)
  vndoc6_glob(files ${pattern} "*")
  list(FILTER files EXCLUDE REGEX "/src/com/")
  if(WIN32)
    list(FILTER files EXCLUDE REGEX "_posix\\.(cpp|h)$")
  else()
    list(FILTER files EXCLUDE REGEX "_windows\\.(cpp|h)$")
  endif()
  set(${result} ${files} PARENT_SCOPE)
endfunction()

# clang-tidy takes part in the compilation, so it looks at what changed and at nothing else. The
# target `lint` compiles everything that it looks at.
function(vndoc6_lint target)
  if(NOT VNDOC6_TIDY)
    return()
  endif()
  find_program(VNDOC6_CLANG_TIDY clang-tidy REQUIRED)
  set_target_properties(${target} PROPERTIES CXX_CLANG_TIDY "${VNDOC6_CLANG_TIDY};--quiet")
  if(NOT TARGET lint)
    add_custom_target(lint)
  endif()
  add_dependencies(lint ${target})
endfunction()

# Compiles anew only what changed, also after the build folder was deleted.
macro(vndoc6_use_ccache)
  find_program(VNDOC6_CCACHE ccache)
  if(VNDOC6_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${VNDOC6_CCACHE})
  endif()
endmacro()

# Warnings concern only those who work on this project; whoever adds it to a tree of their own
# keeps their own flags. The presets make warnings errors.
function(vndoc6_warnings target)
  if(NOT PROJECT_IS_TOP_LEVEL)
    return()
  endif()
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4 /permissive-)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                             -Wno-sign-conversion)
    # GCC 12 takes the text in an optimised std::variant for uninitialised. Clang and the sanitizers
    # look after what is.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
    endif()
  endif()
endfunction()

# ASan brings the leak sanitizer along. Fuzz targets need every file instrumented for coverage.
function(vndoc6_sanitize target)
  if(NOT VNDOC6_SANITIZE)
    return()
  endif()
  set(sanitizers address,undefined)
  if(VNDOC6_FUZZ)
    target_compile_options(
      ${target} PRIVATE -fsanitize=fuzzer-no-link
                        -fsanitize-coverage-ignorelist=${PROJECT_SOURCE_DIR}/fuzz/uninstrumented.txt)
  endif()
  target_compile_options(${target} PRIVATE -fsanitize=${sanitizers} -fno-sanitize-recover=all
                                           -fno-omit-frame-pointer)
  target_link_options(${target} PUBLIC -fsanitize=${sanitizers})
endfunction()

# The thread sanitizer goes with no other.
function(vndoc6_sanitize_threads target)
  if(VNDOC6_SANITIZE_THREADS)
    target_compile_options(${target} PRIVATE -fsanitize=thread -fno-omit-frame-pointer)
    target_link_options(${target} PUBLIC -fsanitize=thread)
  endif()
endfunction()

# For the copies of the libraries that are built to be tested once. Each test keeps its own helpers'
# names to itself, so tests are compiled one by one.
function(vndoc6_unity target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${VNDOC6_UNITY} UNITY_BUILD_BATCH_SIZE 12)
  # The platform's header makes macros of names that the model has.
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "_windows\\.cpp$|/src/com/")
  set_source_files_properties(${sources} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
endfunction()

# What all targets of the project have in common.
function(vndoc6_configure target)
  set_target_properties(${target} PROPERTIES CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
  if(MSVC)
    target_compile_options(${target} PRIVATE /utf-8)
  endif()
  if(VNDOC6_LTO)
    set_target_properties(${target} PROPERTIES INTERPROCEDURAL_OPTIMIZATION ON)
  endif()
  vndoc6_warnings(${target})
  vndoc6_sanitize(${target})
  vndoc6_sanitize_threads(${target})
endfunction()

# An executable of the project that uses the model.
function(vndoc6_program name)
  add_executable(${name} ${ARGN})
  vndoc6_configure(${name})
  target_link_libraries(${name} PRIVATE vndoc6)
endfunction()

# For what belongs to the library itself: its tests, tools and doors see its inside.
function(vndoc6_inside target)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src)
endfunction()
