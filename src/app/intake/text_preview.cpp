#include "app/intake/text_preview.h"

#include "app/intake/known_addresses.h"
#include "app/settings.h"
#include "links/recognition/text_addresses.h"
#include "links/settings.h"
#include "links/text/localization.h"
#include "platform/base/user_defaults.h"

using namespace Qt::Literals::StringLiterals;

namespace app {

using links::filledFormat;
using links::localized;

TextPreview textPreview(const QString& text, const engine::Downloads& queue,
                        const platform::UserDefaults& defaults) {
    constexpr qsizetype mostLookedAt = 2000;
    KnownAddresses known =
        defaults.get(settings::instantDuplicateCheck) ? KnownAddresses(queue) : KnownAddresses();
    links::TextAddresses addresses(QStringList{text},
                                   defaults.get(links::settings::skipRedirectingServices));
    TextPreview preview;
    while (const auto found = addresses.next()) {
        if (preview.addresses + preview.refused >= mostLookedAt) {
            preview.isMore = true;
            break;
        }
        if (!found->address) {
            ++preview.refused;
            continue;
        }
        ++preview.addresses;
        preview.only = found->address;
        if (known.find(found->address->absoluteString())) {
            ++preview.known;
        }
    }
    if (preview.addresses != 1) {
        preview.only.reset();
    }
    return preview;
}

QString previewText(const TextPreview& preview) {
    QStringList parts;
    const auto add = [&parts](qsizetype count, const char* one, const char* several) {
        if (count > 0) {
            parts.append(count == 1 ? localized(one)
                                    : filledFormat(localized(several), {QString::number(count)}));
        }
    };
    add(preview.addresses, links::translatable("1 address"), links::translatable("%@ addresses"));
    add(preview.known, links::translatable("1 already in the list"),
        links::translatable("%@ already in the list"));
    add(preview.refused, links::translatable("1 line not understood"),
        links::translatable("%@ lines not understood"));
    if (preview.isMore) {
        parts.append(localized("and more"));
    }
    return parts.join(u", "_s);
}

}  // namespace app
