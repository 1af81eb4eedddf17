#include "KestrowProcess.h"
#include "TestHome.h"

#include <gtest/gtest.h>

using namespace kestrow::test;

TEST(ScanCommand, ExclusionsAndDisabledTargetsNarrowTheResult)
{
    TestHome home;
    home.writeFile(QStringLiteral(".cache/uv/wheels/a.whl"), 5000);
    home.writeFile(QStringLiteral(".npm/_cacache/index"), 7000);
    const auto scan = [&](QStringList flags) {
        return runKestrow(QStringList{QStringLiteral("scan"), QStringLiteral("--home"), home.path(),
                                      QStringLiteral("--json"), QStringLiteral("--no-governor")} +
                          flags);
    };

    const KestrowRun all = scan({});
    ASSERT_EQ(all.exitCode, 0) << all.err.toStdString();
    EXPECT_TRUE(all.out.contains(QStringLiteral("\"totalItems\" : 2")));

    const KestrowRun narrowed = scan({QStringLiteral("--disable-target"), QStringLiteral("npmBun"),
                                      QStringLiteral("--exclude"), QStringLiteral("/nowhere")});
    ASSERT_EQ(narrowed.exitCode, 0) << narrowed.err.toStdString();
    EXPECT_TRUE(narrowed.out.contains(QStringLiteral("\"totalItems\" : 1")));
    EXPECT_TRUE(narrowed.out.contains(QStringLiteral("uv Cache (wheels)")));
    EXPECT_FALSE(narrowed.out.contains(QStringLiteral(".npm")));

    // An exclusion inside an item removes the item that holds it.
    const KestrowRun excluded = scan({QStringLiteral("--exclude"), QStringLiteral("~/.cache/uv/wheels/a.whl")});
    ASSERT_EQ(excluded.exitCode, 0);
    EXPECT_TRUE(excluded.out.contains(QStringLiteral("\"totalItems\" : 1")));
    EXPECT_FALSE(excluded.out.contains(QStringLiteral("uv Cache")));

    const KestrowRun unknown = scan({QStringLiteral("--disable-target"), QStringLiteral("npm")});
    EXPECT_EQ(unknown.exitCode, 2);
    EXPECT_TRUE(unknown.err.contains(QStringLiteral("unknown scan target")));
    EXPECT_TRUE(unknown.err.contains(QStringLiteral("uvPython, dockerVM, xcode, aiModels, npmBun, cargo, homebrew, "
                                                    "systemCaches, browserCaches")));
    EXPECT_TRUE(unknown.out.isEmpty());
}
