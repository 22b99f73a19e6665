# Builds on Linux for a Mac with what packaging/mac/cross-compiler.sh fetches. ZENTRILL_MAC_PROCESSOR says for which:
# aarch64 or x86_64. What comes of it is compiled and linked, and cannot be run here.
set(CMAKE_SYSTEM_NAME Darwin)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ZENTRILL_MAC_PROCESSOR)
set(CMAKE_SYSTEM_PROCESSOR "${ZENTRILL_MAC_PROCESSOR}")

include("${CMAKE_CURRENT_LIST_DIR}/ZentrillMacVersion.cmake")
set(cross_compiler "${CMAKE_CURRENT_LIST_DIR}/../build/mac-cross-compiler")
foreach(language C CXX)
  set(CMAKE_${language}_COMPILER_TARGET "${ZENTRILL_MAC_PROCESSOR}-macos.${ZENTRILL_OLDEST_MACOS}")
endforeach()
set(CMAKE_C_COMPILER "${cross_compiler}/bin/clang")
set(CMAKE_CXX_COMPILER "${cross_compiler}/bin/clang++")
set(CMAKE_AR "${cross_compiler}/bin/ar" CACHE FILEPATH "Archiver")
set(CMAKE_RANLIB "${cross_compiler}/bin/ranlib" CACHE FILEPATH "Archive indexer")
# CMake asks for it before it knows that nothing will be installed.
set(CMAKE_INSTALL_NAME_TOOL "${CMAKE_COMMAND}" CACHE FILEPATH "Never run")
set(CMAKE_BUILD_WITH_INSTALL_NAME_DIR ON)

# Nothing of this machine's own libraries is taken for the Mac's.
set(CMAKE_FIND_ROOT_PATH "${cross_compiler}/root")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
foreach(kind LIBRARY INCLUDE PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
set(ENV{PKG_CONFIG_LIBDIR} "${cross_compiler}/root/lib/pkgconfig")
