#include "automation/class_factory.h"

#include <gtest/gtest.h>

#include <memory>

#include "automation/foundation_objects.h"
#include "platform/error.h"
#include "standalone/objects.h"

namespace tolvane::automation {
namespace {

ComPtr<IDispatch> newList() {
  return ComPtr<IDispatch>(makeObject<ListObject>(std::make_shared<standalone::List>()).get());
}

ComPtr<IClassFactory> factoryOf(ObjectMaker make) {
  ComPtr<IClassFactory> factory;
  EXPECT_EQ(giveClassFactory(std::move(make), IID_IClassFactory, factory.receiveAny()), S_OK);
  return factory;
}

TEST(ClassFactoryTest, GivesObjectsThatItsFunctionMakes) {
  const auto factory = factoryOf(&newList);
  ComPtr<IDispatch> object;
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, object.receiveAny()), S_OK);
  EXPECT_TRUE(object);
}

TEST(ClassFactoryTest, TheModuleIsInUseWhileThereIsAFactoryAnObjectOrALock) {
  EXPECT_EQ(canUnloadNow(), S_OK);
  auto factory = factoryOf(&newList);
  EXPECT_EQ(canUnloadNow(), S_FALSE);
  factory->LockServer(TRUE);
  ComPtr<IDispatch> object;
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, object.receiveAny()), S_OK);
  factory->LockServer(FALSE);
  factory = {};
  EXPECT_EQ(canUnloadNow(), S_FALSE);
  object = {};
  EXPECT_EQ(canUnloadNow(), S_OK);
}

TEST(ClassFactoryTest, RefusesOtherInterfacesAndAggregation) {
  void* object = &object;
  EXPECT_EQ(giveClassFactory(&newList, IID_IDispatch, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  const auto factory = factoryOf(&newList);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IEnumVARIANT, &object), E_NOINTERFACE);
  const auto outer = newList();
  EXPECT_EQ(factory->CreateInstance(outer.get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, nullptr), E_POINTER);
  EXPECT_EQ(giveClassFactory(&newList, IID_IClassFactory, nullptr), E_POINTER);
}

TEST(ClassFactoryTest, AnErrorOfTheFunctionIsTheAnswer) {
  void* object = nullptr;
  const auto raising = factoryOf([]() -> ComPtr<IDispatch> { raise(RuntimeError::fileNotFound); });
  EXPECT_EQ(raising->CreateInstance(nullptr, IID_IDispatch, &object), static_cast<HRESULT>(0x800A0035));
  const auto throwing = factoryOf([]() -> ComPtr<IDispatch> { throw 5; });
  EXPECT_EQ(throwing->CreateInstance(nullptr, IID_IDispatch, &object), E_FAIL);
}

}  // namespace
}  // namespace tolvane::automation
