#include "KestrowProcess.h"
#include "TestHome.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace kestrow::test;

TEST(VitalsCommand, PrintsTheSnapshotReadableOrAsJson)
{
    const KestrowRun json = runKestrow({QStringLiteral("vitals"), QStringLiteral("--json")});
    ASSERT_EQ(json.exitCode, 0) << json.err.toStdString();
    EXPECT_TRUE(json.out.startsWith(QStringLiteral("{\n  \"timestamp\" : \"")));
    const QJsonObject vitals = QJsonDocument::fromJson(json.out.toUtf8()).object();
    EXPECT_EQ(vitals.keys().size(), vitals.contains(QStringLiteral("battery")) ? 6 : 5);
    EXPECT_GT(vitals[QStringLiteral("memory")][QStringLiteral("totalBytes")].toDouble(), 0);
    EXPECT_EQ(vitals[QStringLiteral("disk")][QStringLiteral("volumePath")].toString(), QStringLiteral("/"));
    EXPECT_EQ(vitals[QStringLiteral("cpu")][QStringLiteral("perCoreUsage")].toArray().size(), 0);
    EXPECT_TRUE(QStringList({QStringLiteral("NOMINAL"), QStringLiteral("FAIR"), QStringLiteral("SERIOUS"),
                             QStringLiteral("CRITICAL")})
                    .contains(vitals[QStringLiteral("thermalState")].toString()));
    EXPECT_TRUE(json.err.isEmpty());

    // The Trash it measures beside the disk is the test home's.
    const TestHome home;
    home.writeFile(QStringLiteral(".local/share/Trash/files/old"), 3000);
    home.writeFile(QStringLiteral(".local/share/Trash/info/old.trashinfo"),
                   QByteArray("[Trash Info]\nPath=/x/old\nDeletionDate=2020-01-01T00:00:00\n"));
    const KestrowRun table = runKestrow({QStringLiteral("vitals"), QStringLiteral("--home"), home.path()});
    ASSERT_EQ(table.exitCode, 0);
    EXPECT_TRUE(table.out.contains(QStringLiteral("Trash    4 KB waiting to be emptied\n"))) << table.out.toStdString();
    for (const char* label : {"CPU ", "Memory ", "Disk ", "Thermal "})
        EXPECT_TRUE(table.out.contains(QLatin1String(label))) << label;

    const KestrowRun zero = runKestrow({QStringLiteral("vitals"), QStringLiteral("--watch"), QStringLiteral("0")});
    EXPECT_EQ(zero.exitCode, 2);
    EXPECT_TRUE(zero.err.contains(QStringLiteral("--watch must be a number of seconds above zero")));
}
