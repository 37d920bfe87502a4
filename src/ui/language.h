#pragma once

#include <QLocale>
#include <QTranslator>
#include <memory>
#include <vector>

class QCoreApplication;

namespace ui {

/// The texts of the program and of Qt in the user's language, and the direction in which it is
/// read, for as long as this lives.
class Language {
public:
    /// For testing: every text in letters that are no English, and longer than it is.
    enum class Pseudo { None, Accented, RightToLeft };

    explicit Language(QCoreApplication& application, const QLocale& locale = QLocale(),
                      Pseudo pseudo = Pseudo::None);
    ~Language();
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;

private:
    void install(std::unique_ptr<QTranslator> translator);

    QCoreApplication& application_;
    std::vector<std::unique_ptr<QTranslator>> translators_;
};

}  // namespace ui
