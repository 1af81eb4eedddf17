#include "platform/NativePath.h"
#include "platform/PathText.h"

#include <QUrl>

#include <gtest/gtest.h>

using kestrow::NativePath;
using kestrow::PathText;

TEST(FileURLText, ValidNamesAreWrittenAsQUrlWritesThemAndReadBack)
{
    QStringList paths{QStringLiteral("/"),
                      QStringLiteral("/home/a b/c%20d/100%"),
                      QStringLiteral("/x/#hash/?query/[brackets]/{braces}/a|b^c`d\\e\"f<g>h"),
                      QStringLiteral("/x/!$&'()*+,;=:@~-_./y"),
                      QStringLiteral("/x/./../y//z/"),
                      QStringLiteral("/caf\u00e9/\u65e5\u672c/\u2028/\u00a0"),
                      QString::fromUtf8("/emoji/\xf0\x9f\x98\x80\xf0\x9f\x91\x8d\xf0\x9f\x8f\xbd"),
                      QStringLiteral("/tab\tnew\nline\x7f"),
                      QStringLiteral("relative/name")};
    for (int c = 1; c < 0x80; ++c)
        paths.append(QStringLiteral("/a") + QChar(c) + QStringLiteral("b"));
    for (const QString& path : paths) {
        const QString url = PathText::fileURLString(path);
        EXPECT_EQ(url, QString::fromUtf8(QUrl::fromLocalFile(path).toEncoded())) << path.toStdString();
        EXPECT_EQ(PathText::pathFromFileURLString(url), path) << url.toStdString();
    }
    EXPECT_EQ(PathText::fileURLString(QString()), QString());
}

TEST(FileURLText, RawBytesArePercentEncodedAsThemselvesAndComeBackWhole)
{
    const QString raw = NativePath::decode(QByteArray("/home/caf\xe9/x\xff\x80 y"));
    const QString sibling = NativePath::decode(QByteArray("/home/caf\xef\xbf\xbd/x\xff\x80 y"));
    EXPECT_EQ(PathText::fileURLString(raw), QStringLiteral("file:///home/caf%E9/x%FF%80%20y"));
    EXPECT_EQ(PathText::fileURLString(sibling), QStringLiteral("file:///home/caf%EF%BF%BD/x%FF%80%20y"));
    EXPECT_EQ(PathText::pathFromFileURLString(PathText::fileURLString(raw)), raw);
    EXPECT_EQ(PathText::pathFromFileURLString(PathText::fileURLString(sibling)), sibling);

    // Other writers' forms read the same: lower-case escapes, escaped characters that need none,
    // literal non-ASCII text.
    EXPECT_EQ(PathText::pathFromFileURLString(QStringLiteral("file:///home/caf%e9/x%ff%80%20y")), raw);
    EXPECT_EQ(PathText::pathFromFileURLString(QStringLiteral("file:/home/%61%2Fb")), QStringLiteral("/home/a/b"));
    EXPECT_EQ(PathText::pathFromFileURLString(QStringLiteral("file:///caf\u00e9")), QStringLiteral("/caf\u00e9"));
    EXPECT_EQ(PathText::pathFromFileURLString(QStringLiteral("file://server/share/x")),
              QStringLiteral("//server/share/x"));
    EXPECT_EQ(PathText::pathFromFileURLString(PathText::fileURLString(QStringLiteral("//twice/x"))),
              QStringLiteral("//twice/x"));

    EXPECT_EQ(PathText::pathFromFileURLString(QStringLiteral("https://host/x")), QString());
    EXPECT_EQ(PathText::pathFromFileURLString(QStringLiteral("file:///bad%zz")), QString());
    EXPECT_EQ(PathText::pathFromFileURLString(QStringLiteral("/plain/path")), QString());
}
