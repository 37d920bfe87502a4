#pragma once

#include <QString>
#include <optional>

#include "engine/lifecycle/download.h"
#include "engine/lifecycle/new_address.h"

namespace app {

class DQMainController;

/// Whether it stands still and is not done.
[[nodiscard]] bool canChangeAddress(const engine::DQDownload& download);

/// The first address of the web in a text. Nothing: there is none.
[[nodiscard]] std::optional<platform::Url> webAddressInText(const QString& text);

/// What the answer of another address means for what has come, in plain words.
[[nodiscard]] QString answerSentence(const engine::DQDownload& download,
                                     const engine::AddressAnswer& answer);

/// Goes on with the download at another address, unless it has gone or runs by now. What has come
/// of another file lies beside the new one until that is complete. Main thread.
void changeAddress(DQMainController& controller, const engine::DownloadPtr& download,
                   const platform::Url& url, const engine::AddressAnswer& answer);

}  // namespace app
