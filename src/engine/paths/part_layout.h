#pragma once

#include <QString>
#include <optional>

namespace engine {

/// Where the bytes of a split file's parts lie.
enum class PartLayout {
    /// Each part in its worker's own file, which are joined at the end.
    Apart,
    /// All at their places in the one partial file. Each worker's own file is a `PartJournal`; so
    /// that the first one has one too, it gets the number 0, by which this layout is known again.
    InPlace
};

/// By what lies there. A file that is not split has no layout, and is Apart.
[[nodiscard]] PartLayout layoutOfPartialData(const QString& primaryPath);

/// Whether the file system of a folder leaves what was never written without space. Tried once for
/// each file system while the program runs. Main thread.
[[nodiscard]] bool keepsHoles(const QString& folder);
/// The same by writing a small file with a hole. Nothing: it cannot be written.
[[nodiscard]] std::optional<bool> tryHole(const QString& folder);

/// Where one part lies.
struct PartPlace {
    QString file;       ///< Gets the bytes.
    qint64 start = 0;   ///< Of the part's first byte in it.
    QString journal{};  ///< Says how much has come. Empty: the file's length does.

    [[nodiscard]] bool isShared() const { return !journal.isEmpty(); }
};
/// `ownFile`: its worker's; the primary path for the first one. `start` in the whole file.
[[nodiscard]] PartPlace placeOfPart(PartLayout layout, const QString& primaryPath,
                                    const QString& ownFile, qint64 start);

}  // namespace engine
