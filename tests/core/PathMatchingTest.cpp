#include "TestHome.h"

#include "safety/CacheDirTagDetector.h"
#include "safety/CacheDirTagWriteError.h"
#include "safety/FileCategorizer.h"
#include "safety/GlobMatcher.h"
#include "support/JsonDecoder.h"
#include "support/PathText.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

const QString me = QStringLiteral("/Users/me");

bool matches(const char* pattern, const char* path)
{
    return GlobMatcher::matches(QString::fromUtf8(pattern), QString::fromUtf8(path), me);
}

} // namespace

TEST(PathText, StandardizesAsThePlatformDoes)
{
    EXPECT_EQ(PathText::standardizing(QString()), QString());
    EXPECT_EQ(PathText::standardizing(QStringLiteral("/a//./b/../c/")), QStringLiteral("/a/c"));
    EXPECT_EQ(PathText::standardizing(QStringLiteral("/..")), QStringLiteral("/"));
    EXPECT_EQ(PathText::standardizing(QStringLiteral("a/./../b/")), QStringLiteral("a/../b"));
    EXPECT_EQ(PathText::standardizing(QStringLiteral("~/x")), QStringLiteral("~/x"));
    // "/private" goes only when what is left exists.
    EXPECT_EQ(PathText::standardizing(QStringLiteral("/private/etc")), QStringLiteral("/etc"));
    EXPECT_EQ(PathText::standardizing(QStringLiteral("/private/no-such-thing-here")),
              QStringLiteral("/private/no-such-thing-here"));
    EXPECT_EQ(PathText::pathExtension(QStringLiteral("/a/b.tar.GZ")), QStringLiteral("GZ"));
    EXPECT_EQ(PathText::pathExtension(QStringLiteral("/a/.bashrc")), QString());
    EXPECT_EQ(PathText::pathExtension(QStringLiteral("/a.b/c")), QString());
}

TEST(GlobMatcher, SegmentsAndGlobstars)
{
    EXPECT_TRUE(matches("/", "/"));
    EXPECT_FALSE(matches("/", "/a"));
    EXPECT_TRUE(matches("~", "/Users/me"));
    EXPECT_FALSE(matches("~", "/Users/me/x"));
    EXPECT_TRUE(matches("~/**", "/Users/me"));
    EXPECT_TRUE(matches("~/**", "/Users/me/a/b"));
    for (const char* any : {"/", "/a", "/a/b/c"})
        EXPECT_TRUE(matches("**", any)) << any;
    EXPECT_TRUE(matches("~/x/**/y", "/Users/me/x/y"));
    EXPECT_TRUE(matches("~/x/**/y", "/Users/me/x/a/b/y"));
    EXPECT_FALSE(matches("~/x/**/y", "/Users/me/x/y/z"));
    const char* chrome = "~/Library/Caches/Google/Chrome/*/Cache/**";
    EXPECT_TRUE(matches(chrome, "/Users/me/Library/Caches/Google/Chrome/Default/Cache/data_1"));
    EXPECT_FALSE(matches(chrome, "/Users/me/Library/Caches/Google/Chrome/Profile/1/Cache/data_1"));
    EXPECT_TRUE(matches("~/.npm/_cacache/**", "/Users/me/.npm/_cacache"));
    EXPECT_TRUE(matches("~/.npm/_cacache/**", "/Users/me/.npm/_cacache/"));
    EXPECT_TRUE(matches("Users/x", "/Users/x"));
    EXPECT_FALSE(matches("x", "/Users/x")) << "a relative pattern is anchored at the root";
    EXPECT_FALSE(matches("~/Cache", "/Users/me/cache"));
    EXPECT_TRUE(matches("/a/b/../c", "/a/c")) << "a pattern not under ~ is standardized";
    EXPECT_TRUE(matches("/a//b/", "/a/b"));
    EXPECT_EQ(GlobMatcher::expandHome(QStringLiteral("~/x/../*"), me), QStringLiteral("/Users/me/x/../*"));
    EXPECT_EQ(GlobMatcher::expandHome(QString(), me), QStringLiteral("/"));
    EXPECT_EQ(GlobMatcher::normalizePath(QStringLiteral("/a/./b/")), QStringLiteral("/a/b"));
}

TEST(GlobMatcher, WildcardScanWithinOneSegment)
{
    const auto wild = [](const char* pattern, const char* text) {
        return GlobMatcher::matchWildcard(QString::fromUtf8(pattern), QString::fromUtf8(text));
    };
    EXPECT_TRUE(wild("*", ""));
    EXPECT_TRUE(wild("*", ".hidden"));
    EXPECT_TRUE(wild("a*b*c", "aXbYbZc"));
    EXPECT_FALSE(wild("a*b*c", "aXbYbZ"));
    EXPECT_TRUE(wild("a**b", "ab"));
    EXPECT_TRUE(wild("?x", "yx"));
    EXPECT_FALSE(wild("?", ""));
    EXPECT_TRUE(wild("*.log", "a.b.log"));
    EXPECT_FALSE(wild("cache", "Cache"));
    EXPECT_TRUE(wild("[ab]", "[ab]")) << "brackets and braces are plain characters";
    EXPECT_FALSE(wild("[ab]", "a"));
    EXPECT_TRUE(wild("a\\*", "a\\xyz")) << "no escape character";
    // A star in the text is met literally first; afterwards only an earlier star can re-enter.
    EXPECT_TRUE(wild("*", "*"));
    EXPECT_FALSE(wild("a*", "a*b"));
    EXPECT_TRUE(wild("*", "a*b"));
    // Characters are user-perceived and compare by canonical equivalence.
    EXPECT_TRUE(wild("caf\u00e9", "cafe\u0301"));
    EXPECT_TRUE(wild("caf?", "cafe\u0301"));
    EXPECT_FALSE(wild("caf??", "cafe\u0301"));
    EXPECT_TRUE(wild("?", "\U0001F469\u200D\U0001F4BB"));
    EXPECT_TRUE(GlobMatcher::matches(QStringLiteral("~/Caf\u00e9/*"), QStringLiteral("/Users/me/Cafe\u0301/x"), me));
}

TEST(FileCategorizer, NamesSetsAndTypeTable)
{
    using F = FileCategory;
    // Names, the six sets (with their two kept quirks), then the platform's table of types.
    const std::pair<const char*, F::Value> cases[] = {
        {"/p/Makefile", F::developerArtifacts},
        {"/p/DOCKERFILE", F::developerArtifacts},
        {"/d/B.DerivedData", F::developerArtifacts},
        {"/d/AppIcon.appiconset", F::developerArtifacts},
        {"/a/foo.GZ", F::archives},
        {"/a/disk.qcow2", F::diskImages},
        {"/a/libx.dylib", F::developerArtifacts},
        {"/a/libx.so", F::binaries},
        {"/a/Photo.HEIC", F::media},
        {"/a/notes.md", F::documents},
        {"/a/name.unknownext", F::other},
        {"/a/README", F::other},
        {"/a/.bashrc", F::other},
        {"/a/App.dSYM", F::other},
        {"/a/Main.java", F::developerArtifacts},
        {"/a/data.lz", F::archives},
        {"/a/disk.vhd", F::diskImages},
        {"/a/song.opus", F::media},
        {"/a/clip.flv", F::media},
        {"/a/page.html", F::documents},
        {"/a/server.log", F::documents},
        {"/a/setup.exe", F::binaries},
        {"/a/letter.odt", F::other}, // a zip-based document is not an archive
    };
    for (const auto& [path, kind] : cases)
        EXPECT_EQ(FileCategorizer::categorize(QLatin1String(path)), kind) << path;

    EXPECT_EQ(FileCategory::fromRawValue(QStringLiteral("DISK_IMAGES")), F::diskImages);
    const JsonValue json = JsonDecoder::parse(R"({"kind":"disk_images"})");
    EXPECT_THROW((void)F::decode(JsonDecoder(json, QStringLiteral("test")), QStringLiteral("kind")), JsonDecodingError);
}

TEST(CacheDirTagDetector, ReadsTheSignatureAndFirstComment)
{
    TestHome home;
    const auto tagIn = [&home](const char* folder, const QByteArray& content) {
        home.writeFile(QLatin1String(folder) + QStringLiteral("/CACHEDIR.TAG"), content);
        return CacheDirTagDetector::detectTag(home.path(QLatin1String(folder)));
    };
    const QByteArray signature = "Signature: 8a477f597d28d172789f06886806bc55";

    home.makeDirectory(QStringLiteral("none"));
    EXPECT_EQ(CacheDirTagDetector::detectTag(home.path(QStringLiteral("none"))), std::nullopt);
    EXPECT_FALSE(CacheDirTagDetector::isCacheDirectory(home.path(QStringLiteral("none"))));

    const auto bare = tagIn("bare", signature);
    ASSERT_TRUE(bare);
    EXPECT_EQ(*bare, (CacheDirTagInfo{.tagFileURL = home.path(QStringLiteral("bare/CACHEDIR.TAG")),
                                      .directoryURL = home.path(QStringLiteral("bare")),
                                      .isValid = true}));
    EXPECT_EQ(tagIn("commented", "  " + signature + " trailing\r\n\n  no comment\n #  by tool \t\n# later\n")
                  ->applicationComment,
              QStringLiteral("by tool"));
    EXPECT_EQ(tagIn("hash", signature + "\n#\n")->applicationComment, QString());
    for (const char* invalid : {"second", "lower", "empty", "binary", "cut"}) {
        const QByteArray content = QByteArray(invalid) == "second"  ? "\n" + signature
                                   : QByteArray(invalid) == "lower" ? signature.toLower()
                                   : QByteArray(invalid) == "empty" ? QByteArray()
                                   : QByteArray(invalid) == "binary"
                                       ? signature + "\n# \xff\xfe"
                                       // The limit cuts a two-byte character in half.
                                       : signature + "\n#" + QByteArray(466, 'x') + "\xc3\xa9";
        const auto tag = tagIn(invalid, content);
        ASSERT_TRUE(tag) << invalid;
        EXPECT_FALSE(tag->isValid) << invalid;
        EXPECT_EQ(tag->applicationComment, std::nullopt) << invalid;
    }
    // Only the first 512 bytes are read: a comment beyond them is not seen.
    EXPECT_EQ(tagIn("long", signature + "\n" + QByteArray(600, 'x') + "\n# far\n")->applicationComment, std::nullopt);
}

TEST(CacheDirTagDetector, WritesTheTagAtomically)
{
    TestHome home;
    const QString plain = home.makeDirectory(QStringLiteral("plain"));
    CacheDirTagDetector::writeTag(plain);
    QFile plainFile(plain + QStringLiteral("/CACHEDIR.TAG"));
    ASSERT_TRUE(plainFile.open(QIODevice::ReadOnly));
    EXPECT_EQ(plainFile.readAll(), QByteArray("Signature: 8a477f597d28d172789f06886806bc55\n"));

    const QString named = home.makeDirectory(QStringLiteral("named"));
    CacheDirTagDetector::writeTag(named, QStringLiteral("Kestrow"));
    QFile namedFile(named + QStringLiteral("/CACHEDIR.TAG"));
    ASSERT_TRUE(namedFile.open(QIODevice::ReadOnly));
    EXPECT_EQ(namedFile.readAll(), QByteArray("Signature: 8a477f597d28d172789f06886806bc55\n"
                                              "# This file is a cache directory tag created by Kestrow.\n"
                                              "# For information about cache directory tags, see:\n"
                                              "#   https://bford.info/cachedir/\n"));
    EXPECT_EQ(CacheDirTagDetector::detectTag(named)->applicationComment,
              QStringLiteral("This file is a cache directory tag created by Kestrow."));

    try {
        CacheDirTagDetector::writeTag(home.path(QStringLiteral("missing/folder")));
        ADD_FAILURE() << "a tag cannot be written into a folder that does not exist";
    } catch (const CacheDirTagWriteError& error) {
        EXPECT_TRUE(error.description().startsWith(QStringLiteral("Could not write the cache directory tag '") +
                                                   home.path(QStringLiteral("missing/folder/CACHEDIR.TAG")) +
                                                   QStringLiteral("': ")));
    }
    EXPECT_FALSE(QFile::exists(home.path(QStringLiteral("missing"))));
}
