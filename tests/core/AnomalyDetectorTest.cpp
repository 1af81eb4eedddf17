#include "RefusingFileManager.h"
#include "TestHome.h"

#include "analysis/AnomalyDetector.h"
#include "analysis/UsageSink.h"
#include "rules/RuleRegistry.h"
#include "safety/CacheDirTagDetector.h"
#include "support/JsonWriter.h"

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::RefusingFileManager;
using kestrow::test::TestHome;

namespace {

const QString fortyHex = QStringLiteral("0123456789abcdef0123456789ABCDEF01234567");

std::shared_ptr<RuleRegistry> builtInRules(const TestHome& home)
{
    return std::make_shared<RuleRegistry>(RuleRegistry::Options{.homeURL = home.path()});
}

std::vector<StorageAnomaly> detect(const TestHome& home, std::int64_t minSizeBytes,
                                   std::optional<QStringList> roots = std::nullopt,
                                   std::shared_ptr<const FileManager> fileManager = {})
{
    return AnomalyDetector(AnomalyDetectorConfiguration(minSizeBytes, std::move(roots), 2, home.path()),
                           builtInRules(home), std::move(fileManager))
        .detectAnomalies();
}

const StorageAnomaly* find(const std::vector<StorageAnomaly>& anomalies, const QString& path)
{
    for (const StorageAnomaly& anomaly : anomalies) {
        if (anomaly.path == path)
            return &anomaly;
    }
    return nullptr;
}

void writeFiles(const TestHome& home, const QString& folder, int count)
{
    for (int index = 0; index < count; ++index)
        home.writeFile(folder + QStringLiteral("/f%1").arg(index), 10);
}

} // namespace

TEST(AnomalyDetector, CataloguedAndSmallFoldersAreNotReported)
{
    TestHome home;
    // Heavy and hash-named, but a built-in rule claims it.
    home.writeFile(QStringLiteral(".cache/huggingface/hub/") + fortyHex, 50000);
    const QString temp = home.writeFile(QStringLiteral(".cache/tempfiles/data"), 20000);

    UsageSink sink;
    FileManager().walk(home.path(QStringLiteral(".cache/tempfiles")), sink);
    const std::int64_t size = sink.allocatedBytes();
    ASSERT_GT(size, 0);

    std::vector<StorageAnomaly> found = detect(home, size);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found.front().path, home.path(QStringLiteral(".cache/tempfiles")));
    EXPECT_EQ(found.front().matchedKeywords, (QStringList{QStringLiteral("temp")}));
    EXPECT_TRUE(detect(home, size + 1).empty()) << "a byte short of the minimum is not reported";
}

TEST(AnomalyDetector, DecisionTableClaimsAndRuleSynthesis)
{
    TestHome home;
    home.writeFile(QStringLiteral("Projects/vendored/blob"), 3000);
    CacheDirTagDetector::writeTag(home.path(QStringLiteral("Projects/vendored")), QStringLiteral("Tool"));
    home.writeFile(QStringLiteral("Projects/hashy/") + fortyHex + QStringLiteral(".pack"), 3000);
    home.writeFile(QStringLiteral("Projects/nothash/0123456789abcdef0123456789abcdeg"), 3000);
    home.writeFile(QStringLiteral("Projects/layout/file"), 3000); // "out" is in "layout"
    writeFiles(home, QStringLiteral("Projects/app/build"), 600);
    home.writeFile(QStringLiteral("Projects/holder/") + fortyHex, 3000);
    writeFiles(home, QStringLiteral("Projects/holder/build"), 600);

    const std::vector<StorageAnomaly> found = detect(home, 1);
    const auto at = [&](const char* relative) { return find(found, home.path(QString::fromLatin1(relative))); };

    const StorageAnomaly* tagged = at("Projects/vendored");
    ASSERT_TRUE(tagged);
    EXPECT_EQ(tagged->confidenceScore, 1.0);
    EXPECT_EQ(tagged->suggestedRiskTier, RiskTier::safeToDelete);
    EXPECT_EQ(tagged->suggestedCategory, StorageCategory::developerCache);
    EXPECT_TRUE(tagged->hasCacheDirTag);
    ASSERT_TRUE(tagged->tagApplicationComment && tagged->proposedRule);
    EXPECT_EQ(tagged->anomalyDescription, QStringLiteral("Authoritative cache tagged with CACHEDIR.TAG standard (") +
                                              *tagged->tagApplicationComment + QStringLiteral(")."));
    const RuleDefinition& rule = *tagged->proposedRule;
    EXPECT_TRUE(rule.isRegenerable);
    EXPECT_EQ(rule.id, QStringLiteral("dynamic.anomaly.vendored"));
    EXPECT_EQ(rule.name, QStringLiteral("Untracked Cache (vendored)"));
    EXPECT_EQ(rule.patterns, (QStringList{QStringLiteral("~/Projects/vendored/**")}));
    EXPECT_EQ(rule.description,
              QStringLiteral("Synthesized cleanup rule for uncataloged directory at ~/Projects/vendored/**."));
    EXPECT_EQ(rule.synthesizedBy, QStringLiteral("anomaly_detector"));
    EXPECT_FALSE(rule.isBuiltIn);

    const StorageAnomaly* hashy = at("Projects/hashy");
    ASSERT_TRUE(hashy);
    EXPECT_EQ(hashy->confidenceScore, 0.55);
    EXPECT_EQ(hashy->suggestedRiskTier, RiskTier::reviewRequired);
    EXPECT_EQ(hashy->suggestedCategory, StorageCategory::unknownAnomaly);
    EXPECT_EQ(hashy->anomalyDescription,
              QStringLiteral("Untracked heavy storage directory matching cache heuristics (keywords: )."));
    EXPECT_FALSE(hashy->proposedRule->isRegenerable);

    EXPECT_FALSE(at("Projects/nothash")) << "32 characters with a 'g' are no hash";
    EXPECT_FALSE(at("Projects/app")) << "no keyword and no hash-named file";

    const StorageAnomaly* layout = at("Projects/layout");
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->confidenceScore, 0.6499999999999999);
    EXPECT_EQ(layout->suggestedRiskTier, RiskTier::reviewRequired);

    const StorageAnomaly* build = at("Projects/app/build");
    ASSERT_TRUE(build);
    EXPECT_EQ(build->fileCount, 600);
    EXPECT_EQ(build->confidenceScore, 0.7499999999999999);
    EXPECT_EQ(build->suggestedRiskTier, RiskTier::safeToDelete);
    EXPECT_EQ(build->matchedKeywords, (QStringList{QStringLiteral("build")}));
    const QByteArray json = JsonWriter::compact(build->toJson(DateEncoding::iso8601));
    EXPECT_TRUE(json.contains("\"confidenceScore\":0.7499999999999999,")) << json.constData();
    EXPECT_TRUE(json.startsWith("{\"id\":")) << json.constData();

    const StorageAnomaly* outer = at("Projects/holder");
    ASSERT_TRUE(outer);
    EXPECT_EQ(outer->confidenceScore, 0.65) << "hash-named, more than 500 files below";
    EXPECT_FALSE(at("Projects/holder/build")) << "claimed by the folder that holds it";

    for (std::size_t index = 1; index < found.size(); ++index)
        EXPECT_GE(found[index - 1].allocatedSizeBytes, found[index].allocatedSizeBytes);
}

TEST(AnomalyDetector, ProtectedUnreadableAndMissingPlacesProposeNothing)
{
    TestHome home;
    home.writeFile(QStringLiteral("Documents/tmp-exports/file"), 3000); // protected ground: no rule may cover it
    home.writeFile(QStringLiteral(".cache/tmpjunk/file"), 3000);
    home.writeFile(QStringLiteral("Projects/dist/file"), 3000);

    EXPECT_FALSE(find(detect(home, 1, QStringList{home.path()}), home.path(QStringLiteral("Documents/tmp-exports"))));

    const auto refusing = std::make_shared<RefusingFileManager>(QStringList{home.path(QStringLiteral(".cache"))});
    const std::vector<StorageAnomaly> found = detect(home, 1, std::nullopt, refusing);
    ASSERT_EQ(found.size(), 1u) << "an unreadable root is empty, a missing root passed over";
    EXPECT_EQ(found.front().path, home.path(QStringLiteral("Projects/dist")));
}

TEST(AnomalyDetector, Slugs)
{
    EXPECT_EQ(AnomalyDetector::sanitizeSlug(QStringLiteral("My Cache (v2)")), QStringLiteral("my-cache-v2"));
    EXPECT_EQ(AnomalyDetector::sanitizeSlug(QStringLiteral("...")), QStringLiteral("untracked"));
    EXPECT_EQ(AnomalyDetector::sanitizeSlug(QStringLiteral("a__b")), QStringLiteral("a__b"));
    EXPECT_EQ(AnomalyDetector::sanitizeSlug(QStringLiteral("--Ünï code--.v1.-")), QStringLiteral("ünï-code-.v1"));
}
