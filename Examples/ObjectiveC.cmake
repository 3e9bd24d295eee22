# Real Objective-C and Objective-C++ on Linux: clang compiles them, for the runtime that the rest is
# linked with. A phone needs none of this.

if(NOT CMAKE_CROSSCOMPILING)
  find_program(ZIB_CLANG NAMES clang REQUIRED)
  find_program(ZIB_CLANGXX NAMES clang++ REQUIRED)
  set(CMAKE_OBJC_COMPILER ${ZIB_CLANG})
  set(CMAKE_OBJCXX_COMPILER ${ZIB_CLANGXX})
endif()
set(CMAKE_OBJCXX_STANDARD 20)
set(CMAKE_OBJCXX_STANDARD_REQUIRED ON)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
# CMake keeps one form of precompiled header for all compilers: that of C++, here.
set(ZIB_PCH_EXTENSION ${CMAKE_PCH_EXTENSION})
set(ZIB_PCH_PROLOGUE ${CMAKE_PCH_PROLOGUE})
enable_language(OBJC)
enable_language(OBJCXX)
set(CMAKE_PCH_EXTENSION ${ZIB_PCH_EXTENSION})
set(CMAKE_PCH_PROLOGUE ${ZIB_PCH_PROLOGUE})

# The headers of the object runtime are GCC's, of the version whose libraries clang takes, and come last:
# its others are not for clang.
if(NOT CMAKE_CROSSCOMPILING)
  execute_process(COMMAND ${ZIB_CLANGXX} -print-file-name=libobjc.so
    OUTPUT_VARIABLE ZIB_OBJC_LIBRARY OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  cmake_path(GET ZIB_OBJC_LIBRARY PARENT_PATH ZIB_GCC_FOLDER)
  if(NOT EXISTS ${ZIB_GCC_FOLDER}/include/objc/objc.h)
    message(FATAL_ERROR "clang takes GCC's libraries from \"${ZIB_GCC_FOLDER}\", where the object runtime is missing; "
      "allowed: the libobjc-dev package of that version of GCC")
  endif()
  execute_process(COMMAND gnustep-config --variable=GNUSTEP_SYSTEM_HEADERS
    OUTPUT_VARIABLE ZIB_GNUSTEP_HEADERS OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endif()
foreach(option
    -fobjc-runtime=gcc -fblocks -fexceptions -fobjc-exceptions
    -fconstant-string-class=NSConstantString -D_NATIVE_OBJC_EXCEPTIONS
    "SHELL:-isystem ${ZIB_GNUSTEP_HEADERS}" "SHELL:-idirafter ${ZIB_GCC_FOLDER}/include"
    -Wall -Wextra -Wconversion -Wshadow -Werror -Wno-unused-parameter)
  add_compile_options("$<$<COMPILE_LANGUAGE:OBJC,OBJCXX>:${option}>")
endforeach()
