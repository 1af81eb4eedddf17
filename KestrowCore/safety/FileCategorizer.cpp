#include "safety/FileCategorizer.h"

#include "platform/PathText.h"

#include <QMimeDatabase>
#include <QSet>

#include <vector>

namespace kestrow {

namespace {

using Names = QSet<QString>;

Names names(std::initializer_list<const char*> list)
{
    Names set;
    for (const char* name : list)
        set.insert(QLatin1String(name));
    return set;
}

// The six sets are checked in this order. Two facts are kept on purpose: "dSYM" stands in
// mixed case and so never meets a lower-cased extension, and "dylib" is in two sets, so the
// earlier one (developer artifacts) decides.
struct ExtensionSet {
    FileCategory category;
    Names extensions;
};

const std::vector<ExtensionSet>& extensionSets()
{
    static const std::vector<ExtensionSet> sets{
        {FileCategory::archives, names({"zip", "tar", "gz", "tgz", "bz2", "tbz2", "xz", "txz", "7z", "rar", "zst"})},
        {FileCategory::diskImages,
         names({"dmg", "iso", "img", "sparseimage", "sparsebundle", "raw", "qcow2", "vmdk", "vdi"})},
        {FileCategory::developerArtifacts,
         names({"swift", "c",     "cpp",         "h",         "hpp",     "m",    "mm",        "rs",  "go",
                "py",    "js",    "ts",          "jsx",       "tsx",     "json", "yaml",      "yml", "toml",
                "xml",   "plist", "sql",         "sh",        "bash",    "zsh",  "lock",      "o",   "a",
                "dylib", "dSYM",  "xcworkspace", "xcodeproj", "pbxproj", "nib",  "storyboard"})},
        {FileCategory::media,
         names({"mp3",  "wav", "aac", "flac", "m4a", "ogg", "aiff", "mp4",  "mov",  "m4v", "mkv", "avi",
                "webm", "wmv", "jpg", "jpeg", "png", "gif", "heic", "webp", "tiff", "svg", "bmp", "psd"})},
        {FileCategory::documents, names({"pdf", "doc", "docx", "xls", "xlsx", "ppt", "pptx", "pages", "numbers",
                                         "keynote", "txt", "rtf", "md", "markdown", "csv", "epub"})},
        {FileCategory::binaries, names({"app", "framework", "bundle", "kext", "plugin", "dylib", "so"})},
    };
    return sets;
}

// The type table's answers, in the order its questions are asked: is it an archive, a disk
// image, source code, audio, a movie or an image, text or PDF, an executable or an
// application. Each question lists the MIME types (or their top-level families) that answer
// yes; text also takes every type derived from plain text.
struct TypeQuestion {
    FileCategory category;
    Names types;
    QStringList families;
};

const std::vector<TypeQuestion>& typeQuestions()
{
    static const std::vector<TypeQuestion> questions{
        {FileCategory::archives,
         names({"application/zip",
                "application/x-tar",
                "application/gzip",
                "application/x-bzip",
                "application/x-bzip2",
                "application/x-xz",
                "application/x-7z-compressed",
                "application/vnd.rar",
                "application/zstd",
                "application/x-lzma",
                "application/x-lzip",
                "application/x-lz4",
                "application/x-lzop",
                "application/x-compress",
                "application/x-cpio",
                "application/x-archive",
                "application/x-arj",
                "application/x-ace",
                "application/x-lha",
                "application/x-stuffit",
                "application/x-xar",
                "application/vnd.ms-cab-compressed",
                "application/java-archive",
                "application/x-compressed-tar",
                "application/x-bzip-compressed-tar",
                "application/x-xz-compressed-tar",
                "application/x-zstd-compressed-tar",
                "application/x-lzma-compressed-tar",
                "application/x-lzip-compressed-tar",
                "application/x-rpm",
                "application/vnd.debian.binary-package"}),
         {}},
        {FileCategory::diskImages,
         names({"application/x-apple-diskimage", "application/x-cd-image", "application/x-raw-disk-image",
                "application/x-qemu-disk", "application/x-virtualbox-vdi", "application/x-virtualbox-vmdk",
                "application/x-virtualbox-vhd", "application/x-virtualbox-vhdx", "application/x-virtualbox-qcow",
                "application/x-virtualbox-qed", "application/x-virtualbox-hdd"}),
         {}},
        {FileCategory::developerArtifacts,
         names({"text/x-csrc",        "text/x-chdr",        "text/x-c++src",
                "text/x-c++hdr",      "text/x-objcsrc",     "text/x-objc++src",
                "text/x-java",        "text/x-python",      "text/x-python3",
                "application/x-ruby", "application/x-perl", "application/x-php",
                "text/x-go",          "text/rust",          "text/x-kotlin",
                "text/x-scala",       "text/x-csharp",      "application/x-shellscript",
                "application/x-csh",  "text/javascript",    "application/javascript",
                "text/x-lua",         "text/x-haskell",     "text/x-pascal",
                "text/x-fortran",     "text/x-asm",         "text/x-adasrc",
                "text/x-dsrc",        "text/x-erlang",      "text/x-tcl",
                "text/x-matlab",      "text/x-ocaml",       "text/x-vala",
                "text/x-dart",        "text/x-elixir",      "text/x-groovy",
                "application/x-awk",  "text/x-makefile",    "text/x-cmake"}),
         {}},
        {FileCategory::media, {}, {QStringLiteral("audio/"), QStringLiteral("video/"), QStringLiteral("image/")}},
        {FileCategory::documents, names({"application/pdf"}), {QStringLiteral("text/")}},
        {FileCategory::binaries,
         names({"application/x-executable", "application/x-pie-executable", "application/x-sharedlib",
                "application/x-mach-binary", "application/x-msdownload", "application/x-ms-dos-executable",
                "application/vnd.microsoft.portable-executable", "application/x-ms-ne-executable",
                "application/vnd.appimage", "application/vnd.flatpak", "application/vnd.android.package-archive"}),
         {}},
    };
    return questions;
}

bool answers(const TypeQuestion& question, const QMimeType& type)
{
    QStringList namesOfType = type.aliases();
    namesOfType.prepend(type.name());
    for (const QString& name : namesOfType) {
        if (question.types.contains(name))
            return true;
        for (const QString& family : question.families)
            if (name.startsWith(family))
                return true;
    }
    return question.category == FileCategory::documents && type.inherits(QStringLiteral("text/plain"));
}

} // namespace

FileCategory FileCategorizer::categorize(const QString& path)
{
    const QString name = PathText::lastComponent(path).toLower();
    const QString extension = PathText::pathExtension(path).toLower();
    static const Names developerNames =
        names({"package.swift", "cargo.toml", "package.json", "dockerfile", "makefile", "gemfile"});
    if (developerNames.contains(name) || name.endsWith(QLatin1String(".deriveddata")) ||
        name.endsWith(QLatin1String(".appiconset")))
        return FileCategory::developerArtifacts;
    for (const ExtensionSet& set : extensionSets())
        if (set.extensions.contains(extension))
            return set.category;
    return categorizeByTypeTable(extension);
}

FileCategory FileCategorizer::categorizeByTypeTable(const QString& extension)
{
    if (extension.isEmpty())
        return FileCategory::other;
    const QMimeDatabase database;
    const QMimeType type = database.mimeTypeForFile(QStringLiteral("file.") + extension, QMimeDatabase::MatchExtension);
    if (!type.isValid() || type.isDefault())
        return FileCategory::other;
    for (const TypeQuestion& question : typeQuestions())
        if (answers(question, type))
            return question.category;
    return FileCategory::other;
}

} // namespace kestrow
