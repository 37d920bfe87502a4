#include "platform/session/gio.h"

#include <dlfcn.h>

#include <optional>

#include "platform/base/log.h"

namespace platform {

using namespace Qt::Literals::StringLiterals;

namespace {

/// The functions of a shared library, which stays until the process ends.
class Functions {
public:
    explicit Functions(const char* name) : library_(dlopen(name, RTLD_NOW | RTLD_LOCAL)) {
        areAllThere_ = library_ != nullptr;
    }

    template <typename Function>
    void find(const char* name, Function& function) {
        void* const symbol = library_ != nullptr ? dlsym(library_, name) : nullptr;
        function = reinterpret_cast<Function>(symbol);
        areAllThere_ = areAllThere_ && symbol != nullptr;
    }

    [[nodiscard]] bool areAllThere() const { return areAllThere_; }

private:
    void* library_;
    bool areAllThere_;
};

std::optional<Gio> loaded() {
    Functions functions("libgio-2.0.so.0");
    Gio gio{};
    functions.find("g_object_unref", gio.unref);
    functions.find("g_app_info_equal", gio.equal);
    functions.find("g_app_info_get_all_for_type", gio.allForType);
    functions.find("g_app_info_get_default_for_type", gio.defaultForType);
    functions.find("g_app_info_get_display_name", gio.displayName);
    functions.find("g_app_info_get_icon", gio.icon);
    functions.find("g_app_info_get_id", gio.identifier);
    functions.find("g_app_info_launch", gio.launch);
    functions.find("g_app_info_launch_default_for_uri", gio.launchDefaultForUri);
    functions.find("g_app_launch_context_new", gio.newLaunchContext);
    functions.find("g_app_launch_context_unsetenv", gio.unsetInLaunchContext);
    functions.find("g_desktop_app_info_new", gio.newDesktopAppInfo);
    functions.find("g_file_new_for_path", gio.newFileForPath);
    functions.find("g_icon_to_string", gio.iconText);
    functions.find("g_settings_get_boolean", gio.boolean);
    functions.find("g_settings_get_child", gio.child);
    functions.find("g_settings_get_int", gio.integer);
    functions.find("g_settings_get_string", gio.string);
    functions.find("g_settings_get_strv", gio.strings);
    functions.find("g_settings_new", gio.newSettings);
    functions.find("g_settings_schema_source_get_default", gio.schemaSource);
    functions.find("g_settings_schema_source_lookup", gio.lookUpSchema);
    functions.find("g_settings_schema_unref", gio.unrefSchema);
    if (functions.areAllThere())
        return gio;
    log(u"going on without GIO: %1"_s.arg(QString::fromLocal8Bit(dlerror())), LogLevel::Warning);
    return {};
}

}  // namespace

const Gio* Gio::library() {
    static const std::optional<Gio> gio = loaded();
    return gio ? &*gio : nullptr;
}

}  // namespace platform
