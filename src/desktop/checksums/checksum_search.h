#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "desktop/updates/document_fetcher.h"
#include "engine/record/checksum.h"

namespace desktop {

/// Looks beside a file of the web for a list that says what it adds up to. Main thread.
class ChecksumSearch {
public:
    /// Nothing: there is no such list, or none says anything of the file.
    using Answer =
        std::function<void(const std::optional<engine::Checksum>& checksum, const QString& list)>;
    /// `answer` is called once, unless this goes before. `name`: of the file, in such lists.
    ChecksumSearch(platform::RunLoop& loop, const platform::Url& file, const QString& name,
                   Answer answer);

private:
    void askNext();

    HTTPDocumentFetcher fetcher_;
    const QString name_;
    std::vector<platform::Url> left_;  ///< The next one last.
    Answer answer_;
};

}  // namespace desktop
