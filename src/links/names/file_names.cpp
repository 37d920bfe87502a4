#include "links/names/file_names.h"

#include <QHash>
#include <mutex>

#include "links/paths/path_components.h"
#include "links/repair/percent_escapes.h"
#include "links/text/trimming.h"
#include "links/text/user_expression.h"
#include "platform/net/url.h"

using namespace Qt::Literals::StringLiterals;

namespace links {
namespace {

/// What a pattern is matched against, and the pattern without the word that says so.
struct PatternSubject {
    QString pattern;
    QString subject;
};

PatternSubject patternSubject(const QString& pattern, const QString& address,
                              const QString& title) {
    static const platform::RegularExpression titleMarker(u"^\\s*title\\s*:\\s*(?=\\S)"_s);
    const auto marker = platform::RegularExpression(titleMarker).firstMatch(pattern);
    const qsizetype length = marker ? marker->groups.front()->length : 0;
    if (length == 0)
        return {pattern, address};
    return {pattern.mid(length), title.isEmpty() ? address : title};
}

/// The names of a long list ask for the same few patterns over and over. Nothing: malformed.
std::optional<UserExpression> compiledNamePattern(const QString& pattern) {
    constexpr qsizetype mostKnown = 100;
    static std::mutex lock;  // Guards `known`.
    static QHash<QString, std::optional<UserExpression>> known;
    const std::lock_guard guard(lock);
    if (known.size() >= mostKnown)
        known.clear();
    if (!known.contains(pattern))
        known[pattern] = UserExpression::compile(pattern, UserExpression::Subject::Address);
    return known[pattern];
}

QString nameByPattern(const QString& pattern, const QString& address, const QString& title) {
    if (pattern.isEmpty())
        return {};
    const PatternSubject chosen = patternSubject(pattern, address, title);
    const auto expression = compiledNamePattern(chosen.pattern);
    if (!expression)
        return {};
    QString captured;
    const bool isWhole = expression->forEachYield(chosen.subject, [&](const QString& yield) {
        captured.append(yield);
        return true;
    });
    if (!isWhole)
        return {};
    return trimmedString(
        cleanFilename(stringByReplacingPlusAndPercentEscapesIfNecessary(captured)));
}

QString nameByPath(const QString& path, PlusSigns plusSigns) {
    const QString component = lastPathComponent(path);
    if (component == u"/")
        return {};
    return trimmedString(
        stringByReplacingEscapesOfName(filenameByRemovingURLParameters(component), plusSigns));
}

QString nameByHost(const QString& host) {
    const QString marker = u"www."_s;
    const qsizetype index = host.indexOf(marker);
    QString name = index < 0 ? host : host.mid(index + marker.size());
    return trimmedString(name.replace(u'.', u'-'));
}

}  // namespace

QString filenameWithPreservedNamePattern(const platform::Url& url, const QString& pattern,
                                         const QString& downloadPageTitle, PlusSigns plusSigns) {
    QString name = nameByPattern(pattern, url.absoluteString(), downloadPageTitle);
    if (name.isEmpty())
        name = nameByPath(url.path(), plusSigns);
    if (name.isEmpty())
        name = nameByHost(url.host());
    return name.isEmpty() ? u"-"_s : name;
}

QString filename(const platform::Url& url, PlusSigns plusSigns) {
    return filenameWithPreservedNamePattern(url, {}, {}, plusSigns);
}

QString filenameByRemovingURLParameters(const QString& name) {
    const qsizetype index = name.indexOf(u'?');
    if (index <= 0)
        return name;
    const QString head = name.left(index);
    return pathExtension(head).isEmpty() ? name : head;
}

QString cleanPathByReplacingDashesWithString(const QString& path,
                                             const std::optional<QString>& replacement) {
    QString clean = trimmedString(path);
    clean.remove(u'\n').remove(u'\r');
    clean.replace(u'\t', u' ').replace(u':', u'_').replace(u'*', u'_');
    if (clean.startsWith(u'.'))
        clean[0] = u'_';
    if (clean.endsWith(u'.'))
        clean.back() = u'_';
    if (replacement)
        return clean.replace(u"/"_s, *replacement);
    return clean.split(u'/', Qt::SkipEmptyParts).join(u'/');
}

QString cleanFilename(const QString& name) {
    return cleanPathByReplacingDashesWithString(name, u"|"_s);
}

bool isNegligibleFilename(const QString& name) {
    return name.startsWith(u'.') || name.compare(u"_ds_store"_s, Qt::CaseInsensitive) == 0 ||
           name.endsWith(u".orlopinfo"_s, Qt::CaseInsensitive) || name.endsWith(u'\r');
}

}  // namespace links
