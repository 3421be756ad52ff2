# Windows, 32-bit.
set(TOLVANE_MACHINE i686)
set(CMAKE_SYSTEM_PROCESSOR x86)
# Doubles as on every other machine, not in the wider registers of old; and Windows calls back with a stack that is
# aligned to four bytes only.
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_C_FLAGS_INIT "${CMAKE_CXX_FLAGS_INIT}")
include("${CMAKE_CURRENT_LIST_DIR}/windows/toolchain.cmake")
