// Any property list as what comes over the bus: arguments of scripts and hand-overs of browsers.
// What is accepted fits into a request and onto a disk; what is refused says why.
#include <algorithm>

#include "engine/record/user_settings.h"
#include "fuzz_target.h"
#include "platform/files/property_list.h"
#include "scripting/requests.h"

namespace {

void requireCleanHeaders(const QVariantMap& request) {
    const QVariantMap headers = request.value(engine::keys::requestPartialHeaders).toMap();
    for (const QVariant& header : headers) {
        const QString value = header.toString();
        require(!value.contains(u'\n') && !value.contains(u'\r') && !value.contains(QChar(u'\0')));
    }
}

void requireComponent(const QString& name) {
    require(!name.contains(u'/') && name != QStringLiteral("..") && name.toUtf8().size() <= 255);
}

template <typename Value>
bool isAccepted(const scripting::Parsed<Value>& parsed) {
    require(parsed.value.has_value() != !parsed.problem.isEmpty());
    return parsed.value.has_value();
}

}  // namespace

void checkInput(const QByteArray& input) {
    const QVariant given = platform::readPropertyList(input).value;
    const QVariantMap dictionary = given.toMap();
    if (const auto handOver = scripting::parsedHandOver(dictionary); isAccepted(handOver)) {
        const scripting::HandOverRequest& request = *handOver.value;
        require(scripting::isHandOverId(request.id) && !request.url.host().isEmpty());
        require(request.size.value_or(0) >= 0 && request.deadline >= 0);
        requireComponent(request.name);
        requireCleanHeaders(request.request);
        require(!request.cookies.contains(u'\n') && !request.cookies.contains(u'\r'));
    }
    const QString address = dictionary.value(QStringLiteral("address")).toString();
    if (const auto add = scripting::parsedAddRequest(address, dictionary); isAccepted(add)) {
        requireComponent(add.value->name);
        requireCleanHeaders(add.value->request);
        require(add.value->folder.isEmpty() || add.value->folder.startsWith(u'/'));
    }
    if (const auto arguments = scripting::parsedArguments(dictionary); isAccepted(arguments))
        requireCleanHeaders(arguments.value->request());
    const auto addresses = scripting::parsedAddresses(given.toStringList() + QStringList{address});
    if (isAccepted(addresses))
        require(addresses.value->size() <= static_cast<std::size_t>(scripting::mostAddresses));
    static_cast<void>(scripting::areIdentities(given.toStringList()));
}
