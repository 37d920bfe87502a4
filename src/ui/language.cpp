#include "ui/language.h"

#include <QGuiApplication>
#include <QLibraryInfo>

using namespace Qt::Literals::StringLiterals;

// The translations lie in a static library, whose resources nobody else would pull in. The macro
// works only outside any namespace.
static void initializeTranslations() {
    Q_INIT_RESOURCE(translations);
}

namespace ui {
namespace {

/// Whether the letter belongs to a placeholder such as %d or %lu.
bool isSyntax(const QString& text, qsizetype index) {
    const auto isPercent = [&](qsizetype at) { return at >= 0 && text[at] == u'%'; };
    const bool isLong = index > 0 && (text[index - 1] == u'l' || text[index - 1] == u'q');
    return isPercent(index - 1) || (isLong && isPercent(index - 2));
}

class PseudoTranslator final : public QTranslator {
public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char*, const char* source, const char*,
                                    int) const override {
        static const QString letters = u"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"_s;
        static const QString accented = u"åƀçđéƒğĥíĵķĺɱñöþɋŕšţûṽŵẋýžÅƁÇĐÉƑĞĤÍĴĶĹṀÑÖÞɊŔŠŢÛṼŴẊÝŽ"_s;
        const QString english = QString::fromUtf8(source);
        QString text;
        for (qsizetype index = 0; index < english.size(); ++index) {
            const qsizetype letter = letters.indexOf(english[index]);
            text += letter < 0 || isSyntax(english, index) ? english[index] : accented[letter];
        }
        // Other languages need more room.
        return text + QString(english.size() / 4 + 1, u'·');
    }
};

}  // namespace

Language::Language(QCoreApplication& application, const QLocale& locale, Pseudo pseudo)
    : application_(application) {
    initializeTranslations();
    if (pseudo != Pseudo::None) {
        install(std::make_unique<PseudoTranslator>());
        QGuiApplication::setLayoutDirection(pseudo == Pseudo::RightToLeft ? Qt::RightToLeft
                                                                          : Qt::LeftToRight);
        return;
    }
    auto own = std::make_unique<QTranslator>();
    if (!own->load(locale, u"orlop"_s, u"_"_s, u":/translations"_s)) {
        return;
    }
    auto ofQt = std::make_unique<QTranslator>();
    if (ofQt->load(locale, u"qtbase"_s, u"_"_s,
                   QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        install(std::move(ofQt));
    }
    install(std::move(own));
    QGuiApplication::setLayoutDirection(locale.textDirection());
}

Language::~Language() {
    for (const auto& translator : translators_) {
        application_.removeTranslator(translator.get());
    }
}

void Language::install(std::unique_ptr<QTranslator> translator) {
    application_.installTranslator(translator.get());
    translators_.push_back(std::move(translator));
}

}  // namespace ui
