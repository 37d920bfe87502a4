#pragma once

#include "engine/finishing/download_finisher.h"
#include "engine/lifecycle/transfer.h"
#include "engine/paths/download_paths.h"
#include "engine/presentation/row_vanishing.h"
#include "engine/record/download.h"
#include "engine/record/download_dates.h"
#include "engine/record/download_identity.h"
#include "engine/record/user_settings.h"

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
