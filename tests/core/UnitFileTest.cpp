#include "platform/UnitFile.h"

#include <gtest/gtest.h>

using namespace kestrow;

TEST(UnitFile, ReadsSectionsContinuationsCommentsAndResets)
{
    const std::optional<UnitFile> file = UnitFile::parse("# header\n"
                                                         "Stray=before any section\n"
                                                         "[Unit]\n"
                                                         "Description = Sync \\\n"
                                                         "  # a comment inside is skipped\n"
                                                         "  ; and so is this\n"
                                                         "  daemon\n"
                                                         "[Service]\n"
                                                         "ExecStartPre=/bin/true\n"
                                                         "ExecStart=/usr/bin/first\n"
                                                         "ExecStart=\n"
                                                         "ExecStart=/usr/bin/sync --path C:\\\\\n"
                                                         "Restart=on-failure\r\n"
                                                         "Restart=always\n"
                                                         "[Install]\n"
                                                         "WantedBy=default.target timers.target\n"
                                                         "WantedBy=sockets.target\n"
                                                         "Alias=");
    ASSERT_TRUE(file.has_value());
    EXPECT_EQ(file->value(QStringLiteral("Unit"), QStringLiteral("Description")), QStringLiteral("Sync  daemon"));
    EXPECT_EQ(file->values(QStringLiteral("Service"), QStringLiteral("ExecStart")),
              QStringList{QStringLiteral("/usr/bin/sync --path C:\\\\")});
    EXPECT_EQ(file->value(QStringLiteral("Service"), QStringLiteral("Restart")), QStringLiteral("always"));
    EXPECT_EQ(file->values(QStringLiteral("Install"), QStringLiteral("WantedBy")),
              (QStringList{QStringLiteral("default.target timers.target"), QStringLiteral("sockets.target")}));
    EXPECT_EQ(file->value(QStringLiteral("Install"), QStringLiteral("Alias")), QString());
    EXPECT_FALSE(file->value(QStringLiteral("Unit"), QStringLiteral("Stray")));
    EXPECT_FALSE(file->value(QStringLiteral("Service"), QStringLiteral("Description")));
}

TEST(UnitFile, FindsTheProgramOfACommandLine)
{
    EXPECT_EQ(UnitFile::commandProgram(QStringLiteral("/usr/bin/agent --flag")), QStringLiteral("/usr/bin/agent"));
    EXPECT_EQ(UnitFile::commandProgram(QStringLiteral("-@/usr/bin/agent argv0")), QStringLiteral("/usr/bin/agent"));
    EXPECT_EQ(UnitFile::commandProgram(QStringLiteral("+!!\"/opt/My Tools/run\" x")),
              QStringLiteral("/opt/My Tools/run"));
    EXPECT_EQ(UnitFile::commandProgram(QStringLiteral("'/opt/a b'/c\\ d e")), QStringLiteral("/opt/a b/c d"));
    EXPECT_FALSE(UnitFile::commandProgram(QStringLiteral("-")));
    EXPECT_FALSE(UnitFile::commandProgram(QStringLiteral("\"/opt/open")));
}
