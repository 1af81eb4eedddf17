#pragma once

#include <QByteArray>
#include <QList>
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
// The same with arguments given as bytes, passed on as they are (names that are not UTF-8),
// run in the folder whose native path is `workingFolder` (the test's own when empty).
[[nodiscard]] KestrowRun runKestrowWithBytes(const QList<QByteArray>& arguments, const QByteArray& workingFolder = {});

} // namespace kestrow::test
