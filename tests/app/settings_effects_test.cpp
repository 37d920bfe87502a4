#include "app/lifecycle/settings_effects.h"

#include "app/core_fixture.h"
#include "engine/settings.h"
#include "http/http_request.h"
#include "http/http_session.h"
#include "links/pages/download_page_rule_store.h"
#include "links/settings.h"

using namespace Qt::Literals::StringLiterals;

namespace {

class SettingsEffectsTest : public Core {
protected:
    http::HTTPSession session{main.clock};
    links::DownloadPageRuleStore pageRules{defaults};
    app::SettingsEffects effects{defaults, *controller, frontEnd, pageRules};
};

TEST_F(SettingsEffectsTest, BandwidthIsLimitedHoweverTheSettingChanged) {
    defaults.set(engine::settings::throttleLimit, qint64{5000});
    EXPECT_EQ(http::HTTPRequest::maxBandwidthPerSecond(), 0U);
    defaults.set(engine::settings::throttleEnabled, true);
    EXPECT_EQ(http::HTTPRequest::maxBandwidthPerSecond(), 5000U);
    defaults.set(engine::settings::throttleLimit, qint64{7000});
    EXPECT_EQ(http::HTTPRequest::maxBandwidthPerSecond(), 7000U);
    defaults.removeObject(engine::settings::throttleEnabled.name());
    EXPECT_EQ(http::HTTPRequest::maxBandwidthPerSecond(), 0U);
}

TEST_F(SettingsEffectsTest, NewRulesForDownloadPagesCountAtOnce) {
    const platform::Url page = *platform::Url::parse(address(u"a"_s));
    const auto isDownloadPage = [&] {
        return links::isDownloadPageURL(page, pageRules.downloadPageRules().get());
    };
    EXPECT_FALSE(isDownloadPage());
    defaults.set(links::settings::downloadPageRules,
                 uR"([{"Source": "a\\.example", "Query Cascade": ["x"]}])"_s);
    EXPECT_TRUE(isDownloadPage());
    EXPECT_EQ(frontEnd.delayedRedraws, std::vector<platform::Seconds>{0.1});
    defaults.removeObject(links::settings::downloadPageRules.name());
    EXPECT_FALSE(isDownloadPage());
}

}  // namespace
