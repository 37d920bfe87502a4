#include "ui/help/about_panel.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/art/icons.h"
#include "ui/text.h"

namespace ui {
namespace {

constexpr int iconSize = 96;
constexpr double nameScale = 1.8;

QLabel* addLine(QVBoxLayout& lines, const QString& text) {
    auto* label = new QLabel(text);
    label->setAlignment(Qt::AlignCenter);
    lines.addWidget(label);
    return label;
}

QDialogButtonBox* makeButtons(QDialog& panel) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, &panel);
    QPushButton* aboutQt =
        buttons->addButton(translated("About &Qt"), QDialogButtonBox::ActionRole);
    aboutQt->setAutoDefault(false);
    QObject::connect(aboutQt, &QPushButton::clicked, &panel, [] { QApplication::aboutQt(); });
    QObject::connect(buttons, &QDialogButtonBox::rejected, &panel, &QDialog::reject);
    buttons->button(QDialogButtonBox::Close)->setDefault(true);
    buttons->button(QDialogButtonBox::Close)->setFocus();
    return buttons;
}

}  // namespace

void showAboutPanel(QWidget& window) {
    QDialog panel(&window);
    panel.setWindowTitle(translated("About Orlop"));
    auto* lines = new QVBoxLayout(&panel);
    lines->setContentsMargins(32, 24, 32, 16);
    lines->setSpacing(6);
    addLine(*lines, {})
        ->setPixmap(colouredPixmap(QStringLiteral("orlop"), iconSize, window.devicePixelRatioF()));
    QLabel* name = addLine(*lines, QStringLiteral("Orlop"));
    QFont font = name->font();
    font.setPointSizeF(font.pointSizeF() * nameScale);
    font.setBold(true);
    name->setFont(font);
    QLabel* version = addLine(
        *lines, links::filledFormat(translated("Version %@"), {QStringLiteral(ORLOP_VERSION)}));
    version->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    addLine(*lines, translated("A download manager for the desktop."));
    lines->addSpacing(10);
    lines->addWidget(makeButtons(panel));
    lines->setSizeConstraint(QLayout::SetFixedSize);
    panel.exec();
}

}  // namespace ui
