#include "ui/schedule/throttle_field.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <QTimer>

#include "app/schedule/throttle_limit_text.h"
#include "engine/settings.h"
#include "engine/workers/throttle.h"
#include "ui/accessibility.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

ThrottleField::ThrottleField(platform::UserDefaults& defaults, engine::Throttle& throttle,
                             QWidget* parent)
    : QComboBox(parent),
      defaults_(defaults),
      throttle_(throttle),
      pendingUpdate_(new QTimer(this)) {
    constexpr int typingPause = 500;
    setObjectName(u"throttleLimitField"_s);
    setEditable(true);
    ui::setAccessibleName(*this, translated("Bandwidth limit in kilobytes per second"));
    setInsertPolicy(QComboBox::NoInsert);
    setMinimumContentsLength(7);
    setCompleter(nullptr);
    addItems(app::throttleLimitSuggestions());
    pendingUpdate_->setSingleShot(true);
    pendingUpdate_->setInterval(typingPause);
    connect(pendingUpdate_, &QTimer::timeout, this, &ThrottleField::updateThrottleLimit);
    connect(this, &QComboBox::editTextChanged, pendingUpdate_, qOverload<>(&QTimer::start));
    connect(lineEdit(), &QLineEdit::editingFinished, this, &ThrottleField::takeOver);
    observation_ = defaults_.observe([this](const QString& key) {
        if (key == engine::settings::throttleEnabled.name() ||
            key == engine::settings::throttleLimit.name()) {
            followSettings();
        }
    });
    followSettings();
}

void ThrottleField::updateThrottleLimit() {
    pendingUpdate_->stop();
    const app::ThrottleLimitEntry entry = app::throttleLimitEntry(currentText());
    if (entry.text != currentText()) {
        const QSignalBlocker isOurs(this);
        setEditText(entry.text);
    }
    throttle_.setThrottleLimit(entry.bytesPerSecond);
}

void ThrottleField::takeOver() {
    if (pendingUpdate_->isActive()) {
        updateThrottleLimit();
    }
}

void ThrottleField::hideEvent(QHideEvent* event) {
    takeOver();
    QComboBox::hideEvent(event);
}

void ThrottleField::followSettings() {
    setEnabled(throttle_.isThrottled());
    const QString text = app::throttleLimitText(throttle_.throttleLimit());
    if (!pendingUpdate_->isActive() && text != currentText()) {
        const QSignalBlocker isOurs(this);
        setEditText(text);
    }
}

}  // namespace ui
