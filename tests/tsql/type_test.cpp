#include "tsql/type.h"

#include <gtest/gtest.h>

namespace tolvane::tsql::testing {
namespace {

const Type samples[] = {Type::of(TypeKind::Int),
                        Type::of(TypeKind::Bit).orNull(false),
                        Type::text(TypeKind::NVarChar, 80),
                        Type::text(TypeKind::VarChar, maxLength),
                        Type::text(TypeKind::Char, 8000).orNull(false),
                        Type::decimal(38, 37),
                        Type::of(TypeKind::DateTime),
                        Type::of(TypeKind::Money)};

TEST(Type, ComesBackFromItsPackedForm) {
  for (const Type& type : samples) EXPECT_EQ(Type::unpack(type.pack()), type) << type.name();
}

TEST(Type, ComesBackFromTheDeclaredTypeOfAColumn) {
  for (const Type& type : samples)
    EXPECT_EQ(Type::fromDeclared(type.declared())->orNull(type.nullable), type) << type.name();
}

TEST(Type, IsNotReadFromADeclarationThatTheEngineDoesNotWrite) {
  EXPECT_FALSE(Type::fromDeclared("nosuch"));
  EXPECT_FALSE(Type::fromDeclared("nvarchar(x)"));
  EXPECT_FALSE(Type::fromDeclared("decimal text(5,9)"));
  EXPECT_FALSE(Type::fromDeclared("int(5)"));
}

TEST(Type, KnowsTheOtherNamesOfTypes) {
  EXPECT_EQ(typeNamed("INTEGER"), Type::of(TypeKind::Int));
  EXPECT_EQ(typeNamed("numeric"), Type::decimal(18, 0));
  EXPECT_EQ(typeNamed("sysname"), Type::text(TypeKind::NVarChar, 128).orNull(false));
}

}  // namespace
}  // namespace tolvane::tsql::testing
