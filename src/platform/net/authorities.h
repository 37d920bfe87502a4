#pragma once

#include <QString>
#include <QStringList>

namespace platform {

/// Where a library looks for the certificates that it trusts: a file of them, a folder. Either may
/// be empty.
struct BuiltInAuthorities {
    QString file;
    QString folder;
};

/// The first bundle of these that can be read, if what was built in is not there. Empty: it is, or
/// nothing could stand in.
[[nodiscard]] QString standInAuthorities(const BuiltInAuthorities& builtIn,
                                         const QStringList& bundles);

/// The bundle to name to libcurl where nobody names another, since one that comes from another
/// distribution looks where that one keeps it. Empty: it finds its own. Looked up once; any thread.
[[nodiscard]] QString systemAuthorities();

}  // namespace platform
