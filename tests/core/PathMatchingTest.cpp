#include "TestHome.h"

#include "platform/PathText.h"
#include "safety/CacheDirTagDetector.h"
#include "safety/CacheDirTagWriteError.h"
#include "safety/FileCategorizer.h"
#include "safety/GlobMatcher.h"
#include "support/JsonDecoder.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

const QString me = QStringLiteral("/Users/me");

// A pattern, a text it is tried on, whether it matches, and why when that is not plain.
struct MatchCase {
    const char* pattern;
    const char* text;
    bool matches;
    const char* why = "";
};

} // namespace

TEST(PathText, StandardizesAsThePlatformDoes)
{
    const std::pair<const char*, const char*> standardized[] = {
        {"", ""},
        {"/a//./b/../c/", "/a/c"},
        {"/..", "/"},
        {"a/./../b/", "a/../b"},
        {"~/x", "~/x"},
        // "/private" goes only when what is left exists.
        {"/private/etc", "/etc"},
        {"/private/no-such-thing-here", "/private/no-such-thing-here"},
    };
    for (const auto& [path, expected] : standardized)
        EXPECT_EQ(PathText::standardizing(QLatin1String(path)), QLatin1String(expected)) << path;

    const std::pair<const char*, const char*> extensions[] = {
        {"/a/b.tar.GZ", "GZ"}, {"/a/.bashrc", ""}, {"/a.b/c", ""}};
    for (const auto& [path, expected] : extensions)
        EXPECT_EQ(PathText::pathExtension(QLatin1String(path)), QLatin1String(expected)) << path;
}

TEST(GlobMatcher, SegmentsAndGlobstars)
{
    const char* chrome = "~/Library/Caches/Google/Chrome/*/Cache/**";
    const MatchCase cases[] = {
        {"/", "/", true},
        {"/", "/a", false},
        {"~", "/Users/me", true},
        {"~", "/Users/me/x", false},
        {"~/**", "/Users/me", true},
        {"~/**", "/Users/me/a/b", true},
        {"**", "/", true},
        {"**", "/a", true},
        {"**", "/a/b/c", true},
        {"~/x/**/y", "/Users/me/x/y", true},
        {"~/x/**/y", "/Users/me/x/a/b/y", true},
        {"~/x/**/y", "/Users/me/x/y/z", false},
        {chrome, "/Users/me/Library/Caches/Google/Chrome/Default/Cache/data_1", true},
        {chrome, "/Users/me/Library/Caches/Google/Chrome/Profile/1/Cache/data_1", false},
        {"~/.npm/_cacache/**", "/Users/me/.npm/_cacache", true},
        {"~/.npm/_cacache/**", "/Users/me/.npm/_cacache/", true},
        {"Users/x", "/Users/x", true},
        {"x", "/Users/x", false, "a relative pattern is anchored at the root"},
        {"~/Cache", "/Users/me/cache", false},
        {"/a/b/../c", "/a/c", true, "a pattern not under ~ is standardized"},
        {"/a//b/", "/a/b", true},
        // The segment before the first "**" is tried before the others; it must still follow
        // the same rules as every segment.
        {"~/x/K/**", "/Users/me/x/\u212A/y", true, "the Kelvin sign is K decomposed"},
        {"~/x/caf\u00e9/**", "/Users/me/x/cafe\u0301", true},
        {"~/x/?/*", "/Users/me/x/ab/c", false},
        {"~/x/*/y", "/Users/me/x/y", false, "the path is shorter than the fixed segments"},
        {"**/y", "/a/b/y", true},
        {"/a/**/b/**", "/a/b", true},
    };
    for (const MatchCase& c : cases)
        EXPECT_EQ(GlobMatcher::matches(QString::fromUtf8(c.pattern), QString::fromUtf8(c.text), me), c.matches)
            << c.pattern << " on " << c.text << ": " << c.why;
    EXPECT_EQ(GlobMatcher::expandHome(QStringLiteral("~/x/../*"), me), QStringLiteral("/Users/me/x/../*"));
    EXPECT_EQ(GlobMatcher::expandHome(QString(), me), QStringLiteral("/"));
    EXPECT_EQ(GlobMatcher::normalizePath(QStringLiteral("/a/./b/")), QStringLiteral("/a/b"));
}

TEST(GlobMatcher, WildcardScanWithinOneSegment)
{
    const MatchCase cases[] = {
        {"*", "", true},
        {"*", ".hidden", true},
        {"a*b*c", "aXbYbZc", true},
        {"a*b*c", "aXbYbZ", false},
        {"a**b", "ab", true},
        {"?x", "yx", true},
        {"?", "", false},
        {"*.log", "a.b.log", true},
        {"cache", "Cache", false},
        {"[ab]", "[ab]", true, "brackets and braces are plain characters"},
        {"[ab]", "a", false, "brackets and braces are plain characters"},
        {"a\\*", "a\\xyz", true, "no escape character"},
        // A star in the text is met literally first; afterwards only an earlier star can re-enter.
        {"*", "*", true},
        {"a*", "a*b", false},
        {"*", "a*b", true},
        // Characters are user-perceived and compare by canonical equivalence.
        {"caf\u00e9", "cafe\u0301", true},
        {"caf?", "cafe\u0301", true},
        {"caf??", "cafe\u0301", false},
        {"?", "\U0001F469\u200D\U0001F4BB", true},
    };
    for (const MatchCase& c : cases)
        EXPECT_EQ(GlobMatcher::matchWildcard(QString::fromUtf8(c.pattern), QString::fromUtf8(c.text)), c.matches)
            << c.pattern << " on " << c.text << ": " << c.why;
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
    const std::pair<const char*, QByteArray> invalidTags[] = {
        {"second", "\n" + signature},
        {"lower", signature.toLower()},
        {"empty", QByteArray()},
        {"binary", signature + "\n# \xff\xfe"},
        // The limit cuts a two-byte character in half.
        {"cut", signature + "\n#" + QByteArray(466, 'x') + "\xc3\xa9"},
    };
    for (const auto& [invalid, content] : invalidTags) {
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
