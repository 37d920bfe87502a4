#pragma once

#include <QString>
#include <QStringView>
#include <optional>

namespace platform {

/// A URL or relative reference that keeps its text exactly (RFC 3986). One parser decides the host
/// for rules, limits, proxies and the transfer.
class Url {
public:
    /// An empty URL, of which every part is empty.
    Url() = default;

    /// Characters of an address; no server takes so many.
    static constexpr qsizetype longest = 1 << 20;

    /// Nothing if the text is no URI reference: blanks, control characters, malformed escapes and
    /// characters beyond ASCII among others; or if it is longer than `longest`.
    [[nodiscard]] static std::optional<Url> parse(const QString& text);
    [[nodiscard]] static Url fromFilePath(const QString& path);
    /// What a user may mean by an international host or path: blanks at the ends are dropped,
    /// everything illegal is escaped in UTF-8 and the host put into its ASCII form (IDNA). Nothing:
    /// still no URL.
    [[nodiscard]] static std::optional<Url> parseLenient(const QString& text);

    [[nodiscard]] bool isEmpty() const { return text_.isEmpty(); }
    [[nodiscard]] QString absoluteString() const { return text_; }
    [[nodiscard]] QString scheme() const;  ///< As written. Empty: relative.
    [[nodiscard]] QString user() const;    ///< Percent-decoded.
    /// Percent-decoded. Null: none is written, not even an empty one.
    [[nodiscard]] QString password() const;
    [[nodiscard]] bool hasUserInfo() const;
    [[nodiscard]] QString host() const;  ///< Percent-decoded; an IPv6 address without brackets.
    /// As written; a number that no int can hold is the largest one.
    [[nodiscard]] std::optional<int> port() const;
    /// The port that a connection uses: the one written, else 80 or 443. Nothing for others.
    [[nodiscard]] std::optional<int> effectivePort() const;
    [[nodiscard]] QString path() const;         ///< Percent-decoded as UTF-8 where that is valid.
    [[nodiscard]] QString encodedPath() const;  ///< As written.
    [[nodiscard]] std::optional<QString> query() const;     ///< As written.
    [[nodiscard]] std::optional<QString> fragment() const;  ///< As written.
    /// Percent-decoded, the last component of the path; "/" if there is only that.
    [[nodiscard]] QString lastPathComponent() const;

    [[nodiscard]] bool hasScheme(const char* lowerCaseScheme) const;
    [[nodiscard]] bool isFile() const { return hasScheme("file"); }
    /// Empty if it is no file URL of this machine.
    [[nodiscard]] QString filePath() const;

    /// The reference resolved against this URL (RFC 3986, 5.2). Nothing: the reference is not one.
    [[nodiscard]] std::optional<Url> resolved(const QString& reference) const;
    /// Without user-info and fragment: what may go over the wire.
    [[nodiscard]] Url forTransfer() const;
    /// Scheme, host and effective port equal, without regard to case.
    [[nodiscard]] bool hasSameOrigin(const Url& other) const;

    friend bool operator==(const Url& a, const Url& b) { return a.text_ == b.text_; }

private:
    /// Small, since lists hold very many addresses.
    using Position = qint32;
    struct Parts {
        Position schemeEnd = 0;  // 0: no scheme
        // -1: that part is absent.
        Position authorityStart = -1, userInfoEnd = -1, hostStart = -1, hostEnd = -1;
        Position portStart = -1, portEnd = -1;
        Position pathStart = 0, pathEnd = 0;
        Position queryStart = -1, queryEnd = -1;
        Position fragmentStart = -1;
    };

    void findParts();
    void findAuthorityParts();
    /// Of the first of them from there on, or the end.
    [[nodiscard]] Position firstOf(QStringView stops, Position from) const;
    [[nodiscard]] QStringView part(qsizetype start, qsizetype end) const;
    /// RFC 3986, 5.2.3.
    [[nodiscard]] QString mergedPath(const QString& relativePath) const;

    QString text_;
    Parts parts_;
};

}  // namespace platform
