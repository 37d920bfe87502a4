#pragma once

#include <QString>
#include <QStringList>

namespace app::terminal {

/// What the words of a command line stand for.
struct OpenedItems {
    /// Addresses as given and files by their absolute paths, in order.
    QStringList items;
    /// The addresses among them and in lists among them as the queue knows them, repaired and
    /// expanded; of a word that stands for very many, the first ones.
    QStringList addresses;
    /// Words that are neither an address nor a file.
    QStringList refused;
    /// Lines of the list that are no address.
    QStringList refusedLines;
};

/// A word is a file that exists, else an address. "-" stands for `list`: addresses, one a line;
/// blank lines and those that begin with "#" say nothing.
[[nodiscard]] OpenedItems openedItems(const QStringList& words, const QString& list,
                                      bool skipsRedirectingServices);

}  // namespace app::terminal
