#include "TestHome.h"

#include "platform/HostSystem.h"
#include "rules/BuiltInRules.h"
#include "rules/LinuxRules.h"
#include "rules/RuleCatalog.h"
#include "rules/RuleRegistry.h"
#include "safety/SandboxSecurityError.h"

#include <QFile>
#include <QFileInfo>

#include <functional>
#include <sys/stat.h>

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

// The catalogue and, on Linux, the Linux set.
std::vector<RuleDefinition> builtInRules()
{
    std::vector<RuleDefinition> rules = BuiltInRules::catalogue({});
    if (currentHostSystem() == HostSystem::gnuLinux)
        for (RuleDefinition& rule : LinuxRules::catalogue({}))
            rules.push_back(std::move(rule));
    return rules;
}

std::size_t builtInCount(std::optional<StorageCategory> category = std::nullopt)
{
    const std::vector<RuleDefinition> rules = builtInRules();
    return std::count_if(rules.begin(), rules.end(),
                         [&](const RuleDefinition& rule) { return !category || rule.category == *category; });
}

RuleDefinition customRule(const QString& id, QStringList patterns = {QStringLiteral("~/.cache/mlx/**")})
{
    return RuleDefinition{.id = id,
                          .name = QStringLiteral("Custom ") + id,
                          .description = QStringLiteral("A custom rule."),
                          .category = StorageCategory::dynamicRule,
                          .riskTier = RiskTier::reviewRequired,
                          .patterns = std::move(patterns)};
}

template <typename Error, typename Call> QString failureOf(Call&& call)
{
    try {
        call();
    } catch (const Error& error) {
        return error.description();
    }
    return QStringLiteral("(no failure)");
}

QStringList ids(const std::vector<RuleDefinition>& rules)
{
    QStringList result;
    for (const RuleDefinition& rule : rules)
        result.append(rule.id);
    return result;
}

QByteArray catalogueFile(const QByteArray& rules)
{
    return R"({"version": 1, "updatedAt": "2026-03-01T10:15:30Z", "rules": [)" + rules + "]}";
}

QByteArray fileRule(const char* id, const char* pattern, const char* extra = "")
{
    return QByteArray(R"({"id": ")") + id + R"(", "name": "N", "description": "D", "category": "DYNAMIC_RULE",
        "riskTier": "KEEP", "patterns": [")" +
           pattern + R"("], "excludedPatterns": [], "isRegenerable": false,
        "isBuiltIn": false, "enabled": true)" +
           extra + "}";
}

} // namespace

TEST(RuleRegistry, RegisterChecksRunInOrderWithExactTexts)
{
    TestHome home;
    RuleRegistry registry({.homeURL = home.path()});
    const auto refusal = [&](const RuleDefinition& rule) {
        return failureOf<RuleRegistryError>([&] { registry.registerRule(rule); });
    };

    EXPECT_EQ(refusal(customRule(QStringLiteral("a/b"))),
              QStringLiteral("Rule ID 'a/b' is invalid. It must be non-empty and contain only alphanumeric "
                             "characters, dots, and underscores."));
    EXPECT_EQ(refusal(customRule(QString(), {})),
              QStringLiteral("Rule ID '(empty)' is invalid. It must be non-empty and contain only alphanumeric "
                             "characters, dots, and underscores."));
    EXPECT_TRUE(refusal(customRule(QStringLiteral("bad id"), {})).startsWith(QStringLiteral("Rule ID 'bad id'")))
        << "the id is reported before the empty patterns";
    EXPECT_EQ(refusal(customRule(QStringLiteral("dev.npm.cache"), {QStringLiteral("/System/**")})),
              QStringLiteral("Cannot overwrite built-in rule 'dev.npm.cache' with a dynamic rule."))
        << "a built-in clash is reported before the patterns are looked at";
    EXPECT_EQ(refusal(customRule(QStringLiteral("custom.empty"), {})),
              QStringLiteral("Rule 'custom.empty' must define at least one path pattern."));
    EXPECT_EQ(failureOf<SandboxSecurityError>([&] {
                  registry.registerRule(customRule(QStringLiteral("custom.docs"), {QStringLiteral("~/Documents/**")}));
              }),
              QStringLiteral("Sandbox Violation: Path '") + home.path(QStringLiteral("Documents")) +
                  QStringLiteral("' targets protected user directory 'Documents'."));
    EXPECT_FALSE(QFile::exists(registry.rulesFileURL())) << "refusals write nothing";

    // Hyphens and letters, marks and digits of any script pass.
    registry.registerRule(customRule(QStringLiteral("custom_mlx.models-2")));
    registry.registerRule(customRule(QString::fromUtf8("modèle.日本.٣")));
    EXPECT_TRUE(registry.rule(QStringLiteral("custom_mlx.models-2")));
    EXPECT_EQ(RuleRegistryError(RuleRegistryError::Case::duplicateRuleId, QStringLiteral("x")).description(),
              QStringLiteral("Rule with ID 'x' already exists in the registry."));
    EXPECT_EQ(RuleRegistryError(RuleRegistryError::Case::sandboxViolation, QStringLiteral("why")).description(),
              QStringLiteral("Rule rejected by sandbox security validator: why"));
}

TEST(RuleRegistry, RegisteredRulesPersistAndReadBack)
{
    TestHome home;
    RuleRegistry registry({.homeURL = home.path()});
    ASSERT_EQ(registry.allRules().size(), builtInCount());
    EXPECT_EQ(registry.rulesFileURL(), home.path(QStringLiteral(".kestrow/rules.json")));

    RuleDefinition claimed = customRule(QStringLiteral("z.claimed"));
    claimed.isBuiltIn = true;
    claimed.createdAt = QDateTime::fromSecsSinceEpoch(1700000000, Qt::UTC);
    registry.registerRule(claimed);
    const RuleDefinition stored = *registry.rule(QStringLiteral("z.claimed"));
    EXPECT_FALSE(stored.isBuiltIn);
    EXPECT_EQ(stored.synthesizedBy, QStringLiteral("dynamic"));
    EXPECT_EQ(stored.createdAt, claimed.createdAt);
    EXPECT_TRUE(stored.updatedAt);

    RuleDefinition first = customRule(QStringLiteral("a.twice"));
    registry.registerRule(first);
    first.name = QStringLiteral("Second");
    registry.registerRule(first);
    EXPECT_EQ(*registry.rule(QStringLiteral("a.twice")), first) << "a custom rule is stored exactly as given";
    EXPECT_FALSE(first.synthesizedBy || first.createdAt);

    const QStringList all = ids(registry.allRules());
    EXPECT_EQ(static_cast<std::size_t>(all.size()), builtInCount() + 2);
    EXPECT_EQ(all.front(), QStringLiteral("a.twice"));
    EXPECT_EQ(all.back(), QStringLiteral("z.claimed"));

    QFile file(registry.rulesFileURL());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const RuleCatalog onDisk = RuleCatalog::fromFileText(file.readAll());
    EXPECT_EQ(onDisk.version, 1);
    EXPECT_EQ(ids(onDisk.rules), QStringList({QStringLiteral("a.twice"), QStringLiteral("z.claimed")}));

    RuleRegistry reader({.homeURL = home.path()});
    EXPECT_FALSE(reader.rule(QStringLiteral("a.twice"))) << "creation reads no file";
    reader.loadCustomRules();
    EXPECT_EQ(*reader.rule(QStringLiteral("a.twice")), first);
    EXPECT_EQ(ids(reader.allRules()), all);
}

TEST(RuleRegistry, EnablingAndRemovingKeepBuiltInsInMemory)
{
    TestHome home;
    RuleRegistry registry({.homeURL = home.path()});
    const QString cachePath = home.path(QStringLiteral("Library/Caches/com.example/data"));
    EXPECT_EQ(ids(registry.matchingRules(cachePath)), QStringList{QStringLiteral("sys.user.caches")});

    registry.setRuleEnabled(QStringLiteral("sys.user.caches"), false);
    EXPECT_TRUE(registry.matchingRules(cachePath).empty());
    EXPECT_EQ(registry.activeRules().size(), builtInCount() - 1);
    EXPECT_TRUE(registry.rules(StorageCategory::systemCaches).empty());
    EXPECT_EQ(registry.rules(StorageCategory::aiModelWeights).size(), builtInCount(StorageCategory::aiModelWeights));
    EXPECT_FALSE(QFile::exists(registry.rulesFileURL())) << "a built-in's switch is not saved";
    EXPECT_EQ(RuleRegistry({.homeURL = home.path()}).activeRules().size(), builtInCount())
        << "nor outlives its registry";

    EXPECT_EQ(failureOf<RuleRegistryError>([&] { registry.setRuleEnabled(QStringLiteral("x"), true); }),
              QStringLiteral("Rule ID 'Rule with ID 'x' not found.' is invalid. It must be non-empty and contain "
                             "only alphanumeric characters, dots, and underscores."));
    EXPECT_EQ(failureOf<RuleRegistryError>([&] { registry.removeRule(QStringLiteral("dev.uv.cache")); }),
              QStringLiteral("Cannot overwrite built-in rule 'Built-in rule 'dev.uv.cache' cannot be deleted.' with "
                             "a dynamic rule."));
    registry.removeRule(QStringLiteral("no.such.rule"));
    EXPECT_FALSE(QFile::exists(registry.rulesFileURL())) << "removing nothing saves nothing";

    registry.registerRule(customRule(QStringLiteral("custom.one")));
    registry.setRuleEnabled(QStringLiteral("custom.one"), false);
    RuleRegistry reader({.homeURL = home.path()});
    reader.loadCustomRules();
    EXPECT_FALSE(reader.rule(QStringLiteral("custom.one"))->enabled);
    registry.removeRule(QStringLiteral("custom.one"));
    QFile file(registry.rulesFileURL());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_TRUE(file.readAll().contains("\"rules\" : [],")) << "an empty catalogue is still written";
}

TEST(RuleRegistry, LoadingIsLenientButNeverOverridesBuiltIns)
{
    TestHome home;
    RuleRegistry registry({.homeURL = home.path()});
    registry.loadCustomRules(); // no file: no error

    home.writeFile(QStringLiteral(".kestrow/rules.json"),
                   catalogueFile(fileRule("dev.npm.cache", "~/.npm/x/**") + "," +
                                 fileRule("custom.system", "/System/**") + "," + fileRule("custom.kept", "~/.kept/**") +
                                 "," + fileRule("x y", "~/.odd/**") + "," +
                                 fileRule("custom.claims", "~/.claims/**", R"(, "isBuiltIn": true)")));
    registry.loadCustomRules();
    EXPECT_TRUE(registry.rule(QStringLiteral("dev.npm.cache"))->isBuiltIn);
    EXPECT_EQ(registry.rule(QStringLiteral("dev.npm.cache"))->riskTier, RiskTier::safeToDelete);
    EXPECT_FALSE(registry.rule(QStringLiteral("custom.system"))) << "a rule the sandbox refuses is dropped";
    EXPECT_TRUE(registry.rule(QStringLiteral("custom.kept")));
    EXPECT_TRUE(registry.rule(QStringLiteral("x y"))) << "file ids are not held against the id rules";
    EXPECT_THROW(registry.removeRule(QStringLiteral("custom.claims")), RuleRegistryError)
        << "a file rule that claims to be built in behaves as one";

    // A broken file applies nothing, not even its valid rules.
    home.writeFile(
        QStringLiteral(".kestrow/rules.json"),
        catalogueFile(fileRule("custom.fresh", "~/.fresh/**") + "," +
                      QByteArray(fileRule("custom.broken", "~/.b/**")).replace("\"enabled\": true", "\"x\": 1")));
    const QString broken = failureOf<RuleRegistryError>([&] { registry.loadCustomRules(); });
    EXPECT_TRUE(broken.startsWith(QStringLiteral("Failed to parse rules.json: "))) << broken.toStdString();
    EXPECT_TRUE(broken.contains(QStringLiteral("enabled"))) << broken.toStdString();
    EXPECT_FALSE(registry.rule(QStringLiteral("custom.fresh")));
    home.writeFile(QStringLiteral(".kestrow/rules.json"), QByteArray("{not json"));
    EXPECT_TRUE(failureOf<RuleRegistryError>([&] {
                    registry.loadCustomRules();
                }).startsWith(QStringLiteral("Failed to parse rules.json: ")));
    EXPECT_EQ(registry.activeRules().size(), builtInCount() + 3) << "built-ins and earlier rules stay in force";

    // A file that cannot be read.
    const QString folder = home.makeDirectory(QStringLiteral("folder.json"));
    RuleRegistry unreadable({.homeURL = home.path(), .rulesFileURL = folder});
    EXPECT_TRUE(
        failureOf<RuleRegistryError>([&] { unreadable.loadCustomRules(); })
            .startsWith(QStringLiteral("Failed to persist rule catalog to disk: Could not read rules file at ") +
                        folder + QStringLiteral(": ")));
}

TEST(RuleRegistry, FailedSaveKeepsTheRuleAndMissingFoldersAreMade)
{
    TestHome home;
    home.writeFile(QStringLiteral("blocker"), QByteArray("a file where a folder should be"));
    const QString location = home.path(QStringLiteral("blocker/sub/rules.json"));
    RuleRegistry registry({.homeURL = home.path(), .rulesFileURL = location});
    const QString failure =
        failureOf<RuleRegistryError>([&] { registry.registerRule(customRule(QStringLiteral("custom.kept"))); });
    EXPECT_TRUE(failure.startsWith(QStringLiteral("Failed to persist rule catalog to disk: Failed to write rules to ") +
                                   location + QStringLiteral(": ")))
        << failure.toStdString();
    EXPECT_GT(failure.size(), failure.indexOf(QStringLiteral(": "), failure.indexOf(location)) + 2)
        << "the system's reason follows";
    EXPECT_TRUE(registry.rule(QStringLiteral("custom.kept"))) << "no rollback";

    // Missing parent folders are made.
    RuleRegistry nested({.homeURL = home.path(), .rulesFileURL = home.path(QStringLiteral("a/b/c/rules.json"))});
    nested.saveCustomRules();
    EXPECT_TRUE(QFile::exists(nested.rulesFileURL()));
}

TEST(RuleRegistry, RefusedFileRulesAreKeptAsideAndNeverSavedAway)
{
    TestHome home;
    const QByteArray text =
        catalogueFile(fileRule("custom.docs", "~/Documents/**") + "," + fileRule("custom.kept", "~/.kept/**") + "," +
                      fileRule("custom.system", "/System/**"));
    const QString location = home.writeFile(QStringLiteral(".kestrow/rules.json"), text);
    RuleRegistry registry({.homeURL = home.path()});
    registry.loadCustomRules();
    EXPECT_TRUE(registry.rule(QStringLiteral("custom.kept")));
    EXPECT_FALSE(registry.rule(QStringLiteral("custom.docs")));
    const std::vector<RuleRegistry::RefusedRule> refused = registry.refusedRules();
    ASSERT_EQ(refused.size(), 2u);
    EXPECT_EQ(refused[0].rule.id, QStringLiteral("custom.docs"));
    EXPECT_EQ(refused[0].error, SandboxSecurityError::forbiddenUserDirectory(home.path(QStringLiteral("Documents")),
                                                                             QStringLiteral("Documents")));
    EXPECT_EQ(refused[1].rule.patterns, QStringList{QStringLiteral("/System/**")});

    // Every change that saves is refused, naming the rules to fix, and the file stays as it was.
    const QString refusal = QStringLiteral("Failed to persist rule catalog to disk: %1 holds rules that the sandbox "
                                           "refuses (custom.docs, custom.system), which a new file would lose; "
                                           "nothing was written. Fix or remove them there first.")
                                .arg(location);
    const std::vector<std::function<void()>> changes{
        [&] { registry.saveCustomRules(); },
        [&] { registry.registerRule(customRule(QStringLiteral("custom.new"))); },
        [&] { registry.setRuleEnabled(QStringLiteral("custom.kept"), false); },
        [&] { registry.removeRule(QStringLiteral("custom.kept")); },
    };
    for (const auto& change : changes)
        EXPECT_EQ(failureOf<RuleRegistryError>(change), refusal);
    QFile file(location);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), text);

    // Once the file is fixed, a new load holds nothing refused and saving works again.
    home.writeFile(QStringLiteral(".kestrow/rules.json"), catalogueFile(fileRule("custom.kept", "~/.kept/**")));
    registry.loadCustomRules();
    EXPECT_TRUE(registry.refusedRules().empty());
    EXPECT_NO_THROW(registry.saveCustomRules());
}

TEST(RuleRegistry, ALinkedRulesFileIsReadButNeverReplacedOrWrittenThrough)
{
    TestHome home;
    const QByteArray text = catalogueFile(fileRule("custom.kept", "~/.kept/**"));
    const QString target = home.writeFile(QStringLiteral("dotfiles/rules.json"), text);
    home.makeSymbolicLink(QStringLiteral(".kestrow/rules.json"), target);
    RuleRegistry registry({.homeURL = home.path()});
    registry.loadCustomRules();
    EXPECT_TRUE(registry.rule(QStringLiteral("custom.kept")));
    EXPECT_EQ(failureOf<RuleRegistryError>([&] { registry.saveCustomRules(); }),
              QStringLiteral("Failed to persist rule catalog to disk: Failed to write rules to %1: it is a symbolic "
                             "link, which is neither written through nor replaced")
                  .arg(registry.rulesFileURL()));
    EXPECT_TRUE(QFileInfo(registry.rulesFileURL()).isSymLink());
    QFile file(target);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), text);

    // A FIFO in the file's place is not waited on.
    const QString fifo = home.path(QStringLiteral("fifo.json"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    RuleRegistry reader({.homeURL = home.path(), .rulesFileURL = fifo});
    EXPECT_EQ(failureOf<RuleRegistryError>([&] { reader.loadCustomRules(); }),
              QStringLiteral("Failed to persist rule catalog to disk: Could not read rules file at %1: it is not a "
                             "regular file")
                  .arg(fifo));
}

TEST(RuleRegistry, MatchingRulesHonourExclusionsAndComeInIdOrder)
{
    TestHome home;
    RuleRegistry registry({.homeURL = home.path()});
    const auto matching = [&](const char* relative) {
        return ids(registry.matchingRules(home.path(QString::fromUtf8(relative))));
    };
    EXPECT_EQ(matching("Library/Caches/Homebrew/downloads/x.incomplete"),
              QStringList({QStringLiteral("dev.homebrew.incomplete"), QStringLiteral("sys.user.caches")}));
    EXPECT_EQ(matching("Library/Caches/Homebrew/downloads/x.tar.gz"),
              QStringList({QStringLiteral("dev.homebrew.cache"), QStringLiteral("sys.user.caches")}));
    EXPECT_EQ(matching(".cargo/registry/cache/x.crate"), QStringList{QStringLiteral("dev.cargo.cache")});
    EXPECT_TRUE(matching(".cargo/config.toml").isEmpty());
    EXPECT_EQ(matching(".cache/whisper/base.pt"), QStringList{QStringLiteral("ai.whisper.models")});
    EXPECT_TRUE(matching(".cache/whisper/sub/base.pt").isEmpty()) << "a star does not cross a folder";
    EXPECT_EQ(matching("Library/Logs/DiagnosticReports/a.ips"),
              QStringList({QStringLiteral("sys.crash.user_reports"), QStringLiteral("sys.user.logs")}));
    EXPECT_EQ(matching("Library/Caches"), QStringList{QStringLiteral("sys.user.caches")}) << "X/** matches X";

    // A custom rule whose exclusion overlaps its own pattern.
    RuleDefinition rule = customRule(QStringLiteral("aaa.first"), {QStringLiteral("~/Library/Caches/mine/**")});
    rule.excludedPatterns = {QStringLiteral("~/Library/Caches/mine/keep/**")};
    registry.registerRule(rule);
    EXPECT_EQ(matching("Library/Caches/mine/tmp"),
              QStringList({QStringLiteral("aaa.first"), QStringLiteral("sys.user.caches")}));
    EXPECT_EQ(matching("Library/Caches/mine/keep/x"), QStringList{QStringLiteral("sys.user.caches")});
    registry.removeRule(QStringLiteral("aaa.first"));
    EXPECT_EQ(matching("Library/Caches/mine/tmp"), QStringList{QStringLiteral("sys.user.caches")})
        << "a removed rule no longer matches";
}
