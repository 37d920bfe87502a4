#include "platform/base/typed_value.h"

#include <cmath>

#include "platform/base/arguments.h"
#include "platform/base/values.h"
#include "platform/files/property_list_kinds.h"

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

class WordReader {
public:
    explicit WordReader(const QStringList& words) : words_(words) {}

    [[nodiscard]] TypedValue all() {
        QVariant value = next(0);
        if (error_.isEmpty() && at_ < words_.size())
            fail(u"There is more than one value; a list of them needs -array."_s);
        return error_.isEmpty() ? TypedValue{value, {}} : TypedValue{{}, error_};
    }

private:
    [[nodiscard]] bool atEnd() const { return at_ >= words_.size() || !error_.isEmpty(); }

    QString word() {
        if (atEnd()) {
            fail(u"A value is missing."_s);
            return {};
        }
        return words_[at_++];
    }

    void fail(const QString& error) {
        if (error_.isEmpty())
            error_ = error;
    }

    QVariant checked(const QVariant& value, bool isSound, const QString& text,
                     const QString& wanted) {
        if (!isSound)
            fail(u"\"%1\" is no %2."_s.arg(text, wanted));
        return value;
    }

    QVariant next(int depth) {
        if (depth >= deepestPropertyList)
            fail(u"The values are nested too deeply."_s);
        const QString first = word();
        if (first == u"-bool")
            return boolean(word());
        if (first == u"-int")
            return integer(word());
        if (first == u"-float")
            return real(word());
        if (first == u"-string")
            return word();
        if (first == u"-array")
            return array(depth);
        if (first == u"-dict")
            return dictionary(depth);
        const std::optional<QVariant> value = valueFromText(first);
        return checked(value.value_or(QVariant()), value.has_value(), first,
                       u"property-list element"_s);
    }

    QVariant boolean(const QString& text) {
        const QString lower = text.toLower();
        const bool isTrue = lower == u"true" || lower == u"yes" || lower == u"1";
        const bool isFalse = lower == u"false" || lower == u"no" || lower == u"0";
        return checked(isTrue, isTrue || isFalse, text, u"bool (true or false)"_s);
    }

    QVariant integer(const QString& text) {
        bool isNumber = false;
        const qint64 number = text.toLongLong(&isNumber);
        return checked(number, isNumber, text, u"whole number"_s);
    }

    QVariant real(const QString& text) {
        bool isNumber = false;
        const double number = text.toDouble(&isNumber);
        return checked(number, isNumber && std::isfinite(number), text, u"number"_s);
    }

    QVariant array(int depth) {
        QVariantList list;
        while (!atEnd())
            list.append(next(depth + 1));
        return list;
    }

    QVariant dictionary(int depth) {
        QVariantMap map;
        while (!atEnd()) {
            const QString key = word();
            if (atEnd())
                fail(u"The key \"%1\" has no value."_s.arg(key));
            map.insert(key, next(depth + 1));
        }
        return map;
    }

    const QStringList& words_;
    qsizetype at_ = 0;
    QString error_;
};

}  // namespace

TypedValue typedValue(const QStringList& words) {
    return WordReader(words).all();
}

}  // namespace platform
