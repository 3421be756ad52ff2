# Windows, 64-bit.
set(TOLVANE_MACHINE x86_64)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
include("${CMAKE_CURRENT_LIST_DIR}/windows/toolchain.cmake")
