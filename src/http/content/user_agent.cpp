#include "http/content/user_agent.h"

#include <QCoreApplication>

namespace http {

using namespace Qt::Literals::StringLiterals;

ProgramIdentity currentProgramIdentity() {
    const QString version = QCoreApplication::applicationVersion();
    return {QString(), QCoreApplication::applicationName(), version, version};
}

QString userAgentForProgram(const ProgramIdentity& program, const QString& localeIdentifier) {
    const QString name = program.displayName.isEmpty() ? program.name : program.displayName;
    if (name.isEmpty())
        return {};
    // Header fields are ISO Latin 1: the bytes of the UTF-8 form go out as they are.
    const QString wireName = QString::fromLatin1(name.toUtf8());

    QString version = program.shortVersion.isEmpty() ? program.version : program.shortVersion;
    if (!program.version.isEmpty() && version != program.version)
        version = u"%1 rv:%2"_s.arg(version, program.version);

    // A fixed system on purpose: servers that sniff for one get the same answer everywhere.
    return u"%1 %2 (%3; %4 %5; %6)"_s.arg(wireName, version, u"Macintosh"_s, u"Mac OS X"_s,
                                          u"10.8.0"_s, localeIdentifier);
}

}  // namespace http
