#include "KestrowProcess.h"

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

    const KestrowRun table = runKestrow({QStringLiteral("vitals")});
    ASSERT_EQ(table.exitCode, 0);
    for (const char* label : {"CPU ", "Memory ", "Disk ", "Thermal "})
        EXPECT_TRUE(table.out.contains(QLatin1String(label))) << label;

    const KestrowRun zero = runKestrow({QStringLiteral("vitals"), QStringLiteral("--watch"), QStringLiteral("0")});
    EXPECT_EQ(zero.exitCode, 2);
    EXPECT_TRUE(zero.err.contains(QStringLiteral("--watch must be a number of seconds above zero")));
}
