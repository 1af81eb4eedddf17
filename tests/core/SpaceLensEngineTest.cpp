#include "TestHome.h"

#include "analysis/SpaceLensEngine.h"
#include "analysis/SpaceLensError.h"
#include "support/KestrowError.h"

#include <gtest/gtest.h>

#include <QFile>

#include <cerrno>
#include <map>
#include <sys/time.h>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

const SpaceNode* child(const SpaceNode& node, const QString& name)
{
    if (!node.children)
        return nullptr;
    for (const SpaceNode& each : *node.children) {
        if (each.name == name)
            return &each;
    }
    return nullptr;
}

// Every node's sizes, count and listing state by path, to compare two builds.
void flatten(const SpaceNode& node, std::map<QString, QString>& out)
{
    out[node.path] = QStringLiteral("%1 %2 %3 %4")
                         .arg(node.allocatedSizeBytes)
                         .arg(node.logicalSizeBytes)
                         .arg(node.itemCount)
                         .arg(node.children ? static_cast<int>(node.children->size()) : -1);
    if (node.children) {
        for (const SpaceNode& each : *node.children)
            flatten(each, out);
    }
}

// Opening any folder named "locked" fails as it would without permission, root or not.
class LockedFolderCalls final : public SystemCalls {
public:
    int openAt(int folder, const char* name, int flags, mode_t mode) const override
    {
        if (QByteArray(name).endsWith("/locked")) {
            errno = EACCES;
            return -1;
        }
        return SystemCalls::openAt(folder, name, flags, mode);
    }
};

} // namespace

TEST(SpaceLensEngine, ListsVisibleEntriesLargestFirstAndMeasuresBelowTheDepth)
{
    TestHome home;
    home.writeFile(QStringLiteral("root/big.bin"), 300000);
    home.writeFile(QStringLiteral("root/.hidden-top"), 500000); // never a node, never counted
    home.writeFile(QStringLiteral("root/docs/a.txt"), 1000);
    home.writeFile(QStringLiteral("root/docs/deep/b.txt"), 2000);
    home.writeFile(QStringLiteral("root/docs/deep/sub/.c"), 3000); // counted: inside a folder below the depth
    home.writeFile(QStringLiteral("root/docs/deep/.d"), 111);      // not listed, so not counted either
    home.makeDirectory(QStringLiteral("root/empty"));
    home.writeFile(QStringLiteral("root/only-hidden/.dot"), 4000);
    home.writeFile(QStringLiteral("root/hard/one"), 5000);
    home.makeHardLink(QStringLiteral("root/hard/deeper/two"), QStringLiteral("root/hard/one"));
    home.makeSymbolicLink(QStringLiteral("root/hard/link"), home.path(QStringLiteral("root/big.bin")));

    const SpaceNode root = SpaceLensEngine().scanDirectory(home.path(QStringLiteral("root")), 2);
    ASSERT_TRUE(root.children);
    EXPECT_EQ(root.children->front().name, QStringLiteral("big.bin"));
    for (std::size_t index = 1; index < root.children->size(); ++index)
        EXPECT_GE((*root.children)[index - 1].allocatedSizeBytes, (*root.children)[index].allocatedSizeBytes);
    EXPECT_EQ(child(root, QStringLiteral(".hidden-top")), nullptr);

    const SpaceNode* big = child(root, QStringLiteral("big.bin"));
    ASSERT_TRUE(big);
    EXPECT_FALSE(big->children);
    EXPECT_TRUE(big->fileCategory);
    EXPECT_EQ(big->itemCount, 1);
    EXPECT_TRUE(big->lastModifiedDate && big->lastAccessedDate);

    const SpaceNode* docs = child(root, QStringLiteral("docs"));
    ASSERT_TRUE(docs && docs->children);
    const SpaceNode* deep = child(*docs, QStringLiteral("deep"));
    ASSERT_TRUE(deep);
    EXPECT_FALSE(deep->children) << "at the depth limit a folder is measured, not listed";
    EXPECT_FALSE(deep->fileCategory);
    EXPECT_EQ(deep->logicalSizeBytes, 5000);
    EXPECT_EQ(deep->itemCount, 2);
    EXPECT_EQ(docs->logicalSizeBytes, 6000);
    EXPECT_EQ(docs->itemCount, 3);

    for (const QString& name : {QStringLiteral("empty"), QStringLiteral("only-hidden")}) {
        const SpaceNode* folder = child(root, name);
        ASSERT_TRUE(folder && folder->children) << name.toStdString();
        EXPECT_TRUE(folder->children->empty());
        EXPECT_EQ(folder->allocatedSizeBytes, 0);
        EXPECT_EQ(folder->logicalSizeBytes, 0);
        EXPECT_EQ(folder->itemCount, 1);
        EXPECT_TRUE(folder->isDirectory);
    }

    // The hard link counts once within its measurement; the link counts as itself.
    const SpaceNode* deeper = child(*child(root, QStringLiteral("hard")), QStringLiteral("deeper"));
    ASSERT_TRUE(deeper);
    EXPECT_EQ(deeper->logicalSizeBytes, 5000);
    const SpaceNode* link = child(*child(root, QStringLiteral("hard")), QStringLiteral("link"));
    ASSERT_TRUE(link);
    EXPECT_FALSE(link->isDirectory);
    EXPECT_LT(link->logicalSizeBytes, 1000);

    std::int64_t logical = 0;
    std::int64_t items = 0;
    for (const SpaceNode& each : *root.children) {
        logical += each.logicalSizeBytes;
        items += each.itemCount;
    }
    EXPECT_EQ(root.logicalSizeBytes, logical);
    EXPECT_EQ(root.itemCount, items);
}

TEST(SpaceLensEngine, DepthZeroFileRootMissingRootAndCancellation)
{
    TestHome home;
    home.writeFile(QStringLiteral("root/.top"), 7000); // directly in the root: not listed, not counted
    home.writeFile(QStringLiteral("root/visible"), 100);
    home.writeFile(QStringLiteral("root/sub/.inner"), 40);

    const SpaceLensEngine engine;
    const SpaceNode zero = engine.scanDirectory(home.path(QStringLiteral("root")), 0);
    EXPECT_FALSE(zero.children);
    EXPECT_EQ(zero.logicalSizeBytes, 140);
    EXPECT_EQ(zero.itemCount, 2);
    EXPECT_TRUE(zero.isDirectory);

    const SpaceNode file = engine.scanDirectory(home.path(QStringLiteral("root/visible")), 3);
    EXPECT_FALSE(file.isDirectory);
    EXPECT_FALSE(file.children);
    EXPECT_EQ(file.logicalSizeBytes, 100);
    EXPECT_EQ(file.itemCount, 1);
    EXPECT_TRUE(file.fileCategory);

    EXPECT_THROW((void)engine.scanDirectory(home.path(QStringLiteral("missing")), 3), SpaceLensError);

    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW((void)engine.scanDirectory(home.path(QStringLiteral("root")), 3, stop.get_token()), CancellationError);
}

TEST(SpaceLensEngine, BundlesAreOpenedAsTheRootAndLeavesBelowIt)
{
    TestHome home;
    home.writeFile(QStringLiteral("apps/Tool.app/Contents/bin"), 3000);
    home.writeFile(QStringLiteral("apps/Tool.app/Contents/.meta"), 500);
    home.writeFile(QStringLiteral("apps/Tool.app/Contents/Plug.bundle/code"), 900); // a bundle inside: passed over

    const SpaceLensEngine engine;
    const SpaceNode apps = engine.scanDirectory(home.path(QStringLiteral("apps")), 3);
    const SpaceNode* tool = child(apps, QStringLiteral("Tool.app"));
    ASSERT_TRUE(tool);
    EXPECT_TRUE(tool->isDirectory);
    EXPECT_FALSE(tool->children);
    EXPECT_EQ(tool->fileCategory, FileCategory::binaries);
    EXPECT_EQ(tool->itemCount, 1);
    EXPECT_EQ(tool->logicalSizeBytes, 3500);

    const SpaceNode opened = engine.scanDirectory(home.path(QStringLiteral("apps/Tool.app")), 3);
    ASSERT_TRUE(opened.children);
    EXPECT_NE(child(opened, QStringLiteral("Contents")), nullptr);
    EXPECT_FALSE(opened.fileCategory);
}

TEST(SpaceLensEngine, UnreadableFolderIsAnEmptyListingAndBuildsAgreeOnAnyNumberOfThreads)
{
    TestHome home;
    home.writeFile(QStringLiteral("root/locked/secret"), 9000);
    for (int folder = 0; folder < 12; ++folder) {
        for (int file = 0; file < 6; ++file)
            home.writeFile(QStringLiteral("root/f%1/g%2/h/file%2").arg(folder).arg(file), 1000 * (folder + 1) + file);
    }

    const auto locked = std::make_shared<FileManager>(std::make_shared<LockedFolderCalls>());
    const SpaceNode root = SpaceLensEngine(locked).scanDirectory(home.path(QStringLiteral("root")), 3);
    const SpaceNode* refused = child(root, QStringLiteral("locked"));
    ASSERT_TRUE(refused && refused->children);
    EXPECT_TRUE(refused->children->empty());
    EXPECT_EQ(refused->allocatedSizeBytes, 0);
    EXPECT_EQ(refused->itemCount, 0);

    std::map<QString, QString> one;
    std::map<QString, QString> many;
    flatten(SpaceLensEngine({}, 1).scanDirectory(home.path(QStringLiteral("root")), 2), one);
    flatten(SpaceLensEngine({}, 4).scanDirectory(home.path(QStringLiteral("root")), 2), many);
    EXPECT_EQ(one, many);
    EXPECT_EQ(one.size(), 1u + 13u + 1u + 12u * 6u);
}

TEST(SpaceLensEngine, FilterKeepsPassingLeavesLargestFirst)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const auto node = [](QString name, std::int64_t allocated, std::int64_t logical) {
        SpaceNode made;
        made.id = QUuid::createUuid();
        made.path = QStringLiteral("/r/") + name;
        made.name = name;
        made.allocatedSizeBytes = allocated;
        made.logicalSizeBytes = logical;
        made.itemCount = 1;
        return made;
    };
    SpaceNode sparse = node(QStringLiteral("sparse.bin"), 10, 100);
    sparse.fileCategory = FileCategory::other;
    sparse.lastModifiedDate = now.addDays(-30);
    SpaceNode movie = node(QStringLiteral("movie.mp4"), 70, 70);
    movie.fileCategory = FileCategory::media;
    movie.lastAccessedDate = now.addDays(-1);
    movie.lastModifiedDate = now.addDays(-400); // the access date is the one taken
    SpaceNode undated = node(QStringLiteral("undated.mp4"), 60, 60);
    undated.fileCategory = FileCategory::media;
    SpaceNode measured = node(QStringLiteral("measured"), 500, 500); // a folder below the depth
    measured.isDirectory = true;
    measured.lastModifiedDate = now.addDays(-90);
    SpaceNode listed = node(QStringLiteral("listed"), 640, 640);
    listed.isDirectory = true;
    listed.children = std::vector<SpaceNode>{movie, undated};
    SpaceNode emptyListed = node(QStringLiteral("empty"), 0, 0);
    emptyListed.isDirectory = true;
    emptyListed.children = std::vector<SpaceNode>{};
    SpaceNode root = node(QStringLiteral(""), 1150, 1240);
    root.isDirectory = true;
    root.children = std::vector<SpaceNode>{listed, measured, sparse, emptyListed};

    const auto names = [](const std::vector<SpaceNode>& nodes) {
        QStringList list;
        for (const SpaceNode& each : nodes)
            list.append(each.name);
        return list;
    };
    EXPECT_EQ(names(SpaceLensEngine::filter(root)),
              (QStringList{QStringLiteral("measured"), QStringLiteral("movie.mp4"), QStringLiteral("undated.mp4"),
                           QStringLiteral("sparse.bin")}));
    EXPECT_EQ(names(SpaceLensEngine::filter(root, 50)),
              (QStringList{QStringLiteral("measured"), QStringLiteral("movie.mp4"), QStringLiteral("undated.mp4"),
                           QStringLiteral("sparse.bin")}))
        << "10 allocated and 100 logical bytes pass a minimum of 50";
    EXPECT_EQ(names(SpaceLensEngine::filter(root, 80)),
              (QStringList{QStringLiteral("measured"), QStringLiteral("sparse.bin")}));
    EXPECT_EQ(names(SpaceLensEngine::filter(root, std::nullopt, 7 * 86400.0)),
              (QStringList{QStringLiteral("measured"), QStringLiteral("sparse.bin")}))
        << "a node without dates is dropped, and the access date goes first";
    EXPECT_EQ(names(SpaceLensEngine::filter(root, std::nullopt, 3600.0, FileCategory::media)),
              (QStringList{QStringLiteral("movie.mp4")}));
    EXPECT_EQ(names(SpaceLensEngine::filter(root, std::nullopt, std::nullopt, FileCategory::media)),
              (QStringList{QStringLiteral("movie.mp4"), QStringLiteral("undated.mp4")}))
        << "folders carry no category";
}
