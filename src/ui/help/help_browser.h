#pragma once

#include <QTextBrowser>
#include <functional>

#include "help/help_manager.h"

namespace ui {

/// Shows pages of the manual, and nothing else: what a page names lies in the book's folder or is
/// not loaded.
class HelpBrowser final : public QTextBrowser {
    Q_OBJECT

public:
    /// `keyTables` answers what stands where a page says `<!--com.tarnworks.help.keys-->`.
    HelpBrowser(help::DQHelpManager& manager, std::function<QString()> keyTables, QWidget* parent);

    /// Marks the words, and brings the first of them into view.
    void highlight(const QStringList& words);

    [[nodiscard]] QVariant loadResource(int type, const QUrl& name) override;

private:
    [[nodiscard]] bool isInBook(const QUrl& url) const;

    help::DQHelpManager& manager_;
    const std::function<QString()> keyTables_;
};

}  // namespace ui
