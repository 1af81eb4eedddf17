#include "platform/DesktopEntryFile.h"

#include <gtest/gtest.h>

using namespace kestrow;

namespace {

const QString entry = QStringLiteral("Desktop Entry");

DesktopEntryFile parsed(const QByteArray& bytes)
{
    std::optional<DesktopEntryFile> file = DesktopEntryFile::parse(bytes);
    EXPECT_TRUE(file.has_value());
    return file.value_or(*DesktopEntryFile::parse({}));
}

} // namespace

TEST(DesktopEntryFile, ReadsGroupsKeysLocalesEscapesAndLists)
{
    const DesktopEntryFile file = parsed("# comment before the first group\n"
                                         "stray=ignored before any group\n"
                                         "[Desktop Entry]\n"
                                         "Name=Tracker\n"
                                         "Name[de]=Verfolger\n"
                                         "Name[de_CH]=Verfolger CH\n"
                                         "Name[sr@latin]=Pratilac\n"
                                         "  \n"
                                         "Comment = a\\sb\\nc\\td\\re\\\\f\\q\n"
                                         "Categories=Utility;Dev\\;Tools;\n"
                                         "Keywords=one;two\n"
                                         "Terminal=false\n"
                                         "StartupNotify=1\n"
                                         "NoDisplay=maybe\n"
                                         "not a key line\n"
                                         "Bad Key=x\n"
                                         "Name=Tracker Again\n"
                                         "[Desktop Action New]\n"
                                         "Name=New window\n"
                                         "[Desktop Entry]\n"
                                         "Exec=tracker\n");
    EXPECT_EQ(file.groups(), (QStringList{entry, QStringLiteral("Desktop Action New")}));
    EXPECT_EQ(file.keys(entry),
              (QStringList{QStringLiteral("Name"), QStringLiteral("Name[de]"), QStringLiteral("Name[de_CH]"),
                           QStringLiteral("Name[sr@latin]"), QStringLiteral("Comment"), QStringLiteral("Categories"),
                           QStringLiteral("Keywords"), QStringLiteral("Terminal"), QStringLiteral("StartupNotify"),
                           QStringLiteral("NoDisplay"), QStringLiteral("Exec")}));
    EXPECT_EQ(file.string(entry, QStringLiteral("Name")), QStringLiteral("Tracker Again")); // the last one
    EXPECT_EQ(file.string(entry, QStringLiteral("Exec")), QStringLiteral("tracker"));       // the group continued
    EXPECT_EQ(file.string(QStringLiteral("Desktop Action New"), QStringLiteral("Name")), QStringLiteral("New window"));
    EXPECT_FALSE(file.string(entry, QStringLiteral("stray")));

    EXPECT_EQ(file.localeString(entry, QStringLiteral("Name"), QStringLiteral("de_CH.UTF-8")),
              QStringLiteral("Verfolger CH"));
    EXPECT_EQ(file.localeString(entry, QStringLiteral("Name"), QStringLiteral("de_AT")), QStringLiteral("Verfolger"));
    EXPECT_EQ(file.localeString(entry, QStringLiteral("Name"), QStringLiteral("sr_RS@latin")),
              QStringLiteral("Pratilac"));
    EXPECT_EQ(file.localeString(entry, QStringLiteral("Name"), QStringLiteral("fr_FR")),
              QStringLiteral("Tracker Again"));

    EXPECT_EQ(file.rawValue(entry, QStringLiteral("Comment")), QStringLiteral("a\\sb\\nc\\td\\re\\\\f\\q"));
    EXPECT_EQ(file.string(entry, QStringLiteral("Comment")), QStringLiteral("a b\nc\td\re\\f\\q"));
    EXPECT_EQ(file.stringList(entry, QStringLiteral("Categories")),
              (QStringList{QStringLiteral("Utility"), QStringLiteral("Dev;Tools")}));
    EXPECT_EQ(file.stringList(entry, QStringLiteral("Keywords")),
              (QStringList{QStringLiteral("one"), QStringLiteral("two")}));
    EXPECT_EQ(file.boolean(entry, QStringLiteral("Terminal")), false);
    EXPECT_EQ(file.boolean(entry, QStringLiteral("StartupNotify")), true);
    EXPECT_FALSE(file.boolean(entry, QStringLiteral("NoDisplay")));

    EXPECT_FALSE(DesktopEntryFile::parse("[Desktop Entry]\nName=\xff\xfe\n"));
}

TEST(DesktopEntryFile, SplitsExecIntoArguments)
{
    EXPECT_EQ(DesktopEntryFile::execArguments(QStringLiteral("  /usr/bin/tool   --flag %U ")),
              (QStringList{QStringLiteral("/usr/bin/tool"), QStringLiteral("--flag"), QStringLiteral("%U")}));
    EXPECT_EQ(
        DesktopEntryFile::execArguments(QStringLiteral("\"/opt/My App/run\" \"say \\\"hi\\\" \\$HOME\" x\"\"")),
        (QStringList{QStringLiteral("/opt/My App/run"), QStringLiteral("say \"hi\" $HOME"), QStringLiteral("x")}));
    EXPECT_EQ(DesktopEntryFile::execArguments(QString()), QStringList());
    EXPECT_FALSE(DesktopEntryFile::execArguments(QStringLiteral("\"/opt/open quote")));
}

TEST(DesktopEntryFile, EditsChangeOnlyTheirLineAndUndoExactly)
{
    const QList<QByteArray> originals{
        "# mine\n[Desktop Entry]\nName=A\nExec=a\n\n# later\n[Other]\nKey=v\n",
        "[Desktop Entry]\r\nName=A\r\nExec=a\r\n",
        "[Desktop Entry]\nName=A\nExec=a", // no newline at the end
        "[Desktop Entry]\n",
    };
    for (const QByteArray& original : originals) {
        const DesktopEntryFile file = parsed(original);
        const QByteArray hidden = file.withValue(entry, QStringLiteral("Hidden"), QStringLiteral("true"));
        const DesktopEntryFile edited = parsed(hidden);
        EXPECT_EQ(edited.boolean(entry, QStringLiteral("Hidden")), true) << original.constData();
        EXPECT_EQ(edited.rawValue(entry, QStringLiteral("Exec")), file.rawValue(entry, QStringLiteral("Exec")));
        EXPECT_EQ(edited.withoutKey(entry, QStringLiteral("Hidden")), original) << original.constData();
    }
    EXPECT_EQ(parsed("# mine\n[Desktop Entry]\nName=A\nExec=a\n\n[Other]\nKey=v\n")
                  .withValue(entry, QStringLiteral("Hidden"), QStringLiteral("true")),
              QByteArray("# mine\n[Desktop Entry]\nName=A\nExec=a\nHidden=true\n\n[Other]\nKey=v\n"));

    const DesktopEntryFile twice = parsed("[Desktop Entry]\nHidden = false\nName=A\nHidden=false\n[Other]\nHidden=x\n");
    EXPECT_EQ(twice.withValue(entry, QStringLiteral("Hidden"), QStringLiteral("true")),
              QByteArray("[Desktop Entry]\nHidden = false\nName=A\nHidden=true\n[Other]\nHidden=x\n"));
    EXPECT_EQ(twice.withoutKey(entry, QStringLiteral("Hidden")),
              QByteArray("[Desktop Entry]\nName=A\n[Other]\nHidden=x\n"));
    EXPECT_EQ(parsed("# only a comment").withValue(entry, QStringLiteral("Hidden"), QStringLiteral("true")),
              QByteArray("# only a comment\n[Desktop Entry]\nHidden=true\n"));
}
