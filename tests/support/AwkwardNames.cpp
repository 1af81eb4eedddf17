#include "AwkwardNames.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace kestrow::test {

QList<QByteArray> awkwardNames()
{
    return {"line\nfeed",
            "carriage\rreturn",
            "pct%41",
            QByteArray(245, 'a'),
            QByteArray("\xC3\xA9").repeated(127) + 'x',
            "-leading-dash",
            "sep\xE2\x80\xA8rator",
            "caf\xE9"};
}

void writeRaw(const QByteArray& path, const QByteArray& content)
{
    const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    ASSERT_GE(fd, 0) << path.toStdString();
    EXPECT_EQ(::write(fd, content.constData(), content.size()), content.size());
    ::close(fd);
}

QByteArray readRaw(const QByteArray& path)
{
    const int fd = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return "<unreadable>";
    QByteArray content(1 << 16, 0);
    const ssize_t size = ::read(fd, content.data(), content.size());
    ::close(fd);
    content.resize(std::max<ssize_t>(size, 0));
    return content;
}

} // namespace kestrow::test
