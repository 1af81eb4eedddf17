#include "rules/RuleCatalog.h"
#include "TestHome.h"
#include "platform/HostSystem.h"
#include "rules/BuiltInRules.h"
#include "rules/LinuxRules.h"
#include "rules/RuleRegistry.h"
#include "safety/SandboxValidator.h"

#include <gtest/gtest.h>

#include <set>

using namespace kestrow;

namespace {

QDateTime moment(const char* text)
{
    return QDateTime::fromString(QString::fromUtf8(text), Qt::ISODateWithMs);
}

RuleDefinition mlxRule()
{
    return RuleDefinition{
        .id = QStringLiteral("custom.mlx"),
        .name = QStringLiteral("MLX"),
        .description = QStringLiteral("MLX caches"),
        .category = StorageCategory::aiModelWeights,
        .riskTier = RiskTier::reviewRequired,
        .patterns = {QStringLiteral("~/.cache/mlx/**")},
        .isRegenerable = false,
        .isBuiltIn = false,
        .enabled = true,
        .minAgeDays = 7,
        .synthesizedBy = QStringLiteral("dynamic"),
        .createdAt = moment("2026-03-01T10:15:30.250Z"),
        .updatedAt = moment("2026-03-02T08:00:00Z"),
    };
}

RuleDefinition bareRule()
{
    return RuleDefinition{
        .id = QStringLiteral("a.bare"),
        .name = QStringLiteral("Bare"),
        .description = QStringLiteral("No optionals"),
        .category = StorageCategory::dynamicRule,
        .riskTier = RiskTier::safeToDelete,
        .patterns = {QStringLiteral("/opt/x/*"), QStringLiteral("~/y/**")},
        .excludedPatterns = {QStringLiteral("~/y/keep")},
        .isRegenerable = true,
        .enabled = false,
    };
}

RuleCatalog decode(const char* text)
{
    return RuleCatalog::fromFileText(QByteArray(text));
}

const char* const validFile = R"({"version": 2, "updatedAt": "2026-03-01T10:15:30Z", "extra": 1, "rules": [
  {"id": "x.y", "name": "N", "description": "D", "category": "DYNAMIC_RULE", "riskTier": "KEEP",
   "patterns": ["~/x/**"], "excludedPatterns": [], "isRegenerable": false, "isBuiltIn": false,
   "enabled": true, "unknown": [1, 2]}]})";

} // namespace

TEST(RuleCatalog, FileTextIsSortedPrettyAndExact)
{
    const RuleCatalog catalog{.updatedAt = moment("2026-03-03T12:00:00.999Z"), .rules = {bareRule(), mlxRule()}};
    const QByteArray expected = R"({
  "rules" : [
    {
      "category" : "DYNAMIC_RULE",
      "description" : "No optionals",
      "enabled" : false,
      "excludedPatterns" : [
        "~\/y\/keep"
      ],
      "id" : "a.bare",
      "isBuiltIn" : false,
      "isRegenerable" : true,
      "name" : "Bare",
      "patterns" : [
        "\/opt\/x\/*",
        "~\/y\/**"
      ],
      "riskTier" : "SAFE_TO_DELETE"
    },
    {
      "category" : "AI_MODEL_WEIGHTS",
      "createdAt" : "2026-03-01T10:15:30Z",
      "description" : "MLX caches",
      "enabled" : true,
      "excludedPatterns" : [],
      "id" : "custom.mlx",
      "isBuiltIn" : false,
      "isRegenerable" : false,
      "minAgeDays" : 7,
      "name" : "MLX",
      "patterns" : [
        "~\/.cache\/mlx\/**"
      ],
      "riskTier" : "REVIEW_REQUIRED",
      "synthesizedBy" : "dynamic",
      "updatedAt" : "2026-03-02T08:00:00Z"
    }
  ],
  "updatedAt" : "2026-03-03T12:00:00Z",
  "version" : 1
})";
    EXPECT_EQ(catalog.fileText(), expected);

    // Reading back loses only the fractions of seconds; absent optionals stay absent.
    const RuleCatalog read = RuleCatalog::fromFileText(catalog.fileText());
    EXPECT_EQ(read.rules[0], bareRule());
    EXPECT_FALSE(read.rules[0].minAgeDays);
    RuleDefinition mlx = mlxRule();
    mlx.createdAt = moment("2026-03-01T10:15:30Z");
    EXPECT_EQ(read.rules[1], mlx);
    EXPECT_EQ(read.updatedAt, moment("2026-03-03T12:00:00Z"));
}

TEST(RuleCatalog, DecodingIsStrict)
{
    const RuleCatalog lenient = decode(validFile);
    EXPECT_EQ(lenient.version, 2) << "a later version reads like version 1";
    ASSERT_EQ(lenient.rules.size(), 1u);
    EXPECT_EQ(lenient.rules[0].riskTier, RiskTier::keep);
    EXPECT_FALSE(lenient.rules[0].createdAt);
    EXPECT_TRUE(decode(R"({"version": 1, "updatedAt": "2026-03-01T10:15:30Z", "rules": []})").rules.empty());

    const auto fails = [](QByteArray text) {
        EXPECT_THROW((void)RuleCatalog::fromFileText(text), JsonDecodingError) << text.toStdString();
    };
    const QByteArray valid(validFile);
    // Any required key of one rule missing or mistyped fails the whole file.
    fails(QByteArray(valid).replace("\"enabled\": true,", ""));
    fails(QByteArray(valid).replace("\"enabled\": true", "\"enabled\": 1"));
    fails(QByteArray(valid).replace("\"patterns\": [\"~/x/**\"]", "\"patterns\": \"~/x/**\""));
    fails(QByteArray(valid).replace("\"excludedPatterns\": [],", ""));
    fails(QByteArray(valid).replace("\"KEEP\"", "\"keep\""));
    fails(QByteArray(valid).replace("\"DYNAMIC_RULE\"", "\"dynamicRule\""));
    fails(QByteArray(valid).replace("\"enabled\": true,", "\"enabled\": true, \"minAgeDays\": \"7\","));
    // Time stamps: ISO 8601 without fractions, nothing else.
    fails(QByteArray(valid).replace("10:15:30Z", "10:15:30.5Z"));
    fails(QByteArray(valid).replace("10:15:30Z", "10:15:30+00:00"));
    fails(QByteArray(valid).replace("\"enabled\": true,", "\"enabled\": true, \"createdAt\": 12.5,"));
    // The catalogue's own keys.
    fails(QByteArray(valid).replace("\"version\": 2,", ""));
    fails(QByteArray(valid).replace("\"version\": 2", "\"version\": \"2\""));
    fails(R"({"version": 1, "updatedAt": "2026-03-01T10:15:30Z"})");
    fails("[]");
    fails("{\"version\": 1,");
}

TEST(BuiltInRules, CatalogueHoldsTheTwentyFourRulesAsListed)
{
    const QDateTime builtAt = moment("2026-01-01T00:00:00Z");
    const std::vector<RuleDefinition> rules = BuiltInRules::catalogue(builtAt);
    ASSERT_EQ(rules.size(), 24u);
    std::set<QString> ids;
    int reviewCount = 0;
    for (const RuleDefinition& rule : rules) {
        ids.insert(rule.id);
        EXPECT_TRUE(rule.isBuiltIn && rule.enabled) << rule.id.toStdString();
        EXPECT_EQ(rule.isRegenerable, rule.riskTier == RiskTier::safeToDelete) << rule.id.toStdString();
        EXPECT_FALSE(rule.minAgeDays || rule.synthesizedBy);
        EXPECT_EQ(rule.createdAt, builtAt);
        EXPECT_EQ(rule.updatedAt, builtAt);
        EXPECT_FALSE(rule.patterns.isEmpty());
        reviewCount += rule.riskTier == RiskTier::reviewRequired;
    }
    EXPECT_EQ(ids.size(), 24u);
    EXPECT_EQ(reviewCount, 7);
    EXPECT_EQ(rules.front().id, QStringLiteral("dev.uv.cache"));
    EXPECT_EQ(rules.back().id, QStringLiteral("sys.browser.chrome"));

    const RuleDefinition& cargo = rules[4];
    EXPECT_EQ(cargo.toJson(DateEncoding::iso8601),
              RuleDefinition::fromJson(cargo.toJson(DateEncoding::iso8601), DateEncoding::iso8601)
                  .toJson(DateEncoding::iso8601));
    EXPECT_EQ(cargo.name, QStringLiteral("Cargo Registry & Git Cache"));
    EXPECT_EQ(cargo.patterns.size(), 5);
    EXPECT_EQ(cargo.patterns.last(), QStringLiteral("~/.cargo/.package-cache/**"));
    EXPECT_EQ(cargo.excludedPatterns,
              QStringList({QStringLiteral("~/.cargo/bin/**"), QStringLiteral("~/.cargo/config.toml"),
                           QStringLiteral("~/.cargo/credentials.toml")}));
    EXPECT_EQ(rules[6].excludedPatterns, rules[7].patterns) << "the incomplete downloads are cut out of Homebrew";
    EXPECT_EQ(rules[16].category, StorageCategory::dockerVM);
    EXPECT_EQ(rules[16].description, QStringLiteral("Docker Desktop Linux VM APFS disk image (Docker.raw)."));
    EXPECT_EQ(rules[23].patterns[1], QStringLiteral("~/Library/Caches/Google/Chrome/*/Code Cache/**"));
}

TEST(LinuxRules, ReviewLinuxPlacesUnderTheirOwnNamespaceAndJoinTheBuiltInsOnLinux)
{
    const test::TestHome home;
    const std::vector<RuleDefinition> rules = LinuxRules::catalogue(moment("2026-01-01T00:00:00Z"));
    for (const RuleDefinition& rule : rules) {
        EXPECT_TRUE(rule.id.startsWith(QStringLiteral("linux."))) << rule.id.toStdString();
        EXPECT_TRUE(rule.isBuiltIn && rule.enabled && !rule.isRegenerable) << rule.id.toStdString();
        for (const QString& pattern : rule.patterns)
            EXPECT_NO_THROW(SandboxValidator::validatePattern(pattern, std::nullopt, home.path()))
                << pattern.toStdString();
    }

    const RuleRegistry registry({.homeURL = home.path()});
    const bool onLinux = currentHostSystem() == HostSystem::gnuLinux;
    EXPECT_EQ(registry.allRules().size(), 24 + (onLinux ? rules.size() : 0));
    const auto matched = registry.matchingRules(home.path(QStringLiteral(".m2/repository/org/x.jar")));
    EXPECT_EQ(matched.size(), onLinux ? 1u : 0u);
}
