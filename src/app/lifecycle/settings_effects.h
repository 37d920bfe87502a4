#pragma once

#include <QString>

#include "platform/base/observation.h"

namespace links {
class DownloadPageRuleStore;
}
namespace platform {
class UserDefaults;
}

namespace app {

class DownloadListView;
class DQMainController;

/// Carries out at once what a change of a setting asks for, whoever made it: the settings window,
/// a menu, or the user by hand in the file. Settings that are read whenever they are needed ask for
/// nothing. Main thread.
class SettingsEffects {
public:
    /// All of it outlives this object.
    SettingsEffects(platform::UserDefaults& defaults, DQMainController& controller,
                    DownloadListView& list, links::DownloadPageRuleStore& pageRules);
    SettingsEffects(const SettingsEffects&) = delete;
    SettingsEffects& operator=(const SettingsEffects&) = delete;

private:
    void settingDidChange(const QString& key);
    void admitDownloads();
    void makeNamesAnew();
    void readDownloadPageRules();

    platform::UserDefaults& defaults_;
    DQMainController& controller_;
    DownloadListView& list_;
    links::DownloadPageRuleStore& pageRules_;
    platform::Observation observation_;
};

}  // namespace app
