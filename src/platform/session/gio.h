#pragma once

#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

#include <QByteArray>

namespace platform {

/// What is used of GIO. Most runs need none of it, and it brings libraries along that take longer
/// to load than such a run has left to do; so it is loaded when it is first asked for. Any thread.
struct Gio {
    /// Null, which is logged once: it is not installed.
    [[nodiscard]] static const Gio* library();

    decltype(&::g_object_unref) unref;

    decltype(&::g_app_info_equal) equal;
    decltype(&::g_app_info_get_all_for_type) allForType;
    decltype(&::g_app_info_get_default_for_type) defaultForType;
    decltype(&::g_app_info_get_display_name) displayName;
    decltype(&::g_app_info_get_icon) icon;
    decltype(&::g_app_info_get_id) identifier;
    decltype(&::g_app_info_launch) launch;
    decltype(&::g_app_info_launch_default_for_uri) launchDefaultForUri;
    decltype(&::g_app_launch_context_new) newLaunchContext;
    decltype(&::g_app_launch_context_unsetenv) unsetInLaunchContext;
    decltype(&::g_desktop_app_info_new) newDesktopAppInfo;
    decltype(&::g_file_new_for_path) newFileForPath;
    decltype(&::g_icon_to_string) iconText;

    decltype(&::g_settings_get_boolean) boolean;
    decltype(&::g_settings_get_child) child;
    decltype(&::g_settings_get_int) integer;
    decltype(&::g_settings_get_string) string;
    decltype(&::g_settings_get_strv) strings;
    decltype(&::g_settings_new) newSettings;
    decltype(&::g_settings_schema_source_get_default) schemaSource;
    decltype(&::g_settings_schema_source_lookup) lookUpSchema;
    decltype(&::g_settings_schema_unref) unrefSchema;
};

}  // namespace platform
