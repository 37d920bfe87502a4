#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

#include "app/front_end.h"
#include "app/intake/address_source.h"

namespace app {

/// Addresses in text documents that are no lists of them: nobody said that they were wanted, so
/// they are offered once all else is taken in.
class OfferedDocuments {
public:
    /// The addresses are taken from `addresses`, as many as a person may want to be asked about.
    void add(const QString& path, AddressSource& addresses);
    [[nodiscard]] bool isEmpty() const { return urls_.empty(); }

    /// Asks whether to download them, and has none any more. Null: they are not wanted.
    [[nodiscard]] std::unique_ptr<AddressSource> ask(Questions& questions);
    /// Where nobody can be asked: what was not taken, a sentence each; and has none any more.
    [[nodiscard]] QStringList notTaken();

private:
    struct Document {
        QString path;
        std::size_t count;
    };

    std::vector<platform::Url> urls_;
    std::vector<Document> documents_;
};

}  // namespace app
