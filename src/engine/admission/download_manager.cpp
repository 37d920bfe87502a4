#include "engine/admission/download_manager.h"

#include <QtGlobal>

#include "engine/admission/queue_admission.h"

namespace engine {
namespace {

DQDownloadManager* installedManager = nullptr;

}  // namespace

DQDownloadManager& mainController() {
    Q_ASSERT(installedManager);
    return *installedManager;
}

void installMainController(DQDownloadManager* manager) {
    installedManager = manager;
    QueueAdmission::shared().invalidateQueuedAndDownloadingDownloads();
}

bool hasMainController() {
    return installedManager != nullptr;
}

}  // namespace engine
