#include "ui/schedule/schedule_settings.h"

#include <QCheckBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QStyle>
#include <QTimeEdit>
#include <QVBoxLayout>

#include "app/main_controller.h"
#include "app/schedule/automation.h"
#include "app/settings.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

QCheckBox* makeSwitch(const char* name, const char* text, QWidget* parent) {
    auto* box = new QCheckBox(translated(text), parent);
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

/// What belongs to the switch above it begins where that one's text does.
int switchIndent(const QWidget& widget) {
    const QStyle* style = widget.style();
    return style->pixelMetric(QStyle::PM_IndicatorWidth) +
           style->pixelMetric(QStyle::PM_CheckBoxLabelSpacing);
}

}  // namespace

ScheduleSettings::ScheduleSettings(app::DQMainController& controller,
                                   platform::UserDefaults& defaults, QWidget* parent)
    : QWidget(parent), controller_(controller), defaults_(defaults) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    scheduledQueuingSwitch =
        makeSwitch("scheduledQueuingSwitch", "&Start downloads every day", this);
    column->addWidget(scheduledQueuingSwitch);
    scheduledQueuingTimePicker =
        addTimePicker(app::scheduledQueuingTime(), *scheduledQueuingSwitch);
    scheduledQueuingTimePicker->setObjectName(u"scheduledQueuingTimePicker"_s);
    scheduledPausingSwitch =
        makeSwitch("scheduledPausingSwitch", "&Pause downloads every day", this);
    column->addWidget(scheduledPausingSwitch);
    scheduledPausingTimePicker =
        addTimePicker(app::scheduledPausingTime(), *scheduledPausingSwitch);
    scheduledPausingTimePicker->setObjectName(u"scheduledPausingTimePicker"_s);
    scheduledPausingRadicalSwitch = makeSwitch("scheduledPausingRadicalSwitch",
                                               "Pause downloads that are &running as well", this);
    column->addWidget(scheduledPausingRadicalSwitch);
    column->addStretch();
    setFocusProxy(scheduledQueuingSwitch);

    app::Toggles& toggles = controller_.automation().toggles();
    connect(scheduledQueuingSwitch, &QCheckBox::clicked, this,
            [&toggles] { toggles.toggleScheduledQueuing(); });
    connect(scheduledPausingSwitch, &QCheckBox::clicked, this,
            [&toggles] { toggles.toggleScheduledPausing(); });
    connect(scheduledPausingRadicalSwitch, &QCheckBox::clicked, this,
            [this](bool on) { defaults_.set(app::settings::schedulePauseRadical, on); });
    observation_ = defaults_.observe([this](const QString& key) {
        if (key.startsWith(u"Schedule: "_s)) {
            followSettings();
        }
    });
    followSettings();
}

QTimeEdit* ScheduleSettings::addTimePicker(const app::ScheduledTime& time, const QCheckBox& owner) {
    auto* box = new QWidget(this);
    auto* picker = new QTimeEdit(box);
    // Digits run from left to right everywhere; the format was turned round before it knew.
    picker->setLayoutDirection(Qt::LeftToRight);
    picker->setDisplayFormat(picker->locale().timeFormat(QLocale::ShortFormat));
    picker->setAccessibleName(owner.text().remove(u'&'));
    auto* row = new QHBoxLayout(box);
    row->setContentsMargins(0, 0, 0, 0);
    row->addSpacing(switchIndent(*this));
    row->addWidget(new QLabel(translated("at"), box));
    row->addWidget(picker);
    row->addStretch();
    layout()->addWidget(box);
    connect(picker, &QTimeEdit::timeChanged, this, [this, &time](QTime chosen) {
        controller_.automation().toggles().changeScheduledTime(time, chosen);
    });
    return picker;
}

void ScheduleSettings::followSettings() {
    const bool queues = defaults_.get(app::settings::scheduleQueue);
    const bool pauses = defaults_.get(app::settings::schedulePause);
    scheduledQueuingSwitch->setChecked(queues);
    scheduledQueuingTimePicker->parentWidget()->setVisible(queues);
    scheduledPausingSwitch->setChecked(pauses);
    scheduledPausingTimePicker->parentWidget()->setVisible(pauses);
    scheduledPausingRadicalSwitch->setVisible(pauses);
    scheduledPausingRadicalSwitch->setChecked(defaults_.get(app::settings::schedulePauseRadical));
    showTime(*scheduledQueuingTimePicker, app::scheduledQueuingTime());
    showTime(*scheduledPausingTimePicker, app::scheduledPausingTime());
}

void ScheduleSettings::showTime(QTimeEdit& picker, const app::ScheduledTime& time) const {
    const QTime chosen = app::scheduleTime(defaults_, time);
    // The picker may be in the middle of being typed into.
    if (picker.time() != chosen) {
        const QSignalBlocker isOurs(&picker);
        picker.setTime(chosen);
    }
}

}  // namespace ui
