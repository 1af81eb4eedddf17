#include "KestrowProcess.h"
#include "TestHome.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <algorithm>

using namespace kestrow::test;

TEST(StartupCommand, ListsDisablesAndEnablesAnAutostartEntry)
{
    const TestHome home;
    const QByteArray original = "[Desktop Entry]\nName=Kestrow Probe\nExec=/bin/sh -c true\n";
    const QString file = home.writeFile(QStringLiteral(".config/autostart/kestrow-probe.desktop"), original);
    home.writeFile(QStringLiteral(".config/autostart/twin-a.desktop"), "[Desktop Entry]\nName=Twin\nExec=/bin/sh\n");
    home.writeFile(QStringLiteral(".config/autostart/twin-b.desktop"), "[Desktop Entry]\nName=Twin\nExec=/bin/sh\n");
    const auto startup = [&](const QStringList& arguments) {
        return runKestrow(QStringList{QStringLiteral("startup")} + arguments +
                          QStringList{QStringLiteral("--home"), home.path()});
    };

    const KestrowRun list = startup({QStringLiteral("list"), QStringLiteral("--json")});
    ASSERT_EQ(list.exitCode, 0) << list.err.toStdString();
    QJsonObject probe;
    for (const QJsonValue& item : QJsonDocument::fromJson(list.out.toUtf8()).array())
        if (item[QStringLiteral("label")].toString() == QStringLiteral("kestrow-probe"))
            probe = item.toObject();
    EXPECT_EQ(probe[QStringLiteral("name")].toString(), QStringLiteral("Kestrow Probe"));
    EXPECT_EQ(probe[QStringLiteral("type")].toString(), QStringLiteral("USER_LAUNCH_AGENT"));
    EXPECT_EQ(probe[QStringLiteral("status")].toString(), QStringLiteral("ENABLED"));
    EXPECT_EQ(probe[QStringLiteral("targetExecutablePath")].toString(), QStringLiteral("/bin/sh"));
    EXPECT_EQ(probe[QStringLiteral("fileURL")].toString(), QStringLiteral("file://") + file);

    const KestrowRun disabled = startup({QStringLiteral("disable"), QStringLiteral("Kestrow Probe")});
    ASSERT_EQ(disabled.exitCode, 0) << disabled.err.toStdString();
    EXPECT_EQ(disabled.out, QStringLiteral("Disabled kestrow-probe (%1).\n").arg(file));
    const KestrowRun table = startup({QStringLiteral("list")});
    const QStringList rows = table.out.split(QLatin1Char('\n'));
    const auto row = std::find_if(rows.begin(), rows.end(), [](const QString& line) {
        return line.startsWith(QStringLiteral("Kestrow Probe "));
    });
    ASSERT_NE(row, rows.end()) << table.out.toStdString();
    EXPECT_EQ(row->simplified(), QStringLiteral("Kestrow Probe User Launch Agent DISABLED MEDIUM /bin/sh ") + file);
    EXPECT_EQ(startup({QStringLiteral("disable"), QStringLiteral("kestrow-probe")}).out,
              QStringLiteral("kestrow-probe is already disabled; nothing was changed.\n"));
    EXPECT_EQ(startup({QStringLiteral("enable"), file}).exitCode, 0);
    QFile restored(file);
    ASSERT_TRUE(restored.open(QIODevice::ReadOnly));
    EXPECT_EQ(restored.readAll(), original);

    const KestrowRun twins = startup({QStringLiteral("disable"), QStringLiteral("Twin")});
    EXPECT_EQ(twins.exitCode, 2);
    EXPECT_TRUE(twins.err.contains(QStringLiteral("'Twin' names 2 launch items: twin-a (")));
    EXPECT_EQ(startup({QStringLiteral("enable"), QStringLiteral("no-such-item")}).exitCode, 2);
}
