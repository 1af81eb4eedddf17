#include "TestHome.h"

#include "platform/FileManager.h"
#include "safety/CacheDirTagDetector.h"

#include <cerrno>
#include <sys/stat.h>

#include <gtest/gtest.h>

using namespace kestrow;
using kestrow::test::TestHome;

namespace {

// The real calls, except that every read fails with EIO.
class FailingReads : public SystemCalls {
public:
    ssize_t read(int, void*, size_t) const override
    {
        errno = EIO;
        return -1;
    }
};

} // namespace

TEST(FileManager, ReadsOnlyRegularFilesAndOnlyTheBytesAskedFor)
{
    TestHome home;
    const QString file = home.writeFile(QStringLiteral("f/data"), QByteArray("0123456789"));
    const QString link = home.makeSymbolicLink(QStringLiteral("f/link"), file);
    const QString fifo = home.path(QStringLiteral("f/fifo"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(fifo).constData(), 0600), 0);
    const FileManager fileManager;

    const FileManager::RegularFileRead head = fileManager.readRegularFile(file, 4);
    EXPECT_EQ(head.bytes, QByteArray("0123"));
    EXPECT_TRUE(head.opened);
    EXPECT_EQ(fileManager.readRegularFile(file, 100).bytes, QByteArray("0123456789"));
    EXPECT_EQ(fileManager.readRegularFile(link, 100, true).bytes, QByteArray("0123456789"));

    // Path > errno and description of the refusal; none of them is opened.
    const struct {
        QString path;
        int errorCode;
        const char* description;
    } refusals[]{
        {link, ELOOP, "it is a symbolic link"},
        {fifo, EINVAL, "it is not a regular file"},
        {home.path(QStringLiteral("f")), EISDIR, "it is not a regular file"},
        {home.path(QStringLiteral("f/none")), ENOENT, "No such file or directory"},
    };
    for (const auto& [path, errorCode, description] : refusals) {
        const FileManager::RegularFileRead refused = fileManager.readRegularFile(path, 100);
        EXPECT_FALSE(refused.opened) << path.toStdString();
        EXPECT_EQ(refused.errorCode, errorCode) << path.toStdString();
        EXPECT_EQ(refused.errorDescription, QLatin1String(description)) << path.toStdString();
        EXPECT_TRUE(refused.bytes.isEmpty()) << path.toStdString();
    }

    // A read that fails once the file is open: the tag exists, but is not valid.
    const FileManager failing(std::make_shared<FailingReads>());
    const FileManager::RegularFileRead broken = failing.readRegularFile(file, 4);
    EXPECT_TRUE(broken.opened);
    EXPECT_EQ(broken.errorCode, EIO);
    home.writeFile(QStringLiteral("tagged/CACHEDIR.TAG"), QByteArray("Signature: 8a477f597d28d172789f06886806bc55"));
    const std::optional<CacheDirTagInfo> tag =
        CacheDirTagDetector::detectTag(home.path(QStringLiteral("tagged")), failing);
    ASSERT_TRUE(tag);
    EXPECT_FALSE(tag->isValid);
}
