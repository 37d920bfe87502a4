#include "platform/net/http_message.h"

#include <QStringList>
#include <algorithm>
#include <array>
#include <iterator>

namespace platform {

namespace {

bool isNamed(const HTTPHeaders::Field& field, const QString& name) {
    // Names are ASCII, and most differ in length already.
    return field.first.size() == name.size() && field.first.compare(name, Qt::CaseInsensitive) == 0;
}

/// Whether several fields of that name mean the same as one with a comma between their values. A
/// cookie's date holds a comma of its own (RFC 6265, 3).
bool isList(const QString& name) {
    using namespace Qt::Literals::StringLiterals;
    constexpr std::array singles{"Age"_L1,           "Content-Disposition"_L1,
                                 "Content-Range"_L1, "Content-Type"_L1,
                                 "Date"_L1,          "ETag"_L1,
                                 "Expires"_L1,       "Last-Modified"_L1,
                                 "Location"_L1,      "Retry-After"_L1,
                                 "Set-Cookie"_L1};
    return std::none_of(singles.begin(), singles.end(), [&name](QLatin1String single) {
        return name.size() == single.size() && name.compare(single, Qt::CaseInsensitive) == 0;
    });
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
    const auto named = [&name](const Field& field) { return isNamed(field, name); };
    const auto first = std::find_if(fields_.begin(), fields_.end(), named);
    if (first == fields_.end())
        return std::nullopt;
    if (std::find_if(std::next(first), fields_.end(), named) == fields_.end())
        return first->second;
    QStringList all = values(name);
    all.removeDuplicates();
    return isList(name) ? all.join(QLatin1String(", ")) : all.first();
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
