// For a program that looks for what is new where a test says, with a key of the test's.
#include "desktop/updates/online_sources.h"

namespace desktop {

OnlineSources onlineSources() {
    return {qEnvironmentVariable("TEST_APPCAST"),
            QByteArray::fromBase64(qgetenv("TEST_APPCAST_KEY")), qEnvironmentVariable("TEST_NEWS"),
            qEnvironmentVariable("TEST_PRODUCT")};
}

}  // namespace desktop
