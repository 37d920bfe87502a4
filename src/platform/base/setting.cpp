#include "platform/base/setting.h"

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

void registerSettings(UserDefaults& defaults) {
    QVariantMap values;
    for (const SettingEntry* entry : settingsTable()) {
        if (entry->isRegistered())
            values.insert(entry->name(), entry->fallbackValue());
    }
    defaults.registerDefaults(values);
}

}  // namespace platform
