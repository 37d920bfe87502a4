#include <gmock/gmock.h>

#include <QDir>
#include <QTemporaryDir>
#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Gives the tests a home of their own, so that nothing reads or writes the developer's.
bool moveIntoEmptyHome(const QTemporaryDir& home) {
    const auto use = [&home](const char* variable, const QString& name) {
        const QString path = home.filePath(name);
        return QDir().mkpath(path) &&
               QFile::setPermissions(path,
                                     QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner) &&
               qputenv(variable, QFile::encodeName(path));
    };
    for (const char* variable : {"http_proxy", "https_proxy", "all_proxy", "no_proxy", "HTTP_PROXY",
                                 "HTTPS_PROXY", "ALL_PROXY", "NO_PROXY"})
        qunsetenv(variable);
    return home.isValid() && use("HOME", u"."_s) && use("XDG_DATA_HOME", u"data"_s) &&
           use("XDG_CONFIG_HOME", u"config"_s) && use("XDG_STATE_HOME", u"state"_s) &&
           use("XDG_CACHE_HOME", u"cache"_s) && use("XDG_RUNTIME_DIR", u"runtime"_s) &&
           qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    const QTemporaryDir home;
    if (!moveIntoEmptyHome(home)) {
        std::fprintf(stderr, "no temporary home for the tests\n");
        return 1;
    }
    return RUN_ALL_TESTS();
}
