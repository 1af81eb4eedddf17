#pragma once

#include <CLI/CLI.hpp>

#include <QString>

#include <functional>
#include <string>

namespace kestrow::cli {

enum ExitCode : int { exitSuccess = 0, exitFailure = 1, exitUsage = 2 };

// Thrown by a command for a request that cannot be carried out as asked: exit status 2.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The `kestrow` command line: one CLI11 application, each command registered by its own
// `setup...Command` function, and the exit status the command chose.
class CommandLine {
public:
    CommandLine();

    [[nodiscard]] CLI::App& app() { return m_app; }
    // Registers what a subcommand does; its result becomes the exit status.
    void onRun(CLI::App* subcommand, std::function<int()> action);

    int run(int argc, char** argv);

private:
    CLI::App m_app;
    int m_exitCode = exitSuccess;
};

// Options most commands share.
void addHomeOption(CLI::App* command, std::string& home);
void addJsonFlag(CLI::App* command, bool& json);
// The home to work on: the option's value if given (made absolute, dot components removed),
// else the user's home. The folder must exist.
[[nodiscard]] QString resolveHome(const std::string& option);

// An argument that names a file, as the lossless text of its bytes (NativePath): a name that
// is not valid UTF-8 still names that file and no other.
[[nodiscard]] QString pathArgument(const std::string& argument);
// `path` taken against the working folder when it is relative, the folder's own bytes kept;
// otherwise as it stands. Nothing else in the text changes.
[[nodiscard]] QString absoluteFromWorkingFolder(const QString& path);

// Text for people goes out as UTF-8, each raw byte of a name shown as "\xHH"
// (NativePath::displayText). JSON goes out as the bytes given.
void printOut(const QString& text);
void printOut(const QByteArray& bytes);
void printError(const QString& text); // a newline added
[[nodiscard]] bool standardErrorIsTerminal();
[[nodiscard]] bool standardOutputIsTerminal();
[[nodiscard]] bool standardInputIsTerminal();
// Writes `question` to standard error and reads one line of standard input: true for "y" or
// "yes", in any case.
[[nodiscard]] bool askYesNo(const QString& question);

} // namespace kestrow::cli
