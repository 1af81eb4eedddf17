#include "CommandLine.h"

#include "platform/FileManager.h"
#include "platform/NativePath.h"
#include "platform/PathText.h"
#include "platform/ProcessFolders.h"
#include "support/KestrowError.h"

#include <QDir>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <memory>
#include <unistd.h>

namespace kestrow::cli {

CommandLine::CommandLine()
    : m_app("Kestrow gives a developer's disk space back without risk: it measures caches, build\n"
            "products, model stores and logs, tiers every item by how safe it is to remove, and\n"
            "moves only what is safe to the Trash.",
            "kestrow")
{
    m_app.set_version_flag("--version", std::string("kestrow ") + KESTROW_VERSION);
    m_app.require_subcommand(1);
    m_app.fallthrough(false);
}

void CommandLine::onRun(CLI::App* subcommand, std::function<int()> action)
{
    subcommand->callback([this, action = std::move(action)] { m_exitCode = action(); });
}

int CommandLine::run(int argc, char** argv)
{
    try {
        m_app.parse(argc, argv);
    } catch (const CLI::CallForHelp& e) {
        return m_app.exit(e);
    } catch (const CLI::CallForAllHelp& e) {
        return m_app.exit(e);
    } catch (const CLI::CallForVersion& e) {
        return m_app.exit(e);
    } catch (const CLI::ParseError& e) {
        m_app.exit(e);
        return exitUsage;
    } catch (const UsageError& e) {
        // Messages may quote an argument's bytes as they were given.
        printError(QStringLiteral("kestrow: ") + NativePath::decode(e.what()));
        return exitUsage;
    } catch (const KestrowError& e) {
        printError(QStringLiteral("kestrow: ") + e.description());
        return exitFailure;
    } catch (const std::exception& e) {
        printError(QStringLiteral("kestrow: ") + NativePath::decode(e.what()));
        return exitFailure;
    }
    return m_exitCode;
}

void addHomeOption(CLI::App* command, std::string& home)
{
    command->add_option("--home", home, "Work on this folder as the user's home instead of the real one")
        ->type_name("DIR");
}

void addJsonFlag(CLI::App* command, bool& json)
{
    command->add_flag("--json", json, "Print JSON for scripts instead of a readable table");
}

QString resolveHome(const std::string& option)
{
    if (option.empty()) {
        return PathText::removingDotComponents(ProcessFolders::home());
    }
    const QString home = PathText::removingDotComponents(absoluteFromWorkingFolder(pathArgument(option)));
    bool isDirectory = false;
    if (!FileManager().fileExists(home, &isDirectory))
        throw UsageError("--home " + option + ": no such folder; give an existing folder.");
    if (!isDirectory)
        throw UsageError("--home " + option + ": not a folder; give an existing folder.");
    return home;
}

QString pathArgument(const std::string& argument)
{
    return NativePath::decode(argument.data(), static_cast<qsizetype>(argument.size()));
}

QString absoluteFromWorkingFolder(const QString& path)
{
    if (path.startsWith(QLatin1Char('/')))
        return path;
    const std::optional<QString> folder = ProcessFolders::workingFolder();
    if (!folder)
        throw std::runtime_error(std::string("the working folder cannot be read (") + std::strerror(errno) +
                                 "); give absolute paths.");
    return PathText::appending(*folder, path);
}

void printOut(const QString& text)
{
    printOut(NativePath::displayText(text).toUtf8());
}

void printOut(const QByteArray& bytes)
{
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
}

void printError(const QString& text)
{
    const QByteArray bytes = NativePath::displayText(text).toUtf8() + '\n';
    std::fflush(stdout);
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stderr);
}

bool standardErrorIsTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

bool standardOutputIsTerminal()
{
    return ::isatty(STDOUT_FILENO) == 1;
}

bool standardInputIsTerminal()
{
    return ::isatty(STDIN_FILENO) == 1;
}

bool askYesNo(const QString& question)
{
    const QByteArray bytes = question.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stderr);
    std::fflush(stderr);
    std::string answer;
    std::getline(std::cin, answer);
    const QString reply = QString::fromStdString(answer).trimmed().toLower();
    return reply == QLatin1String("y") || reply == QLatin1String("yes");
}

} // namespace kestrow::cli
