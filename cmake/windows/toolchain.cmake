# What both Windows builds have in common. The posix variant of the compilers is the one with std::thread and std::mutex;
# all of the compiler's run-time library is linked in, so that what is built needs Windows' own libraries only.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER "${TOLVANE_MACHINE}-w64-mingw32-gcc-posix")
set(CMAKE_CXX_COMPILER "${TOLVANE_MACHINE}-w64-mingw32-g++-posix")
set(CMAKE_RC_COMPILER "${TOLVANE_MACHINE}-w64-mingw32-windres")

foreach(kind IN ITEMS EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
endforeach()

set(CMAKE_FIND_ROOT_PATH "/usr/${TOLVANE_MACHINE}-w64-mingw32")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Tests run in Wine.
if(TOLVANE_MACHINE STREQUAL i686)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../../tools/wine_run.sh" 32)
else()
  set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../../tools/wine_run.sh" 64)
endif()
