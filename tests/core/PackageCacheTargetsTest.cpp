#include "RefusingFileManager.h"
#include "TestHome.h"

#include "scan/DeveloperTargets.h"

#include <gtest/gtest.h>

#include <string>

using namespace kestrow;
using kestrow::test::RefusingFileManager;
using kestrow::test::TestHome;

namespace {

// Refuses to list one folder, as an unreadable folder would for anyone but root.
std::vector<DiscoveredItem> scanCaches(const TestHome& home, std::shared_ptr<const FileManager> fileManager = {},
                                       std::optional<QStringList> projectRoots = {})
{
    const DeveloperTargets targets(
        {.homeURL = home.path(), .projectRoots = std::move(projectRoots), .fileManager = std::move(fileManager)});
    return targets.scan({StorageCategory::developerCache}, {});
}

// "relative path | description | rule id", one line per item, in scan order.
std::vector<std::string> lines(const TestHome& home, const std::vector<DiscoveredItem>& items)
{
    std::vector<std::string> result;
    for (const DiscoveredItem& item : items) {
        EXPECT_EQ(item.category, StorageCategory::developerCache);
        result.push_back(QString(item.path.mid(home.path().size() + 1) + QStringLiteral(" | ") + item.itemDescription +
                                 QStringLiteral(" | ") + item.ruleId.value_or(QString()))
                             .toStdString());
    }
    return result;
}

} // namespace

TEST(PackageCacheTargets, EveryManagerAtItsLocationsInOrder)
{
    TestHome home;
    home.writeFile(QStringLiteral(".npm/_cacache/index"), 100);
    home.writeFile(QStringLiteral(".npm/_logs/debug.log"), 10);
    home.writeFile(QStringLiteral(".npm/loose"), 10);
    home.makeDirectory(QStringLiteral(".bun/install/cache"));
    home.writeFile(QStringLiteral(".cache/pip/http/a"), 10);
    home.writeFile(QStringLiteral("Library/Caches/pip/wheels/b"), 10);
    for (const char* folder : {"registry/cache", "registry/src", "git/db", "git/checkouts", ".package-cache", "bin"})
        home.writeFile(QStringLiteral(".cargo/") + QLatin1String(folder) + QStringLiteral("/x"), 10);
    home.writeFile(QStringLiteral(".cargo/credentials.toml"), 10);
    home.writeFile(QStringLiteral(".cargo/config.toml"), 10);
    for (const char* store : {".local/share/pnpm/store", "Library/pnpm/store", ".pnpm-store"})
        home.writeFile(QLatin1String(store) + QStringLiteral("/v3/x"), 10);
    home.writeFile(QStringLiteral("Library/Caches/Homebrew/downloads/abc--wget.bottle.tar.gz"), 1000);
    home.writeFile(QStringLiteral("Library/Caches/Homebrew/downloads/.hidden-part"), 10);
    home.writeFile(QStringLiteral("Library/Caches/Homebrew/downloads/abc.incomplete"), 500);
    home.writeFile(QStringLiteral("Library/Caches/Homebrew/downloads/def.INCOMPLETE"), 500);
    home.writeFile(QStringLiteral("Library/Caches/Homebrew/Cask/x.dmg"), 10);
    home.writeFile(QStringLiteral("Library/Caches/Homebrew/api/formula.jws.json"), 10);
    for (const char* folder : {"caches/modules-2/x", "wrapper/dists/x", "daemon/8.5/x", "gradle.properties"})
        home.writeFile(QStringLiteral(".gradle/") + QLatin1String(folder), 10);

    const std::vector<DiscoveredItem> items = scanCaches(home);
    EXPECT_EQ(lines(home, items),
              (std::vector<std::string>{
                  ".npm/_cacache | npm Download Cache (_cacache) | dev.npm.cache",
                  ".npm/_logs | npm Download Cache (_logs) | dev.npm.cache",
                  ".bun/install/cache | Bun Package Install Cache | dev.bun.cache",
                  ".cache/pip | pip HTTP Response and Wheel Cache | dev.pip.cache",
                  "Library/Caches/pip | pip HTTP Response and Wheel Cache | dev.pip.cache",
                  ".cargo/registry/cache | Cargo Crate Archive Cache (.crate) | dev.cargo.cache",
                  ".cargo/registry/src | Cargo Unpacked Crate Source Cache | dev.cargo.cache",
                  ".cargo/git/db | Cargo Bare Git Repositories | dev.cargo.cache",
                  ".cargo/git/checkouts | Cargo Git Checkout Cache | dev.cargo.cache",
                  ".cargo/.package-cache | Cargo Package Cache | dev.cargo.cache",
                  ".local/share/pnpm/store | pnpm Virtual Store (~/.local/share/pnpm/store) | dev.pnpm.store",
                  "Library/pnpm/store | pnpm Virtual Store (~/Library/pnpm/store) | dev.pnpm.store",
                  ".pnpm-store | pnpm Virtual Store (~/.pnpm-store) | dev.pnpm.store",
                  "Library/Caches/Homebrew/downloads/abc.incomplete | Homebrew Incomplete Download: abc.incomplete "
                  "| "
                  "dev.homebrew.incomplete",
                  "Library/Caches/Homebrew/downloads/def.INCOMPLETE | Homebrew Incomplete Download: def.INCOMPLETE "
                  "| "
                  "dev.homebrew.incomplete",
                  "Library/Caches/Homebrew/downloads | Homebrew Downloaded Bottles & Packages | dev.homebrew.cache",
                  "Library/Caches/Homebrew/Cask | Homebrew Cask Download Cache | dev.homebrew.cache",
                  "Library/Caches/Homebrew/api | Homebrew API Metadata Cache | dev.homebrew.cache",
                  ".gradle/caches | Gradle Dependency & Transform Cache | dev.gradle.cache",
                  ".gradle/wrapper/dists | Gradle Wrapper Distributions | dev.gradle.cache",
                  ".gradle/daemon | Gradle Daemon Execution Logs & State | dev.gradle.cache",
              }));
    // The finished downloads are summed, hidden ones included, unfinished ones left out.
    const DiscoveredItem& bottles = items[15];
    EXPECT_EQ(bottles.logicalSizeBytes, 1010);
    EXPECT_EQ(bottles.fileCount, 2);
    EXPECT_TRUE(bottles.lastModifiedDate.has_value());
    for (const DiscoveredItem& item : items)
        EXPECT_FALSE(item.isOrphaned);
}

TEST(PackageCacheTargets, FallsBackToTheRootOnlyWhereNoKnownFolderIsThere)
{
    {
        // Only "_logs": no item for ".npm" itself. Homebrew downloads of empty files hold nothing.
        TestHome home;
        home.writeFile(QStringLiteral(".npm/_logs/debug.log"), 10);
        home.writeFile(QStringLiteral("Library/Caches/Homebrew/downloads/empty.tar.gz"), 0);
        home.writeFile(QStringLiteral("Library/Caches/Homebrew/downloads/only.incomplete"), 0);
        EXPECT_EQ(lines(home, scanCaches(home)),
                  (std::vector<std::string>{
                      ".npm/_logs | npm Download Cache (_logs) | dev.npm.cache",
                      "Library/Caches/Homebrew/downloads/only.incomplete | Homebrew Incomplete Download: "
                      "only.incomplete | dev.homebrew.incomplete",
                  }));
    }
    {
        // Empty roots exist, so they have content; an unlistable downloads folder stands as a whole.
        TestHome home;
        home.makeDirectory(QStringLiteral(".npm"));
        home.makeDirectory(QStringLiteral(".gradle/unknown"));
        home.writeFile(QStringLiteral("Library/Caches/Homebrew/downloads/x.tar.gz"), 10);
        EXPECT_EQ(lines(home, scanCaches(home, std::make_shared<RefusingFileManager>(QStringList{
                                                   home.path(QStringLiteral("Library/Caches/Homebrew/downloads"))}))),
                  (std::vector<std::string>{
                      ".npm | npm Package Cache | dev.npm.cache",
                      "Library/Caches/Homebrew/downloads | Homebrew Download Cache | dev.homebrew.cache",
                  }));
    }
    {
        TestHome home;
        home.writeFile(QStringLiteral("Library/Caches/Homebrew/wget--1.21.tar.gz"), 10);
        EXPECT_EQ(lines(home, scanCaches(home)),
                  (std::vector<std::string>{
                      "Library/Caches/Homebrew | Homebrew Formula & Cask Cache | dev.homebrew.cache",
                  }));
    }
}

TEST(PackageCacheTargets, FindsOrphanedWorktreesWithinDepthOutsideSkippedFoldersAndLinks)
{
    TestHome home;
    const QString admin = home.path(QStringLiteral("Developer/upstream/.git/worktrees"));
    home.writeFile(QStringLiteral("Developer/upstream/.git/HEAD"), QByteArray("ref: refs/heads/main\n"));
    // Live worktree: both halves point at each other.
    home.writeFile(QStringLiteral("Developer/upstream/.git/worktrees/live/gitdir"),
                   home.path(QStringLiteral("Developer/live/.git")).toUtf8() + "\n");
    home.writeFile(QStringLiteral("Developer/live/.git"), "gitdir: " + admin.toUtf8() + "/live\n");
    // Stale administrative entries: one target gone; empty, unreadable or non-UTF-8 ones say nothing.
    home.writeFile(QStringLiteral("Developer/upstream/.git/worktrees/gone/gitdir"), QByteArray("/missing/gone/.git\n"));
    home.writeFile(QStringLiteral("Developer/upstream/.git/worktrees/blank/gitdir"), QByteArray("  \n"));
    home.makeDirectory(QStringLiteral("Developer/upstream/.git/worktrees/odd/gitdir"));
    home.writeFile(QStringLiteral("Developer/upstream/.git/worktrees/binary/gitdir"), QByteArray("/missing\xff\n"));
    // Checkouts whose administrative folder is gone, at depth 2 (found) and 3 (too deep).
    home.writeFile(QStringLiteral("Developer/group/orphan/.git"), QByteArray("gitdir: /missing/path\n"));
    home.writeFile(QStringLiteral("Developer/group/sub/deep/.git"), QByteArray("gitdir: /missing/path\n"));
    // A path relative to the checkout, as git writes for submodules, that does exist.
    home.writeFile(QStringLiteral("Developer/relative/.git"), QByteArray("gitdir: ../upstream/.git\n"));
    for (const char* skipped : {"node_modules/pkg", "vendor/lib", "Library/x", "build/y", ".hidden/z"})
        home.writeFile(QStringLiteral("Developer/") + QLatin1String(skipped) + QStringLiteral("/.git"),
                       QByteArray("gitdir: /missing/path\n"));
    home.writeFile(QStringLiteral("elsewhere/orphan/.git"), QByteArray("gitdir: /missing/path\n"));
    home.makeSymbolicLink(QStringLiteral("Developer/linked"), home.path(QStringLiteral("elsewhere")));

    // The same root twice under two spellings is searched once.
    const std::vector<DiscoveredItem> items = scanCaches(
        home, {},
        QStringList{home.path(QStringLiteral("Developer")), home.path(QStringLiteral("Developer/../Developer")),
                    home.path(QStringLiteral("Projects"))});
    EXPECT_EQ(lines(home, items),
              (std::vector<std::string>{
                  "Developer/group/orphan | Orphaned Git Worktree Checkout: orphan | dev.git.orphaned_worktrees",
                  "Developer/upstream/.git/worktrees/gone | Orphaned Git Worktree: upstream/gone (target deleted) "
                  "| "
                  "dev.git.orphaned_worktrees",
              }));
    for (const DiscoveredItem& item : items)
        EXPECT_TRUE(item.isOrphaned);

    // A home that is itself a checkout is searched too; default project roots need not exist.
    home.writeFile(QStringLiteral(".git"), QByteArray("gitdir: /missing/home\n"));
    const std::vector<DiscoveredItem> withHome = scanCaches(home);
    ASSERT_EQ(withHome.size(), 3u);
    EXPECT_EQ(withHome[2].path, home.path());
    EXPECT_EQ(withHome[2].itemDescription,
              QStringLiteral("Orphaned Git Worktree Checkout: ") + home.path().section(QLatin1Char('/'), -1));
}
