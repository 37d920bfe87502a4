#pragma once

#include <QVariant>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <vector>

namespace structured {

/// What was wrong with a text.
struct JsonRefusal {
    QString text;
    /// How many bytes had been taken, with the last that gave offence.
    std::size_t taken;
    /// Whether the place to show is the beginning of the token that ends there.
    bool isAboutToken;
};

/// Grows a tree from the events of a JSON parser (the SAX interface of nlohmann-json), and stops
/// the parser at what a tree cannot hold.
class JsonTreeBuilder {
public:
    /// `progress` is how many bytes the parser has taken; it must outlive the builder.
    explicit JsonTreeBuilder(const std::size_t& progress);

    [[nodiscard]] const QVariant& root() const { return root_; }
    [[nodiscard]] const std::optional<JsonRefusal>& refusal() const { return refusal_; }

    // The parser's events; false stops it.
    bool null();
    bool boolean(bool value);
    bool number_integer(std::int64_t value);
    bool number_unsigned(std::uint64_t value);
    bool number_float(double value, const std::string& text);
    bool string(const std::string& value);
    bool binary(const std::vector<std::uint8_t>& value);
    bool start_object(std::size_t count);
    bool key(const std::string& name);
    bool end_object();
    bool start_array(std::size_t count);
    bool end_array();
    bool parse_error(std::size_t position, const std::string& token, const std::exception& error);

private:
    struct Container {
        bool isObject = false;
        QVariantMap members;
        QVariantMap::iterator member;  ///< The one whose value comes next.
        QVariantList elements;
    };

    bool open(bool isObject);
    bool addLeaf(const QVariant& value);
    void add(const QVariant& value);
    bool refuse(const QString& reason);

    const std::size_t& progress_;
    std::vector<Container> open_;
    QVariant root_;
    std::optional<JsonRefusal> refusal_;
};

}  // namespace structured
