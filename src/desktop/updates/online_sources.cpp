#include "desktop/updates/online_sources.h"

namespace desktop {

OnlineSources onlineSources() {
    return {QStringLiteral(ORLOP_APPCAST_URL), QByteArray::fromBase64(ORLOP_APPCAST_KEY),
            QStringLiteral(ORLOP_NEWS_URL), QStringLiteral(ORLOP_PRODUCT_URL)};
}

}  // namespace desktop
