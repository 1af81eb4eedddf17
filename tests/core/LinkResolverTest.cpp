#include "TestHome.h"

#include "platform/LinkResolver.h"

#include <cerrno>

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

// The real calls, except that looking at one path refuses with EACCES.
class RefusingStatus : public SystemCalls {
public:
    explicit RefusingStatus(const QString& path)
        : m_path(path.toUtf8())
    {
    }
    int statAt(int folder, const char* name, int flags, FileStatus& status) const override
    {
        if (m_path == name) {
            errno = EACCES;
            return -1;
        }
        return SystemCalls::statAt(folder, name, flags, status);
    }

private:
    QByteArray m_path;
};

} // namespace

TEST(LinkResolver, FollowsChainsAndSaysWhereItHadToStop)
{
    TestHome home;
    home.makeDirectory(QStringLiteral("real/inside"));
    home.makeSymbolicLink(QStringLiteral("a/up"), QStringLiteral("../real"));
    home.makeSymbolicLink(QStringLiteral("a/chain"), QStringLiteral("up/inside"));
    const QString loop = home.makeSymbolicLink(QStringLiteral("a/loop"), QStringLiteral("loop"));
    home.writeFile(QStringLiteral("a/file"), QByteArray("x"));
    const LinkResolver resolver;

    // Path > where it leads, and the errno that ended the examination early (0: none did).
    const struct {
        const char* path;
        const char* leadsTo;
        int errorCode;
    } cases[]{
        {"a/chain/missing/x", "real/inside/missing/x", 0},
        {"none/./y", "none/y", 0},
        {"a/file/below", "a/file/below", 0},
        {"a/chain/../inside", "real/inside", 0}, // ".." after a link leaves the link's target
        {"a/loop/x", "a/loop/x", ELOOP},
    };
    for (const auto& [path, leadsTo, errorCode] : cases) {
        const LinkResolution resolution = resolver.resolve(home.path(QLatin1String(path)));
        EXPECT_EQ(resolution.path, home.path(QLatin1String(leadsTo))) << path;
        EXPECT_EQ(resolution.errorCode, errorCode) << path;
        EXPECT_EQ(resolution.unexaminedPath.isEmpty(), errorCode == 0) << path;
    }
    EXPECT_EQ(resolver.resolve(loop).unexaminedPath, loop);

    const RefusingStatus refusing(home.path(QStringLiteral("a/up")));
    const LinkResolution refused = LinkResolver(refusing).resolve(home.path(QStringLiteral("a/chain/x")));
    EXPECT_EQ(refused.errorCode, EACCES);
    EXPECT_EQ(refused.unexaminedPath, home.path(QStringLiteral("a/up")));
    EXPECT_EQ(refused.path, home.path(QStringLiteral("a/up/inside/x"))) << "the rest stays as written";
}

TEST(LinkResolver, ALinkFreeFolderIsTakenAsItStandsAndNothingElseIs)
{
    TestHome home;
    home.makeDirectory(QStringLiteral("me/real"));
    home.makeDirectory(QStringLiteral("me-too"));
    home.makeSymbolicLink(QStringLiteral("me/up"), QStringLiteral("../me-too"));
    home.makeSymbolicLink(QStringLiteral("me-too/back"), QStringLiteral("../me/real"));
    const QString folder = home.path(QStringLiteral("me"));
    const LinkResolver resolver;
    for (const char* path : {"me", "me/real/x", "me/up/back/y", "me/up/../real", "me/../me-too/back", "me-too/back"}) {
        const LinkResolution plain = resolver.resolve(home.path(QLatin1String(path)));
        const LinkResolution fromFolder = resolver.resolve(home.path(QLatin1String(path)), folder);
        EXPECT_EQ(fromFolder.path, plain.path) << path;
        EXPECT_EQ(fromFolder.errorCode, plain.errorCode) << path;
    }
    // The folder's own components are not looked at again; a sibling whose name only begins
    // like the folder's is.
    const RefusingStatus refusingFolder(folder);
    EXPECT_EQ(LinkResolver(refusingFolder).resolve(home.path(QStringLiteral("me/real/x")), folder).errorCode, 0);
    const RefusingStatus refusingSibling(home.path(QStringLiteral("me-too")));
    EXPECT_EQ(LinkResolver(refusingSibling).resolve(home.path(QStringLiteral("me-too/x")), folder).errorCode, EACCES);
}
