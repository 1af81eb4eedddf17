#include "TestHome.h"

#include "platform/FileManager.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

namespace kestrow::test {

namespace {

QByteArray replaceVariable(const char* name, const QString& value)
{
    const QByteArray saved = qgetenv(name);
    qputenv(name, QFile::encodeName(value));
    return saved;
}

// Folders a test locked must be opened again, top down, or the temporary folder cannot go.
void unlockTree(const QString& folder)
{
    QFile::setPermissions(folder, QFile::permissions(folder) | QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const auto children =
        QDir(folder).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden | QDir::NoSymLinks);
    for (const QFileInfo& child : children)
        unlockTree(child.filePath());
}

void restoreVariable(const char* name, const QByteArray& saved)
{
    if (saved.isEmpty())
        qunsetenv(name);
    else
        qputenv(name, saved);
}

} // namespace

TestHome::TestHome()
    : m_directory(QDir::tempPath() + QStringLiteral("/kestrow-test-XXXXXX"))
{
    if (!m_directory.isValid())
        throw std::runtime_error("cannot create a temporary home");
    // Canonical, so that paths the code resolves compare equal to the ones tests build.
    m_path = QFileInfo(m_directory.path()).canonicalFilePath();
    m_savedHome = replaceVariable("HOME", m_path);
    m_savedData = replaceVariable("XDG_DATA_HOME", path(QStringLiteral(".local/share")));
    m_savedConfig = replaceVariable("XDG_CONFIG_HOME", path(QStringLiteral(".config")));
    m_savedCache = replaceVariable("XDG_CACHE_HOME", path(QStringLiteral(".cache")));
    m_savedState = replaceVariable("XDG_STATE_HOME", path(QStringLiteral(".local/state")));
}

TestHome::~TestHome()
{
    restoreVariable("HOME", m_savedHome);
    restoreVariable("XDG_DATA_HOME", m_savedData);
    restoreVariable("XDG_CONFIG_HOME", m_savedConfig);
    restoreVariable("XDG_CACHE_HOME", m_savedCache);
    restoreVariable("XDG_STATE_HOME", m_savedState);
    unlockTree(m_path);
    // QTemporaryDir would pass over names that are not UTF-8; removal by native bytes does not.
    (void)FileManager().removeItem(m_path);
}

QString TestHome::path(const QString& relative) const
{
    return relative.isEmpty() ? m_path : m_path + QLatin1Char('/') + relative;
}

QString TestHome::makeDirectory(const QString& relative) const
{
    const QString full = path(relative);
    if (!QDir().mkpath(full))
        throw std::runtime_error("cannot create test folder " + full.toStdString());
    return full;
}

QString TestHome::writeFile(const QString& relative, std::int64_t size) const
{
    return writeFile(relative, QByteArray(static_cast<qsizetype>(size), 'x'));
}

QString TestHome::writeFile(const QString& relative, const QByteArray& content) const
{
    const QString full = path(relative);
    QDir().mkpath(QFileInfo(full).path());
    QFile file(full);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) != content.size())
        throw std::runtime_error("cannot write test file " + full.toStdString());
    return full;
}

QString TestHome::allocateFile(const QString& relative, std::int64_t size) const
{
    const QString full = path(relative);
    QDir().mkpath(QFileInfo(full).path());
    const int fd = ::open(QFile::encodeName(full).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    const bool made = fd >= 0 && ::posix_fallocate(fd, 0, static_cast<off_t>(size)) == 0;
    if (fd >= 0)
        ::close(fd);
    if (!made)
        throw std::runtime_error("cannot allocate test file " + full.toStdString());
    return full;
}

QString TestHome::makeSymbolicLink(const QString& relative, const QString& target) const
{
    const QString full = path(relative);
    QDir().mkpath(QFileInfo(full).path());
    if (::symlink(QFile::encodeName(target).constData(), QFile::encodeName(full).constData()) != 0)
        throw std::runtime_error("cannot create test link " + full.toStdString());
    return full;
}

QString TestHome::makeHardLink(const QString& relative, const QString& existingRelative) const
{
    const QString full = path(relative);
    QDir().mkpath(QFileInfo(full).path());
    if (::link(QFile::encodeName(path(existingRelative)).constData(), QFile::encodeName(full).constData()) != 0)
        throw std::runtime_error("cannot create test hard link " + full.toStdString());
    return full;
}

bool TestHome::permissionsAreIgnored()
{
    return ::geteuid() == 0;
}

} // namespace kestrow::test
