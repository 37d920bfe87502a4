#include "links/paths/path_components.h"

namespace links {
namespace {

constexpr QChar slash = u'/';

QStringView withoutTrailingSlashes(QStringView path) {
    while (path.size() > 1 && path.back() == slash)
        path.chop(1);
    return path;
}

/// Where the last component begins in a path without trailing slashes.
qsizetype lastComponentStart(QStringView path) {
    return path.size() == 1 ? 0 : path.lastIndexOf(slash) + 1;
}

/// The index of the dot before the extension in a path without trailing slashes; -1: none.
qsizetype extensionDot(QStringView path) {
    const qsizetype dot = path.lastIndexOf(u'.');
    const bool isInside = dot > lastComponentStart(path) && dot + 1 < path.size();
    return isInside ? dot : -1;
}

}  // namespace

QString lastPathComponent(const QString& path) {
    const QStringView trimmed = withoutTrailingSlashes(path);
    return trimmed.sliced(lastComponentStart(trimmed)).toString();
}

QString stringByDeletingLastPathComponent(const QString& path) {
    const QStringView trimmed = withoutTrailingSlashes(path);
    if (trimmed == slash)
        return slash;
    return withoutTrailingSlashes(trimmed.first(lastComponentStart(trimmed))).toString();
}

QString stringByAppendingPathComponent(const QString& path, const QString& component) {
    QStringView tail = withoutTrailingSlashes(component);
    while (tail.startsWith(slash))
        tail = tail.sliced(1);
    QString result = withoutTrailingSlashes(path).toString();
    if (tail.isEmpty())
        return result;
    if (!result.isEmpty() && !result.endsWith(slash))
        result.append(slash);
    return result.append(tail);
}

QString pathExtension(const QString& path) {
    const QStringView trimmed = withoutTrailingSlashes(path);
    const qsizetype dot = extensionDot(trimmed);
    return dot < 0 ? QString() : trimmed.sliced(dot + 1).toString();
}

QString stringByDeletingPathExtension(const QString& path) {
    const QStringView trimmed = withoutTrailingSlashes(path);
    const qsizetype dot = extensionDot(trimmed);
    return (dot < 0 ? trimmed : trimmed.first(dot)).toString();
}

QString stringByAppendingPathExtension(const QString& path, const QString& extension) {
    const QStringView trimmed = withoutTrailingSlashes(path);
    if (trimmed.isEmpty() || trimmed == slash)
        return path;
    return trimmed.toString() + u'.' + extension;
}

}  // namespace links
