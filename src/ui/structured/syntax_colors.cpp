#include "ui/structured/syntax_colors.h"

#include <QGuiApplication>
#include <QPalette>
#include <QTextBlock>
#include <QTextDocument>
#include <algorithm>

#include "ui/art/theme.h"

namespace ui {
namespace {

QColor colorFor(structured::SyntaxRole role) {
    const QPalette palette = QGuiApplication::palette();
    if (const auto color = structured::syntaxColor(role, isDark(palette))) {
        return QColor::fromRgbF(static_cast<float>(color->red), static_cast<float>(color->green),
                                static_cast<float>(color->blue), static_cast<float>(color->alpha));
    }
    return palette.color(
        role == structured::SyntaxRole::Disabled ? QPalette::Disabled : QPalette::Active,
        QPalette::Text);
}

}  // namespace

SyntaxColors::SyntaxColors(QTextDocument& document) : QSyntaxHighlighter(&document) {}

void SyntaxColors::show(const structured::SyntaxHighlighting& highlighting) {
    highlighting_ = highlighting;
    rehighlight();
}

void SyntaxColors::highlightBlock(const QString& text) {
    const qsizetype start = currentBlock().position();
    setFormat(0, static_cast<int>(text.size()), colorFor(highlighting_.background));
    for (const structured::SyntaxSpan& span : highlighting_.spans) {
        const qsizetype begin = std::max<qsizetype>(span.range.location - start, 0);
        const qsizetype end =
            std::min<qsizetype>(span.range.location + span.range.length - start, text.size());
        if (begin < end) {
            setFormat(static_cast<int>(begin), static_cast<int>(end - begin), colorFor(span.role));
        }
    }
}

}  // namespace ui
