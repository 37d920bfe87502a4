#include "ui/window/address_entry.h"

#include <QApplication>
#include <QFileDialog>
#include <algorithm>

#include "app/main_controller.h"
#include "platform/base/user_defaults.h"
#include "ui/settings.h"
#include "ui/text.h"
#include "ui/window/clipboard.h"
#include "ui/window/url_panel.h"

namespace ui {
namespace {

/// More than this is no list of addresses that somebody has just copied.
constexpr qsizetype longestClipboard = 100'000;

}  // namespace

AddressEntry::AddressEntry(app::DQMainController& controller, QWidget& window,
                           const ApproachingEnd& end)
    : controller_(controller), window_(window), end_(end) {
    QObject::connect(
        &controller_, &app::DQMainController::textNotUnderstood, &window_,
        [this](const std::vector<app::RefusedText>& refused) { showForCorrection(refused); });
}

AddressEntry::~AddressEntry() = default;

void AddressEntry::openURL() {
    const app::Pasteboard pasteboard = Clipboard::contents();
    const QString text = pasteboard.text.value_or(QString());
    QString proposed;
    if (text.size() <= longestClipboard && text.contains(QStringLiteral("://")) &&
        controller_.canDropPasteboard({{}, text})) {
        proposed = text.trimmed();
    }
    openURLPanelWithString(proposed);
}

void AddressEntry::showForCorrection(const std::vector<app::RefusedText>& refused) {
    QStringList lines;
    for (const app::RefusedText& text : refused) {
        lines.append(text.proposal);
    }
    openURLPanelWithString(lines.join(QLatin1Char('\n')), app::refusalExplanation(refused));
}

void AddressEntry::openURLPanelWithString(const QString& text, const QString& note) {
    panel().openWithString(text, note);
}

void AddressEntry::openUnfinished() {
    const platform::UserDefaults& defaults = controller_.surroundings().defaults;
    if (!openURLPanel && !defaults.get(settings::unfinishedAddresses).isEmpty()) {
        static_cast<void>(panel());
    }
}

URLPanel& AddressEntry::panel() {
    if (!openURLPanel) {
        const QString kept = controller_.surroundings().defaults.get(settings::unfinishedAddresses);
        openURLPanel = std::make_unique<URLPanel>(controller_, window_, end_);
        if (!kept.isEmpty()) {
            openURLPanel->openWithString(kept,
                                         translated("These addresses have not been added yet."));
        }
    }
    return *openURLPanel;
}

void AddressEntry::openURLFromPasteboard() {
    if (const auto text = controller_.openURLFromPasteboard(Clipboard::contents())) {
        openURLPanelWithString(*text);
    }
}

void AddressEntry::openFile() {
    openPaths(QFileDialog::getOpenFileNames(&window_, translated("Open")));
}

void AddressEntry::openFolder() {
    const QString path = QFileDialog::getExistingDirectory(&window_, translated("Open Folder"));
    openPaths(path.isEmpty() ? QStringList() : QStringList{path});
}

void AddressEntry::openPaths(const QStringList& paths) {
    if (!paths.isEmpty() && !controller_.openFiles(paths, false, false)) {
        QApplication::beep();
    }
}

}  // namespace ui
