#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <vector>

#include "platform/net/url.h"

namespace engine {

class DQDownload;

/// What the rules about download pages say of an address, and the reading of such a page.
class PageReader {
public:
    /// Addresses found on a page, and its title; both may be empty.
    struct Page {
        std::vector<platform::Url> urls;
        QString title;
    };

    virtual ~PageReader() = default;

    /// Main thread.
    [[nodiscard]] virtual bool isDownloadPageURL(const platform::Url& url) const = 0;
    /// How names are drawn from the page's address or title: null if the rule has no say, empty to
    /// take the name of the address. Main thread.
    [[nodiscard]] virtual QString preservedNamePattern(const platform::Url& url) const = 0;

    /// Answers a call that reads the page and blocks until it is read. Asked for on the main
    /// thread, run on another.
    [[nodiscard]] virtual std::function<Page()> readerForPage(const platform::Url& url) const = 0;
};

/// Whether a folder may be written to, and the key of the grant that was opened for it (empty:
/// none was needed).
struct WriteAccess {
    bool granted = true;
    QString bookmarkPath;
};

/// What the engine needs of the layers above it and of the desktop. Every call has a default that
/// does nothing or answers the plainest thing; main thread.
struct Environment {
    /// A download was finished or aborted.
    std::function<void(DQDownload&)> addToHistory = [](DQDownload&) {};
    /// The partial file of this download lies on a volume that is away.
    std::function<void(DQDownload&)> prepareMissingVolumeAlert = [](DQDownload&) {};
    /// May ask the user, with `explanation` as the reason.
    std::function<WriteAccess(const QString& folder, const QString& explanation)>
        confirmWriteAccess = [](const QString&, const QString&) { return WriteAccess{}; };
    std::function<void(const QString& bookmarkPath)> stopAccessingBookmark = [](const QString&) {};
    bool isSandboxed = false;

    /// Hands a finished file to an application. False: it was found but could not open the file.
    std::function<bool(const QString& path, const QString& application)> openWithApplication =
        [](const QString&, const QString& application) { return application.isEmpty(); };
    std::function<bool(const platform::Url&)> openURL = [](const platform::Url&) { return false; };
    std::function<bool(const QString& path)> revealFile = [](const QString&) { return false; };
    std::function<void(const platform::Url&)> copyURL = [](const platform::Url&) {};
    std::function<void(const QString&)> copyText = [](const QString&) {};

    std::function<bool()> isModalWindowUp = [] { return false; };
    std::function<bool()> isAlternateFunctionalityEvent = [] { return false; };
    std::function<void()> beep = [] {};

    /// The folder of the program's own data; empty: there is none.
    std::function<QString()> applicationSupportPath;
    /// Absent: no address is a download page.
    std::shared_ptr<PageReader> pageReader;

    Environment();
};

/// As installed by the composition root or by a test; plain defaults before that.
[[nodiscard]] const Environment& environment();
void installEnvironment(Environment environment);

}  // namespace engine
