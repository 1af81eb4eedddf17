#pragma once

#include <QString>
#include <QStringList>

namespace kestrow::test {

// What one run of the real `kestrow` binary gave.
struct KestrowRun {
    int exitCode = -1;
    QString out;
    QString err;
};

// Runs the built `kestrow` with `arguments` (standard input closed, not a terminal).
[[nodiscard]] KestrowRun runKestrow(const QStringList& arguments, const QByteArray& input = {});

} // namespace kestrow::test
