#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "links/pages/download_page_rule_highlighting.h"
#include "links/pages/download_page_rule_store.h"
#include "links/pages/download_page_rules.h"
#include "links/settings.h"
#include "links/text/localization.h"
#include "structured/text_view/json_text_view_validator.h"
#include "ui/settings/note.h"
#include "ui/settings/sections.h"
#include "ui/settings/settings_page.h"
#include "ui/structured/structured_text_edit.h"
#include "ui/text.h"

namespace ui {
namespace {

/// The rules by which the real links are found on download pages, as text.
class DownloadPagesEditor final : public QWidget, public structured::DQJSONTextViewValidator {
public:
    DownloadPagesEditor(SettingsBinder& binder, QWidget* parent)
        : QWidget(parent),
          defaults_(binder.defaults()),
          downloadPagesTextView(new StructuredTextEdit(defaults_, this, this)),
          verdict_(makeNote({}, this)),
          problem_(new QPushButton(translated("Show &Problem..."), this)) {
        downloadPagesTextView->setObjectName(links::settings::downloadPageRules.name());
        downloadPagesTextView->setAccessibleName(translated("Rules for download pages"));
        setFocusProxy(downloadPagesTextView);
        arrange();
        connect(downloadPagesTextView, &StructuredTextEdit::parsed, this, [this] { judge(); });
        connect(problem_, &QPushButton::clicked, this,
                [this] { downloadPagesTextView->textView().presentSyntaxError(); });
        binder.follow({links::settings::downloadPageRules.name()}, this, [this] { showStored(); });
        judge();
    }

    QVariant validateObjectValue(const QVariant& object, structured::DQJSONTextView*) override {
        return links::DownloadPageRules::fromObject(object) ? object : QVariant();
    }
    void didApplySyntaxHighlightingToTextStorage(const QString& text,
                                                 structured::SyntaxHighlighting& highlighting,
                                                 structured::DQJSONTextView&) override {
        links::markTitlePrefixes(text, highlighting);
    }
    void didChangeObjectValueForTextView(structured::DQJSONTextView& textView) override {
        const QString text = downloadPagesTextView->toPlainText();
        defaults_.setObject(links::settings::downloadPageRules.name(),
                            text.isEmpty() ? QVariant() : text);
        if (text.isEmpty()) {
            textView.setString(links::defaultDownloadPageRuleText());
        }
    }

private:
    void arrange() {
        auto* bottom = new QHBoxLayout;
        bottom->addWidget(verdict_, 1);
        bottom->addWidget(problem_);
        problem_->setAutoDefault(false);
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(downloadPagesTextView, 1);
        layout->addLayout(bottom);
        downloadPagesTextView->setMinimumHeight(fontMetrics().lineSpacing() * 16);
    }

    void showStored() {
        const QString stored = links::DownloadPageRuleStore(defaults_).ruleText();
        if (stored != downloadPagesTextView->toPlainText()) {
            downloadPagesTextView->textView().setString(stored);
        }
    }

    void judge() {
        structured::DQJSONTextView& textView = downloadPagesTextView->textView();
        const bool isReadable = textView.objectValue().isValid();
        problem_->setVisible(!isReadable);
        const auto rules = links::DownloadPageRules::fromObject(textView.validatedObjectValue());
        const QStringList leftOut = rules ? rules->sourcesLeftOut() : QStringList();
        if (!leftOut.isEmpty()) {
            verdict_->setText(links::filledFormat(
                translated("In force are all rules but that for %@: what its \"Use Source Name\" "
                           "says is no regular expression."),
                {leftOut.join(QStringLiteral(", "))}));
            return;
        }
        verdict_->setText(translated(
            !isReadable ? "This text cannot be read. Until it can, no rules are in force."
            : rules
                ? "These rules are in force. An empty text brings back those that came with Orlop."
                : "This text holds no complete rules. Until it does, none are in force."));
    }

    platform::UserDefaults& defaults_;
    StructuredTextEdit* downloadPagesTextView;
    QLabel* verdict_;
    QPushButton* problem_;
};

}  // namespace

SettingsPage* makeDownloadPagesSection(const SettingsContext& context, QWidget* parent) {
    auto* page = new SettingsPage(context, parent);
    page->addWide(makeNote(translated("Some addresses lead to a page that holds the real links. "
                                      "Each rule says which pages these are and how the links are "
                                      "found on them, with regular expressions."),
                           page));
    page->addWide(new DownloadPagesEditor(context.binder, page));
    return page;
}

}  // namespace ui
