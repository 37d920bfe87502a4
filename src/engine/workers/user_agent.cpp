#include "engine/workers/user_agent.h"

#include <QCoreApplication>

#include "engine/settings.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

/// A site that hands its films only to players that it knows by name.
constexpr QStringView trailerSite = u"://trailers.apple.com/";

}  // namespace

const QString& defaultUserAgent() {
    static const QString agent = [] {
        const QString version = QCoreApplication::applicationVersion();
        const QString shownVersion = version.isEmpty() ? u"0"_s : version;
        return u"Mozilla/5.0 (X11; Linux) Version/%1 Orlop/%1"_s.arg(shownVersion);
    }();
    return agent;
}

std::optional<QString> userAgentForURL(const platform::Url& url,
                                       const platform::UserDefaults& defaults) {
    const QString custom = defaults.get(settings::customUserAgent);
    if (custom == u"-")
        return std::nullopt;
    if (!custom.isEmpty())
        return custom;
    return url.absoluteString().contains(trailerSite, Qt::CaseInsensitive)
               ? u"QuickTime/7.6.6 "_s + defaultUserAgent()
               : defaultUserAgent();
}

}  // namespace engine
