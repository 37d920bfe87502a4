#pragma once

class QWidget;

namespace ui {

class SettingsPage;
struct SettingsContext;

/// The sections of the settings window.
[[nodiscard]] SettingsPage* makeGeneralSection(const SettingsContext& context, QWidget* parent);
[[nodiscard]] SettingsPage* makeSpeedSection(const SettingsContext& context, QWidget* parent);
[[nodiscard]] SettingsPage* makeScheduleSection(const SettingsContext& context, QWidget* parent);
[[nodiscard]] SettingsPage* makeBehaviorsSection(const SettingsContext& context, QWidget* parent);
[[nodiscard]] SettingsPage* makeHistorySection(const SettingsContext& context, QWidget* parent);
[[nodiscard]] SettingsPage* makeAdvancedSection(const SettingsContext& context, QWidget* parent);
[[nodiscard]] SettingsPage* makeUpdatesSection(const SettingsContext& context, QWidget* parent);
[[nodiscard]] SettingsPage* makeDownloadPagesSection(const SettingsContext& context,
                                                     QWidget* parent);

}  // namespace ui
