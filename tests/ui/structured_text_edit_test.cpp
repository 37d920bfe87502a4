#include "ui/structured/structured_text_edit.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMimeData>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <QTimer>

#include "platform/base/user_defaults.h"
#include "structured/text_view/pasteboard.h"
#include "ui/structured/syntax_colors.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto propertyList =
    R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict><key>size</key><integer>18446744073709551615</integer></dict></plist>)";

class StructuredTextEditTest : public testing::Test {
protected:
    StructuredTextEditTest() { edit.show(); }

    void setText(const QString& text) { edit.setPlainText(text); }
    void pasteWithPropertyList(const QString& text) {
        auto* data = new QMimeData;
        data->setText(text);
        data->setData(structured::propertyListPasteboardType, propertyList);
        QGuiApplication::clipboard()->setMimeData(data);
        edit.paste();
    }
    /// Chooses a format in the context menu, whose items it answers.
    QStringList chooseFormat(const QString& title) {
        QStringList titles;
        QTimer::singleShot(0, &edit, [&] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            ASSERT_NE(menu, nullptr);
            for (const QAction* action : menu->findChildren<QAction*>()) {
                titles.append(action->text());
            }
            for (QAction* action : menu->findChildren<QAction*>()) {
                if (action->text() == title) {
                    action->trigger();
                    break;
                }
            }
            menu->close();
        });
        QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5}, edit.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(edit.viewport(), &event);
        return titles;
    }
    QColor colorOf(QStringView part) {
        const int at = static_cast<int>(edit.toPlainText().indexOf(part));
        const QTextBlock block = edit.document()->findBlock(at);
        QColor color;
        for (const QTextLayout::FormatRange& range : block.layout()->formats()) {
            if (range.start <= at - block.position() &&
                at - block.position() < range.start + range.length) {
                color = range.format.foreground().color();
            }
        }
        return color;
    }

    const QTemporaryDir folder;
    platform::UserDefaults defaults{folder.path(), u"test"_s};
    ui::StructuredTextEdit edit{defaults, nullptr, nullptr};
};

TEST_F(StructuredTextEditTest, PastesPropertyListsInTheFormatOfItsText) {
    pasteWithPropertyList(u"as it stands"_s);
    EXPECT_EQ(edit.toPlainText(), u"as it stands"_s) << "there is no format yet";
    const QString json = u"{ \"size\" : 1 }"_s;
    setText(u"[]"_s);
    edit.selectAll();
    pasteWithPropertyList(json);
    EXPECT_EQ(edit.toPlainText(), json) << "of the same family";
    setText(u"<plist version=\"1.0\"><array/></plist>"_s);
    edit.selectAll();
    pasteWithPropertyList(json);
    EXPECT_TRUE(edit.toPlainText().contains(u"<integer>18446744073709551615</integer>"_s));
    edit.undo();
    EXPECT_EQ(edit.toPlainText(), u"<plist version=\"1.0\"><array/></plist>"_s);
}

TEST_F(StructuredTextEditTest, TakesAKeyThatIsDraggedInAsAMember) {
    setText(u"{\"a\": 1}"_s);
    edit.selectAll();
    QMimeData data;
    data.setText(QString::fromUtf8(propertyList));
    data.setData(structured::keyPasteboardType, "limits");
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(edit.viewport(), &enter);
    QApplication::sendEvent(edit.viewport(), &drop);
    EXPECT_TRUE(edit.toPlainText().contains(u"\"limits\""_s)) << edit.toPlainText().toStdString();
    EXPECT_TRUE(edit.toPlainText().contains(u"18446744073709551615"_s));
    EXPECT_FALSE(edit.toPlainText().contains(u"<plist"_s));
}

TEST_F(StructuredTextEditTest, ChangesTheSpellingByItsMenuInOneStep) {
    const QString text = u"{\"b\":[1,true,\"<x>\"]}"_s;
    setText(text);
    const QStringList items = chooseFormat(u"XML"_s);
    for (const QString& title : {u"XML"_s, u"XML Shorthand"_s, u"JSON"_s}) {
        EXPECT_TRUE(items.contains(title)) << title.toStdString();
    }
    EXPECT_TRUE(edit.toPlainText().startsWith(u"<?xml"_s));
    EXPECT_TRUE(edit.toPlainText().contains(u"&lt;x&gt;"_s));
    edit.undo();
    EXPECT_EQ(edit.toPlainText(), text);
    edit.redo();
    EXPECT_TRUE(edit.toPlainText().startsWith(u"<?xml"_s));
    setText(u"<key>d</key><date>2020-01-01T00:00:00Z</date>"_s);
    const QStringList ofDate = chooseFormat({});
    EXPECT_FALSE(ofDate.contains(u"JSON"_s)) << "it has no dates";
    EXPECT_TRUE(ofDate.contains(u"XML"_s)) << ofDate.join(u'|').toStdString();
}

TEST_F(StructuredTextEditTest, ColoursWordsOutsideOfStringsOnly) {
    setText(u"{\"true1\": \"a\\\"true\", \"k\": [true, false, 25, \"end\\\\\", 7]}"_s);
    const QColor yes = colorOf(u"true, f"), no = colorOf(u"false"), number = colorOf(u"25");
    const QColor value = colorOf(u"\"a"), key = colorOf(u"\"k\"");
    EXPECT_TRUE(yes.isValid());
    for (const QColor& other : {no, number, value, key}) {
        EXPECT_NE(yes, other);
    }
    EXPECT_EQ(colorOf(u"true\", \"k"), value);
    EXPECT_EQ(colorOf(u"1\":"), key);
    EXPECT_EQ(colorOf(u"7]"), number) << "behind a string that ends with a backslash";
    setText(u"{\"k\": [true"_s);
    EXPECT_EQ(colorOf(u"true"), colorOf(u"{")) << "not to be read";
    defaults.setObject(u"DQJSONTextViewAppliesSyntaxHighlightingDespiteError"_s, true);
    setText(u"{\"k\": [true "_s);
    EXPECT_EQ(colorOf(u"true"), yes);
}

TEST_F(StructuredTextEditTest, IndentsAndChangesItsSizeByKeys) {
    setText(u"{\n    \"a\": 1"_s);
    edit.moveCursor(QTextCursor::End);
    QTest::keyClick(&edit, Qt::Key_Return);
    QTest::keyClicks(&edit, u"x"_s);
    EXPECT_EQ(edit.toPlainText(), u"{\n    \"a\": 1\n    x"_s);
    EXPECT_EQ(edit.font().pointSizeF(), 12);
    for (int i = 0; i < 60; ++i) {
        QTest::keyClick(&edit, Qt::Key_Plus, Qt::ControlModifier);
    }
    EXPECT_EQ(edit.font().pointSizeF(), 50);
    for (int i = 0; i < 60; ++i) {
        QTest::keyClick(&edit, Qt::Key_Minus, Qt::ControlModifier);
    }
    EXPECT_EQ(edit.font().pointSizeF(), 8);
    setText(u"[1, {\"a\": \"b\"}, 2]"_s);
    QTextCursor cursor = edit.textCursor();
    cursor.setPosition(4);
    cursor.setPosition(14, QTextCursor::KeepAnchor);
    edit.setTextCursor(cursor);
    edit.copy();
    const QMimeData* copied = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(copied->text(), u"{\"a\": \"b\"}"_s);
    EXPECT_TRUE(copied->data(structured::propertyListPasteboardType).contains("<key>a</key>"));
}

}  // namespace
