#include "KestrowProcess.h"
#include "TestHome.h"

#include "safety/CacheDirTagDetector.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace kestrow::test;

namespace {

KestrowRun run(const TestHome& home, QStringList arguments)
{
    arguments << QStringLiteral("--home") << home.path();
    return runKestrow(arguments);
}

} // namespace

TEST(AnomaliesCommand, ListsProposalsTheSweepLeavesAloneUntilOneIsAdopted)
{
    TestHome home;
    const QString store = home.path(QStringLiteral("Projects/shard-store"));
    const QString escapedStore = QString(store).replace(QLatin1Char('/'), QStringLiteral("\\/"));
    home.allocateFile(QStringLiteral("Projects/shard-store/blob"), 110 * 1024 * 1024);
    kestrow::CacheDirTagDetector::writeTag(store, QStringLiteral("Shards"));

    const KestrowRun listed = run(home, {QStringLiteral("anomalies"), QStringLiteral("--json")});
    ASSERT_EQ(listed.exitCode, 0) << listed.err.toStdString();
    EXPECT_TRUE(listed.out.contains(QStringLiteral("\"path\" : \"") + escapedStore + QLatin1Char('"')))
        << listed.out.toStdString();
    EXPECT_TRUE(listed.out.contains(QStringLiteral("\"confidenceScore\" : 1,")));
    EXPECT_TRUE(listed.out.contains(QStringLiteral("\"id\" : \"dynamic.anomaly.shard-store\"")));
    EXPECT_TRUE(listed.out.contains(QRegularExpression(QStringLiteral("\"createdAt\" : \"\\d{4}-\\d\\d-\\d\\dT"))))
        << "ISO 8601 time stamps";

    const KestrowRun higher =
        run(home, {QStringLiteral("anomalies"), QStringLiteral("--min-size-mb"), QStringLiteral("200")});
    ASSERT_EQ(higher.exitCode, 0);
    EXPECT_TRUE(higher.out.startsWith(QStringLiteral("No anomalies")));

    const QStringList sweep{QStringLiteral("sweep"), QStringLiteral("--dry-run")};
    const KestrowRun proposed = run(home, sweep);
    ASSERT_EQ(proposed.exitCode, 0) << proposed.err.toStdString();
    const qsizetype note =
        proposed.out.indexOf(QStringLiteral("proposed, not swept: adopt with `kestrow anomalies --adopt PATH`\n"));
    ASSERT_GE(note, 0) << proposed.out.toStdString();
    EXPECT_EQ(proposed.out.count(store), 1) << "named among the proposals only, never as swept";
    EXPECT_GT(proposed.out.indexOf(store), note);

    const KestrowRun wrong =
        run(home, {QStringLiteral("anomalies"), QStringLiteral("--adopt"), home.path(QStringLiteral("Projects"))});
    EXPECT_EQ(wrong.exitCode, 1);
    EXPECT_TRUE(wrong.err.contains(QStringLiteral("is not among the anomalies found"))) << wrong.err.toStdString();

    const KestrowRun adopted = run(home, {QStringLiteral("anomalies"), QStringLiteral("--adopt"), store});
    ASSERT_EQ(adopted.exitCode, 0) << adopted.err.toStdString();
    EXPECT_TRUE(adopted.out.startsWith(QStringLiteral("Adopted rule 'dynamic.anomaly.shard-store'")));
    EXPECT_TRUE(QFile::exists(home.path(QStringLiteral(".kestrow/rules.json"))));

    // The rule now claims the folder: no longer an anomaly, and swept by the rule's tier.
    EXPECT_TRUE(run(home, {QStringLiteral("anomalies")}).out.startsWith(QStringLiteral("No anomalies")));
    const KestrowRun swept = run(home, sweep);
    ASSERT_EQ(swept.exitCode, 0) << swept.err.toStdString();
    EXPECT_FALSE(swept.out.contains(QStringLiteral("proposed, not swept")));
    EXPECT_TRUE(swept.out.contains(store)) << swept.out.toStdString();
    EXPECT_TRUE(QFile::exists(store + QStringLiteral("/blob")));
}
