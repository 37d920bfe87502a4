#include "ui/addresses/address_panel.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/addresses/address_change.h"
#include "app/main_controller.h"
#include "app/rows/running_figures.h"
#include "links/format/byte_counts.h"
#include "ui/text.h"

using namespace Qt::Literals::StringLiterals;

namespace ui {

using Verdict = engine::AddressAnswer::Verdict;

namespace {

constexpr int usualWidth = 560;

QString anewTitle() {
    return translated("Begin Anew");
}

}  // namespace

AddressPanel::AddressPanel(app::DQMainController& controller, const engine::DownloadPtr& download,
                           QWidget& window)
    : QDialog(&window),
      controller_(controller),
      download_(download),
      field_(new QLineEdit(this)),
      note_(new QLabel(this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName(u"addressPanel"_s);
    setWindowTitle(translated("Change Address"));
    resize(usualWidth, 0);
    makeContents();
    connect(field_, &QLineEdit::textChanged, this, &AddressPanel::addressDidChange);
    field_->setText(proposal());
    field_->selectAll();
    addressDidChange();
}

AddressPanel::~AddressPanel() = default;

void AddressPanel::makeContents() {
    // The label of a field takes single ones for the mark of a key.
    const QString name = download_->displayName().replace(u'&', u"&&"_s);
    auto* label = new QLabel(translated("New address of “%@”:").replace(u"%@"_s, name), this);
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    label->setBuddy(field_);
    field_->setObjectName(u"newAddressField"_s);
    field_->setAccessibleName(translated("New address"));
    note_->setObjectName(u"newAddressNote"_s);
    note_->setTextFormat(Qt::PlainText);
    note_->setWordWrap(true);
    // Room for the longest answer, so that the panel does not jump.
    note_->setMinimumHeight(3 * fontMetrics().lineSpacing());
    note_->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    accept_ = buttons->button(QDialogButtonBox::Ok);
    connect(accept_, &QPushButton::clicked, this, &AddressPanel::press);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    for (QWidget* widget : {static_cast<QWidget*>(label), static_cast<QWidget*>(field_),
                            static_cast<QWidget*>(note_), static_cast<QWidget*>(buttons)})
        layout->addWidget(widget);
}

/// What the user has just copied is what he came with.
QString AddressPanel::proposal() const {
    constexpr qsizetype longest = 10'000;
    const QString copied = QGuiApplication::clipboard()->text();
    const auto url = copied.size() > longest ? std::nullopt : app::webAddressInText(copied);
    return url ? url->absoluteString() : download_->originalURLString();
}

void AddressPanel::addressDidChange() {
    check_.reset();
    answer_.reset();
    url_ = app::webAddressInText(field_->text());
    const qint64 kept = app::heldBytes(*download_);
    accept_->setText(translated("Go On"));
    accept_->setEnabled(url_.has_value());
    if (!url_) {
        note_->setText(translated("This is no address of the web."));
    } else if (kept > 0) {
        const QString size = links::fileSizeText(kept);
        note_->setText(translated("%@ have come already. The address is asked first whether it "
                                  "has the same file.")
                           .replace(u"%@"_s, size));
    } else {
        note_->clear();
    }
}

void AddressPanel::press() {
    if (!url_)
        return;
    if (answer_)
        goOn(*answer_);
    else if (download_->holdsPartialData())
        ask(*url_);
    else
        goOn({});
}

void AddressPanel::ask(const platform::Url& url) {
    accept_->setEnabled(false);
    note_->setText(translated("Asking %1...").arg(url.host()));
    check_ = std::make_unique<engine::AddressCheck>(
        *download_, url, [this](const engine::AddressAnswer& answer) { judge(answer); });
}

void AddressPanel::judge(const engine::AddressAnswer& answer) {
    if (answer.verdict == Verdict::SameFile)
        return goOn(answer);
    answer_ = answer;
    note_->setText(app::answerSentence(*download_, answer));
    accept_->setText(answer.verdict == Verdict::OtherFile ? anewTitle()
                                                          : translated("Use It Anyway"));
    accept_->setEnabled(true);
    // A hasty Return must not be an answer to what it has not read.
    accept_->setAutoDefault(false);
    accept_->setDefault(false);
    field_->setFocus();
}

void AddressPanel::goOn(const engine::AddressAnswer& answer) {
    if (!controller_.queue().contains(*download_)) {
        note_->setText(translated("The download is not in the list any more."));
        return;
    }
    if (!app::canChangeAddress(*download_)) {
        note_->setText(translated("The download has gone on by itself meanwhile. Pause it first."));
        return;
    }
    app::changeAddress(controller_, download_, *url_, answer);
    close();
}

}  // namespace ui
