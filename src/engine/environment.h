#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "links/pages/download_page_reader.h"
#include "platform/files/files.h"
#include "platform/net/url.h"

namespace http {
class HTTPRequest;
}

namespace engine {

/// What the rules about download pages say of an address, and the reading of such a page. Main
/// thread.
class PageReader {
public:
    virtual ~PageReader() = default;

    [[nodiscard]] virtual bool isDownloadPageURL(const platform::Url& url) const = 0;
    /// How the file is named after the page: empty for the page's whole name. Nothing: it is not.
    [[nodiscard]] virtual std::optional<QString> preservedNamePattern(
        const platform::Url& url) const = 0;
    /// Reads the page in the background and calls `completion` on the main loop.
    virtual void URLsFromDownloadPageWithTitle(
        const platform::Url& url, std::function<void(links::ExtractedLinks)> completion) const = 0;
};

/// Whether a folder may be written to, the key of the grant that was opened for it (empty: none was
/// needed), and where this process reaches it (empty: where everybody does).
struct WriteAccess {
    bool granted = true;
    QString bookmarkPath;
    QString reachedFolder;
};

/// What the engine needs of the desktop and of the user who sits there. Every call has a default
/// that does nothing or answers the plainest thing; main thread.
struct Environment {
    /// Asks the user if need be, with `explanation` as the reason; without one nobody is asked. The
    /// main loop may go on while it asks.
    std::function<WriteAccess(const QString& folder, const QString& explanation)>
        confirmWriteAccess = [](const QString&, const QString&) { return WriteAccess{}; };
    /// Where a file can be read that lies there for everybody else; may ask the user.
    std::function<QString(const QString& path)> readablePath = [](const QString& path) {
        return path;
    };
    std::function<void(const QString& bookmarkPath)> stopAccessingBookmark = [](const QString&) {};

    /// Hands a finished file to an application. False: it was found but could not open the file.
    std::function<bool(const QString& path, const QString& application)> openWithApplication =
        [](const QString&, const QString& application) { return application.isEmpty(); };

    /// Asks the user for the credentials that a request waits for, or makes it go on without.
    std::function<void(http::HTTPRequest&)> acquireAuthentication;
    /// The request does not wait for an answer any more, if it did.
    std::function<void(http::HTTPRequest&)> cancelAuthentication = [](http::HTTPRequest&) {};

    std::function<bool()> isModalWindowUp = [] { return false; };
    std::function<void()> beep = [] {};

    /// The folder of the program's own data; empty: there is none.
    std::function<QString()> applicationSupportPath = platform::userDataFolder;
    /// Absent: no address is a download page.
    std::shared_ptr<PageReader> pageReader;

    Environment();
};

}  // namespace engine
