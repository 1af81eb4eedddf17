#include "KestrowProcess.h"
#include "TestHome.h"

#include "support/JsonDecoder.h"

#include <QFileInfo>

#include <algorithm>

#include <gtest/gtest.h>

using namespace kestrow::test;

namespace {

KestrowRun rules(const TestHome& home, QStringList arguments)
{
    arguments.prepend(QStringLiteral("rules"));
    arguments << QStringLiteral("--home") << home.path();
    return runKestrow(arguments);
}

QStringList addArguments(const char* id, const char* pattern, const char* tier = "review_required")
{
    return {QStringLiteral("add"),      QStringLiteral("--id"),       QString::fromUtf8(id),
            QStringLiteral("--name"),   QStringLiteral("Build dirs"), QStringLiteral("--pattern"),
            QString::fromUtf8(pattern), QStringLiteral("--category"), QStringLiteral("dynamicRule"),
            QStringLiteral("--tier"),   QString::fromUtf8(tier)};
}

} // namespace

TEST(RulesCommand, AddsListsSwitchesAndRemovesUserRules)
{
    TestHome home;
    const KestrowRun builtIn = rules(home, {QStringLiteral("list")});
    ASSERT_EQ(builtIn.exitCode, 0) << builtIn.err.toStdString();
    // On Linux the Linux set joins the built-in catalogue.
    EXPECT_TRUE(builtIn.out.contains(QStringLiteral("33 rules: 33 built in, 0 custom")));
    EXPECT_TRUE(builtIn.out.contains(QStringLiteral("linux.maven.repository")));

    const KestrowRun added = rules(home, addArguments("custom.builds", "~/work/**/build"));
    ASSERT_EQ(added.exitCode, 0) << added.err.toStdString();
    EXPECT_EQ(added.out, QStringLiteral("Added rule 'custom.builds' (REVIEW_REQUIRED, DYNAMIC_RULE) matching "
                                        "~/work/**/build.\n"));

    const KestrowRun listed = rules(home, {QStringLiteral("list"), QStringLiteral("--json")});
    ASSERT_EQ(listed.exitCode, 0);
    const kestrow::JsonValue array = kestrow::JsonDecoder::parse(listed.out.toUtf8());
    ASSERT_EQ(array.toArray().size(), 34u);
    const auto& list = array.toArray();
    const auto found = std::find_if(list.begin(), list.end(), [](const kestrow::JsonValue& rule) {
        return rule.find(QStringLiteral("id"))->toString() == QStringLiteral("custom.builds");
    });
    ASSERT_NE(found, list.end());
    const kestrow::JsonValue& custom = *found;
    EXPECT_EQ(custom.find(QStringLiteral("description"))->toString(), QStringLiteral("Build dirs"));
    EXPECT_FALSE(custom.find(QStringLiteral("isRegenerable"))->toBool());
    EXPECT_TRUE(listed.out.contains(QStringLiteral("\"patterns\" : [\n      \"~\\/work\\/**\\/build\"\n    ]")));

    EXPECT_EQ(rules(home, {QStringLiteral("disable"), QStringLiteral("custom.builds")}).out,
              QStringLiteral("Disabled rule 'custom.builds'.\n"));
    EXPECT_TRUE(
        rules(home, {QStringLiteral("list")}).out.contains(QStringLiteral("custom   disabled ~/work/**/build")));
    EXPECT_EQ(rules(home, {QStringLiteral("enable"), QStringLiteral("custom.builds")}).exitCode, 0);
    EXPECT_EQ(rules(home, {QStringLiteral("remove"), QStringLiteral("custom.builds")}).out,
              QStringLiteral("Removed rule 'custom.builds'.\n"));
    EXPECT_EQ(rules(home, {QStringLiteral("remove"), QStringLiteral("custom.builds")}).exitCode, 0);
    EXPECT_TRUE(rules(home, {QStringLiteral("list")}).out.contains(QStringLiteral("33 rules: 33 built in, 0 custom")));
}

TEST(RulesCommand, RefusalsUseTheSystemsTextsAndExitStatus)
{
    TestHome home;
    const auto failure = [&](QStringList arguments) {
        const KestrowRun run = rules(home, arguments);
        EXPECT_EQ(run.exitCode, 1) << run.err.toStdString();
        return run.err.trimmed();
    };
    EXPECT_EQ(failure(addArguments("custom.docs", "~/Documents/**")),
              QStringLiteral("kestrow: Sandbox Violation: Path '") + home.path(QStringLiteral("Documents")) +
                  QStringLiteral("' targets protected user directory 'Documents'."));
    EXPECT_EQ(failure(addArguments("dev.npm.cache", "~/x/**")),
              QStringLiteral("kestrow: Cannot overwrite built-in rule 'dev.npm.cache' with a dynamic rule."));
    EXPECT_EQ(failure(addArguments("a/b", "~/x/**")),
              QStringLiteral("kestrow: Rule ID 'a/b' is invalid. It must be non-empty and contain only alphanumeric "
                             "characters, dots, and underscores."));
    EXPECT_EQ(failure({QStringLiteral("disable"), QStringLiteral("nope")}),
              QStringLiteral("kestrow: Rule ID 'Rule with ID 'nope' not found.' is invalid. It must be non-empty and "
                             "contain only alphanumeric characters, dots, and underscores."));
    EXPECT_TRUE(failure({QStringLiteral("disable"), QStringLiteral("dev.uv.cache")})
                    .contains(QStringLiteral("built-in rule; its switch is not kept between runs")));
    EXPECT_TRUE(
        failure({QStringLiteral("remove"), QStringLiteral("dev.uv.cache")})
            .endsWith(QStringLiteral("'Built-in rule 'dev.uv.cache' cannot be deleted.' with a dynamic rule.")));

    EXPECT_EQ(rules(home, addArguments("custom.x", "~/x/**", "risky")).exitCode, 2);
    QStringList noTier = addArguments("custom.x", "~/x/**");
    noTier.removeLast();
    noTier.removeLast();
    EXPECT_EQ(rules(home, noTier).exitCode, 2);
    EXPECT_EQ(rules(home, {QStringLiteral("enable")}).exitCode, 2);
    EXPECT_FALSE(QFileInfo::exists(home.path(QStringLiteral(".kestrow/rules.json")))) << "nothing was written";
}

TEST(RulesCommand, UserRulesTakePartInLaterScans)
{
    TestHome home;
    home.writeFile(QStringLiteral("work/app/build/out.o"), 3000);
    home.writeFile(QStringLiteral("work/lib/deep/build/out.o"), 3000);
    home.writeFile(QStringLiteral("work/.cache/build/out.o"), 3000);
    ASSERT_EQ(rules(home, addArguments("custom.builds", "~/work/**/build", "SAFE_TO_DELETE")).exitCode, 0);

    const QStringList scan{QStringLiteral("scan"),       QStringLiteral("--home"),       home.path(),
                           QStringLiteral("--category"), QStringLiteral("DYNAMIC_RULE"), QStringLiteral("--json")};
    const KestrowRun found = runKestrow(scan);
    ASSERT_EQ(found.exitCode, 0) << found.err.toStdString();
    EXPECT_EQ(found.out.count(QStringLiteral("\"ruleId\" : \"custom.builds\"")), 2);
    EXPECT_TRUE(found.out.contains(QStringLiteral("\"riskTier\" : \"SAFE_TO_DELETE\"")));
    EXPECT_FALSE(found.out.contains(QStringLiteral(".cache"))) << "wild segments skip hidden folders";

    ASSERT_EQ(rules(home, {QStringLiteral("disable"), QStringLiteral("custom.builds")}).exitCode, 0);
    EXPECT_FALSE(runKestrow(scan).out.contains(QStringLiteral("custom.builds")));

    home.writeFile(QStringLiteral(".kestrow/rules.json"), QByteArray("{\"version\": 1"));
    const KestrowRun broken = runKestrow(scan);
    EXPECT_EQ(broken.exitCode, 1);
    EXPECT_TRUE(broken.err.startsWith(QStringLiteral("kestrow: Failed to parse rules.json: ")))
        << broken.err.toStdString();
    EXPECT_TRUE(broken.err.contains(QStringLiteral("or move it away")));
    EXPECT_TRUE(broken.out.isEmpty());
}

TEST(RulesCommand, RefusedRulesOfTheFileAreNamedAndNeverWrittenAway)
{
    TestHome home;
    const QByteArray text = R"({"version": 1, "updatedAt": "2026-03-01T10:15:30Z", "rules": [
        {"id": "custom.kept", "name": "Kept", "description": "D", "category": "DYNAMIC_RULE",
         "riskTier": "KEEP", "patterns": ["~/.kept/**"], "excludedPatterns": [], "isRegenerable": false,
         "isBuiltIn": false, "enabled": true},
        {"id": "custom.docs", "name": "Docs", "description": "D", "category": "DYNAMIC_RULE",
         "riskTier": "SAFE_TO_DELETE", "patterns": ["~/Documents/**"], "excludedPatterns": [],
         "isRegenerable": true, "isBuiltIn": false, "enabled": true}]})";
    const QString file = home.writeFile(QStringLiteral(".kestrow/rules.json"), text);
    const QString warning = QStringLiteral("kestrow: warning: rule 'custom.docs' in %1 is not used: Sandbox "
                                           "Violation: Path '%2' targets protected user directory 'Documents'.\n")
                                .arg(file, home.path(QStringLiteral("Documents")));

    const KestrowRun listed = rules(home, {QStringLiteral("list")});
    EXPECT_EQ(listed.exitCode, 0);
    EXPECT_EQ(listed.err, warning);
    EXPECT_TRUE(listed.out.contains(QStringLiteral("34 rules: 33 built in, 1 custom"))) << listed.out.toStdString();
    const KestrowRun json = rules(home, {QStringLiteral("list"), QStringLiteral("--json")});
    EXPECT_EQ(json.err, warning);
    EXPECT_EQ(kestrow::JsonDecoder::parse(json.out.toUtf8()).toArray().size(), 34u);

    // Every change would rewrite the file without the refused rule: each is refused instead.
    for (const QStringList& change :
         {addArguments("custom.new", "~/.new/**"), QStringList{QStringLiteral("remove"), QStringLiteral("custom.kept")},
          QStringList{QStringLiteral("enable"), QStringLiteral("custom.kept")},
          QStringList{QStringLiteral("disable"), QStringLiteral("custom.kept")}}) {
        const KestrowRun refused = rules(home, change);
        EXPECT_EQ(refused.exitCode, 1) << change.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(refused.err, warning + QStringLiteral("kestrow: %1 holds rules the sandbox refuses ('custom.docs'): "
                                                        "fix or remove them there first, as rewriting the file now "
                                                        "would drop them. Nothing was changed.\n")
                                             .arg(file));
        EXPECT_TRUE(refused.out.isEmpty());
        QFile onDisk(file);
        ASSERT_TRUE(onDisk.open(QIODevice::ReadOnly));
        EXPECT_EQ(onDisk.readAll(), text);
    }

    // The commands that read the user's rules say so too.
    const KestrowRun scan =
        runKestrow({QStringLiteral("scan"), QStringLiteral("--home"), home.path(), QStringLiteral("--category"),
                    QStringLiteral("DYNAMIC_RULE"), QStringLiteral("--json")});
    EXPECT_EQ(scan.exitCode, 0);
    EXPECT_EQ(scan.err, warning);
    const KestrowRun check =
        runKestrow({QStringLiteral("check"), QStringLiteral("--home"), home.path(), QStringLiteral("~/.kept/x")});
    EXPECT_EQ(check.err, warning);
}
