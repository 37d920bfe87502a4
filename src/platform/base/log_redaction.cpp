#include "platform/base/log_redaction.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/text/ascii.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

constexpr std::array<QStringView, 5> secretFields{u"cookie", u"set-cookie", u"set-cookie2",
                                                  u"authorization", u"proxy-authorization"};
const QString replacement = QStringLiteral("...");

bool endsAuthority(QChar c) {
    return QStringView(u" \t\r\n/?#\"<>").contains(c);
}

/// Whether it is a password or a token that stands for one, only the server knows. `at` is behind
/// "://". Answers where to go on.
qsizetype removeUserInfo(QString& line, qsizetype at) {
    const QStringView text(line);
    qsizetype end = at;
    while (end < text.size() && !endsAuthority(text[end]))
        ++end;
    const QStringView authority = text.sliced(at, end - at);
    const qsizetype host = authority.lastIndexOf(u'@');
    if (host >= 0)
        line.replace(at, host, replacement);
    return at;
}

bool isNameCharacter(QChar c) {
    return c == u'-' || isAsciiAlphanumeric(c);
}

/// Whether the word before `separator`, quoted or not, names a field that is secret.
bool isBehindSecretName(QStringView line, qsizetype separator) {
    qsizetype end = separator;
    while (end > 0 && (line[end - 1] == u' ' || line[end - 1] == u'"'))
        --end;
    qsizetype begin = end;
    while (begin > 0 && isNameCharacter(line[begin - 1]))
        --begin;
    const QStringView name = line.sliced(begin, end - begin);
    return std::any_of(secretFields.begin(), secretFields.end(), [&](QStringView field) {
        return name.compare(field, Qt::CaseInsensitive) == 0;
    });
}

/// A quoted value ends with its quote, any other with its line.
qsizetype endOfValue(QStringView line, qsizetype at) {
    if (at < line.size() && line[at] == u'"') {
        for (++at; at < line.size() && line[at] != u'"'; ++at) {
            if (line[at] == u'\\')
                ++at;
        }
        return std::min(at + 1, line.size());
    }
    while (at < line.size() && line[at] != u'\n')
        ++at;
    return at;
}

qsizetype removeValue(QString& line, qsizetype at) {
    while (at < line.size() && std::as_const(line)[at] == u' ')
        ++at;
    line.replace(at, endOfValue(line, at) - at, replacement);
    return at + replacement.size();
}

}  // namespace

QString withoutSecrets(QString line) {
    for (qsizetype at = 0; at < line.size(); ++at) {
        const QChar c = std::as_const(line)[at];
        if (c != u':' && c != u'=')
            continue;
        if (QStringView(line).sliced(at).startsWith(u"://"))
            at = removeUserInfo(line, at + 3) - 1;
        else if (isBehindSecretName(line, at))
            at = removeValue(line, at + 1) - 1;
    }
    return line;
}

}  // namespace platform
