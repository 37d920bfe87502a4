#include "app/terminal/opened_items.h"

#include <QFileInfo>

#include "app/intake/address_list.h"
#include "links/recognition/url_candidates.h"
#include "platform/files/files.h"
#include "platform/net/url.h"

namespace app::terminal {
namespace {

constexpr int mostAddressesOfOneWord = 10'000;
constexpr qint64 longestList = 64 << 20;

bool canBeDownloaded(const QString& candidate) {
    const auto url = platform::Url::parseLenient(candidate);
    const bool isOfServer =
        url && (url->hasScheme("http") || url->hasScheme("https")) && !url->host().isEmpty();
    return isOfServer || (url && url->isFile());
}

/// What the words come to is gathered piece by piece.
class Gathering {
public:
    explicit Gathering(bool skipsRedirectingServices)
        : skipsRedirectingServices_(skipsRedirectingServices) {}

    void addWord(const QString& word) {
        if (const QFileInfo file(word); file.exists())
            addFile(file);
        else if (!addAddresses(word))
            opened_.refused.append(word);
    }

    void addList(const QString& list) {
        for (const QStringView line : QStringView(list).split(u'\n')) {
            const QString text = line.trimmed().toString();
            if (text.isEmpty() || text.startsWith(u'#'))
                continue;
            if (!addAddresses(text))
                opened_.refusedLines.append(text);
        }
    }

    [[nodiscard]] OpenedItems take() { return std::move(opened_); }

private:
    void addFile(const QFileInfo& file) {
        opened_.items.append(file.absoluteFilePath());
        if (file.suffix().compare(u"txt", Qt::CaseInsensitive) != 0 || !file.isFile())
            return;
        const QByteArray list = platform::readFile(file.absoluteFilePath(), longestList).data;
        auto candidates =
            links::URLCandidates::fromString(addressListText(list), skipsRedirectingServices_);
        int left = mostAddressesOfOneWord;
        for (auto candidate = candidates.next(); candidate && left > 0;
             candidate = candidates.next(), --left)
            opened_.addresses.append(links::comparisonURLString(*candidate));
    }

    /// False: something in it is no address.
    bool addAddresses(const QString& text) {
        auto candidates = links::URLCandidates::fromCollection({text}, skipsRedirectingServices_);
        QStringList found;
        for (auto candidate = candidates.next(); candidate && found.size() < mostAddressesOfOneWord;
             candidate = candidates.next()) {
            if (!canBeDownloaded(*candidate))
                return false;
            found.append(links::comparisonURLString(*candidate));
        }
        if (found.isEmpty())
            return false;
        opened_.items.append(text);
        opened_.addresses.append(found);
        return true;
    }

    const bool skipsRedirectingServices_;
    OpenedItems opened_;
};

}  // namespace

OpenedItems openedItems(const QStringList& words, const QString& list,
                        bool skipsRedirectingServices) {
    Gathering gathering(skipsRedirectingServices);
    for (const QString& word : words) {
        if (word == QStringLiteral("-"))
            gathering.addList(list);
        else
            gathering.addWord(word);
    }
    return gathering.take();
}

}  // namespace app::terminal
