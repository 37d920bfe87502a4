#include "ui/structured/structured_text_edit.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QTextBlock>
#include <QWheelEvent>

#include "structured/text_view/auto_indent.h"
#include "structured/text_view/pasteboard.h"
#include "structured/text_view/text_component.h"
#include "ui/structured/syntax_colors.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {
namespace {

constexpr int charactersOfTab = 4;

QFont editorFont(double size) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(size);
    return font;
}

double widthOfTab(double fontSize) {
    return QFontMetricsF(editorFont(fontSize)).horizontalAdvance(u' ') * charactersOfTab;
}

structured::PasteboardContents contentsOf(const QMimeData& source) {
    structured::PasteboardContents contents;
    contents.text = source.text();
    contents.propertyList = source.data(structured::propertyListPasteboardType);
    if (source.hasFormat(structured::keyPasteboardType)) {
        contents.key = QString::fromUtf8(source.data(structured::keyPasteboardType));
    }
    return contents;
}

}  // namespace

/// The editor as its logic sees it.
class StructuredTextEdit::Component final : public structured::TextComponent {
public:
    explicit Component(StructuredTextEdit& edit) : edit_(edit), colors_(*edit.document()) {}

    QString text() const override { return edit_.toPlainText(); }
    QString selectedText() const override {
        return edit_.textCursor().selectedText().replace(QChar::ParagraphSeparator, u'\n');
    }

    void setText(const QString& text) override {
        const QScopedValueRollback<bool> isOurs(edit_.isChanging_, true);
        edit_.setPlainText(text);
    }
    bool replaceText(const QString& text) override {
        QTextCursor cursor(edit_.document());
        cursor.select(QTextCursor::Document);
        return insert(cursor, text);
    }
    bool replaceSelection(const QString& text) override { return insert(edit_.textCursor(), text); }

    void showHighlighting(const structured::SyntaxHighlighting& highlighting) override {
        const QScopedValueRollback<bool> isOurs(edit_.isChanging_, true);
        colors_.show(highlighting);
    }
    double tabWidth(double fontSize) const override { return widthOfTab(fontSize); }

    void showStyle(const structured::TextStyle& style) override {
        const QScopedValueRollback<bool> isOurs(edit_.isChanging_, true);
        edit_.setFont(editorFont(style.fontSize));
        edit_.setTabStopDistance(widthOfTab(style.fontSize));
        QTextBlockFormat format = edit_.document()->firstBlock().blockFormat();
        format.setLineHeight(style.lineSpacing, QTextBlockFormat::LineDistanceHeight);
        format.setBottomMargin(style.paragraphSpacing);
        format.setLeftMargin(style.headIndent);
        format.setTextIndent(-style.headIndent);
        if (format == edit_.document()->firstBlock().blockFormat()) {
            return;  // Writing it again would be a step of its own to undo.
        }
        QTextCursor cursor(edit_.document());
        cursor.joinPreviousEditBlock();  // Undone with the change that asked for it.
        cursor.select(QTextCursor::Document);
        cursor.mergeBlockFormat(format);
        cursor.endEditBlock();
    }

    void presentAlert(const QString& message) override {
        QMessageBox::warning(&edit_, translated("Syntax Error"), message);
    }
    void beep() override { QApplication::beep(); }

private:
    bool insert(QTextCursor cursor, const QString& text) {
        if (edit_.isReadOnly()) {
            return false;
        }
        const QScopedValueRollback<bool> isOurs(edit_.isChanging_, true);
        cursor.insertText(text);
        edit_.setTextCursor(cursor);
        return true;
    }

    StructuredTextEdit& edit_;
    SyntaxColors colors_;
};

StructuredTextEdit::StructuredTextEdit(platform::UserDefaults& defaults,
                                       structured::DQJSONTextViewValidator* validator,
                                       QWidget* parent)
    : QTextEdit(parent), component_(std::make_unique<Component>(*this)) {
    setAcceptRichText(false);
    document()->setDocumentMargin(5);
    textView_ = std::make_unique<structured::DQJSONTextView>(*component_, defaults);
    textView_->setValidator(validator);
    connect(this, &QTextEdit::textChanged, this, &StructuredTextEdit::noticeChange);
}

StructuredTextEdit::~StructuredTextEdit() {
    // The colours are taken off the text on the way out, which counts as a change of it.
    disconnect(this, &QTextEdit::textChanged, this, &StructuredTextEdit::noticeChange);
}

/// Also comes when only colours or margins have changed.
void StructuredTextEdit::noticeChange() {
    const QString text = toPlainText();
    if (text == knownText_) {
        return;
    }
    knownText_ = text;
    if (!isChanging_) {
        textView_->didChangeText();
    }
    QMetaObject::invokeMethod(this, &StructuredTextEdit::parsed, Qt::QueuedConnection);
}

void StructuredTextEdit::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::ZoomIn)) {
        textView_->setFontSize(textView_->fontSize() + 1);
    } else if (event->matches(QKeySequence::ZoomOut)) {
        textView_->setFontSize(textView_->fontSize() - 1);
    } else if (event->key() == Qt::Key_Return && event->modifiers() == Qt::NoModifier &&
               !isReadOnly()) {
        breakLine();
    } else if (event->key() == Qt::Key_Backtab) {
        // An editor's own way would keep the focus.
        QWidget::focusNextPrevChild(false);  // NOLINT(bugprone-parent-virtual-call)
    } else if (event->key() == Qt::Key_Tab && event->modifiers() == Qt::ControlModifier) {
        QWidget::focusNextPrevChild(true);  // NOLINT(bugprone-parent-virtual-call)
    } else {
        QTextEdit::keyPressEvent(event);
    }
}

void StructuredTextEdit::breakLine() {
    QTextCursor cursor = textCursor();
    const QString before = toPlainText().left(cursor.selectionStart());
    cursor.insertText(u'\n' + structured::indentationOfLastLine(before));
    ensureCursorVisible();
}

void StructuredTextEdit::wheelEvent(QWheelEvent* event) {
    if (event->modifiers() != Qt::ControlModifier) {
        QTextEdit::wheelEvent(event);
    } else if (event->angleDelta().y() != 0) {
        textView_->setFontSize(textView_->fontSize() + (event->angleDelta().y() > 0 ? 1 : -1));
    }
}

void StructuredTextEdit::contextMenuEvent(QContextMenuEvent* event) {
    const std::unique_ptr<QMenu> menu(createStandardContextMenu(event->pos()));
    addFormats(*menu);
    menu->exec(event->globalPos());
}

void StructuredTextEdit::addFormats(QMenu& menu) {
    const std::vector<structured::FormatMenuItem> items = textView_->formatMenuItems();
    if (items.empty()) {
        return;
    }
    menu.addSeparator();
    QMenu& target = items.size() > 1 ? *menu.addMenu(translated("Format")) : menu;
    for (const structured::FormatMenuItem& item : items) {
        if (item.isSeparator) {
            target.addSeparator();
            continue;
        }
        using State = structured::FormatMenuItem::State;
        QAction* action = target.addAction(item.title);
        action->setCheckable(true);
        action->setChecked(item.state == State::On);
        QFont font = action->font();
        font.setBold(item.state == State::Mixed);
        action->setFont(font);
        connect(action, &QAction::triggered, this,
                [this, item] { textView_->changeTextViaMenuItem(item); });
    }
}

void StructuredTextEdit::changeEvent(QEvent* event) {
    QTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && textView_ && !isChanging_) {
        textView_->applySyntaxHighlighting();
    }
}

QMimeData* StructuredTextEdit::createMimeDataFromSelection() const {
    auto* copied = new QMimeData;
    copied->setText(component_->selectedText());
    const QByteArray propertyList = textView_->selectionAsPropertyList();
    if (!propertyList.isEmpty()) {
        copied->setData(structured::propertyListPasteboardType, propertyList);
    }
    return copied;
}

bool StructuredTextEdit::canInsertFromMimeData(const QMimeData* source) const {
    return source->hasText() || source->hasFormat(structured::propertyListPasteboardType);
}

void StructuredTextEdit::insertFromMimeData(const QMimeData* source) {
    const structured::PasteboardContents contents = contentsOf(*source);
    for (const QString& type : structured::readablePasteboardTypes(source->formats())) {
        if (source->hasFormat(type) && textView_->readSelectionFromPasteboard(contents, type)) {
            return;
        }
    }
    if (!contents.text.isEmpty()) {
        textCursor().insertText(contents.text);
        ensureCursorVisible();
    }
}

}  // namespace ui
