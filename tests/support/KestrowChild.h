#pragma once

#include <QProcess>
#include <QStringList>

#include <memory>

namespace kestrow::test {

// Starts the built `kestrow` with `arguments` and returns at once, so that a test can watch
// the run or stop it; the process is killed if still running when the pointer goes.
[[nodiscard]] std::unique_ptr<QProcess> startKestrow(const QStringList& arguments);

} // namespace kestrow::test
