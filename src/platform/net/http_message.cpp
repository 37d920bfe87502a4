#include "platform/net/http_message.h"

#include <QStringList>
#include <algorithm>

namespace platform {

namespace {

bool isNamed(const HTTPHeaders::Field& field, const QString& name) {
    return field.first.compare(name, Qt::CaseInsensitive) == 0;
}

}  // namespace

void HTTPHeaders::set(const QString& name, const QString& value) {
    const auto named = [&name](const Field& field) { return isNamed(field, name); };
    const auto first = std::find_if(fields_.begin(), fields_.end(), named);
    if (first == fields_.end()) {
        add(name, value);
        return;
    }
    *first = {name, value};
    fields_.erase(std::remove_if(first + 1, fields_.end(), named), fields_.end());
}

void HTTPHeaders::add(const QString& name, const QString& value) {
    fields_.emplace_back(name, value);
}

void HTTPHeaders::remove(const QString& name) {
    std::erase_if(fields_, [&name](const Field& field) { return isNamed(field, name); });
}

std::optional<QString> HTTPHeaders::value(const QString& name) const {
    const QStringList all = values(name);
    if (all.isEmpty())
        return std::nullopt;
    // A cookie's date holds a comma, so its fields cannot be joined (RFC 6265, 3).
    const bool isCookie = name.compare(QLatin1String("Set-Cookie"), Qt::CaseInsensitive) == 0;
    return isCookie ? all.first() : all.join(QLatin1String(", "));
}

QStringList HTTPHeaders::values(const QString& name) const {
    QStringList result;
    for (const Field& field : fields_) {
        if (isNamed(field, name))
            result.append(field.second);
    }
    return result;
}

bool HTTPHeaders::contains(const QString& name) const {
    return std::any_of(fields_.begin(), fields_.end(),
                       [&name](const Field& field) { return isNamed(field, name); });
}

}  // namespace platform
