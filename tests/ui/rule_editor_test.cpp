#include "ui/rules/rule_editor.h"

#include <QApplication>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QTreeWidget>

#include "app/core_fixture.h"
#include "app/rules/rule_book.h"
#include "app/settings.h"
#include "ui/rules/folder_selector.h"
#include "ui/rules/rule_list.h"
#include "ui/settings/settings_binder.h"

using namespace Qt::Literals::StringLiterals;

namespace {

class RuleEditorTest : public Core {
protected:
    template <typename Control>
    static Control* part(const QWidget& editor, const char16_t* name) {
        return editor.findChild<Control*>(QString::fromUtf16(name));
    }
    static void type(const QWidget& editor, const char16_t* field, const QString& text) {
        part<QPlainTextEdit>(editor, field)->setPlainText(text);
    }
    static bool canAccept(const QWidget& editor) {
        return editor.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->isEnabled();
    }
    /// Works on the editor that comes up next, which must close by that.
    static void inEditor(const std::function<void(ui::RuleEditor&)>& work) {
        QTimer::singleShot(0, qApp, [work] {
            auto* editor = qobject_cast<ui::RuleEditor*>(QApplication::activeModalWidget());
            ASSERT_NE(editor, nullptr);
            work(*editor);
            if (editor->isVisible()) {
                ADD_FAILURE() << "the editor stays";
                editor->reject();
            }
        });
    }
    QStringList titles() {
        QStringList titles;
        for (const QVariant& rule : controller->ruleBook().specialCases()) {
            titles.append(app::ruleFromDictionary(rule.toMap()).title());
        }
        return titles;
    }
};

TEST_F(RuleEditorTest, TakesARuleOnlyWithConditionAndConsequence) {
    ui::RuleEditor editor(ui::RuleEditor::Purpose::Define, {}, controller->ruleBook(), defaults,
                          nullptr);
    auto* selector = editor.findChild<ui::FolderSelector*>();
    auto* controls = editor.findChild<QStackedWidget*>();
    EXPECT_EQ(part<QPushButton>(editor, u"specialCaseRemoveButton"), nullptr);
    EXPECT_EQ(controls->currentIndex(), 0);
    EXPECT_FALSE(canAccept(editor));
    type(editor, u"specialCaseHostsField", u" example.org. \n\n.a.example"_s);
    EXPECT_EQ(controls->currentIndex(), 1);
    EXPECT_FALSE(canAccept(editor)) << "nothing would happen";
    selector->setFolder(folder.path());
    type(editor, u"specialCaseHostsField", u"example.org\na/b"_s);
    EXPECT_FALSE(canAccept(editor)) << "half of it would be lost";
    type(editor, u"specialCaseHostsField", u"https://example.org/\n*.a.example"_s);
    type(editor, u"specialCaseExtensionsField", u".zip"_s);
    EXPECT_TRUE(canAccept(editor));
    EXPECT_EQ(editor.rule(),
              (app::Rule{{u"example.org"_s, u"a.example"_s}, {u"zip"_s}, folder.path(), {}}));
    type(editor, u"specialCaseHostsField", {});
    type(editor, u"specialCaseExtensionsField", {});
    EXPECT_EQ(controls->currentIndex(), 0);
    EXPECT_FALSE(canAccept(editor));
}

TEST_F(RuleEditorTest, SaysWhatNoHostOrExtensionLooksLike) {
    ui::RuleEditor editor(ui::RuleEditor::Purpose::Define, {}, controller->ruleBook(), defaults,
                          nullptr);
    const auto complaint = [&] {
        const auto* problem = part<QLabel>(editor, u"problem");
        return problem->isHidden() ? QString() : problem->text();
    };
    const std::tuple<const char16_t*, QString, QString> inputs[] = {
        {u"specialCaseHostsField", u"example.org\n[::1]"_s, {}},
        {u"specialCaseHostsField", u"https://a.example/\n*.b.example\nc.example:80"_s, {}},
        {u"specialCaseHostsField", u"a.example\nhttp://b.example/x"_s, u"http://b.example/x"_s},
        {u"specialCaseExtensionsField", u"zip\ntar.gz"_s, {}},
        {u"specialCaseExtensionsField", u"zip, rar"_s, u"zip, rar"_s},
    };
    for (const auto& [field, text, culprit] : inputs) {
        type(editor, field, text);
        EXPECT_EQ(complaint().isEmpty(), culprit.isEmpty()) << text.toStdString();
        EXPECT_TRUE(complaint().contains(culprit)) << complaint().toStdString();
        type(editor, field, {});
    }
}

TEST_F(RuleEditorTest, ListShowsAndChangesTheBook) {
    ui::SettingsBinder binder(defaults);
    ui::RuleList list(controller->ruleBook(), binder, nullptr);
    auto* tree = list.findChild<QTreeWidget*>();
    const QList<QPushButton*> buttons = list.findChildren<QPushButton*>();
    ASSERT_EQ(buttons.size(), 4);
    EXPECT_FALSE(buttons[1]->isEnabled());

    inEditor([](ui::RuleEditor& editor) { editor.reject(); });
    buttons[0]->click();
    EXPECT_EQ(tree->topLevelItemCount(), 0);

    defaults.set(app::settings::rules,
                 QVariantList{QVariantMap{{u"Hosts"_s, QStringList{u"b.example"_s}},
                                          {u"Downloads Folder"_s, folder.path()}}});
    main.settle();
    ASSERT_EQ(tree->topLevelItemCount(), 1) << "made elsewhere";
    EXPECT_EQ(tree->topLevelItem(0)->text(0), u"b.example"_s);

    tree->topLevelItem(0)->setSelected(true);
    inEditor([](ui::RuleEditor& editor) {
        type(editor, u"specialCaseHostsField", u"a.example"_s);
        editor.accept();
    });
    buttons[2]->click();
    EXPECT_EQ(titles(), (QStringList{u"a.example"_s, u"b.example"_s})) << "a copy, in order";
    EXPECT_EQ(tree->topLevelItem(0)->text(0), u"a.example"_s);

    inEditor([](ui::RuleEditor& editor) {
        part<QPushButton>(editor, u"specialCaseRemoveButton")->click();
    });
    buttons[1]->click();
    EXPECT_EQ(titles(), QStringList{u"a.example"_s});
    tree->topLevelItem(0)->setSelected(true);
    buttons[3]->click();
    EXPECT_TRUE(titles().isEmpty());
}

}  // namespace
