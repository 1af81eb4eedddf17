#include "RefusingFileManager.h"
#include "SyntheticHome.h"

#include "scan/DeveloperTargets.h"

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::RefusingFileManager;
using kestrow::test::SyntheticHome;
using kestrow::test::TestHome;

namespace {

std::vector<DiscoveredItem> scanDocker(const SyntheticHome& home, const QString& applications,
                                       std::function<bool(const QString&)> isProcessRunning)
{
    const DeveloperTargets targets({.homeURL = home.path(),
                                    .applicationsURLs = QStringList{applications},
                                    .fileManager = home.fileManager(),
                                    .isProcessRunning = std::move(isProcessRunning)});
    return targets.scan({StorageCategory::dockerVM}, {});
}

} // namespace

TEST(ModelAndToolTargets, DockerDisksAreOrphanedOnlyWhenDockerIsGoneAndIdle)
{
    const SyntheticHome home(SyntheticHome::Access::fullDiskAccess);
    const QString installed = home.applicationsFolder();
    const QString removed = home.path(QStringLiteral("Elsewhere"));
    const auto nothingRuns = [](const QString&) { return false; };
    const QString raw =
        QStringLiteral("Library/Containers/com.docker.docker/Data/vms/0/data/Docker.raw | DOCKER_VM | ");
    const QString qcow =
        QStringLiteral("Library/Containers/com.docker.docker/Data/vms/1/data/Docker.qcow2 | DOCKER_VM | ");
    const auto expected = [&](const char* tierAndStatus, const char* flags) {
        const QString rest = QLatin1String(tierAndStatus) + QStringLiteral("] | dev.docker.orphaned_vm | 1 files, ");
        return std::vector<std::string>{
            QString(raw + rest + QStringLiteral("67108864 B | ") + QLatin1String(flags)).toStdString(),
            QString(qcow + rest + QStringLiteral("50000 B | ") + QLatin1String(flags)).toStdString()};
    };

    EXPECT_EQ(home.lines(scanDocker(home, installed, nothingRuns)),
              expected("KEEP | Docker VM Disk Image [Active (Docker.app installed or running)", ""));
    EXPECT_EQ(
        home.lines(scanDocker(home, removed, nothingRuns)),
        expected("REVIEW_REQUIRED | Docker VM Disk Image [Orphaned (Docker.app uninstalled & inactive)", "orphaned"));

    // A daemon without the app: still in use, and it holds the disks.
    QStringList asked;
    const auto vpnkitRuns = [&](const QString& name) {
        asked.append(name);
        return name == QStringLiteral("vpnkit");
    };
    EXPECT_EQ(home.lines(scanDocker(home, removed, vpnkitRuns)),
              expected("KEEP | Docker VM Disk Image [Active (Docker.app installed or running)", "locked"));
    EXPECT_EQ(asked, QStringList({QStringLiteral("Docker"), QStringLiteral("com.docker.virtualization"),
                                  QStringLiteral("com.docker.backend"), QStringLiteral("vpnkit")}));

    // Both disk names in one VM folder are two items.
    home.writeFile(QStringLiteral("Library/Containers/com.docker.docker/Data/vms/0/Docker.raw"), 10);
    EXPECT_EQ(scanDocker(home, installed, nothingRuns).size(), 3u);
}

TEST(ModelAndToolTargets, FoldersThatListNothingAreReportedWhole)
{
    TestHome home;
    home.makeDirectory(QStringLiteral(".cache/huggingface/hub"));
    home.writeFile(QStringLiteral(".cache/whisper/notes.txt"), 10); // entries, but no model: nothing
    home.makeDirectory(QStringLiteral("Library/Developer/Xcode/DerivedData"));
    home.writeFile(QStringLiteral(".lmstudio/models/publisher/model.gguf"), 10);
    home.writeFile(QStringLiteral(".cache/lm-studio/models/publisher/model.gguf"), 20);
    home.writeFile(QStringLiteral("Projects/app/node_modules/x/index.js"), 10);
    // A refused listing counts as an empty one here, and leaves no Full Disk Access mark.
    const auto refusing =
        std::make_shared<RefusingFileManager>(QStringList{home.path(QStringLiteral(".lmstudio/models"))});
    const DeveloperTargets targets({.homeURL = home.path(), .fileManager = refusing});
    const auto items = targets.scan(
        {StorageCategory::aiModelWeights, StorageCategory::xcodeArtifacts, StorageCategory::strayDependencies}, {});
    std::vector<std::string> lines;
    for (const DiscoveredItem& item : items)
        lines.push_back(QString(item.path.mid(home.path().size() + 1) + QStringLiteral(" | ") + item.itemDescription +
                                (item.requiresFullDiskAccess ? QStringLiteral(" | fda") : QString()))
                            .toStdString());
    EXPECT_EQ(lines, (std::vector<std::string>{
                         ".cache/huggingface/hub | HuggingFace Model Hub Cache",
                         ".cache/lm-studio/models/publisher/model.gguf | LM Studio Model: publisher/model.gguf",
                         ".lmstudio/models | LM Studio Local Models Cache",
                         "Library/Developer/Xcode/DerivedData | Xcode DerivedData Build Cache",
                     }));
}
