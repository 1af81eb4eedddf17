#include "KestrowProcess.h"
#include "TestHome.h"

#include <gtest/gtest.h>

using namespace kestrow::test;

TEST(ScanCommand, PrintsTheScanResultAsJson)
{
    TestHome home;
    home.writeFile(QStringLiteral(".cache/uv/wheels/a.whl"), 5000);
    const KestrowRun run =
        runKestrow({QStringLiteral("scan"), QStringLiteral("--home"), home.path(), QStringLiteral("--json"),
                    QStringLiteral("--category"), QStringLiteral("developer_cache")});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_TRUE(run.out.startsWith(QStringLiteral("{\n  \"scanId\" : \"")));
    EXPECT_TRUE(run.out.contains(QStringLiteral("\"itemDescription\" : \"uv Cache (wheels)\"")));
    EXPECT_TRUE(run.out.contains(QStringLiteral("\"scannedCategories\" : [\n    \"DEVELOPER_CACHE\"\n  ]")));
    EXPECT_TRUE(run.err.isEmpty()) << "no progress line without a terminal";
}

TEST(ScanCommand, ReadableTableAndUsageErrors)
{
    TestHome home;
    home.writeFile(QStringLiteral(".cache/uv/wheels/a.whl"), 5000);
    const KestrowRun table = runKestrow({QStringLiteral("scan"), QStringLiteral("--home"), home.path()});
    ASSERT_EQ(table.exitCode, 0);
    EXPECT_TRUE(table.out.contains(QStringLiteral("Developer Caches  (1 items, 8 KB)")));
    EXPECT_TRUE(table.out.contains(QStringLiteral("uv Cache (wheels)")));

    const KestrowRun unknown = runKestrow({QStringLiteral("scan"), QStringLiteral("--home"), home.path(),
                                           QStringLiteral("--category"), QStringLiteral("docker-vm")});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(unknown.err.contains(QStringLiteral("DOCKER_VM")));
    EXPECT_EQ(
        runKestrow({QStringLiteral("scan"), QStringLiteral("--home"), home.path(QStringLiteral("missing"))}).exitCode,
        2);
    EXPECT_EQ(runKestrow({QStringLiteral("frobnicate")}).exitCode, 2);
    EXPECT_EQ(runKestrow({QStringLiteral("--help")}).exitCode, 0);
    EXPECT_TRUE(runKestrow({QStringLiteral("--version")}).out.startsWith(QStringLiteral("kestrow ")));
}
