#include "TestHome.h"

#include "platform/NativePath.h"
#include "platform/PlatformHomeFolders.h"
#include "platform/UserDirsParser.h"
#include "safety/SandboxValidator.h"

#include <QHash>

#include <gtest/gtest.h>

#include <optional>

using namespace kestrow;
using kestrow::test::TestHome;
using E = SandboxSecurityError;

namespace {

std::optional<SandboxSecurityError> pathError(const QString& path, const QString& home)
{
    try {
        SandboxValidator::validate(path, home);
    } catch (const SandboxSecurityError& error) {
        return error;
    }
    return std::nullopt;
}

} // namespace

TEST(UserDirsParser, ReadsAssignmentsAsTheShellWould)
{
    const QByteArray text = "# written by the desktop, XDG_MUSIC_DIR=\"$HOME/Commented\"\n"
                            "XDG_DESKTOP_DIR=\"$HOME/Desktop\"\n"
                            "XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\r\n"
                            "XDG_PICTURES_DIR=\"${HOME}/Bilder/./Fotos/\"\n"
                            "  XDG_MUSIC_DIR = \"$HOME/Mein \\\"Musik\\\"\"   # after the value\n"
                            "XDG_VIDEOS_DIR=/data/films\n"
                            "XDG_TEMPLATES_DIR=\"$HOME/\"\n"
                            "XDG_PUBLICSHARE_DIR=\"Öffentlich\"\n"
                            "XDG_DOWNLOAD_DIR=\"$HOMEWORK/x\"\n"
                            "XDG_ESCAPED_DIR=\"\\$HOME/x\"\n"
                            "XDG_OPEN_DIR=\"$HOME/never closed\n"
                            "XDG_RAW_DIR=\"$HOME/caf\xe9\"\n"
                            "XDG_DESKTOP_DIR=\"$HOME/Arbeitsfläche\"\n"
                            "NOT_XDG_DIR=\"/x\"\n";
    const QString home = QStringLiteral("/home/me");
    const QHash<QString, QString> expected{
        {QStringLiteral("DESKTOP"), QStringLiteral("/home/me/Arbeitsfläche")},
        {QStringLiteral("DOCUMENTS"), QStringLiteral("/home/me/Dokumente")},
        {QStringLiteral("PICTURES"), QStringLiteral("/home/me/Bilder/Fotos")},
        {QStringLiteral("MUSIC"), QStringLiteral("/home/me/Mein \"Musik\"")},
        {QStringLiteral("VIDEOS"), QStringLiteral("/data/films")},
        {QStringLiteral("TEMPLATES"), home},
        {QStringLiteral("RAW"), NativePath::decode(QByteArray("/home/me/caf\xe9"))},
    };
    EXPECT_EQ(UserDirsParser::parse(text, home), expected);
    EXPECT_TRUE(UserDirsParser::parse({}, home).isEmpty());
}

TEST(ProtectedHomeGround, RenamedAndPrivateFoldersAreRefusedLikeDocuments)
{
    if (PlatformHomeFolders::fixedFolders().empty())
        GTEST_SKIP() << "a platform without protected folders of its own";
    TestHome home;
    const QString h = home.path();
    const QString documents = home.path(QStringLiteral("Dokumente"));
    const QString link = home.makeSymbolicLink(QStringLiteral(".cache/tool/docs"), documents);
    EXPECT_EQ(pathError(QStringLiteral("~/Dokumente/a"), h), std::nullopt) << "no user-dirs.dirs, no such folder";

    home.writeFile(QStringLiteral(".config/user-dirs.dirs"),
                   QByteArray("XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"\nXDG_VIDEOS_DIR=\"/data/films\"\n"
                              "XDG_DESKTOP_DIR=\"$HOME/\"\n"));
    const auto refusal = [&h](const char* relative, const char* name) {
        return E::forbiddenUserDirectory(h + QLatin1Char('/') + QLatin1String(relative), QString::fromUtf8(name));
    };
    EXPECT_EQ(pathError(QStringLiteral("~/Dokumente/a"), h), refusal("Dokumente/a", "Dokumente"));
    EXPECT_EQ(pathError(QStringLiteral("~/dokumente"), h), refusal("dokumente", "Dokumente"));
    EXPECT_EQ(pathError(QStringLiteral("/data/films/x"), h),
              E::forbiddenUserDirectory(QStringLiteral("/data/films/x"), QStringLiteral("/data/films")));
    EXPECT_EQ(pathError(QStringLiteral("~/Videos/x"), h), refusal("Videos/x", "Videos"));
    EXPECT_EQ(pathError(QStringLiteral("~/.mozilla/firefox/p"), h), refusal(".mozilla/firefox/p", ".mozilla"));
    EXPECT_EQ(pathError(QStringLiteral("~/.local/share/keyrings/login.keyring"), h),
              refusal(".local/share/keyrings/login.keyring", ".local/share/keyrings"));
    EXPECT_EQ(pathError(QStringLiteral("~/.cache/tool/x"), h), std::nullopt) << "a switched-off folder closes nothing";
    EXPECT_EQ(pathError(link, h),
              E::symlinkEscapedSandbox(link, documents, refusal("Dokumente", "Dokumente").description()));
    try {
        SandboxValidator::validatePattern(QStringLiteral("~/.local/share/Trash/files/*"), std::nullopt, h);
        ADD_FAILURE() << "a rule into the Trash was let through";
    } catch (const SandboxSecurityError& error) {
        EXPECT_EQ(error, refusal(".local/share/Trash/files", ".local/share/Trash"));
    }

    // XDG_CONFIG_HOME names the file too; the home's own still counts.
    const QString config = home.makeDirectory(QStringLiteral("elsewhere"));
    home.writeFile(QStringLiteral("elsewhere/user-dirs.dirs"), QByteArray("XDG_MUSIC_DIR=\"$HOME/Musica\"\n"));
    qputenv("XDG_CONFIG_HOME", NativePath::encode(config));
    EXPECT_EQ(pathError(QStringLiteral("~/Musica/a"), h), refusal("Musica/a", "Musica"));
    EXPECT_EQ(pathError(QStringLiteral("~/Dokumente/a"), h), refusal("Dokumente/a", "Dokumente"));
}
