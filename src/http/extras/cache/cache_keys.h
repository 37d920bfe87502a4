#pragma once

#include <QString>
#include <QStringList>

#include "platform/net/url.h"

namespace http {

/// The name under which a URL's response is stored: the MD5 of its text, in upper-case hexadecimal
/// digits. A slash at the end makes no difference. Empty: an empty URL.
[[nodiscard]] QString cacheKeyForURL(const platform::Url& url);

/// Extensions of programs, whose output is a page.
[[nodiscard]] QStringList fileExtensionsToHandleAsHTML();
/// The extension of a stored body, so that a viewer of files knows what it is.
[[nodiscard]] QString cacheExtensionForURL(const platform::Url& url);

}  // namespace http
