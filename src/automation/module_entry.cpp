// Where Windows enters a DLL of ours.
#include "automation/windows_headers.h"

// The compiler's own entry: it sets up and takes down the C++ run-time library inside the DLL.
extern "C" BOOL WINAPI DllMainCRTStartup(HINSTANCE module, DWORD reason, LPVOID reserved);

// When the process ends Windows has stopped its other threads already, wherever they were: with the run-time library's
// own locks in their hands, it may be. Taking down would wait for them for ever, and keep the host's program from
// ending; and there is nothing to save, since all memory goes with the process. A DLL that is unloaded is taken down as
// usual.
extern "C" BOOL WINAPI tolvaneModuleEntry(HINSTANCE module, DWORD reason, LPVOID reserved) {
  const bool processEnds = reason == DLL_PROCESS_DETACH && reserved != nullptr;
  return processEnds ? TRUE : DllMainCRTStartup(module, reason, reserved);
}
