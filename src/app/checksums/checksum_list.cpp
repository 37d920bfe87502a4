#include "app/checksums/checksum_list.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

namespace app {

namespace {

const QString algorithms = QStringLiteral("md5|sha-?1|sha-?224|sha-?256|sha-?384|sha-?512");

/// Lists tell files by paths that are relative to themselves.
QString baseName(const QString& path) {
    return path.section(u'/', -1);
}

std::optional<engine::Checksum> checksumOfLine(const QString& line, const QString& fileName,
                                               bool isAboutFile) {
    static const QRegularExpression gnu(u"^\\\\?([0-9a-fA-F]{32,128})(?: [ *]?|\\t+)(.+)$"_s);
    static const QRegularExpression bsd(
        u"^([A-Za-z0-9-]+) ?\\((.+)\\) ?= ?([0-9a-fA-F]{32,128})$"_s);
    if (const auto match = bsd.match(line); match.hasMatch())
        return baseName(match.captured(2)) == fileName
                   ? engine::checksumFromText(match.captured(1) + u'=' + match.captured(3))
                   : std::nullopt;
    if (const auto match = gnu.match(line); match.hasMatch())
        return baseName(match.captured(2).trimmed()) == fileName
                   ? engine::checksumFromText(match.captured(1))
                   : std::nullopt;
    return isAboutFile ? engine::checksumFromText(line) : std::nullopt;
}

}  // namespace

bool isChecksumListName(const QString& name) {
    // Nearly every name is none, and is asked about; the expression would be made for nothing.
    const auto holds = [&name](QStringView word) {
        return name.contains(word, Qt::CaseInsensitive);
    };
    if (!holds(u"md5") && !holds(u"sha") && !holds(u"checksum"))
        return false;
    static const QRegularExpression form(
        u"^(?:(?:%1)sums?(?:\\.txt)?|checksums?(?:[._-](?:%1))?(?:\\.txt)?|.+\\.(?:%1)(?:sums?)?(?:\\.txt)?)$"_s
            .arg(algorithms),
        QRegularExpression::CaseInsensitiveOption);
    return form.match(name).hasMatch();
}

std::optional<engine::Checksum> checksumInList(const QByteArray& list, const QString& listName,
                                               const QString& fileName) {
    const bool isAboutFile = listName.startsWith(fileName + u'.');
    for (const QString& line : QString::fromUtf8(list).split(u'\n')) {
        if (const auto checksum = checksumOfLine(line.trimmed(), fileName, isAboutFile))
            return checksum;
    }
    return std::nullopt;
}

std::vector<platform::Url> checksumListAddresses(const platform::Url& file) {
    const QString whole = file.absoluteString().section(u'#', 0, 0).section(u'?', 0, 0);
    const QString folder = whole.section(u'/', 0, -2) + u'/';
    QStringList addresses;
    for (const QString& ending :
         {u".sha256"_s, u".sha512"_s, u".sha256sum"_s, u".sha1"_s, u".md5"_s})
        addresses.append(whole + ending);
    for (const QString& name : {u"SHA256SUMS"_s, u"SHA512SUMS"_s, u"sha256sum.txt"_s, u"SHA1SUMS"_s,
                                u"MD5SUMS"_s, u"CHECKSUMS"_s})
        addresses.append(folder + name);
    std::vector<platform::Url> urls;
    for (const QString& address : addresses) {
        if (const auto url = platform::Url::parse(address))
            urls.push_back(*url);
    }
    return urls;
}

}  // namespace app
