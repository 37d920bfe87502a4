#pragma once

#include <QString>
#include <QVariant>
#include <limits>
#include <type_traits>
#include <vector>

namespace platform {

class UserDefaults;

/// What values outside of a range count as. A value that cannot be ordered has no range.
template <typename Value>
struct Limits {
    [[nodiscard]] const Value& applied(const Value& value) const { return value; }
};

/// A bound that is left out does not bind.
template <typename Number>
requires std::is_arithmetic_v<Number>
struct Limits<Number> {
    Number lowest = std::numeric_limits<Number>::lowest();
    Number below = lowest;
    Number highest = std::numeric_limits<Number>::max();
    Number above = highest;

    [[nodiscard]] Number applied(Number value) const {
        // What is no number at all is below everything.
        return !(value >= lowest) ? below : value > highest ? above : value;
    }
};

/// A line of the table of settings, in which every `Setting` puts itself.
class SettingEntry {
public:
    SettingEntry(const SettingEntry&) = delete;
    SettingEntry& operator=(const SettingEntry&) = delete;

    /// The key. Refers to the constant, without a copy.
    [[nodiscard]] QString name() const;
    /// What holds as long as nobody has set anything.
    [[nodiscard]] virtual QVariant fallbackValue() const = 0;
    /// Whether that is registered at launch rather than supplied by the reader.
    [[nodiscard]] bool isRegistered() const { return isRegistered_; }
    [[nodiscard]] const char* meaning() const { return meaning_; }

protected:
    SettingEntry(const char16_t* key, bool isRegistered, const char* meaning);
    ~SettingEntry() = default;

private:
    friend std::vector<const SettingEntry*> settingsTable();

    const char16_t* const key_;
    const bool isRegistered_;
    const char* const meaning_;
    const SettingEntry* const next_;
};

/// A setting: its key, what a reader takes when the defaults have no value, and what values out of
/// range count as. Only with static storage: the table never forgets.
template <typename Value>
class Setting final : public SettingEntry {
public:
    Setting(const char16_t* key, Value fallback, bool isRegistered, const char* meaning,
            Limits<Value> limits = {})
        : SettingEntry(key, isRegistered, meaning),
          fallback_(std::move(fallback)),
          limits_(limits) {}

    [[nodiscard]] QVariant fallbackValue() const override { return QVariant::fromValue(fallback_); }
    [[nodiscard]] const Value& fallback() const { return fallback_; }
    [[nodiscard]] const Limits<Value>& limits() const { return limits_; }

private:
    const Value fallback_;
    const Limits<Value> limits_;
};

/// The settings whose headers this program includes, in no order. After static initialisation.
[[nodiscard]] std::vector<const SettingEntry*> settingsTable();

/// The one of these settings whose key is written most like `key`, but for case: how many letters
/// differ decides. Null: there are no settings.
[[nodiscard]] const SettingEntry* nearestSetting(const QString& key);

/// Registers the fallbacks of all settings that are to be registered. Before anything is read.
void registerSettings(UserDefaults& defaults);

}  // namespace platform
