#include "TestHome.h"

#include "platform/PathText.h"
#include "policy/PathChecker.h"
#include "policy/RiskClassifier.h"
#include "safety/SandboxValidator.h"

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::TestHome;

// A batch of checks looks at the home's way once; its answers must be those of the sandbox and
// the classifier asked path by path, for a home given as it is and through a link, and for a
// neighbour whose name begins like the home's.
TEST(PathChecker, ABatchAgreesWithTheSandboxAndTheClassifierAskedOneByOne)
{
    TestHome root;
    root.makeDirectory(QStringLiteral("me/.cache/tool/v1"));
    root.makeDirectory(QStringLiteral("me/Documents/x"));
    root.makeSymbolicLink(QStringLiteral("me/.cache/tool/docs"), root.path(QStringLiteral("me/Documents/x")));
    root.makeSymbolicLink(QStringLiteral("me/.cache/tool/etc"), QStringLiteral("/etc"));
    root.makeSymbolicLink(QStringLiteral("me-other/in"), root.path(QStringLiteral("me/Documents")));
    const QString linkedHome = root.makeSymbolicLink(QStringLiteral("via"), root.path(QStringLiteral("me")));
    const QStringList paths{
        QStringLiteral("~/.cache/tool/v1"),     QStringLiteral("~/.cache/tool/docs"),
        QStringLiteral("~/.cache/tool/etc/x"),  QStringLiteral("~/.cache/missing/x"),
        QStringLiteral("~/Documents/x"),        root.path(QStringLiteral("me-other/in/x")),
        root.path(QStringLiteral("me/.cache")), root.path(QStringLiteral("via/.cache/tool/docs")),
    };
    for (const QString& home : {root.path(QStringLiteral("me")), linkedHome}) {
        const PathChecker checker(home);
        const RiskClassifier classifier(home);
        for (const QString& path : paths) {
            const PathCheckOutcome outcome = checker.check(path, StorageCategory::developerCache);
            std::optional<SandboxSecurityError> error;
            try {
                SandboxValidator::validate(path, home);
            } catch (const SandboxSecurityError& refusal) {
                error = refusal;
            }
            const QString where = path + QStringLiteral(" in ") + home;
            EXPECT_EQ(outcome.error, error) << where.toStdString();
            const QString location =
                PathText::standardizedLocation(PathText::expandingTilde(path, PathText::standardizing(home)));
            if (!error) {
                EXPECT_EQ(outcome.classification, classifier.classify(location, StorageCategory::developerCache, false))
                    << where.toStdString();
            }
        }
    }
}
