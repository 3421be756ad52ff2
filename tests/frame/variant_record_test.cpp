// Variants through their temporary file.
#include "frame/variant_record.h"

#include <gmock/gmock.h>

#include "platform/error.h"
#include "support/recording_platform.h"

namespace tolvane::test {
namespace {

using Octets = std::vector<std::uint8_t>;
using testing::ElementsAre;

/// Draws the numbers that the test lays out, then 0.5.
struct DrawingPlatform : RecordingPlatform {
  std::vector<double> draws;
  double random() override {
    if (draws.empty()) return 0.5;
    const double drawn = draws.front();
    draws.erase(draws.begin());
    return drawn;
  }
};

struct VariantRecord : testing::Test {
  DrawingPlatform platform;
  Value texts = Array::of(ValueType::string, {"A", "BC"}, 1);

  std::uint32_t decodeError(const Value& document) {
    try {
      (void)decodeVariant(platform, document);
    } catch (const AutomationError& error) {
      return error.number();
    }
    return 0;
  }
};

TEST_F(VariantRecord, TheEncodersBytesAreCountedFromOne) {
  const Bytes bytes = encodeVariant(platform, std::int32_t{7});
  EXPECT_EQ(bytes, Bytes(Octets{3, 0, 7, 0, 0, 0}, 1));
}

TEST_F(VariantRecord, AnArrayOfTextsSurvivesEncodingAndDecoding) {
  EXPECT_EQ(decodeVariant(platform, encodeVariant(platform, texts)), texts);
}

TEST_F(VariantRecord, TheTemporaryFileIsNamedByItsDrawAndGoneAfterwards) {
  (void)encodeVariant(platform, texts);
  EXPECT_THAT(platform.log, ElementsAre("OpenFile 444444.tmp", "RemoveFile 444444.tmp"));
  EXPECT_FALSE(platform.files().exists("444444.tmp"));
}

TEST_F(VariantRecord, TheNamesRunFromZeroToOneBelowTheNumberOfNames) {
  platform.draws = {0.0, 0.9999999999};
  (void)encodeVariant(platform, texts);
  (void)encodeVariant(platform, texts);
  EXPECT_THAT(platform.log,
              ElementsAre("OpenFile 0.tmp", "RemoveFile 0.tmp", "OpenFile 888887.tmp", "RemoveFile 888887.tmp"));
}

TEST_F(VariantRecord, ATakenNameIsDrawnAgain) {
  (void)platform.files().openBinary("444444.tmp");
  platform.draws = {0.5, 0.5, 0.25};
  platform.log.clear();
  (void)decodeVariant(platform, Bytes(Octets{0, 0}));
  EXPECT_THAT(platform.log, ElementsAre("OpenFile 222222.tmp", "RemoveFile 222222.tmp"));
}

TEST_F(VariantRecord, TheFileIsGoneAfterARecordThatIsNone) {
  EXPECT_EQ(decodeError(Bytes(Octets{0xFF, 0x7F})), errorNumber(RuntimeError::typeNotSupported));
  EXPECT_FALSE(platform.files().exists("444444.tmp"));
}

TEST_F(VariantRecord, TheFileIsGoneAfterAValueThatCannotBeWritten) {
  EXPECT_THROW((void)encodeVariant(platform, Value(ObjectRef())), AutomationError);
  EXPECT_FALSE(platform.files().exists("444444.tmp"));
}

TEST_F(VariantRecord, ADocumentCountedFromZeroIsRead) {
  EXPECT_EQ(decodeVariant(platform, Bytes(Octets{2, 0, 7, 0}, 0)), Value(std::int16_t{7}));
}

TEST_F(VariantRecord, AnEmptyDocumentIsNoRecord) {
  EXPECT_EQ(decodeError(Bytes(Octets{})), errorNumber(RuntimeError::typeNotSupported));
}

TEST_F(VariantRecord, OnlyByteArraysAreDocuments) {
  for (const Value& document : {Value(), Value(Null{}), Value("text"), Value(std::int32_t{1}), texts}) {
    EXPECT_EQ(decodeError(document), errorNumber(RuntimeError::typeMismatch));
  }
}

TEST_F(VariantRecord, AnErrorOfTheFilesIsTheCallers) {
  platform.fail("OpenFile", AutomationError(RuntimeError::fileAccess, "x"));
  EXPECT_EQ(decodeError(Bytes(Octets{0, 0})), errorNumber(RuntimeError::fileAccess));
}

TEST_F(VariantRecord, ALongDocumentPassesThroughTheFileInBlocks) {
  std::vector<Value> elements;
  for (std::int32_t i = 0; i < 60000; ++i) elements.emplace_back(i);
  const Value numbers = Array::of(ValueType::variant, std::move(elements), 0);
  EXPECT_EQ(decodeVariant(platform, encodeVariant(platform, numbers)), numbers);
}

}  // namespace
}  // namespace tolvane::test
