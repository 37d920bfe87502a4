#pragma once

#include <QString>
#include <QStringList>
#include <QVariantMap>

#include "app/front_end.h"
#include "app/intake/intake_notes.h"

namespace platform {
class UserDefaults;
}
namespace engine {
class Rules;
}

namespace app {

/// Whether a download may go where a file from elsewhere wants it to: such a file can come from
/// anybody, and a target can be a place where files are run. Main thread.
class TargetConsent {
public:
    enum class Answer {
        Given,
        UsualFolder,  ///< The download goes where it would go by itself.
        Refused,      ///< There was nobody to ask; the notes say so.
    };

    TargetConsent(platform::UserDefaults& defaults, const engine::Rules& rules,
                  Questions& questions, IntakeNotes& notes)
        : defaults_(defaults), rules_(rules), questions_(questions), notes_(notes) {}

    /// `source` is the file that names `target` for the download of `address`. `alsoFamiliar`: a
    /// folder that the user has just pointed at, or empty. Asks if need be; the main loop may go
    /// on meanwhile.
    [[nodiscard]] Answer toWriteTo(const QString& target, const QString& source,
                                   const QString& address, const QString& alsoFamiliar = {});

    /// The archive of a bundle at `container`, which the user opened; targets that he does not want
    /// are gone from it.
    [[nodiscard]] Answer forArchive(QVariantMap& archive, const QString& container);

private:
    platform::UserDefaults& defaults_;
    const engine::Rules& rules_;
    Questions& questions_;
    IntakeNotes& notes_;
};

/// For archives that nobody opened: without targets that would have to be asked about.
[[nodiscard]] QVariantMap withFamiliarTargetsOnly(const QVariantMap& archive,
                                                  const QStringList& familiar);

}  // namespace app
