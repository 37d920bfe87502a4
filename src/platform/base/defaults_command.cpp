#include "platform/base/defaults_command.h"

#include <QDateTime>

#include "platform/base/typed_value.h"
#include "platform/base/user_defaults.h"
#include "platform/base/values.h"
#include "platform/files/property_list.h"
#include "platform/files/property_list_kinds.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

const QString usage =
    u"Usage: orlop-defaults [-suite NAME] COMMAND\n"
    "\n"
    "  read [KEY]         print a stored value, or all as a property list\n"
    "  write KEY VALUE    store a value\n"
    "  delete KEY         forget a stored value\n"
    "  list               print the stored keys, each with its type and value\n"
    "\n"
    "VALUE is one of\n"
    "  -bool true|false\n"
    "  -int NUMBER\n"
    "  -float NUMBER\n"
    "  -string TEXT\n"
    "  -array [VALUE]...\n"
    "  -dict [KEY VALUE]...\n"
    "  TEXT               a property-list element such as <true/>, else a string\n"
    "\n"
    "A running Orlop takes over a change at once.\n"_s;

CommandResult wrongUsage(const QString& why) {
    return {2, {}, why + u"\n\n"_s + usage};
}

CommandResult failure(const QString& why) {
    return {1, {}, why + u'\n'};
}

QString asText(const QVariant& value) {
    switch (propertyListKind(value)) {
        case PropertyListKind::Boolean:
            return value.toBool() ? u"true\n"_s : u"false\n"_s;
        case PropertyListKind::String:
        case PropertyListKind::Integer:
        case PropertyListKind::Real:
            return stringValue(value) + u'\n';
        default:
            return QString::fromUtf8(writePropertyList(value));
    }
}

/// Type and value on one line.
QString summary(const QVariant& value) {
    switch (propertyListKind(value)) {
        case PropertyListKind::Boolean:
            return u"bool "_s + asText(value).trimmed();
        case PropertyListKind::Integer:
            return u"int "_s + stringValue(value);
        case PropertyListKind::Real:
            return u"float "_s + stringValue(value);
        case PropertyListKind::String:
            return u"string \""_s + value.toString().replace(u'\n', u"\\n"_s) + u'"';
        case PropertyListKind::Array:
            return u"array of %1"_s.arg(value.toList().size());
        case PropertyListKind::Dictionary:
            return u"dict of %1"_s.arg(value.toMap().size());
        case PropertyListKind::Data:
            return u"data of %1 bytes"_s.arg(value.toByteArray().size());
        case PropertyListKind::Date:
            return u"date "_s + value.toDateTime().toString(Qt::ISODate);
        case PropertyListKind::None:
            break;
    }
    return {};
}

CommandResult readKeys(const QStringList& words, UserDefaults& defaults) {
    if (words.size() > 1)
        return wrongUsage(u"\"read\" takes one key at most."_s);
    if (words.isEmpty())
        return {0, QString::fromUtf8(writePropertyList(defaults.storedValues())), {}};
    const QVariant value = defaults.storedValues().value(words.first());
    if (!value.isValid())
        return failure(u"There is no value stored for \"%1\"."_s.arg(words.first()));
    return {0, asText(value), {}};
}

CommandResult finish(UserDefaults& defaults) {
    return defaults.synchronize() ? CommandResult{} : failure(u"The file cannot be written."_s);
}

CommandResult writeKey(const QStringList& words, UserDefaults& defaults) {
    if (words.size() < 2)
        return wrongUsage(u"\"write\" takes a key and a value."_s);
    const TypedValue typed = typedValue(words.mid(1));
    if (!typed.value.isValid())
        return wrongUsage(typed.error);
    defaults.setObject(words.first(), typed.value);
    return finish(defaults);
}

CommandResult removeKeys(const QStringList& words, UserDefaults& defaults) {
    if (words.size() != 1)
        return wrongUsage(u"\"delete\" takes one key."_s);
    if (!defaults.storedValues().contains(words.first()))
        return failure(u"There is no value stored for \"%1\"."_s.arg(words.first()));
    defaults.removeObject(words.first());
    return finish(defaults);
}

CommandResult listKeys(const QStringList& words, UserDefaults& defaults) {
    if (!words.isEmpty())
        return wrongUsage(u"\"list\" takes no arguments."_s);
    CommandResult result;
    const QVariantMap values = defaults.storedValues();
    for (auto entry = values.begin(); entry != values.end(); ++entry)
        result.output += entry.key() + u": "_s + summary(entry.value()) + u'\n';
    return result;
}

bool isFileName(const QString& name) {
    return !name.isEmpty() && !name.startsWith(u'.') && !name.contains(u'/');
}

}  // namespace

CommandResult runDefaultsCommand(const QStringList& arguments, UserDefaults& defaults) {
    if (arguments.value(0) == u"-suite") {
        if (!isFileName(arguments.value(1)))
            return wrongUsage(u"\"-suite\" takes the name of a suite."_s);
        return runDefaultsCommand(arguments.mid(2), defaults.suite(arguments[1]));
    }
    const QString command = arguments.value(0);
    const QStringList words = arguments.mid(1);
    if (command == u"read")
        return readKeys(words, defaults);
    if (command == u"write")
        return writeKey(words, defaults);
    if (command == u"delete")
        return removeKeys(words, defaults);
    if (command == u"list")
        return listKeys(words, defaults);
    if (command == u"--help" || command == u"-h")
        return {0, usage, {}};
    return wrongUsage(command.isEmpty() ? u"A command is missing."_s
                                        : u"\"%1\" is no command."_s.arg(command));
}

}  // namespace platform
