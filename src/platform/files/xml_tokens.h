#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <vector>

#include "platform/files/property_list.h"

namespace platform {

/// The elements and texts of an XML document of the simple kind that property lists are: it may
/// have a document type, but declares nothing in it, and attributes mean nothing.
///
/// A reader for all of XML takes several times as long, which shows at the start with a long queue.
class XmlTokens {
public:
    /// UTF-8, unless a byte order mark or the XML declaration says otherwise.
    explicit XmlTokens(const QByteArray& document);

    enum class Kind { Start, End, DocumentEnd, Error };
    /// The next start or end of an element. Text before it is an error. An empty-element tag is
    /// both. After an error there are only errors.
    Kind next();
    /// Of the element that `next` came to; valid as long as this object.
    [[nodiscard]] QByteArrayView name() const { return name_; }

    /// After a start: the text up to the element's end, which is taken too. Another element inside
    /// is an error.
    [[nodiscard]] QString readText();

    /// Records an error at the start of what was read last. Only the first one counts.
    void fail(const QString& text) { failAt(tokenStart_, text); }
    /// Where what was read last begins, for `failAt`.
    [[nodiscard]] qsizetype place() const { return tokenStart_; }
    void failAt(qsizetype place, const QString& text);
    [[nodiscard]] bool hasFailed() const { return !error_.text.isEmpty(); }
    [[nodiscard]] const ParseError& error() const { return error_; }

private:
    void decode(const QByteArray& document);
    void checkCharacters();

    [[nodiscard]] bool atEnd() const { return at_ >= text_.size(); }
    [[nodiscard]] bool looksAt(QByteArrayView start) const {
        return QByteArrayView(text_).sliced(at_).startsWith(start);
    }
    void skipSpace();
    /// Goes behind the first `end` that follows the next `skipped` bytes.
    bool skipBehind(QByteArrayView end, qsizetype skipped = 0);
    bool skipMarkup();
    bool skipDocumentType();
    bool skipAttributes();
    QByteArrayView readName();
    Kind readStartTag();
    Kind readEndTag();
    void readReference(QString& text);
    void readCharacterData(QString& text);

    QByteArray text_;  ///< UTF-8 with line feeds only.
    qsizetype at_ = 0;
    qsizetype tokenStart_ = 0;
    QByteArrayView name_;
    std::vector<QByteArrayView> open_;
    bool hasRoot_ = false;
    bool endIsDue_ = false;  ///< Behind an empty-element tag.
    ParseError error_;
};

}  // namespace platform
