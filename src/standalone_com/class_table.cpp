#include "standalone_com/class_table.h"

#include <array>
#include <memory>

#include "automation/foundation_objects.h"
#include "standalone/objects.h"
#include "standalone_com/application_object.h"
#include "standalone_com/command_objects.h"
#include "standalone_com/connection_object.h"
#include "standalone_com/recordset_object.h"
#include "standalone_com/suite_components.h"
#include "standalone_com/suite_thread.h"

namespace tolvane::standalone_com {
namespace {

using automation::ComPtr;
using automation::makeObject;

template <typename T>
ComPtr<IDispatch> ofThread() {
  return ComPtr<IDispatch>(makeObject<T>(SuiteThread::current()).get());
}

ComPtr<IDispatch> bag() {
  return ComPtr<IDispatch>(makeObject<automation::BagObject>(std::make_shared<standalone::Dictionary>()).get());
}

ComPtr<IDispatch> list() {
  return ComPtr<IDispatch>(makeObject<automation::ListObject>(std::make_shared<standalone::List>()).get());
}

constexpr std::array classes{
    ClassEntry{{0x36455759, 0xE36C, 0x450E, {0x9A, 0xF0, 0xCC, 0x93, 0x6B, 0x20, 0xC7, 0xA9}},
               L"NorvStandalone.Application",
               L"The suite's application object without the suite",
               &ofThread<ApplicationObject>},
    ClassEntry{{0xF536D995, 0x2870, 0x42F1, {0xAC, 0x02, 0xF6, 0x69, 0x94, 0xA7, 0x52, 0x5C}},
               L"NorvStandalone.Security",
               L"The suite's security component without the suite",
               &ofThread<SecurityObject>},
    ClassEntry{{0x74B5295E, 0xB6BA, 0x4766, {0xAB, 0x41, 0x74, 0x2E, 0xAC, 0x77, 0x10, 0x6D}},
               L"NorvStandalone.Loader",
               L"The suite's resource loader without the suite",
               &ofThread<LoaderObject>},
    ClassEntry{{0x7990CF03, 0x247D, 0x4518, {0x80, 0x44, 0xCF, 0xE5, 0x8C, 0xBF, 0x48, 0x25}},
               L"NorvStandalone.DataFlow",
               L"The suite's data-flow component without the suite",
               &ofThread<DataFlowObject>},
    ClassEntry{{0xCBF11F86, 0x0FA9, 0x48DD, {0xA0, 0x2D, 0xBF, 0x56, 0x7A, 0x37, 0x11, 0x56}},
               L"NorvStandalone.Dictionary",
               L"Keyed bag",
               &bag},
    ClassEntry{{0x6C06EE92, 0x35CC, 0x401C, {0x86, 0xD6, 0x93, 0x9A, 0x38, 0xCC, 0xCA, 0xC8}},
               L"NorvStandalone.Collection",
               L"Ordered list",
               &list},
    ClassEntry{{0xDB62FE89, 0xDBB2, 0x4EE9, {0x82, 0xB7, 0xBE, 0xF8, 0xD0, 0xCC, 0x37, 0xE4}},
               L"NorvStandalone.Vector",
               L"Ordered list",
               &list},
    ClassEntry{{0x9737495E, 0xA66F, 0x4A7D, {0xA1, 0xF0, 0x3F, 0xAC, 0x64, 0x71, 0xD2, 0xD6}},
               L"NorvStandalone.Connection",
               L"Connection to an account set",
               &ofThread<ConnectionObject>},
    ClassEntry{{0x85266922, 0x47CE, 0x4357, {0xAE, 0xC8, 0x3F, 0x0F, 0x36, 0x74, 0xB2, 0x29}},
               L"NorvStandalone.Recordset",
               L"Record set of an account set",
               &ofThread<RecordsetObject>},
    ClassEntry{{0xB5120A94, 0x9E07, 0x45D0, {0xB7, 0xD7, 0xE9, 0xFA, 0xFB, 0x9B, 0x40, 0xBB}},
               L"NorvStandalone.Command",
               L"Command on an account set",
               &ofThread<CommandObject>},
};

}  // namespace

std::span<const ClassEntry> classTable() {
  return classes;
}

}  // namespace tolvane::standalone_com
