#include "ui/checksums/checksum_panel.h"

#include <QClipboard>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/checksums/checksum_texts.h"
#include "app/checksums/verification.h"
#include "app/main_controller.h"
#include "desktop/checksums/checksum_search.h"
#include "links/text/localization.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

constexpr int width = 560;

/// What the user has just copied is what he came with, if it is a checksum.
QString proposal(const engine::DQDownload& download) {
    if (const auto copied = engine::checksumFromText(QGuiApplication::clipboard()->text()))
        return copied->text();
    const auto expected = engine::expectedChecksum(download.userSettings());
    return expected ? expected->text() : QString();
}

QString knownText(const engine::DQDownload& download) {
    const QString wrong = app::wrongFileSentence(download);
    const auto computed = engine::computedChecksum(download.userSettings());
    return !wrong.isEmpty() || !computed
               ? wrong
               : links::filledFormat(translated("The file has %@."), {computed->text()});
}

QString effectOfNone(const engine::DQDownload& download) {
    return download.status() == engine::DQDownloadStatusDone
               ? translated("Without one, the SHA-256 of the file is shown.")
               : translated("Without one, the file is taken as it comes.");
}

/// Goes with its panel.
class Search final : public QObject {
public:
    using QObject::QObject;
    void begin(platform::RunLoop& loop, const platform::Url& file, const QString& name,
               desktop::ChecksumSearch::Answer answer) {
        search_ = std::make_unique<desktop::ChecksumSearch>(loop, file, name, std::move(answer));
    }

private:
    std::unique_ptr<desktop::ChecksumSearch> search_;
};

QString noteOn(const QString& text, const engine::DQDownload& download) {
    if (text.trimmed().isEmpty())
        return effectOfNone(download);
    const auto checksum = engine::checksumFromText(text);
    return checksum ? engine::algorithmTitle(checksum->algorithm)
                    : translated("This is no MD5, SHA-1 or SHA-2.");
}

}  // namespace

void showChecksumPanel(QWidget& window, app::DQMainController& controller,
                       const engine::DownloadPtr& download) {
    auto* panel = new QDialog(&window);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setObjectName(u"checksumPanel"_s);
    panel->setWindowTitle(translated("Verify"));
    panel->resize(width, 0);
    auto* layout = new QVBoxLayout(panel);

    // The label of a field takes single ones for the mark of a key.
    const QString name = download->displayName().replace(u'&', u"&&"_s);
    auto* label = new QLabel(
        links::filledFormat(translated("Checksum that “%@” is to have:"), {name}), panel);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    auto* field = new QLineEdit(proposal(*download), panel);
    field->setObjectName(u"checksumField"_s);
    field->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    field->setPlaceholderText(u"sha256=…"_s);
    field->setAccessibleName(translated("Checksum"));
    label->setBuddy(field);
    auto* note = new QLabel(panel);
    note->setObjectName(u"checksumNote"_s);
    note->setWordWrap(true);
    auto* known = new QLabel(knownText(*download), panel);
    known->setObjectName(u"checksumKnown"_s);
    known->setTextFormat(Qt::PlainText);
    known->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    known->setWordWrap(true);
    known->setVisible(!known->text().isEmpty());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, panel);
    QPushButton* accept = buttons->button(QDialogButtonBox::Ok);
    accept->setText(translated("Verify"));
    QPushButton* look =
        buttons->addButton(translated("Look Beside It"), QDialogButtonBox::ActionRole);
    look->setObjectName(u"checksumLook"_s);
    look->setToolTip(translated("Looks on the server for a list of checksums"));
    look->setAutoDefault(false);
    const auto address = desktop::webAddress(download->originalURLString());
    look->setEnabled(address.has_value());
    for (QWidget* widget :
         {static_cast<QWidget*>(label), static_cast<QWidget*>(field), static_cast<QWidget*>(note),
          static_cast<QWidget*>(known), static_cast<QWidget*>(buttons)})
        layout->addWidget(widget);

    const auto update = [field, note, accept, download] {
        note->setText(noteOn(field->text(), *download));
        accept->setEnabled(field->text().trimmed().isEmpty() ||
                           engine::checksumFromText(field->text()).has_value());
    };
    QObject::connect(field, &QLineEdit::textChanged, panel, update);
    update();
    QObject::connect(look, &QPushButton::clicked, panel, [=, &controller] {
        // Off the button before it is disabled: Return is to verify what was found, not to cancel.
        field->setFocus();
        look->setEnabled(false);
        note->setText(translated("Looking for a list of checksums..."));
        auto* search = new Search(panel);
        search->begin(
            controller.surroundings().loop, *address, download->name(),
            [=](const std::optional<engine::Checksum>& checksum, const QString& list) {
                look->setEnabled(true);
                if (checksum)
                    field->setText(checksum->text());
                note->setText(checksum ? translated("Found in %1").arg(list)
                                       : translated("There is no list of checksums beside it."));
                search->deleteLater();
            });
    });
    QObject::connect(buttons, &QDialogButtonBox::rejected, panel, &QDialog::reject);
    QObject::connect(
        buttons, &QDialogButtonBox::accepted, panel, [panel, field, download, &controller] {
            panel->accept();
            if (controller.queue().contains(*download) && app::canExpectChecksum(*download))
                app::expectChecksum(controller, download, engine::checksumFromText(field->text()));
        });
    panel->show();
}

}  // namespace ui
