#pragma once

#include <QByteArray>
#include <QString>

namespace kestrow::test {

// A small tmpfs mounted on a folder for the length of a test and always taken off again when
// this goes. Mounting needs root (as in CI); where it is refused, `isMounted()` is false and
// `error()` says why, so that the test can skip.
class TmpfsMount {
public:
    // `options` as for mount -o, e.g. "size=1m,nr_inodes=64".
    TmpfsMount(const QString& folder, const QByteArray& options);
    ~TmpfsMount();
    TmpfsMount(const TmpfsMount&) = delete;
    TmpfsMount& operator=(const TmpfsMount&) = delete;

    [[nodiscard]] bool isMounted() const { return m_mounted; }
    [[nodiscard]] const QString& error() const { return m_error; }

private:
    QByteArray m_folder;
    bool m_mounted = false;
    QString m_error;
};

} // namespace kestrow::test
