#include "links/recognition/text_addresses.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <iostream>

#include "links/recognition/text_items.h"
#include "support/printers.h"

using namespace Qt::Literals::StringLiterals;

namespace {

struct Found {
    QStringList addresses;
    QStringList refused;
};

Found foundIn(const QStringList& texts, bool skipRedirectingServices = true) {
    Found found;
    links::TextAddresses addresses(texts, skipRedirectingServices);
    while (const auto finding = addresses.next()) {
        if (finding->address)
            found.addresses.append(finding->address->absoluteString());
        else
            found.refused.append(finding->refused);
    }
    return found;
}

/// One of the collection in tests/data/pastes.
struct Paste {
    QString place;
    QStringList lines;
    QStringList addresses;
    bool lacksScheme = false;
};

QString withoutEscapes(QString line) {
    line.replace(u"\\\\"_s, u"\x01"_s).replace(u"\\t"_s, u"\t"_s);
    for (qsizetype at = line.indexOf(u"\\u"_s); at >= 0; at = line.indexOf(u"\\u"_s, at + 1)) {
        const auto code = static_cast<char16_t>(line.mid(at + 2, 4).toUShort(nullptr, 16));
        line.replace(at, 6, QString(QChar(code)));
    }
    return line.replace(u'\x01', u'\\');
}

std::vector<Paste> collection() {
    std::vector<Paste> pastes;
    const QDir folder(QStringLiteral(ORLOP_TEST_DATA "/pastes"));
    for (const QFileInfo& info : folder.entryInfoList({u"*.txt"_s}, QDir::Files, QDir::Name)) {
        QFile file(info.filePath());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        bool isNew = true;
        int number = 0;
        for (const QString& line : QString::fromUtf8(file.readAll()).split(u'\n')) {
            ++number;
            if (line.isEmpty() || line.startsWith(u'#')) {
                isNew = true;
                continue;
            }
            if (std::exchange(isNew, false))
                pastes.push_back({u"%1:%2"_s.arg(info.fileName()).arg(number), {}, {}});
            if (line.startsWith(u'|'))
                pastes.back().lines.append(withoutEscapes(line.mid(2)));
            else if (line.startsWith(u'='))
                pastes.back().addresses.append(line.mid(2));
            else
                pastes.back().lacksScheme = true;
        }
    }
    return pastes;
}

/// What is in both, counting repeats.
qsizetype numberInBoth(const QStringList& a, QStringList b) {
    return std::count_if(a.begin(), a.end(),
                         [&](const QString& text) { return b.removeOne(text); });
}

TEST(TextAddresses, FindsWhatAPersonWouldClickInTheCollection) {
    qsizetype lines = 0, wanted = 0, found = 0, right = 0;
    for (const Paste& paste : collection()) {
        const QStringList addresses = foundIn({paste.lines.join(u'\n')}).addresses;
        lines += paste.lines.size();
        wanted += paste.addresses.size();
        found += addresses.size();
        right += numberInBoth(addresses, paste.addresses);
        if (addresses != paste.addresses) {
            std::cout << paste.place.toStdString() << "\n  wanted "
                      << paste.addresses.join(u' ').toStdString() << "\n  found  "
                      << addresses.join(u' ').toStdString() << "\n";
        }
    }
    const double recall = static_cast<double>(right) / static_cast<double>(wanted);
    std::cout << lines << " lines, " << wanted << " addresses, recall " << recall << ", precision "
              << static_cast<double>(right) / static_cast<double>(found) << "\n";
    EXPECT_GE(lines, 150);
    EXPECT_GE(recall, 0.95);
    EXPECT_EQ(found, right) << "nothing is found that is none";
}

}  // namespace
