#include "app/report/problem_report.h"

#include <curl/curl.h>

#include <QDir>
#include <QLocale>
#include <QRegularExpression>
#include <QStorageInfo>
#include <QSysInfo>
#include <algorithm>
#include <utility>

#include "app/main_controller.h"
#include "diagnostics/log_arguments.h"
#include "diagnostics/log_lines.h"
#include "diagnostics/log_printer.h"
#include "engine/lifecycle/download.h"
#include "engine/settings.h"
#include "platform/base/log_record.h"
#include "platform/base/log_redaction.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"
#include "platform/files/property_list.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString hidden = u"(private)"_s;

/// Replaces what tells what is downloaded, and who downloads.
class Veil {
public:
    explicit Veil(const DQMainController& controller) {
        constexpr qsizetype shortestName = 4;
        for (const engine::DownloadPtr& download : controller.downloads()) {
            for (const QString& name :
                 {download->name(), download->path().section(u'/', -1), download->URL().host()}) {
                if (name.size() >= shortestName)
                    names_.append(name);
            }
        }
        names_.removeDuplicates();
        // What holds another name goes first.
        std::sort(names_.begin(), names_.end(),
                  [](const QString& a, const QString& b) { return a.size() > b.size(); });
    }

    [[nodiscard]] QString over(QString text) const {
        static const QRegularExpression address(u"([a-zA-Z][a-zA-Z0-9+.-]*://)[^\\s<>\"]+"_s);
        static const QRegularExpression place(
            u"(?:/home|/root|/media|/mnt|/run/media|/tmp|~)/[^\\n<>\":,;]+"_s);
        text.replace(address, u"\\1"_s + hidden);
        text.replace(place, hidden);
        for (const QString& name : names_)
            text.replace(name, hidden);
        return text;
    }

private:
    QStringList names_;
};

bool isSecretKey(const QString& key) {
    static const QRegularExpression secret(
        u"password|secret|token|cookie|credential|authori[sz]|bookmark"_s,
        QRegularExpression::CaseInsensitiveOption);
    return secret.match(key).hasMatch();
}

QVariant withoutSecrets(const QVariant& value) {
    if (value.typeId() == QMetaType::QVariantMap) {
        QVariantMap kept;
        const QVariantMap all = value.toMap();
        for (auto member = all.begin(); member != all.end(); ++member) {
            if (!isSecretKey(member.key()))
                kept.insert(member.key(), withoutSecrets(member.value()));
        }
        return kept;
    }
    if (value.typeId() == QMetaType::QVariantList) {
        QVariantList kept;
        for (const QVariant& element : value.toList())
            kept.append(withoutSecrets(element));
        return kept;
    }
    return value.typeId() == QMetaType::QString
               ? QVariant(platform::withoutSecrets(value.toString()))
               : value;
}

QString settingsText(const platform::UserDefaults& defaults) {
    return QString::fromUtf8(platform::writePropertyList(withoutSecrets(defaults.storedValues())));
}

/// The folder, or the nearest above it that is there.
QString existingFolderOf(QString folder) {
    while (!folder.isEmpty() && !QDir(folder).exists())
        folder = folder.section(u'/', 0, -2);
    return folder.isEmpty() ? u"/"_s : folder;
}

QString surroundingsText(const platform::UserDefaults& defaults) {
    const QString folder = defaults.folderPathForKey(engine::settings::downloadsFolder.name(),
                                                     platform::downloadsUserFolder());
    const QStorageInfo volume(existingFolderOf(folder));
    const auto inGigabytes = [](qint64 bytes) {
        return bytes < 0 ? u"-"_s
                         : QString::number(static_cast<double>(bytes) / 1e9, 'f', 1) + u" GB"_s;
    };
    const auto setting = [](const char* name) {
        const QString value = qEnvironmentVariable(name);
        return value.isEmpty() ? u"-"_s : value;
    };
    const std::vector<std::pair<QString, QString>> lines{
        {u"Orlop"_s, QStringLiteral(ORLOP_VERSION)},
        {u"Qt"_s, QString::fromLatin1(qVersion())},
        {u"Network library"_s, QString::fromLatin1(curl_version())},
        {u"System"_s, QSysInfo::prettyProductName()},
        {u"Kernel"_s, QSysInfo::kernelType() + u' ' + QSysInfo::kernelVersion()},
        {u"Processor"_s, QSysInfo::currentCpuArchitecture()},
        {u"Desktop"_s, setting("XDG_CURRENT_DESKTOP")},
        {u"Session"_s, setting("XDG_SESSION_TYPE")},
        {u"Language"_s, QLocale().name()},
        {u"Download folder"_s, folder},
        {u"Mounted at"_s, volume.rootPath()},
        {u"File system"_s, QString::fromUtf8(volume.fileSystemType())},
        {u"Device"_s, QString::fromUtf8(volume.device())},
        {u"Room"_s,
         u"%1 of %2"_s.arg(inGigabytes(volume.bytesAvailable()), inGigabytes(volume.bytesTotal()))},
    };
    QString text;
    for (const auto& [name, value] : lines)
        text += name + u": "_s + value + u'\n';
    return text;
}

QString logText(const QString& folder) {
    constexpr std::int64_t hour = 3600LL * 1'000'000;
    constexpr qsizetype mostBytes = 4 << 20;
    QByteArray text;
    diagnostics::LogPrinter printer(diagnostics::LogRequest::Style::Readable, false,
                                    [&text](QByteArrayView bytes) {
                                        text += bytes;
                                        return true;
                                    });
    diagnostics::takeStoredLines(
        folder, platform::logTimestamp(platform::logClock() - hour),
        [&printer](const structured::FlatObject& line) { return printer.add(line); });
    printer.end();
    if (text.size() > mostBytes)
        text = text.sliced(text.indexOf('\n', text.size() - mostBytes) + 1);
    return QString::fromUtf8(text);
}

}  // namespace

std::vector<ReportFile> problemReport(const DQMainController& controller,
                                      const platform::UserDefaults& defaults,
                                      const QString& logFolder) {
    const bool isPrivate = defaults.get(engine::settings::privateDownloading);
    const Veil veil(controller);
    std::vector<ReportFile> files;
    const auto gather = [&](const QString& name, const QString& text) {
        files.push_back({name, (isPrivate ? veil.over(text) : text).toUtf8()});
    };
    gather(u"surroundings.txt"_s, surroundingsText(defaults));
    gather(u"settings.plist"_s, settingsText(defaults));
    gather(u"log.txt"_s, logText(logFolder));
    return files;
}

}  // namespace app
