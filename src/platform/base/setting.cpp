#include "platform/base/setting.h"

#include <algorithm>
#include <numeric>
#include <string>

#include "platform/base/user_defaults.h"

namespace platform {
namespace {

/// Constant before any setting puts itself in front.
constinit const SettingEntry* firstEntry = nullptr;

}  // namespace

SettingEntry::SettingEntry(const char16_t* key, bool isRegistered, const char* meaning)
    : key_(key), isRegistered_(isRegistered), meaning_(meaning), next_(firstEntry) {
    firstEntry = this;
}

QString SettingEntry::name() const {
    return QString::fromRawData(reinterpret_cast<const QChar*>(key_),
                                static_cast<qsizetype>(std::char_traits<char16_t>::length(key_)));
}

std::vector<const SettingEntry*> settingsTable() {
    std::vector<const SettingEntry*> table;
    for (const SettingEntry* entry = firstEntry; entry != nullptr; entry = entry->next_)
        table.push_back(entry);
    return table;
}

namespace {

/// How many letters have to be put in, taken out or replaced to make one text of the other.
int distance(const QString& a, const QString& b) {
    std::vector<int> row(static_cast<std::size_t>(b.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const QChar letter : a) {
        int diagonal = row.front()++;
        for (std::size_t column = 1; column < row.size(); ++column) {
            const bool isSame = letter == b[static_cast<qsizetype>(column) - 1];
            const int replaced = diagonal + (isSame ? 0 : 1);
            diagonal = row[column];
            row[column] = std::min({replaced, row[column] + 1, row[column - 1] + 1});
        }
    }
    return row.back();
}

}  // namespace

const SettingEntry* nearestSetting(const QString& key) {
    const QString wanted = key.toLower();
    const SettingEntry* nearest = nullptr;
    int least = 0;
    const std::vector<const SettingEntry*> table = settingsTable();
    for (const SettingEntry* entry : table) {
        if (entry->name() == key)
            return entry;
    }
    for (const SettingEntry* entry : table) {
        const int letters = distance(wanted, entry->name().toLower());
        // Of equals the first by name, so that the answer is always the same.
        if (!nearest || letters < least || (letters == least && entry->name() < nearest->name())) {
            least = letters;
            nearest = entry;
        }
    }
    return nearest;
}

void registerSettings(UserDefaults& defaults) {
    QVariantMap values;
    for (const SettingEntry* entry : settingsTable()) {
        if (entry->isRegistered())
            values.insert(entry->name(), entry->fallbackValue());
    }
    defaults.registerDefaults(values);
}

}  // namespace platform
