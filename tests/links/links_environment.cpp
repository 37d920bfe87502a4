#include <gtest/gtest.h>

#include <QDir>
#include <ctime>
#include <memory>

#include "platform/base/user_defaults.h"

namespace {

/// A fixed locale, a zone with summer time, and empty defaults.
class LinksEnvironment : public testing::Environment {
public:
    void SetUp() override {
        qputenv("LC_ALL", "en_US.UTF-8");
        qputenv("TZ", "Europe/Zurich");
        tzset();
        defaults_ = std::make_unique<platform::UserDefaults>(
            QDir::homePath() + QStringLiteral("/links"), QStringLiteral("Test"));
        platform::installStandardDefaults(defaults_.get());
    }
    void TearDown() override { platform::installStandardDefaults(nullptr); }

private:
    std::unique_ptr<platform::UserDefaults> defaults_;
};

const auto* const environment = testing::AddGlobalTestEnvironment(new LinksEnvironment);

}  // namespace
