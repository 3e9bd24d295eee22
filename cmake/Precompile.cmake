# Headers of libraries, compiled once for simulator and tests. Not for the module, which has to include
# what it uses wherever it is built.

include(CMakeDependentOption)
# Compiler caches do not work with them.
cmake_dependent_option(ZIB_PRECOMPILED_HEADERS
  "Precompile the libraries' headers for simulator and tests" ON "NOT CMAKE_CXX_COMPILER_LAUNCHER" OFF)

set(ZIB_LIBRARY_HEADERS
  nlohmann/json.hpp algorithm array atomic filesystem functional map memory mutex optional set span
  string string_view thread utility vector)

# zib_precompile(TARGET HEADER...) or zib_precompile(TARGET REUSE_FROM OTHER)
function(zib_precompile target)
  if(NOT ZIB_PRECOMPILED_HEADERS)
    return()
  endif()
  if(ARGV1 STREQUAL REUSE_FROM)
    target_precompile_headers(${target} REUSE_FROM ${ARGV2})
  else()
    list(TRANSFORM ARGN REPLACE ".+" "$<$<COMPILE_LANGUAGE:CXX>:<\\0$<ANGLE-R>>")
    target_precompile_headers(${target} PRIVATE ${ARGN})
  endif()
endfunction()
