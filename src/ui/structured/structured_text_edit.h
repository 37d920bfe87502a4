#pragma once

#include <QTextEdit>
#include <memory>

#include "structured/text_view/json_text_view.h"

namespace ui {

class SyntaxColors;

/// The structured text editor: colours text in any spelling of structured data as it is typed, and
/// converts it from one to another in its context menu.
class StructuredTextEdit final : public QTextEdit {
    Q_OBJECT

public:
    /// Both outlive the editor. `validator` may be null.
    StructuredTextEdit(platform::UserDefaults& defaults,
                       structured::DQJSONTextViewValidator* validator, QWidget* parent);
    ~StructuredTextEdit() override;

    [[nodiscard]] structured::DQJSONTextView& textView() { return *textView_; }

Q_SIGNALS:
    /// The text is another one, whoever changed it, and has been read.
    void parsed();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void changeEvent(QEvent* event) override;
    [[nodiscard]] QMimeData* createMimeDataFromSelection() const override;
    [[nodiscard]] bool canInsertFromMimeData(const QMimeData* source) const override;
    void insertFromMimeData(const QMimeData* source) override;

private:
    class Component;

    void noticeChange();
    void breakLine();
    void addFormats(QMenu& menu);

    std::unique_ptr<Component> component_;
    std::unique_ptr<structured::DQJSONTextView> textView_;
    QString knownText_;
    bool isChanging_ = false;
};

}  // namespace ui
