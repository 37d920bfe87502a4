#include "app/intake/target_consent.h"

#include "app/intake/target_place.h"
#include "app/settings.h"
#include "engine/record/user_settings.h"
#include "links/paths/path_components.h"
#include "links/text/localization.h"
#include "platform/base/log.h"
#include "platform/base/user_defaults.h"
#include "platform/files/files.h"

namespace app {

namespace keys = engine::keys;
using namespace Qt::Literals::StringLiterals;
using links::filledFormat;
using links::localized;

namespace {

const QStringList& targetKeys() {
    static const QStringList list{keys::downloadFile, keys::downloadFolder};
    return list;
}

Alert question(const QString& target, const QString& source, const QString& address, bool isRisky) {
    QString text =
        filledFormat(localized("The file comes from\n%@\nand would be written to\n%@\nwhich is "
                               "not one of your download folders."),
                     {address, platform::abbreviateWithTilde(target)});
    if (isRisky)
        text += u"\n\n"_s + localized(
                                "What is written there can run by itself or change what your "
                                "programs do. Allow it only if you know why.");
    Alert alert{Alert::Kind::UnfamiliarTarget,
                filledFormat(localized("“%@” chooses where its download goes"),
                             {links::lastPathComponent(source)}),
                text, u"Write There"_s, u"Use Download Folder"_s};
    alert.isRisky = true;
    return alert;
}

}  // namespace

TargetConsent::Answer TargetConsent::toWriteTo(const QString& target, const QString& source,
                                               const QString& address,
                                               const QString& alsoFamiliar) {
    QStringList familiar = familiarFolders(defaults_, rules_);
    TargetPlace place = placeOfTarget(target, familiar);
    if (place == TargetPlace::Elsewhere && !alsoFamiliar.isEmpty())
        place = placeOfTarget(target, {alsoFamiliar});
    const bool isAllowed =
        place == TargetPlace::Elsewhere && defaults_.get(settings::targetsOutsideDownloadFolders);
    if (place == TargetPlace::Familiar || isAllowed)
        return Answer::Given;
    if (questions_.canAsk()) {
        if (questions_.confirm(question(target, source, address, place == TargetPlace::Risky)))
            return Answer::Given;
        // The session may have ended over the question: then nobody has answered.
        return questions_.canAsk() ? Answer::UsualFolder : Answer::Refused;
    }
    notes_.noteProblem(filledFormat(
        localized("%@ wants its download written to %@, which is not one of your download folders; "
                  "it was not taken."),
        {source, platform::abbreviateWithTilde(target)}));
    return Answer::Refused;
}

TargetConsent::Answer TargetConsent::forArchive(QVariantMap& archive, const QString& container) {
    const QString parent = links::stringByDeletingLastPathComponent(container);
    const QString address = archive.value(keys::url).toString();
    Answer answer = Answer::Given;
    for (const QString& key : targetKeys()) {
        const QString target = archive.value(key).toString();
        if (target.isEmpty())
            continue;
        answer = toWriteTo(target, container, address, parent);
        if (answer == Answer::Refused)
            return answer;
        if (answer == Answer::UsualFolder)
            archive.remove(key);
    }
    return answer;
}

QVariantMap withFamiliarTargetsOnly(const QVariantMap& archive, const QStringList& familiar) {
    QVariantMap kept = archive;
    for (const QString& key : targetKeys()) {
        const QString target = archive.value(key).toString();
        if (!target.isEmpty() && placeOfTarget(target, familiar) != TargetPlace::Familiar) {
            platform::log(
                u"a bundle that nobody opened wants to go to %1; it does not"_s.arg(target));
            kept.remove(key);
        }
    }
    return kept;
}

}  // namespace app
