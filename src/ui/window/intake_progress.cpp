#include "ui/window/intake_progress.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "app/main_controller.h"
#include "links/format/numbers.h"
#include "ui/text.h"

namespace ui {

IntakeProgress::IntakeProgress(app::DQMainController& controller, QWidget* parent)
    : QWidget(parent), label_(new QLabel(this)) {
    setObjectName(QStringLiteral("intakeProgress"));
    auto* stop = new QPushButton(translated("Stop Adding"), this);
    stop->setFlat(true);
    connect(stop, &QPushButton::clicked, this, [&controller] { controller.stopIntake(); });
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(label_);
    layout->addWidget(stop);
    connect(&controller, &app::DQMainController::intakeProgressed, this,
            &IntakeProgress::showCount);
    connect(&controller, &app::DQMainController::intakeEnded, this, &QWidget::hide);
    hide();
}

void IntakeProgress::showCount(qsizetype count) {
    label_->setText(translated("%1 added").arg(links::stringWithInteger(count)));
    setVisible(true);
}

}  // namespace ui
