#include "platform/NativePath.h"

#include <gtest/gtest.h>

#include <random>

using kestrow::NativePath;

TEST(NativePath, EveryByteSequenceComesBackWhole)
{
    std::mt19937 random(7);
    std::uniform_int_distribution<int> byte(1, 255);
    for (int round = 0; round < 5000; ++round) {
        QByteArray name;
        for (int i = 0, n = round % 12 + 1; i < n; ++i)
            name.append(static_cast<char>(byte(random)));
        EXPECT_EQ(NativePath::encode(NativePath::decode(name)), name) << name.toHex().constData();
    }
}

TEST(NativePath, ValidUtf8IsItsTextAndInvalidBytesStayDistinct)
{
    EXPECT_EQ(NativePath::decode(QByteArray("caf\xc3\xa9")), QStringLiteral("caf\u00e9"));
    EXPECT_EQ(NativePath::decode(QByteArray("\xf0\x9f\x98\x80")), QString::fromUtf8("\xf0\x9f\x98\x80"));
    const QString raw = NativePath::decode(QByteArray("caf\xe9"));
    const QString replacement = NativePath::decode(QByteArray("caf\xef\xbf\xbd"));
    EXPECT_NE(raw, replacement);
    EXPECT_TRUE(NativePath::hasRawBytes(raw));
    EXPECT_FALSE(NativePath::hasRawBytes(replacement));
    EXPECT_EQ(NativePath::displayText(raw), QStringLiteral("caf\\xE9"));
    // Overlong forms and encoded surrogates are not valid UTF-8: each byte stays raw.
    for (const QByteArray& bytes :
         {QByteArray("\xc0\xaf"), QByteArray("\xed\xb3\xa9"), QByteArray("\xf4\x90\x80\x80")}) {
        EXPECT_EQ(NativePath::decode(bytes).size(), bytes.size());
        EXPECT_EQ(NativePath::encode(NativePath::decode(bytes)), bytes);
    }
}
