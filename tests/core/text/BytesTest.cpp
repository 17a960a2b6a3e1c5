#include "core/text/Bytes.h"

#include <gmock/gmock.h>

namespace mirvel {
namespace {

using namespace std::string_literals;

TEST(BytesTest, HexadecimalDigitsAreReadInEitherCaseAndWrittenInLowerCase) {
  EXPECT_EQ(toHex("\0\x7f\xff"s), "007fff");
  EXPECT_EQ(fromHex("007fFF"), "\0\x7f\xff"s);
  EXPECT_EQ(fromHex(""), "");
  for (const char* bad : {"0", "0g", "g0", "00 ", " 00", "0x00", "+1"}) EXPECT_EQ(fromHex(bad), std::nullopt) << bad;
  EXPECT_EQ(toHex(0x7F, 4), "007f");
  EXPECT_EQ(toHex(0x12345, 4), "12345");
  EXPECT_EQ(toHex(0, 1), "0");
}

TEST(BytesTest, Base64IsAppendedWithPadding) {
  // RFC 4648, section 10.
  std::string text = "data:";
  for (const char* bytes : {"", "f", "fo", "foo", "foob"}) appendBase64(text, bytes);
  EXPECT_EQ(text, "data:Zg==Zm8=Zm9vZm9vYg==");
}

TEST(BytesTest, Base64IsReadStrictly) {
  EXPECT_EQ(fromBase64(""), "");
  EXPECT_EQ(fromBase64("YQ=="), "a");
  EXPECT_EQ(fromBase64("YWI="), "ab");
  EXPECT_EQ(fromBase64("L1VzZXJzL3gvYS5wbGlzdA=="), "/Users/x/a.plist");
  EXPECT_EQ(fromBase64("AP+/"), "\0\xff\xbf"s);
  for (const char* bad :
       {"YQ", "YQ=", "YQ===", "YR==", "YWJ=", "Y Q=", " YQ==", "YQ==\n", "====", "Y===", "_-8=", "=YQ="}) {
    EXPECT_EQ(fromBase64(bad), std::nullopt) << bad;
  }
}

TEST(BytesTest, Sha256GivesTheDigestOfTheStandard) {
  // FIPS 180-2, appendix B.1.
  EXPECT_EQ(toHex(*sha256("abc")), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(BytesTest, UuidsHaveVersionFourAndDiffer) {
  const std::string uuid = makeUuid();
  EXPECT_THAT(uuid, testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
  EXPECT_NE(makeUuid(), uuid);
}

TEST(BytesTest, OnlyTheWholeSecretIsEqual) {
  const auto secret = randomBytes(32);
  ASSERT_TRUE(secret);
  EXPECT_TRUE(isSameSecret(*secret, std::string(*secret)));
  for (std::size_t i = 0; i < secret->size(); ++i) {
    std::string other = *secret;
    other[i] = static_cast<char>(other[i] ^ 1);
    EXPECT_FALSE(isSameSecret(*secret, other)) << i;
    EXPECT_FALSE(isSameSecret(*secret, secret->substr(0, i))) << i;
  }
}

}  // namespace
}  // namespace mirvel
