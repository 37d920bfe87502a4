#pragma once

namespace engine {

class DQDownload;

/// What a row's buttons and its small commands do; each command beeps if it cannot be done.

[[nodiscard]] bool canPerformAction(DQDownload& download, unsigned index);
void performAction(DQDownload& download, unsigned index);

/// The finished file in its application; anything else is revealed.
void openDownload(DQDownload& download);
void revealDownload(DQDownload& download);
void openOriginalURLOfDownload(const DQDownload& download);
void copyOriginalURLOfDownload(const DQDownload& download);
void copyPathOfDownload(DQDownload& download);

}  // namespace engine
