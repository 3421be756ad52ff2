# What all targets of a Windows build have in common.
enable_language(C)
if(NOT CMAKE_C_COMPILER_LAUNCHER)
  set(CMAKE_C_COMPILER_LAUNCHER "${CMAKE_CXX_COMPILER_LAUNCHER}")
endif()
set(CMAKE_C_FLAGS_RELEASE "${CMAKE_CXX_FLAGS_RELEASE}")
# Libraries that the distribution has for its own machines only are found, or made, by these.
list(PREPEND CMAKE_MODULE_PATH "${CMAKE_CURRENT_LIST_DIR}")
# Windows 7 is the oldest that the suite runs on.
add_compile_definitions(_WIN32_WINNT=0x0601 WINVER=0x0601 UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN)
# GCC 12 for Windows takes moved containers for uninitialised ones.
add_compile_options(-Wno-maybe-uninitialized)
add_compile_options(-ffunction-sections -fdata-sections)
add_link_options(-Wl,--gc-sections)

# tolvane_automation_dll(NAME): what the automation DLLs have in common. The name is the one that is registered, and the file
# lies beside the tests and the other DLL; src/automation/module_entry.cpp says why it has an entry of its own.
function(tolvane_automation_dll name)
  set_target_properties(${name} PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}")
  set(entry tolvaneModuleEntry)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    set(entry "_${entry}@12")
  endif()
  target_link_options(${name} PRIVATE -Wl,--enable-stdcall-fixup "-Wl,--entry=${entry}" "-Wl,--undefined=${entry}")
endfunction()
