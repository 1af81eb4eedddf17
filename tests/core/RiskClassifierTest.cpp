#include "TestHome.h"

#include "platform/PathText.h"
#include "policy/RiskClassifier.h"
#include "rules/RuleRegistry.h"
#include "safety/CacheDirTagDetector.h"
#include "safety/CacheDirTagWriteError.h"
#include "scan/DeepScanEngine.h"

#include <QRegularExpression>

#include <chrono>
#include <fcntl.h>
#include <future>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

RuleDefinition rule(const char* id, RiskTier tier, const QString& pattern)
{
    return RuleDefinition{.id = QLatin1String(id),
                          .name = QStringLiteral("Rule ") + QLatin1String(id),
                          .description = QStringLiteral("test rule"),
                          .category = StorageCategory::developerCache,
                          .riskTier = tier,
                          .patterns = {pattern}};
}

std::shared_ptr<RuleRegistry> registryIn(const TestHome& home)
{
    return std::make_shared<RuleRegistry>(RuleRegistry::Options{.homeURL = home.path()});
}

} // namespace

TEST(RiskClassifier, ProtectedGroundIsKeptWithItsReason)
{
    const RiskClassifier classifier(QStringLiteral("/Users/me"));
    const char* notKept = nullptr;
    const struct {
        const char* path;
        const char* reason; // notKept when the path is not protected ground
        const char* why = "";
    } cases[]{
        {"/Library/Caches/foo", "Protected system OS directory (/library)."},
        {"/VOLUMES/Backup/x", "Protected system OS directory (/volumes)."},
        {"/private/var/root/x", "Protected system OS directory (/private/var/root)."},
        {"/Users/me/Documents", "Protected user personal directory (~/documents)."},
        {"/Users/other/Documents/x", "Protected user personal directory (~/documents)."},
        {"/Users/me/Documentsfoo", notKept},
        {"/Users/me/.bun/bin/bun", "Protected executable user tool binaries (~/.bun/bin)."},
        {"/Users/other/.local/bin", "Protected executable user tool binaries (~/.local/bin)."},
        {"/Users/me/.ssh/id", "Protected security credentials or keychains."},
        {"/Users/me/Library/Keychains/x", "Protected security credentials or keychains."},
        {"/Users/me/.zshrc", "Protected active configuration file."},
        {"/Users/other/.gradle/gradle.properties", "Protected active configuration file."},
        {"/Users/me/.zshrc.d/x", notKept},
        {"/Users/me/.gitconfig/x", notKept, "configuration files have no prefix test"},
        {"/opt/caches/x", notKept},
    };
    for (const auto& c : cases) {
        const RiskClassificationResult result =
            classifier.classify(QLatin1String(c.path), StorageCategory::developerCache, false);
        if (!c.reason) {
            EXPECT_NE(result.riskTier, RiskTier::keep) << c.path << ": " << c.why;
            continue;
        }
        EXPECT_EQ(result, (RiskClassificationResult{
                              .riskTier = RiskTier::keep, .confidence = 1.0, .reason = QLatin1String(c.reason)}))
            << c.path;
    }
}

TEST(RiskClassifier, AnyUsersHomeIsTestedAsItsRegularExpressionWould)
{
    const RiskClassifier classifier(QStringLiteral("/h/me"));
    const struct {
        const char* entry;
        bool folder;
        const char* reason;
    } entries[]{
        {"documents", true, "Protected user personal directory (~/documents)."},
        {".cargo/bin", true, "Protected executable user tool binaries (~/.cargo/bin)."},
        {".ssh", true, "Protected security credentials or keychains."},
        {".zshrc", false, "Protected active configuration file."},
        {".gradle/gradle.properties", false, "Protected active configuration file."},
    };
    const QStringList users{QStringLiteral("other"), QString(), QStringLiteral("a\nb"), QStringLiteral("O.ther")};
    const QStringList tails{QString(),
                            QStringLiteral("/"),
                            QStringLiteral("/x"),
                            QStringLiteral("x"),
                            QStringLiteral("\n"),
                            QStringLiteral("\n\n"),
                            QStringLiteral("/\n"),
                            QStringLiteral(".d/x"),
                            QStringLiteral("\nx")};
    for (const auto& [entry, folder, reason] : entries) {
        const QRegularExpression expression(QStringLiteral("^/users/[^/]+/") +
                                            QRegularExpression::escape(QLatin1String(entry)) +
                                            (folder ? QStringLiteral("(/|$)") : QStringLiteral("$")));
        for (const QString& prefix : {QStringLiteral("/users/"), QStringLiteral("/Users/"), QStringLiteral("/usr/")})
            for (const QString& user : users)
                for (const QString& tail : tails) {
                    const QString path = prefix + user + QLatin1Char('/') + QLatin1String(entry) + tail;
                    const bool expected = expression.match(PathText::standardizing(path).toLower()).hasMatch();
                    const QString given = classifier.classify(path, StorageCategory::developerCache, false).reason;
                    EXPECT_EQ(given == QLatin1String(reason), expected) << path.toStdString();
                }
    }
    // A name that is not valid UTF-8 (its byte kept as a lone surrogate), on which the expression
    // fails to match at all, is protected like any other.
    EXPECT_EQ(classifier
                  .classify(QStringLiteral("/Users/") + QChar(0xDC80) + QStringLiteral("/Documents/a"),
                            StorageCategory::developerCache, false)
                  .reason,
              QStringLiteral("Protected user personal directory (~/documents)."));
}

TEST(RiskClassifier, LinksIntoProtectedGroundAreKept)
{
    TestHome home;
    home.makeDirectory(QStringLiteral("Documents/x"));
    const QString link =
        home.makeSymbolicLink(QStringLiteral(".cache/tool/docs"), home.path(QStringLiteral("Documents/x")));
    const QString toEtc = home.makeSymbolicLink(QStringLiteral(".cache/tool/etc"), QStringLiteral("/etc"));
    const RiskClassifier classifier(home.path());
    EXPECT_EQ(classifier.classify(link, StorageCategory::developerCache, false),
              (RiskClassificationResult{.riskTier = RiskTier::keep,
                                        .confidence = 1.0,
                                        .reason = QStringLiteral("Symlink target points to protected boundary: "
                                                                 "Protected user personal directory (~/documents).")}));
    EXPECT_EQ(classifier.classify(toEtc, StorageCategory::developerCache, false).reason,
              QStringLiteral("Symlink target points to protected boundary: Protected system OS directory (/etc)."));
}

TEST(RiskClassifier, MostCautiousRuleWinsOverTagAndCategory)
{
    TestHome home;
    const auto registry = registryIn(home);
    registry->registerRule(rule("t.safe.b", RiskTier::safeToDelete, QStringLiteral("~/work/**")));
    registry->registerRule(rule("t.safe.a", RiskTier::safeToDelete, QStringLiteral("~/work/**")));
    registry->registerRule(rule("t.review", RiskTier::reviewRequired, QStringLiteral("~/work/cautious/**")));
    const QString tagged = home.makeDirectory(QStringLiteral("work/cautious/tagged"));
    CacheDirTagDetector::writeTag(tagged);

    const RiskClassifier classifier(home.path(), registry);
    EXPECT_EQ(classifier.classify(tagged, StorageCategory::developerCache, false),
              (RiskClassificationResult{.riskTier = RiskTier::reviewRequired,
                                        .confidence = 1.0,
                                        .reason = QStringLiteral("Matched RuleRegistry rule: Rule t.review (t.review)"),
                                        .matchedRuleId = QStringLiteral("t.review"),
                                        .hasCacheDirTag = false}));
    const RiskClassificationResult twoSafe =
        classifier.classify(home.path(QStringLiteral("work/plain")), StorageCategory::aiModelWeights, false);
    EXPECT_EQ(twoSafe.riskTier, RiskTier::safeToDelete);
    EXPECT_EQ(twoSafe.reason, QStringLiteral("Matched RuleRegistry rule: Rule t.safe.a (t.safe.a)"));

    // Without a registry the tag decides.
    EXPECT_EQ(RiskClassifier(home.path()).classify(tagged, StorageCategory::aiModelWeights, false),
              (RiskClassificationResult{.riskTier = RiskTier::safeToDelete,
                                        .confidence = 1.0,
                                        .reason = QStringLiteral("Verified CACHEDIR.TAG cache specification "
                                                                 "(standard cache)"),
                                        .hasCacheDirTag = true}));
}

TEST(RiskClassifier, CacheTagOnlyOnValidTagsOfDirectories)
{
    TestHome home;
    const RiskClassifier classifier(home.path());
    const QString named = home.makeDirectory(QStringLiteral("c/named"));
    CacheDirTagDetector::writeTag(named, QStringLiteral("Tool"));
    EXPECT_EQ(classifier.classify(named, StorageCategory::aiModelWeights, false).reason,
              QStringLiteral("Verified CACHEDIR.TAG cache specification (This file is a cache directory tag created "
                             "by Tool.)"));
    home.writeFile(QStringLiteral("c/invalid/CACHEDIR.TAG"), QByteArray("signature: 8a477f597d28d172789f06886806bc55"));
    const QString file = home.writeFile(QStringLiteral("c/file"), 10);
    home.writeFile(QStringLiteral("c/CACHEDIR.TAG"), QByteArray("Signature: 8a477f597d28d172789f06886806bc55"));
    for (const QString& untagged :
         {home.path(QStringLiteral("c/invalid")), file, home.path(QStringLiteral("c/none"))}) {
        const RiskClassificationResult result = classifier.classify(untagged, StorageCategory::aiModelWeights, false);
        EXPECT_FALSE(result.hasCacheDirTag) << untagged.toStdString();
        EXPECT_EQ(result.riskTier, RiskTier::reviewRequired) << untagged.toStdString();
    }
}

TEST(RiskClassifier, TagsThatAreNoRegularFilesCountForNothingAndNeverBlock)
{
    TestHome home;
    const QByteArray signature = "Signature: 8a477f597d28d172789f06886806bc55\n";
    const QString valid = home.writeFile(QStringLiteral("tags/valid/CACHEDIR.TAG"), signature);
    const QString fifo = home.makeDirectory(QStringLiteral("tags/fifo"));
    const QString fifoTag = fifo + QStringLiteral("/CACHEDIR.TAG");
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifoTag).constData(), 0600), 0);
    const QString linked = home.makeDirectory(QStringLiteral("tags/linked"));
    home.makeSymbolicLink(QStringLiteral("tags/linked/CACHEDIR.TAG"), valid);
    const QString folder = home.makeDirectory(QStringLiteral("tags/folder/CACHEDIR.TAG"));

    const RiskClassifier classifier(home.path());
    auto classified = std::async(std::launch::async,
                                 [&] { return classifier.classify(fifo, StorageCategory::aiModelWeights, false); });
    if (classified.wait_for(std::chrono::seconds(10)) != std::future_status::ready) {
        ADD_FAILURE() << "classifying a folder whose tag is a FIFO waits for a writer";
        // Let the waiting reader go: a writer comes and leaves at once.
        ::close(::open(QFile::encodeName(fifoTag).constData(), O_WRONLY | O_NONBLOCK));
    }
    EXPECT_FALSE(classified.get().hasCacheDirTag);
    for (const QString& untagged : {fifo, linked, PathText::parent(folder)}) {
        EXPECT_EQ(CacheDirTagDetector::detectTag(untagged), std::nullopt) << untagged.toStdString();
        EXPECT_FALSE(classifier.classify(untagged, StorageCategory::aiModelWeights, false).hasCacheDirTag)
            << untagged.toStdString();
    }

    // Writing never goes through a link in the tag's place, nor replaces it.
    EXPECT_THROW(CacheDirTagDetector::writeTag(linked), CacheDirTagWriteError);
    EXPECT_TRUE(QFileInfo(linked + QStringLiteral("/CACHEDIR.TAG")).isSymLink());
    QFile original(valid);
    ASSERT_TRUE(original.open(QIODevice::ReadOnly));
    EXPECT_EQ(original.readAll(), signature);
}

TEST(RiskClassifier, CategoryDefaultsFollowTheirOwnTable)
{
    const RiskClassifier classifier(QStringLiteral("/Users/me"));
    using C = StorageCategory;
    const char* transient = "Standard transient application caches, logs, or reports that regenerate automatically.";
    const char* byDefault = "Category default risk classification.";
    const struct {
        StorageCategory category;
        const char* path;
        bool orphaned;
        RiskTier tier;
        double confidence;
        const char* reason;
    } cases[]{
        {C::developerCache, "/Users/me/x/y", false, RiskTier::safeToDelete, 0.95, transient},
        {C::systemCaches, "/Users/me/x/y", false, RiskTier::safeToDelete, 0.95, transient},
        {C::systemLogs, "/Users/me/x/y", false, RiskTier::safeToDelete, 0.95, transient},
        {C::crashReports, "/Users/me/x/y", false, RiskTier::safeToDelete, 0.95, transient},
        {C::browserCaches, "/Users/me/x/y", false, RiskTier::safeToDelete, 0.95, transient},
        {C::leftovers, "/Users/me/x/y", false, RiskTier::safeToDelete, 0.95, transient},
        {C::aiModelWeights, "/Users/me/x/y", false, RiskTier::reviewRequired, 1.0,
         "Pretrained AI model weights require significant network bandwidth and time to re-download."},
        {C::dockerVM, "/Users/me/x/y", true, RiskTier::reviewRequired, 1.0,
         "Orphaned Docker VM disk image from uninstalled Docker Desktop."},
        {C::dockerVM, "/Users/me/x/y", false, RiskTier::keep, 1.0,
         "Active Docker VM disk image. Uninstallation or shutdown required."},
        {C::xcodeArtifacts, "/Users/me/Xcode/Archives/a", false, RiskTier::reviewRequired, 1.0,
         "Xcode release archives contain dSYMs needed for App Store crash symbolication."},
        {C::xcodeArtifacts, "/Users/me/Xcode/archives/a", false, RiskTier::safeToDelete, 0.95,
         "Xcode intermediate build products regenerate automatically on compilation."},
        {C::strayDependencies, "/Users/me/x/y", false, RiskTier::reviewRequired, 0.9,
         "Stray project dependencies in home root require verification before deletion."},
        {C::mailDownloads, "/Users/me/x/y", false, RiskTier::reviewRequired, 1.0,
         "Locally cached email attachments may not exist on remote mail server if deleted."},
        {C::applicationBundles, "/Users/me/x/y", true, RiskTier::reviewRequired, 0.85, byDefault},
        {C::largeFiles, "/Users/me/x/y", true, RiskTier::reviewRequired, 0.85, byDefault},
        {C::startupItems, "/Users/me/x/y", true, RiskTier::reviewRequired, 0.85, byDefault},
        {C::unknownAnomaly, "/Users/me/x/y", true, RiskTier::reviewRequired, 0.85, byDefault},
        {C::dynamicRule, "/Users/me/x/y", false, RiskTier::safeToDelete, 0.85, byDefault},
    };
    for (const auto& c : cases)
        EXPECT_EQ(classifier.classify(QLatin1String(c.path), c.category, c.orphaned),
                  (RiskClassificationResult{
                      .riskTier = c.tier, .confidence = c.confidence, .reason = QLatin1String(c.reason)}))
            << c.category.rawValue().toStdString() << " " << c.path;
}

TEST(RiskClassifier, ScannersClassifyWithTheEnginesRegistry)
{
    TestHome home;
    home.writeFile(QStringLiteral(".cache/uv/wheels/a.whl"), 5000);
    home.writeFile(QStringLiteral(".cache/uv/sdists/b.tar"), 5000);
    home.writeFile(QStringLiteral("Library/Caches/com.tool/c.db"), 5000);
    const auto registry = registryIn(home);
    registry->registerRule(rule("zz.keep.wheels", RiskTier::keep, QStringLiteral("~/.cache/uv/wheels/**")));
    registry->registerRule(rule("zz.keep.tool", RiskTier::keep, QStringLiteral("~/Library/Caches/com.tool")));

    DeepScanEngine engine({.homeURL = home.path(), .ruleRegistry = registry});
    const ScanResult result = engine.scan(CategorySet{StorageCategory::developerCache, StorageCategory::systemCaches});
    const auto item = [&result, &home](const char* relative) {
        const auto found = std::find_if(result.items.begin(), result.items.end(), [&](const DiscoveredItem& i) {
            return i.path == home.path(QLatin1String(relative));
        });
        return found == result.items.end() ? DiscoveredItem{} : *found;
    };
    EXPECT_EQ(item(".cache/uv/wheels").riskTier, RiskTier::keep);
    EXPECT_EQ(item(".cache/uv/wheels").ruleId, QStringLiteral("zz.keep.wheels"));
    EXPECT_EQ(item(".cache/uv/sdists").riskTier, RiskTier::safeToDelete);
    EXPECT_EQ(item("Library/Caches/com.tool").riskTier, RiskTier::keep);
    EXPECT_EQ(item("Library/Caches/com.tool").ruleId, QStringLiteral("zz.keep.tool"));
}
