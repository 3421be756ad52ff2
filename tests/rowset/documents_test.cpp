#include "rowset/documents.h"

#include <gtest/gtest.h>

namespace tolvane::rowset {
namespace {

TEST(DocumentsTest, BytesComeFromBytesByteArraysAndEmptyTexts) {
  EXPECT_EQ(bytesOf(Value(Bytes({1, 2}))), Bytes({1, 2}));
  EXPECT_EQ(bytesOf(Value(Array::of(ValueType::byte, {Value(std::uint8_t{1}), Value(std::uint8_t{2})}))),
            Bytes({1, 2}));
  EXPECT_EQ(bytesOf(Value("")), Bytes());
}

TEST(DocumentsTest, WhatIsNoDocumentGivesNone) {
  for (const Value& value : {Value("x"), Value(std::int32_t{1}), Value(Null{}),
                             Value(Array::of(ValueType::int32, {Value(std::int32_t{1})}))}) {
    EXPECT_FALSE(bytesOf(value));
  }
}

TEST(DocumentsTest, PiecesAreJoinedInOrderAndASingleOneIsNotCopied) {
  EXPECT_EQ(joined({Bytes({1}), Bytes(), Bytes({2, 3})}), Bytes({1, 2, 3}));
  EXPECT_EQ(joined({}), Bytes());
  const Bytes one({7});
  EXPECT_EQ(joined({one}).data(), one.data());
}

}  // namespace
}  // namespace tolvane::rowset
