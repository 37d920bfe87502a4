#pragma once

#include <QString>
#include <QStringList>

namespace app::terminal {

/// What the words of a command line stand for.
struct OpenedItems {
    /// Texts with addresses in them and files by their absolute paths, in order.
    QStringList items;
    /// Why a word is neither, a line each.
    QStringList refusals;
};

/// A word is a file that exists, else text with an address in it. "-" stands for `list`, in which
/// there need be none.
[[nodiscard]] OpenedItems openedItems(const QStringList& words, const QString& list,
                                      bool skipsRedirectingServices);

}  // namespace app::terminal
