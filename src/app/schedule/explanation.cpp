#include "app/schedule/explanation.h"

#include "app/settings.h"
#include "links/text/localization.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

namespace {

const platform::Setting<bool>* suppressionSetting(const QString& section) {
    if (section == u"Speed"_s) {
        return &settings::suppressSpeedExplanation;
    }
    return section == u"Schedule"_s ? &settings::suppressScheduleExplanation : nullptr;
}

}  // namespace

std::optional<Explanation> toolbarButtonExplanation(const platform::UserDefaults& defaults,
                                                    const QString& section) {
    const platform::Setting<bool>* suppression = suppressionSetting(section);
    if (!suppression || defaults.get(*suppression)) {
        return {};
    }
    return Explanation{links::localized(section.toUtf8().constData()),
                       links::localized("The toolbar button you just clicked is a shortcut to the "
                                        "more detailed settings you can access in this section of "
                                        "Orlop's settings.")};
}

void suppressToolbarButtonExplanation(platform::UserDefaults& defaults, const QString& section) {
    if (const platform::Setting<bool>* suppression = suppressionSetting(section)) {
        defaults.set(*suppression, true);
    }
}

}  // namespace app
