#pragma once

#include <QString>
#include <QStringList>

namespace kestrow {

// Path text operations shared by every subsystem. Paths are compared as text after
// standardising; "~" is expanded against the home given to each operation, never against
// the process environment.
class PathText {
public:
    // Drops empty, "." and ".." components (".." removes the one before it; at the root it
    // stays at the root) and any trailing slash. Links are not resolved.
    [[nodiscard]] static QString removingDotComponents(const QString& path);
    // The platform's standard form of a path: empty and "." components and a trailing slash
    // dropped, ".." resolved in absolute paths only (kept in relative ones), and a leading
    // "/private" dropped when the path without it exists. The empty string stays empty. A
    // leading "~" is left as it is: callers expand it against their own home (expandingTilde).
    [[nodiscard]] static QString standardizing(const QString& path);
    // The path of the file location `path` names: relative text (the empty string included)
    // taken against the process's working directory, then dot components removed as text.
    [[nodiscard]] static QString standardizedLocation(const QString& path);
    // `path` itself when absolute; relative text (the empty string included) joined to the
    // working directory, dot components kept.
    [[nodiscard]] static QString absolute(const QString& path);
    // "~" and "~/..." against `home`; other text unchanged.
    [[nodiscard]] static QString expandingTilde(const QString& path, const QString& home);
    // `base` + "/" + `component`, with exactly one slash between them.
    [[nodiscard]] static QString appending(const QString& base, const QString& component);
    [[nodiscard]] static QString lastComponent(const QString& path);
    // What follows the last "." of the last component; empty when there is none or when that
    // dot opens the name (".bashrc").
    [[nodiscard]] static QString pathExtension(const QString& path);
    [[nodiscard]] static QString parent(const QString& path);
    // Absolute file URL text, as records carry it in JSON: "file://" and the path's native
    // bytes, each byte that a URL path does not keep as it stands written "%HH" (a name's raw
    // byte 0xE9 as "%E9"). For a path of valid UTF-8 this is the text QUrl gives. The empty
    // string stays empty.
    [[nodiscard]] static QString fileURLString(const QString& path);
    // The path of an absolute file URL text, its percent escapes taken as native bytes (the
    // reverse of `fileURLString`); empty when it is not one.
    [[nodiscard]] static QString pathFromFileURLString(const QString& url);
};

} // namespace kestrow
