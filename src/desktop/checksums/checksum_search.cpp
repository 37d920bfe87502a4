#include "desktop/checksums/checksum_search.h"

#include <algorithm>

#include "app/checksums/checksum_list.h"

namespace desktop {

ChecksumSearch::ChecksumSearch(platform::RunLoop& loop, const platform::Url& file,
                               const QString& name, Answer answer)
    : fetcher_(loop),
      name_(name),
      left_(app::checksumListAddresses(file)),
      answer_(std::move(answer)) {
    std::reverse(left_.begin(), left_.end());
    askNext();
}

void ChecksumSearch::askNext() {
    if (left_.empty()) {
        const Answer answer = answer_;
        answer({}, {});
        return;
    }
    const platform::Url url = left_.back();
    left_.pop_back();
    fetcher_.fetch(url.absoluteString(), [this, url](const std::optional<QByteArray>& document) {
        const QString list = url.absoluteString().section(QLatin1Char('/'), -1);
        const auto checksum = document ? app::checksumInList(*document, list, name_) : std::nullopt;
        if (checksum) {
            const Answer answer = answer_;
            answer(checksum, list);
        } else {
            askNext();
        }
    });
}

}  // namespace desktop
