#pragma once

#include <QSyntaxHighlighter>

#include "structured/text_view/syntax_highlighting.h"

namespace ui {

/// Shows a highlighting that was found for a whole text.
class SyntaxColors final : public QSyntaxHighlighter {
    Q_OBJECT

public:
    explicit SyntaxColors(QTextDocument& document);

    void show(const structured::SyntaxHighlighting& highlighting);

protected:
    void highlightBlock(const QString& text) override;

private:
    structured::SyntaxHighlighting highlighting_;
};

}  // namespace ui
