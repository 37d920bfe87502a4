#include "structured/json/json_tree_builder.h"

#include <QCoreApplication>
#include <limits>

#include "structured/json/bounds.h"
#include "structured/json/json_complaints.h"

namespace structured {

namespace {

constexpr qsizetype longestShownKey = 60;

}  // namespace

JsonTreeBuilder::JsonTreeBuilder(const std::size_t& progress) : progress_(progress) {}

bool JsonTreeBuilder::null() {
    return addLeaf(QVariant::fromValue(nullptr));
}

bool JsonTreeBuilder::boolean(bool value) {
    return addLeaf(value);
}

bool JsonTreeBuilder::number_integer(std::int64_t value) {
    return addLeaf(static_cast<qint64>(value));
}

bool JsonTreeBuilder::number_unsigned(std::uint64_t value) {
    if (value > static_cast<std::uint64_t>(std::numeric_limits<qint64>::max()))
        return addLeaf(static_cast<quint64>(value));
    return addLeaf(static_cast<qint64>(value));
}

bool JsonTreeBuilder::number_float(double value, const std::string&) {
    return addLeaf(value);
}

bool JsonTreeBuilder::string(const std::string& value) {
    return addLeaf(QString::fromStdString(value));
}

bool JsonTreeBuilder::binary(const std::vector<std::uint8_t>&) {
    return false;  // Comes from binary encodings only.
}

bool JsonTreeBuilder::start_object(std::size_t) {
    return open(true);
}

bool JsonTreeBuilder::start_array(std::size_t) {
    return open(false);
}

bool JsonTreeBuilder::key(const std::string& name) {
    Container& object = open_.back();
    const auto countBefore = object.members.size();
    object.member = object.members.insert(QString::fromStdString(name), {});
    if (object.members.size() == countBefore) {
        const QString shown = object.member.key().left(longestShownKey);
        return refuse(
            QCoreApplication::translate("Orlop", "The key \"%1\" stands here twice.").arg(shown));
    }
    return true;
}

bool JsonTreeBuilder::end_object() {
    const QVariantMap members = std::move(open_.back().members);
    open_.pop_back();
    add(members);
    return true;
}

bool JsonTreeBuilder::end_array() {
    const QVariantList elements = std::move(open_.back().elements);
    open_.pop_back();
    add(elements);
    return true;
}

bool JsonTreeBuilder::parse_error(std::size_t position, const std::string&,
                                  const std::exception& error) {
    const JsonComplaint complaint = jsonComplaint(error.what());
    refusal_ = {QCoreApplication::translate("Orlop", complaint.text), position,
                complaint.isAboutToken};
    return false;
}

bool JsonTreeBuilder::open(bool isObject) {
    if (open_.size() >= static_cast<std::size_t>(maximumDepth))
        return refuse(QCoreApplication::translate("Orlop", "This is nested too deeply."));
    open_.push_back({isObject, {}, {}, {}});
    return true;
}

bool JsonTreeBuilder::addLeaf(const QVariant& value) {
    if (open_.empty()) {
        return refuse(
            QCoreApplication::translate("Orlop",
                                        "The whole must be an object in braces or an array in "
                                        "brackets."));
    }
    add(value);
    return true;
}

void JsonTreeBuilder::add(const QVariant& value) {
    if (open_.empty()) {
        root_ = value;
    } else if (open_.back().isObject) {
        *open_.back().member = value;
    } else {
        open_.back().elements.append(value);
    }
}

bool JsonTreeBuilder::refuse(const QString& reason) {
    refusal_ = {reason, progress_, true};
    return false;
}

}  // namespace structured
