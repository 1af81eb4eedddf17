#include "KestrowProcess.h"
#include "TestHome.h"

#include "platform/PlatformHomeFolders.h"

#include <QFileInfo>

#include <gtest/gtest.h>

using namespace kestrow::test;

TEST(ProtectedGroundCommands, CheckExplainsAndCleanAndRulesRefuse)
{
    if (kestrow::PlatformHomeFolders::fixedFolders().empty())
        GTEST_SKIP() << "a platform without protected folders of its own";
    TestHome home;
    home.writeFile(QStringLiteral(".config/user-dirs.dirs"), QByteArray("XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\n"));
    home.makeSymbolicLink(QStringLiteral(".cache/tool/docs"), home.path(QStringLiteral("Dokumente")));
    const QString trashed = home.writeFile(QStringLiteral(".local/share/Trash/files/old"), 100);

    const KestrowRun text = runKestrow({QStringLiteral("check"), QStringLiteral("--home"), home.path(),
                                        QStringLiteral("~/Dokumente/a"), QStringLiteral("~/.cache/tool/docs")});
    EXPECT_EQ(text.exitCode, 1);
    EXPECT_EQ(text.out, QStringLiteral(
                            "~/Dokumente/a: refused: Sandbox Violation: Path '%1/Dokumente/a' targets protected user "
                            "directory 'Dokumente'. Tier: Protected (Keep) (confidence 1.00): Protected user personal "
                            "directory (~/Dokumente).\n"
                            "~/.cache/tool/docs: refused: Sandbox Violation: Symlink '%1/.cache/tool/docs' resolves to "
                            "forbidden path '%1/Dokumente': Sandbox Violation: Path '%1/Dokumente' targets protected "
                            "user directory 'Dokumente'. Tier: Protected (Keep) (confidence 1.00): Symlink target "
                            "points to protected boundary: Protected user personal directory (~/Dokumente).\n")
                            .arg(home.path()));

    const KestrowRun json = runKestrow({QStringLiteral("check"), QStringLiteral("--home"), home.path(),
                                        QStringLiteral("--json"), QStringLiteral("~/.local/share/Trash/files")});
    const QString escapedHome = QString(home.path()).replace(QLatin1Char('/'), QStringLiteral("\\/"));
    EXPECT_EQ(json.out,
              QStringLiteral("[\n"
                             "  {\n"
                             "    \"path\" : \"~\\/.local\\/share\\/Trash\\/files\",\n"
                             "    \"allowed\" : false,\n"
                             "    \"error\" : \"Sandbox Violation: Path '%1\\/.local\\/share\\/Trash\\/files' "
                             "targets protected user directory '.local\\/share\\/Trash'.\",\n"
                             "    \"riskTier\" : \"KEEP\",\n"
                             "    \"confidence\" : 1,\n"
                             "    \"reason\" : \"Protected Trash (~\\/.local\\/share\\/Trash): emptying it "
                             "is an act of its own.\",\n"
                             "    \"hasCacheDirTag\" : false\n"
                             "  }\n"
                             "]\n")
                  .arg(escapedHome));

    const KestrowRun clean = runKestrow({QStringLiteral("clean"), QStringLiteral("--home"), home.path(), trashed});
    EXPECT_EQ(clean.exitCode, 1);
    EXPECT_TRUE(clean.out.contains(QStringLiteral("targets protected user directory '.local/share/Trash'")))
        << clean.out.toStdString();
    EXPECT_TRUE(QFileInfo::exists(trashed));

    const KestrowRun rule = runKestrow(
        {QStringLiteral("rules"), QStringLiteral("add"), QStringLiteral("--home"), home.path(), QStringLiteral("--id"),
         QStringLiteral("custom.trash"), QStringLiteral("--name"), QStringLiteral("Trash"), QStringLiteral("--pattern"),
         QStringLiteral("~/.local/share/Trash/files/*"), QStringLiteral("--category"), QStringLiteral("dynamicRule"),
         QStringLiteral("--tier"), QStringLiteral("safe_to_delete")});
    EXPECT_EQ(rule.exitCode, 1);
    EXPECT_EQ(rule.err.trimmed(), QStringLiteral("kestrow: Sandbox Violation: Path '%1/.local/share/Trash/files' "
                                                 "targets protected user directory '.local/share/Trash'.")
                                      .arg(home.path()));
}
