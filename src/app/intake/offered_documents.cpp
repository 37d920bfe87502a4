#include "app/intake/offered_documents.h"

#include <utility>

#include "links/format/numbers.h"
#include "links/paths/path_components.h"
#include "links/text/localization.h"

namespace app {

using links::filledFormat;
using links::localized;

namespace {

constexpr std::size_t mostOffered = 10'000;

QString number(std::size_t count) {
    return links::stringWithInteger(static_cast<qint64>(count));
}

QString inDocument(const QString& path, std::size_t count) {
    const QString name = links::lastPathComponent(path);
    return count == 1 ? filledFormat(localized("1 address in %@."), {name})
                      : filledFormat(localized("%@ addresses in %@."), {number(count), name});
}

}  // namespace

void OfferedDocuments::add(const QString& path, AddressSource& addresses) {
    const std::size_t before = urls_.size();
    while (urls_.size() < mostOffered) {
        std::optional<platform::Url> url = addresses.next();
        if (!url) {
            break;
        }
        urls_.push_back(std::move(*url));
    }
    if (urls_.size() > before) {
        documents_.push_back({path, urls_.size() - before});
    }
}

std::unique_ptr<AddressSource> OfferedDocuments::ask(Questions& questions) {
    const std::vector<Document> documents = std::exchange(documents_, {});
    auto addresses = std::make_unique<ListedAddresses>(std::exchange(urls_, {}));
    const QString title = documents.size() == 1
                              ? inDocument(documents.front().path, documents.front().count)
                              : filledFormat(localized("%@ addresses in %@ text documents."),
                                             {number(addresses->size()), number(documents.size())});
    const Alert alert{Alert::Kind::TextDocument, title, QStringLiteral("Download them?"),
                      QStringLiteral("Download"), QStringLiteral("Cancel")};
    return questions.confirm(alert) ? std::move(addresses) : nullptr;
}

QStringList OfferedDocuments::notTaken() {
    urls_.clear();
    QStringList sentences;
    for (const Document& document : std::exchange(documents_, {})) {
        sentences.append(
            filledFormat(localized("%@ It is no list of addresses, so they were not taken: %@"),
                         {inDocument(document.path, document.count), document.path}));
    }
    return sentences;
}

}  // namespace app
