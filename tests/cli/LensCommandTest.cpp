#include "KestrowProcess.h"
#include "TestHome.h"

#include "support/JsonDecoder.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace kestrow::test;

namespace {

KestrowRun lens(const TestHome& home, QStringList arguments)
{
    arguments.prepend(QStringLiteral("lens"));
    arguments << QStringLiteral("--home") << home.path();
    return runKestrow(arguments);
}

} // namespace

TEST(LensCommand, TreeJsonAndFilesOfATemporaryHome)
{
    TestHome home;
    home.writeFile(QStringLiteral("media/clip.mp4"), 400000);
    home.writeFile(QStringLiteral("media/song.mp3"), 100000);
    home.writeFile(QStringLiteral("media/notes.txt"), 20000);
    home.writeFile(QStringLiteral("code/a/b/c/deep.o"), 50000);

    const KestrowRun tree = lens(home, {});
    ASSERT_EQ(tree.exitCode, 0) << tree.err.toStdString();
    const QStringList lines = tree.out.split(QLatin1Char('\n'));
    ASSERT_GE(lines.size(), 4);
    EXPECT_TRUE(lines[0].startsWith(home.path() + QStringLiteral("/  "))) << tree.out.toStdString();
    EXPECT_TRUE(lines[2].contains(QStringLiteral("media/"))) << "largest first";
    EXPECT_TRUE(lines[2].contains(QStringLiteral("3 items")));
    EXPECT_TRUE(tree.out.contains(QStringLiteral("    clip.mp4\n"))) << tree.out.toStdString();
    EXPECT_TRUE(tree.out.contains(QStringLiteral("%  "))) << "each row shows its share";

    const KestrowRun top =
        lens(home, {QStringLiteral("--top"), QStringLiteral("1"), QStringLiteral("--depth"), QStringLiteral("1")});
    ASSERT_EQ(top.exitCode, 0);
    EXPECT_TRUE(top.out.contains(QStringLiteral("... 1 more"))) << top.out.toStdString();

    const KestrowRun json = lens(home, {home.path(QStringLiteral("code")), QStringLiteral("--depth"),
                                        QStringLiteral("1"), QStringLiteral("--json")});
    ASSERT_EQ(json.exitCode, 0);
    const QJsonObject root = QJsonDocument::fromJson(json.out.toUtf8()).object();
    EXPECT_EQ(root.value(QStringLiteral("name")).toString(), QStringLiteral("code"));
    EXPECT_EQ(root.value(QStringLiteral("itemCount")).toInt(), 1);
    EXPECT_TRUE(root.value(QStringLiteral("lastModifiedDate")).toString().endsWith(QLatin1Char('Z')))
        << "ISO 8601 time stamps";
    EXPECT_TRUE(json.out.startsWith(QStringLiteral("{\n  \"id\" : ")));

    const KestrowRun files = lens(home, {QStringLiteral("--files"), QStringLiteral("--depth"), QStringLiteral("5"),
                                         QStringLiteral("--category"), QStringLiteral("media")});
    ASSERT_EQ(files.exitCode, 0) << files.err.toStdString();
    EXPECT_TRUE(files.out.section(QLatin1Char('\n'), 0, 0).contains(QStringLiteral("MEDIA")));
    EXPECT_TRUE(files.out.section(QLatin1Char('\n'), 0, 0).endsWith(QStringLiteral("/media/clip.mp4")));
    EXPECT_TRUE(files.out.contains(QStringLiteral("song.mp3")));
    EXPECT_FALSE(files.out.contains(QStringLiteral("notes.txt")));
    EXPECT_TRUE(files.out.contains(QStringLiteral("2 items,")));
}

TEST(LensCommand, BadRequestsSayWhatToDo)
{
    TestHome home;
    const KestrowRun missing = lens(home, {home.path(QStringLiteral("nowhere"))});
    EXPECT_EQ(missing.exitCode, 2);
    EXPECT_TRUE(missing.err.contains(QStringLiteral("No such file or directory: ") + home.path()));
    EXPECT_TRUE(missing.err.contains(QStringLiteral("give an existing file or folder")));

    const KestrowRun unfiltered = lens(home, {QStringLiteral("--min-size"), QStringLiteral("5")});
    EXPECT_EQ(unfiltered.exitCode, 2);
    EXPECT_TRUE(unfiltered.err.contains(QStringLiteral("add --files")));

    const KestrowRun kind = lens(home, {QStringLiteral("--files"), QStringLiteral("--category"), QStringLiteral("x")});
    EXPECT_EQ(kind.exitCode, 2);
    EXPECT_TRUE(kind.err.contains(QStringLiteral("Accepted names: ARCHIVES, DISK_IMAGES")));
}
