# Real Objective-C on Linux: clang compiles it, for the runtime that the rest is linked with. A phone
# needs none of this.

find_program(ZIB_CLANG NAMES clang REQUIRED)
set(CMAKE_OBJC_COMPILER ${ZIB_CLANG})
enable_language(OBJC)

# The headers of the object runtime are GCC's.
execute_process(COMMAND g++ -print-file-name=include
  OUTPUT_VARIABLE ZIB_GCC_HEADERS OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

# A library of .m files. Without sanitizers: clang's would clash with those of GCC, which links.
function(zib_objective_c_library name)
  add_library(${name} STATIC ${ARGN})
  set_property(TARGET ${name} PROPERTY COMPILE_OPTIONS
    -fobjc-runtime=gcc -fblocks -fexceptions -fobjc-exceptions
    -fconstant-string-class=NSConstantString -D_NATIVE_OBJC_EXCEPTIONS
    -isystem /usr/include/GNUstep -idirafter ${ZIB_GCC_HEADERS}
    -Wall -Wextra -Wconversion -Wshadow -Werror -Wno-unused-parameter)
  target_link_libraries(${name} PUBLIC ExampleDevice)
endfunction()
