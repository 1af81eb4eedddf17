#include "LensCommand.h"

#include "LensOutput.h"
#include "ProgressLine.h"

#include "analysis/SpaceLensEngine.h"
#include "analysis/SpaceLensError.h"
#include "platform/NativePath.h"
#include "platform/PathText.h"

#include <QStringList>

#include <cmath>
#include <mutex>

namespace kestrow::cli {

namespace {

struct LensOptions {
    std::string path;
    std::string home;
    int depth = 3;
    int top = 10;
    bool json = false;
    bool files = false;
    double minSizeMB = 0;
    double olderThanDays = 0;
    std::string category;
};

FileCategory parseFileCategory(const std::string& given)
{
    // "DISK_IMAGES", "disk_images" and "diskImages" alike.
    const auto folded = [](QString text) { return text.remove(QLatin1Char('_')).toLower(); };
    const QString wanted = folded(QString::fromStdString(given));
    QStringList names;
    for (const FileCategory category : FileCategory::allCases()) {
        if (folded(category.rawValue()) == wanted)
            return category;
        names.append(category.rawValue());
    }
    throw UsageError("--category " + given +
                     ": unknown kind of file. Accepted names: " + names.join(QStringLiteral(", ")).toStdString());
}

void checkOptions(const LensOptions& options)
{
    if (options.depth < 0)
        throw UsageError("--depth must be 0 or more levels.");
    if (options.top < 1)
        throw UsageError("--top must be 1 or more rows.");
    if (options.minSizeMB < 0)
        throw UsageError("--min-size must be zero or more megabytes.");
    if (options.olderThanDays < 0)
        throw UsageError("--older-than must be zero or more days.");
    const bool filtering = options.minSizeMB > 0 || options.olderThanDays > 0 || !options.category.empty();
    if (filtering && !options.files)
        throw UsageError("--min-size, --older-than and --category filter the list of files: add --files.");
}

// The tree, with a progress line on a terminal; the engine reports from several threads.
SpaceNode buildTree(const QString& path, int depth)
{
    ProgressLine progressLine;
    std::mutex progressMutex;
    std::int64_t seen = 0;
    const SpaceLensEngine engine;
    try {
        SpaceNode root = engine.scanDirectory(path, depth, {}, [&](const QString& at) {
            const std::lock_guard lock(progressMutex);
            ++seen;
            progressLine.update(QStringLiteral("Measuring: %1  %2").arg(seen).arg(at));
        });
        progressLine.clear();
        return root;
    } catch (const SpaceLensError& error) {
        progressLine.clear();
        throw UsageError(NativePath::encode(error.description()).toStdString() + "; give an existing file or folder.");
    }
}

int runLens(const LensOptions& options)
{
    checkOptions(options);
    const QString home = resolveHome(options.home);
    const QString path = options.path.empty()
                             ? home
                             : PathText::removingDotComponents(absoluteFromWorkingFolder(pathArgument(options.path)));
    const SpaceNode root = buildTree(path, options.depth);
    if (!options.files) {
        reportLens(root, options.top, options.json);
        return exitSuccess;
    }
    const std::optional<std::int64_t> minSize =
        options.minSizeMB > 0 ? std::optional(static_cast<std::int64_t>(std::llround(options.minSizeMB * 1e6)))
                              : std::nullopt;
    const std::optional<double> minAge =
        options.olderThanDays > 0 ? std::optional(options.olderThanDays * 86400.0) : std::nullopt;
    const std::optional<FileCategory> category =
        options.category.empty() ? std::nullopt : std::optional(parseFileCategory(options.category));
    reportLensFiles(SpaceLensEngine::filter(root, minSize, minAge, category), options.json);
    return exitSuccess;
}

} // namespace

void setupLensCommand(CommandLine& commandLine)
{
    auto options = std::make_shared<LensOptions>();
    CLI::App* command = commandLine.app().add_subcommand(
        "lens", "Show where the room of a folder goes: a tree of what it holds, largest first, with sizes on disk "
                "and shares of each folder. Hidden entries are not listed; they count inside folders measured whole. "
                "Only reads.");
    command->add_option("PATH", options->path, "The folder (or file) to map; the home when left out")
        ->type_name("PATH");
    addHomeOption(command, options->home);
    command->add_option("--depth", options->depth, "Levels listed below PATH; deeper folders are measured whole")
        ->type_name("N")
        ->capture_default_str();
    command->add_option("--top", options->top, "Rows shown per folder in the tree; the rest are summed up")
        ->type_name("N")
        ->capture_default_str();
    command->add_flag("--files", options->files,
                      "List the leaves instead of the tree (files, bundles and folders measured whole), largest "
                      "first, with the filters below");
    command->add_option("--min-size", options->minSizeMB, "With --files: only items of at least this many megabytes")
        ->type_name("MB");
    command
        ->add_option("--older-than", options->olderThanDays,
                     "With --files: only items not read (or else changed) for this many days")
        ->type_name("DAYS");
    command
        ->add_option("--category", options->category,
                     "With --files: only files of this kind: ARCHIVES, DISK_IMAGES, DEVELOPER_ARTIFACTS, MEDIA, "
                     "BINARIES, DOCUMENTS or OTHER, in any case")
        ->type_name("NAME");
    addJsonFlag(command, options->json);
    commandLine.onRun(command, [options] { return runLens(*options); });
}

} // namespace kestrow::cli
