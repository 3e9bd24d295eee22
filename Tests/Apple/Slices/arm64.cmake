# Builds hosts for Debian on arm64, which run in qemu. ZIB_ARM64_ROOT is a root of that system,
# ZIB_TOOLCHAIN the folder of the compilers, ZIB_QEMU the emulator.

foreach(needed ZIB_ARM64_ROOT ZIB_TOOLCHAIN ZIB_QEMU)
  if(NOT ${needed})
    message(FATAL_ERROR "${needed} is not set: script/check-slices sets it")
  endif()
  list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ${needed})
endforeach()

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_SYSROOT ${ZIB_ARM64_ROOT})
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
foreach(language C CXX OBJC OBJCXX)
  set(CMAKE_${language}_COMPILER_TARGET aarch64-linux-gnu)
endforeach()
foreach(language C OBJC)
  set(CMAKE_${language}_COMPILER ${ZIB_TOOLCHAIN}/clang)
endforeach()
foreach(language CXX OBJCXX)
  set(CMAKE_${language}_COMPILER ${ZIB_TOOLCHAIN}/clang++)
endforeach()
add_link_options(-fuse-ld=lld)

set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kind LIBRARY INCLUDE PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${ZIB_ARM64_ROOT})
set(ENV{PKG_CONFIG_LIBDIR}
  ${ZIB_ARM64_ROOT}/usr/lib/aarch64-linux-gnu/pkgconfig:${ZIB_ARM64_ROOT}/usr/share/pkgconfig)

set(CMAKE_CROSSCOMPILING_EMULATOR ${ZIB_QEMU};-L;${ZIB_ARM64_ROOT})
set(ZIB_LIBOBJC ${ZIB_ARM64_ROOT}/usr/lib/gcc/aarch64-linux-gnu/12/libobjc.so)
set(ZIB_GCC_FOLDER ${ZIB_ARM64_ROOT}/usr/lib/gcc/aarch64-linux-gnu/12)
set(ZIB_GNUSTEP_HEADERS ${ZIB_ARM64_ROOT}/usr/include/GNUstep)
