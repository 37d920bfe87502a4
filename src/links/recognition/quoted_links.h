#pragma once

#include <QString>
#include <QStringList>

namespace links {

/// The addresses of http and https in quotes within markup, in order; `text` itself if there are
/// none, so never empty. Any thread.
[[nodiscard]] QStringList unearthedURLStrings(const QString& text);

}  // namespace links
