#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QString>
#include <QStringList>

#include <memory>

namespace kestrow::test {

// What one run of the real `kestrow` binary gave.
struct KestrowRun {
    int exitCode = -1;
    QString out;
    QString err;
};

// One run of the built `kestrow` binary. A binary that cannot be started, a run that crashes
// or one that outlasts its time fails the test, which then goes on with what was read.
class KestrowProcess {
public:
    // Starts it with `arguments`, writes `input` to its standard input and closes that (so it
    // is never a terminal), and returns at once, so that a test can watch the run or stop it.
    explicit KestrowProcess(const QStringList& arguments, const QByteArray& input = {});
    // The same with arguments given as bytes, passed on as they are (names that are not
    // UTF-8), run in the folder whose native path is `workingFolder` (the test's own when empty).
    [[nodiscard]] static std::unique_ptr<KestrowProcess> withBytes(const QList<QByteArray>& arguments,
                                                                   const QByteArray& workingFolder = {});
    KestrowProcess(const KestrowProcess&) = delete;
    KestrowProcess& operator=(const KestrowProcess&) = delete;
    ~KestrowProcess(); // kills the run if it is still going

    // Waits for the end of the run and gives what it printed.
    [[nodiscard]] KestrowRun finish(int timeoutMs = 300000);
    // Kills the run and waits for it to end; true when it was still going.
    bool kill();

private:
    KestrowProcess() = default;
    void started(const QByteArray& input);

    QProcess m_process;
    QString m_command; // for failure messages
};

// Runs the built `kestrow` to its end.
[[nodiscard]] KestrowRun runKestrow(const QStringList& arguments, const QByteArray& input = {});
[[nodiscard]] KestrowRun runKestrowWithBytes(const QList<QByteArray>& arguments, const QByteArray& workingFolder = {});

} // namespace kestrow::test
