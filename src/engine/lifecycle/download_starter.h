#pragma once

#include <optional>

#include "platform/net/url.h"

namespace engine {

class DQDownload;

/// Starts a download: goes on with its partial data if there is some that fits, reads its page if
/// it is one, or begins anew. See DQDownload::startDownloadWithURL.
void startDownload(DQDownload& download, const std::optional<platform::Url>& url,
                   bool extractedFromDownloadPage);

}  // namespace engine
