#include "TestHome.h"

#include "platform/PlatformSystemPaths.h"
#include "platform/SystemCalls.h"
#include "rules/RuleDefinition.h"
#include "safety/SandboxValidator.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>
#include <optional>

using namespace kestrow;
using kestrow::test::TestHome;

namespace kestrow {
void PrintTo(const SandboxSecurityError& error, std::ostream* out)
{
    *out << error.description().toStdString();
}
} // namespace kestrow

namespace {

const QString me = QStringLiteral("/Users/me");

// The error a path validation threw, or nothing when it passed.
std::optional<SandboxSecurityError> pathError(const QString& path, const QString& home = me)
{
    try {
        SandboxValidator::validate(path, home);
    } catch (const SandboxSecurityError& error) {
        return error;
    }
    return std::nullopt;
}

std::optional<SandboxSecurityError> patternError(const QString& pattern, const QString& home = me,
                                                 const std::optional<QString>& base = std::nullopt)
{
    try {
        SandboxValidator::validatePattern(pattern, base, home);
    } catch (const SandboxSecurityError& error) {
        return error;
    }
    return std::nullopt;
}

QString text(const std::optional<SandboxSecurityError>& error)
{
    return error ? error->description() : QStringLiteral("(allowed)");
}

// The real calls, but the look at one path (lstat or readlink, as chosen) fails with an errno.
class FailingLinkCalls : public SystemCalls {
public:
    enum class Call { status, readLink };
    FailingLinkCalls(Call call, const QString& path, int errorCode)
        : m_call(call)
        , m_path(path.toUtf8())
        , m_errorCode(errorCode)
    {
    }
    int statAt(int folder, const char* name, int flags, FileStatus& status) const override
    {
        return m_call == Call::status && m_path == name ? fail() : SystemCalls::statAt(folder, name, flags, status);
    }
    ssize_t readLinkAt(int folder, const char* name, char* buffer, size_t size) const override
    {
        return m_call == Call::readLink && m_path == name ? fail()
                                                          : SystemCalls::readLinkAt(folder, name, buffer, size);
    }

private:
    int fail() const
    {
        errno = m_errorCode;
        return -1;
    }
    Call m_call;
    QByteArray m_path;
    int m_errorCode;
};

// Runs with the working directory at `directory`, then puts it back.
struct WorkingDirectory {
    explicit WorkingDirectory(const QString& directory)
        : saved(QDir::currentPath())
    {
        QDir::setCurrent(directory);
    }
    ~WorkingDirectory() { QDir::setCurrent(saved); }
    QString saved;
};

} // namespace

TEST(SandboxSecurityError, DescriptionsAreExact)
{
    using E = SandboxSecurityError;
    const std::pair<E, const char*> cases[] = {
        {E::rootDirectoryTargeted(QStringLiteral("/")),
         "Sandbox Violation: Root filesystem '/' cannot be targeted (/)."},
        {E::homeDirectoryTargeted(me), "Sandbox Violation: Home directory cannot be targeted directly (/Users/me)."},
        {E::forbiddenSystemPath(QStringLiteral("/usr/x"), QStringLiteral("/usr")),
         "Sandbox Violation: Path '/usr/x' targets forbidden system path '/usr'."},
        {E::forbiddenUserDirectory(QStringLiteral("/Users/me/Documents"), QStringLiteral("Documents")),
         "Sandbox Violation: Path '/Users/me/Documents' targets protected user directory 'Documents'."},
        {E::insufficientPathDepth(QStringLiteral("/opt"), 1),
         "Sandbox Violation: Path '/opt' has insufficient depth (1 components relative to home; minimum 2 required)."},
        {E::directoryTraversalDetected(QStringLiteral("/a/../b")),
         "Sandbox Violation: Path traversal tokens ('..') detected in '/a/../b'."},
        {E::symlinkEscapedSandbox(QStringLiteral("/a/b"), QStringLiteral("/"), QStringLiteral("why")),
         "Sandbox Violation: Symlink '/a/b' resolves to forbidden path '/': why"},
        {E::wildcardTargetsForbiddenScope(QStringLiteral("*"), QStringLiteral("Root filesystem")),
         "Sandbox Violation: Rule pattern '*' matches forbidden scope 'Root filesystem'."},
    };
    for (const auto& [error, description] : cases)
        EXPECT_EQ(error.description(), QLatin1String(description));
    EXPECT_EQ(E::insufficientPathDepth(QStringLiteral("/opt"), 1), E::insufficientPathDepth(QStringLiteral("/opt"), 1));
    EXPECT_NE(E::insufficientPathDepth(QStringLiteral("/opt"), 1), E::insufficientPathDepth(QStringLiteral("/opt"), 0));
}

TEST(SandboxValidator, PathChecksRunInOrderOnTheText)
{
    using E = SandboxSecurityError;
    const auto system = [](const char* path, const char* prefix) {
        return E::forbiddenSystemPath(QLatin1String(path), QLatin1String(prefix));
    };
    const auto user = [](const char* path, const char* directory) {
        return E::forbiddenUserDirectory(QLatin1String(path), QLatin1String(directory));
    };
    const auto shallow = [](const char* path) { return E::insufficientPathDepth(QLatin1String(path), 1); };
    const auto traversal = [](const char* path) { return E::directoryTraversalDetected(QLatin1String(path)); };
    const std::pair<const char*, std::optional<E>> cases[] = {
        {"~", E::homeDirectoryTargeted(me)},
        {"/Users/me/", E::homeDirectoryTargeted(me)},
        {"/", E::rootDirectoryTargeted(QStringLiteral("/"))},
        {"//./", E::rootDirectoryTargeted(QStringLiteral("/"))},
        // The prefix a message names: the earlier, broader prefixes catch some first.
        {"/Users/other/Library/Caches/x", system("/Users/other/Library/Caches/x", "/Users")},
        {"/USERS/me/x", system("/USERS/me/x", "/Users")},
        {"/Users", system("/Users", "/Users")},
        {"/Volumes/Backup/x", system("/Volumes/Backup/x", "/Volumes")},
        {"/var/log/x", system("/var/log/x", "/var")},
        {"/private/var/folders", system("/private/var/folders", "/private")},
        {"/private/tmp", system("/private/tmp", "/private")},
        {"/private/etc/hosts", system("/private/etc/hosts", "/private")},
        {"/private/var/db/x", system("/private/var/db/x", "/private/var")},
        {"/Library/Caches/x", system("/Library/Caches/x", "/Library")},
        {"/LIBRARY", system("/LIBRARY", "/Library")},
        {"/usr/local/bin/x", system("/usr/local/bin/x", "/usr")},
        {"/dev", system("/dev", "/dev")},
        {"/var/folders/ab/cd", std::nullopt},
        {"/private/var/folders/ab", std::nullopt},
        {"/private/tmp/x/y", std::nullopt},
        {"/data/x", std::nullopt},
        {"/Users/me/Library/Caches", std::nullopt},
        {"/Users/me/Documentsx/y", std::nullopt},
        {"/Users/me/.cargo/registry/cache/x", std::nullopt},
        {"/a/..b/c", std::nullopt},
        {"/usr2/x", std::nullopt},
        {"~/Documents", user("/Users/me/Documents", "Documents")},
        {"~/documents/x", user("/Users/me/documents/x", "Documents")},
        {"~/.cargo/bin/tool", user("/Users/me/.cargo/bin/tool", ".cargo/bin")},
        {"~/Library/Keychains/login.keychain-db",
         user("/Users/me/Library/Keychains/login.keychain-db", "Library/Keychains")},
        {"~/Library", shallow("/Users/me/Library")},
        {"/data", shallow("/data")},
        {"/tmp/./", shallow("/tmp")},
        // Traversal is judged on the input, before any canonical form.
        {"/a/b/../c", traversal("/a/b/../c")},
        {"/a/b/..", traversal("/a/b/..")},
        {"../x/y", traversal("../x/y")},
        {"..", traversal("..")},
        {"~/x/../y", traversal("~/x/../y")},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(pathError(QLatin1String(path)), expected) << path;
}

TEST(SandboxValidator, LinuxClosesOtherHomesAndSystemTrees)
{
    if (!PlatformSystemPaths::userHomeRoots().contains(QStringLiteral("/home")))
        GTEST_SKIP() << "a platform whose homes live elsewhere";
    const QString home = QStringLiteral("/home/me");
    EXPECT_EQ(text(pathError(QStringLiteral("/home/me/.cache/x"), home)), QStringLiteral("(allowed)"));
    EXPECT_EQ(text(pathError(QStringLiteral("/home/other/.cache/x"), home)),
              QStringLiteral("Sandbox Violation: Path '/home/other/.cache/x' targets forbidden system path '/home'."));
    EXPECT_EQ(text(pathError(QStringLiteral("/root/.cache/x"), home)),
              QStringLiteral("Sandbox Violation: Path '/root/.cache/x' targets forbidden system path '/root'."));
    EXPECT_EQ(text(pathError(QStringLiteral("/root/.cache/x"), QStringLiteral("/root"))), QStringLiteral("(allowed)"));
    for (const char* system : {"/proc/1/fd", "/sys/class/x", "/boot/efi", "/lib/modules", "/run/user"})
        EXPECT_EQ(
            pathError(QLatin1String(system), home)->description().contains(QStringLiteral("forbidden system path")),
            true)
            << system;
    EXPECT_EQ(text(patternError(QStringLiteral("/proc/*/fd"), home)),
              QStringLiteral("Sandbox Violation: Path '/proc' targets forbidden system path '/proc'."));

    // Mounted media and installed software: the root, what lies below it, and rule patterns.
    for (const char* root : {"/opt", "/srv", "/mnt", "/media", "/nix"}) {
        for (const QString& path :
             {QString::fromLatin1(root), QString(QLatin1String(root) + QStringLiteral("/tool/cache"))})
            EXPECT_EQ(pathError(path, home), SandboxSecurityError::forbiddenSystemPath(path, QLatin1String(root)));
        EXPECT_EQ(patternError(QLatin1String(root) + QStringLiteral("/*/cache/**"), home),
                  SandboxSecurityError::forbiddenSystemPath(QLatin1String(root), QLatin1String(root)));
    }
    // A home that lives on mounted media keeps its own ground, and only that.
    const QString mounted = QStringLiteral("/mnt/data/me");
    EXPECT_EQ(text(pathError(QStringLiteral("/mnt/data/me/.cache/x"), mounted)), QStringLiteral("(allowed)"));
    EXPECT_EQ(pathError(QStringLiteral("/mnt/data/other/x"), mounted),
              SandboxSecurityError::forbiddenSystemPath(QStringLiteral("/mnt/data/other/x"), QStringLiteral("/mnt")));
}

TEST(SandboxValidator, EmptyPathIsTheWorkingDirectory)
{
    TestHome home;
    {
        WorkingDirectory inHome(home.path());
        EXPECT_EQ(pathError(QString(), home.path()), SandboxSecurityError::homeDirectoryTargeted(home.path()));
    }
    WorkingDirectory atRoot(QStringLiteral("/"));
    EXPECT_EQ(pathError(QString(), home.path()), SandboxSecurityError::rootDirectoryTargeted(QStringLiteral("/")));
}

TEST(SandboxValidator, PatternsAreCheckedOnTheirFixedStem)
{
    using E = SandboxSecurityError;
    const QString library = QStringLiteral("/Users/me/Library");
    const auto root = [](const char* pattern) {
        return E::wildcardTargetsForbiddenScope(QLatin1String(pattern), QStringLiteral("Root filesystem"));
    };
    const auto wholeHome = [](const char* pattern) {
        return E::wildcardTargetsForbiddenScope(QLatin1String(pattern), QStringLiteral("Entire home directory"));
    };
    const auto shallow = [](const QString& pattern) { return E::insufficientPathDepth(pattern, 1); };
    const struct {
        const char* pattern;
        std::optional<E> expected;
        std::optional<QString> base = std::nullopt;
        const char* why = "";
    } cases[]{
        {"~/Library/Caches/**", std::nullopt},
        {"~/Library/Caches", std::nullopt},
        {"~/.cache/*", std::nullopt},
        {"/data/*", std::nullopt},
        {"/a/b/*.log", std::nullopt},
        {"~/Documents/**",
         E::forbiddenUserDirectory(QStringLiteral("/Users/me/Documents"), QStringLiteral("Documents"))},
        {"/System/**", E::forbiddenSystemPath(QStringLiteral("/System"), QStringLiteral("/System"))},
        {"*", root("*")},
        {"{a,b}/x", root("{a,b}/x")},
        {"/*", root("/*")},
        {"/**", root("/**")},
        {"*.log", root("*.log")},
        {"[x]", root("[x]")},
        {"~/*", wholeHome("~/*")},
        {"~/**", wholeHome("~/**")},
        {"~", wholeHome("~")},
        {"~/", wholeHome("~/")},
        {"~/.cache*", shallow(QStringLiteral("~/.cache*"))},
        {"/Users/me/x?", shallow(QStringLiteral("/Users/me/x?"))},
        {"~/Library", shallow(library), std::nullopt, "a literal pattern takes full path validation"},
        {"/a/..b/c", E::directoryTraversalDetected(QStringLiteral("/a/..b/c"))},
        {"foo..bar", E::directoryTraversalDetected(QStringLiteral("foo..bar"))},
        // A base directory takes the pattern literally below it: "~" means nothing there.
        {"~/x", std::nullopt, library},
        {"~", std::nullopt, QStringLiteral("/data")},
        {"*", std::nullopt, library, "the wildcard counts as a component"},
        {"*", wholeHome("*"), me},
    };
    for (const auto& c : cases)
        EXPECT_EQ(patternError(QLatin1String(c.pattern), me, c.base), c.expected)
            << c.pattern << " below " << c.base.value_or(QStringLiteral("(no base)")).toStdString() << ": " << c.why;

    RuleDefinition rule{
        .id = QStringLiteral("t.rule"),
        .patterns = {QStringLiteral("~/.cache/a/**"), QStringLiteral("~/Desktop/*"), QStringLiteral("*")},
        .excludedPatterns = {QStringLiteral("/")}};
    try {
        SandboxValidator::validatePatterns(rule.patterns, me);
        ADD_FAILURE() << "the rule's second pattern should be refused";
    } catch (const SandboxSecurityError& error) {
        EXPECT_EQ(error, E::forbiddenUserDirectory(QStringLiteral("/Users/me/Desktop"), QStringLiteral("Desktop")));
    }
    rule.patterns = {QStringLiteral("~/.cache/a/**")};
    EXPECT_NO_THROW(SandboxValidator::validatePatterns(rule.patterns, me)) << "excluded patterns are not validated";
}

TEST(SandboxValidator, SymbolicLinksAreCheckedWhereTheyLead)
{
    using E = SandboxSecurityError;
    TestHome home;
    const QString h = home.path();
    home.makeDirectory(QStringLiteral("Documents/x"));
    home.makeDirectory(QStringLiteral(".cache/other/deep"));
    const QString toUsr = home.makeSymbolicLink(QStringLiteral("Library/Caches/x"), QStringLiteral("/usr/local"));
    EXPECT_EQ(pathError(QStringLiteral("~/Library/Caches/x"), h),
              E::symlinkEscapedSandbox(toUsr, QStringLiteral("/usr/local"),
                                       QStringLiteral("Sandbox Violation: Path '/usr/local' targets forbidden system "
                                                      "path '/usr'.")));
    EXPECT_EQ(pathError(QStringLiteral("~/Library/Caches/x/share/y"), h)->errorCase(), E::Case::symlinkEscapedSandbox);

    const QString toDocuments = home.makeSymbolicLink(QStringLiteral(".cache/docs"), QStringLiteral("../Documents/x"));
    EXPECT_EQ(
        pathError(toDocuments, h),
        E::symlinkEscapedSandbox(
            toDocuments, h + QStringLiteral("/Documents/x"),
            E::forbiddenUserDirectory(h + QStringLiteral("/Documents/x"), QStringLiteral("Documents")).description()));
    const QString toHome = home.makeSymbolicLink(QStringLiteral(".cache/home"), h);
    EXPECT_EQ(pathError(toHome, h),
              E::symlinkEscapedSandbox(toHome, h, QStringLiteral("Symlink points to home directory")));
    const QString toRoot = home.makeSymbolicLink(QStringLiteral(".cache/root"), QStringLiteral("/"));
    EXPECT_EQ(pathError(toRoot, h), E::symlinkEscapedSandbox(toRoot, QStringLiteral("/"),
                                                             QStringLiteral("Symlink points to root directory")));
    const QString toShallow = home.makeSymbolicLink(QStringLiteral(".cache/shallow"), h + QStringLiteral("/.cache"));
    EXPECT_EQ(pathError(toShallow, h)->reason(),
              E::insufficientPathDepth(h + QStringLiteral("/.cache"), 1).description());

    // Allowed places stay allowed through links, chains of links and dangling links.
    home.makeSymbolicLink(QStringLiteral(".cache/fine"), h + QStringLiteral("/.cache/other/deep"));
    home.makeSymbolicLink(QStringLiteral(".cache/chain"), QStringLiteral("fine"));
    home.makeSymbolicLink(QStringLiteral(".cache/dangling"), QStringLiteral("nowhere/at/all"));
    for (const char* allowed : {"~/.cache/fine", "~/.cache/chain", "~/.cache/chain/x", "~/.cache/dangling"})
        EXPECT_EQ(pathError(QLatin1String(allowed), h), std::nullopt)
            << allowed << ": " << text(pathError(QLatin1String(allowed), h)).toStdString();

    // A literal pattern follows links too; a pattern with a wildcard never does.
    EXPECT_EQ(patternError(QStringLiteral("~/Library/Caches/x"), h)->errorCase(), E::Case::symlinkEscapedSandbox);
    EXPECT_EQ(patternError(QStringLiteral("~/Library/Caches/x/*"), h), std::nullopt);
}

TEST(SandboxValidator, AHomeReachedThroughALinkIsProtectedInBothForms)
{
    using E = SandboxSecurityError;
    TestHome test;
    const QString real = test.makeDirectory(QStringLiteral("hreal"));
    test.makeDirectory(QStringLiteral("hreal/Documents/x"));
    test.makeDirectory(QStringLiteral("hreal/.ssh"));
    test.makeDirectory(QStringLiteral("hreal/.cache/tool"));
    const QString link = test.makeSymbolicLink(QStringLiteral("hlink"), real);
    const QString toDocuments =
        test.makeSymbolicLink(QStringLiteral("hreal/.cache/docs"), real + QLatin1String("/Documents/x"));

    const std::vector<std::pair<QString, std::optional<E>>> cases{
        {real + QLatin1String("/Documents/x"),
         E::forbiddenUserDirectory(real + QLatin1String("/Documents/x"), QStringLiteral("Documents"))},
        {real + QLatin1String("/.ssh"),
         E::forbiddenUserDirectory(real + QLatin1String("/.ssh"), QStringLiteral(".ssh"))},
        {real, E::homeDirectoryTargeted(real)},
        {real + QLatin1String("/"), E::homeDirectoryTargeted(real)},
        {real + QLatin1String("/.cache"), E::insufficientPathDepth(real + QLatin1String("/.cache"), 1)},
        {link + QLatin1String("/Documents/x"),
         E::forbiddenUserDirectory(link + QLatin1String("/Documents/x"), QStringLiteral("Documents"))},
        {QStringLiteral("~/.cache/docs"),
         E::symlinkEscapedSandbox(
             link + QLatin1String("/.cache/docs"), real + QLatin1String("/Documents/x"),
             E::forbiddenUserDirectory(real + QLatin1String("/Documents/x"), QStringLiteral("Documents"))
                 .description())},
        {toDocuments, E::symlinkEscapedSandbox(
                          toDocuments, real + QLatin1String("/Documents/x"),
                          E::forbiddenUserDirectory(real + QLatin1String("/Documents/x"), QStringLiteral("Documents"))
                              .description())},
        {QStringLiteral("~/.cache/tool"), std::nullopt},
        {real + QLatin1String("/.cache/tool"), std::nullopt},
    };
    for (const auto& [path, expected] : cases)
        EXPECT_EQ(pathError(path, link), expected) << path.toStdString();

    EXPECT_EQ(patternError(real + QLatin1String("/Documents/**"), link),
              E::forbiddenUserDirectory(real + QLatin1String("/Documents"), QStringLiteral("Documents")));
    EXPECT_EQ(patternError(real + QLatin1String("/**"), link),
              E::wildcardTargetsForbiddenScope(real + QLatin1String("/**"), QStringLiteral("Entire home directory")));
    EXPECT_EQ(patternError(real + QLatin1String("/.cache*"), link),
              E::insufficientPathDepth(real + QLatin1String("/.cache*"), 1));
    EXPECT_EQ(patternError(QStringLiteral("~/.cache/*"), link), std::nullopt);
}

TEST(SandboxValidator, LinksThatCannotBeReadNeverLetAForbiddenPathThrough)
{
    using Call = FailingLinkCalls::Call;
    TestHome home;
    const QString h = home.path();
    const QString toEtc = home.makeSymbolicLink(QStringLiteral(".cache/tool/etc"), QStringLiteral("/etc"));
    home.makeDirectory(QStringLiteral(".cache/tool/plain"));
    const QString loop = home.makeSymbolicLink(QStringLiteral(".cache/tool/loop"), QStringLiteral("loop"));
    const QString path = toEtc + QStringLiteral("/passwd");
    ASSERT_EQ(pathError(path, h)->errorCase(), SandboxSecurityError::Case::symlinkEscapedSandbox);

    // Where the calls fail, and what the refusal names: the component whose link was unread.
    const struct {
        Call call;
        QString failing;
        int errorCode;
        QString checked;
    } cases[]{
        {Call::status, toEtc, EACCES, path},
        {Call::status, toEtc, ENAMETOOLONG, path},
        {Call::status, toEtc, EIO, path},
        {Call::readLink, toEtc, EACCES, path},
        {Call::readLink, toEtc, EINVAL, path},
        {Call::status, home.path(QStringLiteral(".cache")), EACCES, path},
        // The home itself cannot be resolved: nothing in it can be judged.
        {Call::status, h, EACCES, home.path(QStringLiteral(".cache/tool/plain/x"))},
    };
    for (const auto& [call, failing, errorCode, checked] : cases) {
        const FailingLinkCalls calls(call, failing, errorCode);
        std::optional<SandboxSecurityError> error;
        try {
            SandboxValidator::validate(checked, h, calls);
        } catch (const SandboxSecurityError& refusal) {
            error = refusal;
        }
        ASSERT_TRUE(error) << failing.toStdString() << " errno " << errorCode;
        EXPECT_EQ(error->errorCase(), SandboxSecurityError::Case::symlinkEscapedSandbox);
        EXPECT_EQ(error->reason(), QStringLiteral("Symlinks could not be followed at '%1' (%2).")
                                       .arg(failing, QString::fromStdString(std::strerror(errorCode))));
    }
    // Absence is no error: a path below something that is not there leads nowhere else.
    EXPECT_EQ(pathError(home.path(QStringLiteral(".cache/tool/none/x")), h), std::nullopt);
    // A chain of links the kernel would not follow either.
    EXPECT_EQ(pathError(loop + QStringLiteral("/x"), h)->reason(),
              QStringLiteral("Symlinks could not be followed at '%1' (%2).")
                  .arg(loop, QString::fromStdString(std::strerror(ELOOP))));
}

// Many generated paths (mixed case, ".", "..", repeated slashes, tildes, links into forbidden
// places): whatever passes lies, as written and as resolved, outside every forbidden prefix
// and user directory, and is neither the home nor the root.
TEST(SandboxValidator, PropertyNothingForbiddenIsEverAllowed)
{
    TestHome home;
    const QString h = home.path();
    for (const char* folder : {"Documents/sub", ".ssh", "Library/Caches", "Library/Keychains", ".cache/other/deep",
                               ".cargo/bin", ".local/bin", "Pictures"})
        home.makeDirectory(QLatin1String(folder));
    // Links in a cache folder, as name>target: into system folders, protected folders, the
    // home, the root, through other links, in a loop, and one to an allowed place.
    QStringList links;
    for (const QString& pair :
         QStringLiteral("toEtc>/etc|toUsr>/usr/local|toDocs>%1/Documents|toDocsRel>../../Documents/sub|toHome>%1|"
                        "toRoot>/|toSsh>%1/.SSH|chain>toEtc|toVarLog>/var/log|toOther>/Users/other|loop1>loop2|"
                        "loop2>loop1|fine>%1/.cache/other")
             .arg(h)
             .split(QLatin1Char('|'))) {
        const QStringList parts = pair.split(QLatin1Char('>'));
        home.makeSymbolicLink(QStringLiteral("Library/Caches/") + parts.at(0), parts.at(1));
        links.append(parts.at(0));
    }
    home.makeSymbolicLink(QStringLiteral(".cache/pics"), QStringLiteral("../Pictures"));

    const QStringList starts = QStringLiteral("~|~/|/|%1|/Users/other|/USERS|/private|/private/var|/var|/VAR/folders|"
                                              "/private/tmp|/usr|/System|/Library|/etc|/dev|/Volumes|/tmp|/opt||"
                                              "%1/Library/Caches|~/Library/Caches|~/.cache")
                                   .arg(h)
                                   .split(QLatin1Char('|'));
    const QStringList words = QStringLiteral("Library|Caches|Documents|.ssh|Desktop|.cargo|bin|.local|Keychains|x|"
                                             "cache|.||..|~|folders|db|Pictures|pics|other|deep")
                                  .split(QLatin1Char('|')) +
                              links;

    const auto forbidden = [&h](const QString& path) {
        const QString lowered = path.toLower();
        const auto under = [&lowered](const QString& directory) {
            const QString d = directory.toLower();
            return lowered == d || lowered.startsWith(d + QLatin1Char('/'));
        };
        if (path == QLatin1String("/") || path == h)
            return true;
        for (const QString& directory : SandboxValidator::forbiddenUserDirectories())
            if (under(h + QLatin1Char('/') + directory))
                return true;
        const bool ownHome = path == h || path.startsWith(h + QLatin1Char('/'));
        for (const QString& root : PlatformSystemPaths::userHomeRoots() + PlatformSystemPaths::sharedRoots())
            if (under(root) && !ownHome)
                return true;
        for (const QString& prefix : PlatformSystemPaths::systemPrefixes())
            if (under(prefix))
                return true;
        for (const QString& prefix : SandboxValidator::forbiddenSystemPrefixes()) {
            if (!under(prefix))
                continue;
            const bool temporary = under(QStringLiteral("/var/folders")) ||
                                   lowered.startsWith(QLatin1String("/private/var/folders/")) ||
                                   lowered.startsWith(QLatin1String("/private/tmp/"));
            if (!(temporary && prefix != QLatin1String("/Users")) && !(ownHome && prefix == QLatin1String("/Users")))
                return true;
        }
        return false;
    };
    // Where a path leads, found with Qt's own resolution of its longest existing part.
    const auto resolvedByQt = [](const QString& absolute) {
        QString existing = absolute;
        QString rest;
        while (!QFileInfo::exists(existing) && existing != QLatin1String("/")) {
            rest = QLatin1Char('/') + QFileInfo(existing).fileName() + rest;
            existing = QFileInfo(existing).path();
        }
        return QDir::cleanPath(QFileInfo(existing).canonicalFilePath() + rest);
    };

    WorkingDirectory inHome(h);
    QRandomGenerator random(20260301);
    int allowed = 0;
    int refused = 0;
    for (int round = 0; round < 6000; ++round) {
        QString path = starts.at(random.bounded(starts.size()));
        for (int n = random.bounded(6); n >= 0; --n) {
            QString word = words.at(random.bounded(words.size()));
            if (random.bounded(4) == 0)
                word = random.bounded(2) ? word.toUpper() : word.toLower();
            path += QString(1 + random.bounded(3), QLatin1Char('/')) + word;
        }
        if (random.bounded(5) == 0)
            path += QLatin1Char('/');
        const std::optional<SandboxSecurityError> error = pathError(path, h);
        const bool traversal = path.split(QLatin1Char('/')).contains(QStringLiteral(".."));
        if (traversal) {
            ASSERT_EQ(error, SandboxSecurityError::directoryTraversalDetected(path));
            continue;
        }
        if (error) {
            ++refused;
            continue;
        }
        ++allowed;
        QString expanded = path;
        if (expanded == QLatin1String("~") || expanded.startsWith(QLatin1String("~/")))
            expanded = h + expanded.mid(1);
        const QString written = QDir::cleanPath(QDir(h).absoluteFilePath(expanded));
        ASSERT_FALSE(forbidden(written)) << path.toStdString() << " allowed as written: " << written.toStdString();
        const QString resolved = resolvedByQt(written);
        ASSERT_FALSE(forbidden(resolved)) << path.toStdString() << " allowed but leads to " << resolved.toStdString();
    }
    EXPECT_GT(allowed, 300);
    EXPECT_GT(refused, 1500);
}
