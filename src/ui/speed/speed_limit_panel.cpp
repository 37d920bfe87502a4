#include "ui/speed/speed_limit_panel.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "app/main_controller.h"
#include "app/schedule/throttle_limit_text.h"
#include "engine/lifecycle/download.h"
#include "engine/transfer/speed_limit.h"
#include "ui/accessibility.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

namespace {

/// What it is for one of them is the proposal for all.
qint64 presentLimit(const engine::Downloads& downloads) {
    for (const engine::DownloadPtr& download : downloads) {
        if (const qint64 limit = engine::speedLimitOf(*download); limit > 0)
            return limit;
    }
    return 0;
}

QString question(const engine::Downloads& downloads) {
    return downloads.size() == 1
               ? translated("Speed of “%@”:").replace(u"%@"_s, downloads.front()->displayName())
               : translated("Speed of each of %1 downloads:").arg(downloads.size());
}

}  // namespace

void showSpeedLimitPanel(QWidget& window, app::DQMainController& controller,
                         const engine::Downloads& downloads) {
    constexpr qint64 proposed = 100'000;
    auto* panel = new QDialog(&window);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->setObjectName(u"speedLimitPanel"_s);
    panel->setWindowTitle(translated("Speed Limit"));
    auto* layout = new QVBoxLayout(panel);
    auto* label = new QLabel(question(downloads), panel);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    layout->addWidget(label);

    const qint64 present = presentLimit(downloads);
    auto* isLimited = new QCheckBox(translated("At most, in kilobytes per second:"), panel);
    isLimited->setObjectName(u"isLimited"_s);
    isLimited->setChecked(present > 0);
    auto* field = new QComboBox(panel);
    field->setObjectName(u"speedLimitField"_s);
    field->setEditable(true);
    setAccessibleName(*field, translated("Speed limit in kilobytes per second"));
    field->setInsertPolicy(QComboBox::NoInsert);
    field->setCompleter(nullptr);
    field->addItems(app::throttleLimitSuggestions());
    field->setEditText(app::throttleLimitText(present > 0 ? present : proposed));
    // Who types a limit wants it.
    QObject::connect(field, &QComboBox::editTextChanged, isLimited,
                     [isLimited] { isLimited->setChecked(true); });
    field->setFocus();
    field->lineEdit()->selectAll();
    auto* row = new QHBoxLayout;
    row->addWidget(isLimited);
    row->addWidget(field, 1);
    layout->addLayout(row);
    auto* note =
        new QLabel(translated("The limit of all downloads together counts as well."), panel);
    note->setWordWrap(true);
    layout->addWidget(note);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, panel);
    layout->addWidget(buttons);
    QObject::connect(buttons, &QDialogButtonBox::rejected, panel, &QDialog::reject);
    QObject::connect(buttons, &QDialogButtonBox::accepted, panel,
                     [panel, isLimited, field, downloads, &controller] {
                         const qint64 limit =
                             isLimited->isChecked()
                                 ? app::throttleLimitEntry(field->currentText()).bytesPerSecond
                                 : 0;
                         for (const engine::DownloadPtr& download : downloads)
                             download->speedLimit().set(limit);
                         controller.whenSaved([](bool) {});
                         panel->accept();
                     });
    panel->show();
}

}  // namespace ui
