#include "engine/record/past_failure.h"

using namespace Qt::Literals::StringLiterals;

namespace engine {
namespace {

const QString isForGoodKey = u"For Good"_s;
const QString domainKey = u"Domain"_s;
const QString codeKey = u"Code"_s;
const QString textKey = u"Text"_s;
const QString causeKey = u"Cause"_s;

/// More than any error here has, of which each level costs a stack frame.
constexpr int deepestCause = 8;

QVariantMap archiveOf(const platform::Error& error, int depth) {
    QVariantMap archive{{domainKey, error.domain}, {codeKey, error.code}, {textKey, error.text}};
    if (error.underlying && depth < deepestCause)
        archive.insert(causeKey, archiveOf(*error.underlying, depth + 1));
    return archive;
}

std::optional<platform::Error> errorIn(const QVariantMap& archive, int depth) {
    const QString domain = archive.value(domainKey).toString();
    if (domain.isEmpty())
        return {};
    platform::Error error{domain, archive.value(codeKey).toInt(), archive.value(textKey).toString(),
                          nullptr};
    const QVariantMap cause = archive.value(causeKey).toMap();
    if (auto underlying = depth < deepestCause ? errorIn(cause, depth + 1) : std::nullopt)
        error.underlying = std::make_shared<platform::Error>(std::move(*underlying));
    return error;
}

}  // namespace

QVariantMap PastFailure::archive() const {
    QVariantMap archive = error ? archiveOf(*error, 0) : QVariantMap();
    archive.insert(isForGoodKey, isForGood);
    return archive;
}

PastFailure PastFailure::fromArchive(const QVariantMap& archive) {
    return {archive.value(isForGoodKey).toBool(), errorIn(archive, 0)};
}

}  // namespace engine
