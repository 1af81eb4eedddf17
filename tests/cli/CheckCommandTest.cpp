#include "KestrowProcess.h"
#include "TestHome.h"

#include <QFile>

#include <sys/stat.h>

#include <gtest/gtest.h>

using namespace kestrow::test;

TEST(CheckCommand, JsonKeepsItsKeyOrderAndLeavesOutWhatIsAbsent)
{
    TestHome home;
    home.makeDirectory(QStringLiteral(".cache/tool/x"));
    home.writeFile(QStringLiteral(".cache/tagged/CACHEDIR.TAG"),
                   QByteArray("Signature: 8a477f597d28d172789f06886806bc55\n# by tool\n"));
    const KestrowRun run = runKestrow({QStringLiteral("check"), QStringLiteral("--home"), home.path(),
                                       QStringLiteral("--json"), QStringLiteral("~/.cache/tool/x"),
                                       QStringLiteral("/etc/hosts"), QStringLiteral("~/.cache/tagged")});
    EXPECT_EQ(run.exitCode, 1) << run.err.toStdString();
    EXPECT_EQ(run.out,
              QStringLiteral("[\n"
                             "  {\n"
                             "    \"path\" : \"~\\/.cache\\/tool\\/x\",\n"
                             "    \"allowed\" : true,\n"
                             "    \"riskTier\" : \"SAFE_TO_DELETE\",\n"
                             "    \"confidence\" : 0.95,\n"
                             "    \"reason\" : \"Standard transient application caches, logs, or reports that "
                             "regenerate automatically.\",\n"
                             "    \"hasCacheDirTag\" : false\n"
                             "  },\n"
                             "  {\n"
                             "    \"path\" : \"\\/etc\\/hosts\",\n"
                             "    \"allowed\" : false,\n"
                             "    \"error\" : \"Sandbox Violation: Path '\\/etc\\/hosts' targets forbidden system path "
                             "'\\/etc'.\",\n"
                             "    \"riskTier\" : \"KEEP\",\n"
                             "    \"confidence\" : 1,\n"
                             "    \"reason\" : \"Protected system OS directory (\\/etc).\",\n"
                             "    \"hasCacheDirTag\" : false\n"
                             "  },\n"
                             "  {\n"
                             "    \"path\" : \"~\\/.cache\\/tagged\",\n"
                             "    \"allowed\" : true,\n"
                             "    \"riskTier\" : \"SAFE_TO_DELETE\",\n"
                             "    \"confidence\" : 1,\n"
                             "    \"reason\" : \"Verified CACHEDIR.TAG cache specification (by tool)\",\n"
                             "    \"hasCacheDirTag\" : true\n"
                             "  }\n"
                             "]\n"));
}

TEST(CheckCommand, RuleIdsReadableLinesAndExitCodes)
{
    TestHome home;
    home.makeDirectory(QStringLiteral(".cache/uv/wheels"));
    const KestrowRun rule = runKestrow({QStringLiteral("check"), QStringLiteral("--home"), home.path(),
                                        QStringLiteral("--json"), QStringLiteral("--category"),
                                        QStringLiteral("system_logs"), home.path(QStringLiteral(".cache/uv/wheels"))});
    EXPECT_EQ(rule.exitCode, 0) << rule.err.toStdString();
    EXPECT_TRUE(rule.out.contains(
        QStringLiteral("\"reason\" : \"Matched RuleRegistry rule: uv Package & Wheel Cache (dev.uv.cache)\",\n"
                       "    \"matchedRuleId\" : \"dev.uv.cache\",\n"
                       "    \"hasCacheDirTag\" : false")))
        << rule.out.toStdString();

    const KestrowRun lines =
        runKestrow({QStringLiteral("check"), QStringLiteral("--home"), home.path(), QStringLiteral("--category"),
                    QStringLiteral("dockerVM"), QStringLiteral("~/Projects/vm"), QStringLiteral("~/Documents/a")});
    EXPECT_EQ(lines.exitCode, 1);
    EXPECT_EQ(lines.out,
              QStringLiteral("~/Projects/vm: allowed. Tier: Protected (Keep) (confidence 1.00): Active Docker "
                             "VM disk image. Uninstallation or shutdown required.\n"
                             "~/Documents/a: refused: Sandbox Violation: Path '") +
                  home.path(QStringLiteral("Documents/a")) +
                  QStringLiteral("' targets protected user directory 'Documents'. Tier: Protected (Keep) "
                                 "(confidence 1.00): Protected user personal directory (~/documents).\n"));

    const KestrowRun unknown =
        runKestrow({QStringLiteral("check"), QStringLiteral("--home"), home.path(), QStringLiteral("--category"),
                    QStringLiteral("nope"), QStringLiteral("~/x/y")});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(unknown.err.contains(QStringLiteral("DEVELOPER_CACHE, AI_MODEL_WEIGHTS"))) << unknown.err.toStdString();
    EXPECT_EQ(runKestrow({QStringLiteral("check"), QStringLiteral("--home"), home.path()}).exitCode, 2);
    EXPECT_EQ(runKestrow({QStringLiteral("check"), QStringLiteral("--help")}).exitCode, 0);
}

TEST(CheckCommand, WhatTheSandboxRefusesIsKeptWithTheRefusalAsReason)
{
    TestHome home;
    const QString refusal = QStringLiteral("Sandbox Violation: Path '%1' has insufficient depth (1 components relative "
                                           "to home; minimum 2 required).")
                                .arg(home.path(QStringLiteral("x")));
    const KestrowRun json =
        runKestrow({QStringLiteral("check"), QStringLiteral("--home"), home.path(), QStringLiteral("--json"),
                    QStringLiteral("--category"), QStringLiteral("dynamicRule"), QStringLiteral("~/x")});
    EXPECT_EQ(json.exitCode, 1);
    const QString escaped = QString(refusal).replace(QLatin1Char('/'), QStringLiteral("\\/"));
    EXPECT_EQ(json.out, QStringLiteral("[\n"
                                       "  {\n"
                                       "    \"path\" : \"~\\/x\",\n"
                                       "    \"allowed\" : false,\n"
                                       "    \"error\" : \"%1\",\n"
                                       "    \"riskTier\" : \"KEEP\",\n"
                                       "    \"confidence\" : 1,\n"
                                       "    \"reason\" : \"%1\",\n"
                                       "    \"hasCacheDirTag\" : false\n"
                                       "  }\n"
                                       "]\n")
                            .arg(escaped));

    const KestrowRun text = runKestrow({QStringLiteral("check"), QStringLiteral("--home"), home.path(),
                                        QStringLiteral("~/x"), QStringLiteral("/var/log/x")});
    EXPECT_EQ(text.exitCode, 1);
    EXPECT_EQ(text.out, QStringLiteral("~/x: refused: %1 Tier: Protected (Keep) (confidence 1.00).\n"
                                       "/var/log/x: refused: Sandbox Violation: Path '/var/log/x' targets forbidden "
                                       "system path '/var'. Tier: Protected (Keep) (confidence 1.00).\n")
                            .arg(refusal));
}

TEST(CheckCommand, ACacheTagThatIsAFifoIsNoTagAndNeverWaitedOn)
{
    TestHome home;
    const QString folder = home.makeDirectory(QStringLiteral(".cache/tool"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(folder + QStringLiteral("/CACHEDIR.TAG")).constData(), 0600), 0);
    // A check that waits on the FIFO does not end in time.
    const KestrowRun check = KestrowProcess({QStringLiteral("check"), QStringLiteral("--home"), home.path(),
                                             QStringLiteral("--json"), folder})
                                 .finish(20000);
    EXPECT_EQ(check.exitCode, 0);
    const QString& out = check.out;
    EXPECT_TRUE(out.contains(QStringLiteral("\"riskTier\" : \"SAFE_TO_DELETE\",\n    \"confidence\" : 0.95")))
        << out.toStdString();
    EXPECT_TRUE(out.contains(QStringLiteral("\"hasCacheDirTag\" : false"))) << out.toStdString();
}
