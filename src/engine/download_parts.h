#pragma once

#include "engine/download.h"
#include "engine/download_dates.h"
#include "engine/download_finisher.h"
#include "engine/download_identity.h"
#include "engine/download_paths.h"
#include "engine/row_vanishing.h"
#include "engine/transfer.h"
#include "engine/user_settings.h"

namespace engine {

/// What a download consists of; for its own sources only.
struct DQDownload::Parts {
    Parts(DQDownload& download, const platform::Url& url)
        : dates(settings),
          identity(url, settings),
          paths(download),
          transfer(download),
          finisher(download),
          vanishing(download) {}

    UserSettings settings;
    DownloadDates dates;
    DownloadIdentity identity;
    DownloadPaths paths;
    Transfer transfer;
    DownloadFinisher finisher;
    RowVanishing vanishing;
};

}  // namespace engine
