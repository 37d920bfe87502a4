#include "links/pages/download_page_rule_store.h"

#include "links/settings.h"
#include "platform/base/log.h"
#include "platform/base/user_defaults.h"
#include "structured/json/json_writer.h"
#include "structured/text_view/json_text_view.h"

using namespace Qt::Literals::StringLiterals;

namespace links {

namespace {

/// In every address that a built-in rule is for.
constexpr auto builtInHost = "tarnworks"_L1;

}  // namespace

DownloadPageRuleStore::DownloadPageRuleStore(platform::UserDefaults& defaults)
    : defaults_(defaults) {}

std::shared_ptr<const DownloadPageRules> DownloadPageRuleStore::downloadPageRules() {
    if (!rules_) {
        rules_ = DownloadPageRules::fromObject(ruleObject());
        for (const QString& source : *rules_ ? (*rules_)->sourcesLeftOut() : QStringList())
            platform::log(
                u"leaving out the download page rule for %1: its \"Use Source Name\" "
                "cannot be understood"_s.arg(source));
    }
    return *rules_;
}

std::shared_ptr<const DownloadPageRules> DownloadPageRuleStore::rulesThatMayConcern(
    const platform::Url& url) {
    const bool areBuiltIn = !storedStructure().isValid() && storedText().isEmpty();
    if (areBuiltIn && !url.absoluteString().contains(builtInHost, Qt::CaseInsensitive))
        return nullptr;
    return downloadPageRules();
}

/// Rules that were stored as a structure, as `orlop-defaults` does with what it is given as one.
QVariant DownloadPageRuleStore::storedStructure() const {
    const QVariant stored = defaults_.objectForKey(settings::downloadPageRules.name());
    const bool isStructure =
        stored.typeId() == QMetaType::QVariantList || stored.typeId() == QMetaType::QVariantMap;
    return isStructure ? stored : QVariant();
}

QVariant DownloadPageRuleStore::ruleObject() const {
    const QVariant structure = storedStructure();
    return structure.isValid() ? structure
                               : structured::DQJSONTextView::objectValueWithString(ruleText());
}

QString DownloadPageRuleStore::ruleText() const {
    if (const QVariant structure = storedStructure(); structure.isValid())
        return structured::writeJson(structure).value_or(QString());
    const QString text = storedText();
    return text.isEmpty() ? defaultDownloadPageRuleText() : text;
}

/// A value of another type is no text of the user's, though it could be converted to one.
QString DownloadPageRuleStore::storedText() const {
    const QVariant stored = defaults_.objectForKey(settings::downloadPageRules.name());
    return stored.typeId() == QMetaType::QString ? stored.toString() : QString();
}

void DownloadPageRuleStore::setRuleText(const QString& text) {
    if (text.isEmpty()) {
        defaults_.removeObject(settings::downloadPageRules.name());
    } else {
        defaults_.set(settings::downloadPageRules, text);
    }
    rules_.reset();
}

QString defaultDownloadPageRuleText() {
    return uR"json([
	{
		"Source" : "^https?://(www\\.)?%1\\.com/orlop(/.*)?$",
		"Query Cascade" : [
			"href\\s*=\\s*\"[^\"]*(/download/[^\"]+)\""
		],
		"Collect All Matches" : true,
		"Use Source Name" : false
	}
])json"_s.arg(builtInHost);
}

}  // namespace links
