#include "CommandLine.h"

#include <QDir>
#include <QFileInfo>

#include <cstdio>
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
        printError(QStringLiteral("kestrow: ") + QString::fromStdString(e.what()));
        return exitUsage;
    } catch (const std::exception& e) {
        printError(QStringLiteral("kestrow: ") + QString::fromStdString(e.what()));
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
    if (option.empty())
        return QDir::homePath();
    const QString given = QString::fromStdString(option);
    const QFileInfo info(given);
    if (!info.exists())
        throw UsageError("--home " + option + ": no such folder; give an existing folder.");
    if (!info.isDir())
        throw UsageError("--home " + option + ": not a folder; give an existing folder.");
    return QDir::cleanPath(info.absoluteFilePath());
}

void printOut(const QString& text)
{
    printOut(text.toUtf8());
}

void printOut(const QByteArray& bytes)
{
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
}

void printError(const QString& text)
{
    const QByteArray bytes = text.toUtf8() + '\n';
    std::fflush(stdout);
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stderr);
}

bool standardErrorIsTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

bool standardInputIsTerminal()
{
    return ::isatty(STDIN_FILENO) == 1;
}

} // namespace kestrow::cli
