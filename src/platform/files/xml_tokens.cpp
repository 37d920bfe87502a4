#include "platform/files/xml_tokens.h"

#include <QHash>
#include <QStringDecoder>
#include <algorithm>
#include <cctype>
#include <optional>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace platform {

namespace {

constexpr qsizetype longestQuote = 40;

bool isSpace(char byte) {
    return byte == ' ' || byte == '\n' || byte == '\t' || byte == '\r';
}

bool isForbidden(char byte) {
    return static_cast<unsigned char>(byte) < 0x20 && !isSpace(byte);
}

bool isNameByte(char byte) {
    return !isSpace(byte) && byte != '>' && byte != '/' && byte != '=';
}

/// The characters of XML 1.0, section 2.2.
bool isXmlCharacter(uint code) {
    return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code < 0xD800) ||
           (code >= 0xE000 && code < 0xFFFE) || (code >= 0x10000 && code <= 0x10FFFF);
}

/// Inside a text, U+FEFF is no byte order mark to be dropped.
QString decodedText(QByteArrayView utf8) {
    const QString text = QString::fromUtf8(utf8);
    return utf8.startsWith("\xEF\xBB\xBF") ? QChar::ByteOrderMark + text : text;
}

/// What "&NAME;" stands for (XML 1.0, sections 4.1 and 4.6).
std::optional<uint> referredCharacter(const QByteArray& name) {
    static const QHash<QByteArray, uint> predefined{
        {"lt", '<'}, {"gt", '>'}, {"amp", '&'}, {"quot", '"'}, {"apos", '\''}};
    if (!name.startsWith('#')) {
        const auto found = predefined.constFind(name);
        return found != predefined.cend() ? std::optional(*found) : std::nullopt;
    }
    const int base = name.startsWith("#x") ? 16 : 10;
    const QByteArray digits = name.sliced(base == 16 ? 2 : 1);
    const bool areDigits = std::all_of(digits.begin(), digits.end(),
                                       [](char c) { return std::isalnum(static_cast<uchar>(c)); });
    const uint code = areDigits ? digits.toUInt(nullptr, base) : 0;
    return isXmlCharacter(code) ? std::optional(code) : std::nullopt;
}

/// What the XML declaration names; empty if it names none.
QByteArray declaredEncoding(const QByteArray& document) {
    if (!document.startsWith("<?xml"))
        return {};
    const QByteArray declaration = document.first(std::max<qsizetype>(document.indexOf("?>"), 0));
    const qsizetype key = declaration.indexOf("encoding");
    const QByteArray rest = key < 0 ? QByteArray() : declaration.sliced(key + 8);
    const qsizetype start = rest.indexOf(rest.contains('"') ? '"' : '\'') + 1;
    const qsizetype end = start > 0 ? rest.indexOf(rest[start - 1], start) : -1;
    return end < 0 ? QByteArray() : rest.sliced(start, end - start);
}

}  // namespace

XmlTokens::XmlTokens(const QByteArray& document) {
    decode(document);
    if (text_.contains('\r'))
        text_.replace("\r\n", "\n").replace('\r', '\n');
    checkCharacters();
}

void XmlTokens::decode(const QByteArray& document) {
    const std::optional<QStringConverter::Encoding> mark =
        QStringConverter::encodingForData(document);
    const QByteArray declared = declaredEncoding(document).toLower();
    if (mark == QStringConverter::Utf8) {
        text_ = document.startsWith("\xEF\xBB\xBF") ? document.sliced(3) : document;
    } else if (mark) {
        text_ = QString(QStringDecoder(*mark)(document)).toUtf8();
    } else if (declared.isEmpty() || declared == "utf-8" || declared == "us-ascii") {
        text_ = document;
    } else if (QStringDecoder decoder(declared.constData()); decoder.isValid()) {
        text_ = QString(decoder(document)).toUtf8();
    } else {
        fail(u"The encoding \"%1\" is not known."_s.arg(QString::fromLatin1(declared)));
    }
}

void XmlTokens::checkCharacters() {
    const auto bad = std::find_if(text_.cbegin(), text_.cend(), isForbidden);
    if (bad != text_.cend())
        failAt(bad - text_.cbegin(), u"There is a control character, which XML does not allow."_s);
    else if (!QByteArrayView(text_).isValidUtf8())
        fail(u"The text is not in UTF-8."_s);
}

void XmlTokens::failAt(qsizetype position, const QString& text) {
    if (hasFailed())
        return;
    const QByteArrayView before = QByteArrayView(text_).first(position);
    const QByteArrayView line = before.sliced(before.lastIndexOf('\n') + 1);
    const auto lines = std::count(before.begin(), before.end(), '\n');
    const auto startsCharacter = [](char byte) { return (byte & 0xC0) != 0x80; };
    error_ = {text, lines + 1, std::count_if(line.begin(), line.end(), startsCharacter) + 1};
}

void XmlTokens::skipSpace() {
    while (!atEnd() && isSpace(text_[at_]))
        ++at_;
}

bool XmlTokens::skipBehind(QByteArrayView end, qsizetype skipped) {
    const qsizetype found = text_.indexOf(end, at_ + skipped);
    if (found < 0) {
        failAt(at_, u"The document ends where \"%1\" is expected."_s.arg(QString::fromLatin1(end)));
        return false;
    }
    at_ = found + end.size();
    return true;
}

/// Comments, processing instructions and the document type. False: there is none here.
bool XmlTokens::skipMarkup() {
    if (looksAt("<!--")) {
        // Two dashes may stand only at its end: else a comment that nobody closed would swallow
        // everything up to the end of the next one.
        if (!skipBehind("--", 4))
            return false;
        if (!looksAt(">"))
            fail(u"A comment holds \"--\"."_s);
        else
            ++at_;
        return !hasFailed();
    }
    if (looksAt("<?"))
        return skipBehind("?>", 2);
    return looksAt("<!DOCTYPE") && skipDocumentType();
}

bool XmlTokens::skipDocumentType() {
    if (hasRoot_)
        fail(u"The document type stands behind the first element."_s);
    while (!atEnd() && !hasFailed()) {
        const char byte = text_[at_++];
        if (byte == '>')
            return true;
        if (byte == '"' || byte == '\'')
            skipBehind(QByteArrayView(&byte, 1));
        else if (byte == '[')
            // Entities that a document declares serve only to blow it up.
            fail(u"The document makes declarations of its own."_s);
    }
    fail(u"The document ends inside its type."_s);
    return false;
}

XmlTokens::Kind XmlTokens::next() {
    if (std::exchange(endIsDue_, false) && !hasFailed()) {
        open_.pop_back();
        return Kind::End;
    }
    do {
        skipSpace();
        tokenStart_ = at_;
    } while (!hasFailed() && skipMarkup());
    if (hasFailed())
        return Kind::Error;
    if (atEnd()) {
        if (open_.empty())
            return Kind::DocumentEnd;
        fail(u"The document ends inside <%1>."_s.arg(QLatin1StringView(open_.back())));
        return Kind::Error;
    }
    if (text_[at_] != '<' || looksAt("<![CDATA[")) {
        const QByteArrayView quote = QByteArrayView(text_).sliced(at_);
        fail(u"There is text where none belongs: \"%1\"."_s.arg(
            QString::fromUtf8(quote.first(std::min(quote.size(), 4 * longestQuote)))
                .left(longestQuote)
                .section(u'<', 0, 0)));
        return Kind::Error;
    }
    return looksAt("</") ? readEndTag() : readStartTag();
}

QByteArrayView XmlTokens::readName() {
    const qsizetype start = at_;
    while (!atEnd() && isNameByte(text_[at_]))
        ++at_;
    return QByteArrayView(text_).sliced(start, at_ - start);
}

bool XmlTokens::skipAttributes() {
    for (skipSpace(); !atEnd() && text_[at_] != '>' && text_[at_] != '/'; skipSpace()) {
        const QByteArrayView name = readName();
        skipSpace();
        const bool hasValue = !name.isEmpty() && looksAt("=");
        at_ += hasValue ? 1 : 0;
        skipSpace();
        const QByteArrayView quote = QByteArrayView(text_).sliced(at_, atEnd() ? 0 : 1);
        if (!hasValue || (quote != "\"" && quote != "'"))
            return false;
        ++at_;
        if (!skipBehind(quote))
            return false;
    }
    return true;
}

XmlTokens::Kind XmlTokens::readStartTag() {
    ++at_;
    name_ = readName();
    const bool isWhole = !name_.isEmpty() && skipAttributes();
    endIsDue_ = isWhole && looksAt("/");
    at_ += endIsDue_ ? 1 : 0;
    if (!isWhole || !looksAt(">"))
        fail(u"A tag is malformed."_s);
    else if (open_.empty() && std::exchange(hasRoot_, true))
        fail(u"There is a second outermost element."_s);
    if (hasFailed())
        return Kind::Error;
    ++at_;
    open_.push_back(name_);
    return Kind::Start;
}

XmlTokens::Kind XmlTokens::readEndTag() {
    at_ += 2;
    name_ = readName();
    skipSpace();
    if (!looksAt(">"))
        fail(u"A tag is malformed."_s);
    else if (open_.empty() || open_.back() != name_)
        fail(u"</%1> ends no element that begins here."_s.arg(QString::fromUtf8(name_)));
    if (hasFailed())
        return Kind::Error;
    ++at_;
    open_.pop_back();
    return Kind::End;
}

QString XmlTokens::readText() {
    QString text;
    if (std::exchange(endIsDue_, false)) {
        open_.pop_back();
        return text;
    }
    while (!hasFailed() && !atEnd()) {
        tokenStart_ = at_;
        if (looksAt("</"))
            return readEndTag() == Kind::End ? text : QString();
        if (looksAt("<![CDATA[")) {
            const qsizetype start = at_ + 9;
            if (skipBehind("]]>"))
                text += decodedText(QByteArrayView(text_).sliced(start, at_ - 3 - start));
        } else if (text_[at_] == '<') {
            if (!skipMarkup() && !hasFailed()) {
                ++at_;
                fail(
                    u"There is <%1> where only text belongs."_s.arg(QString::fromUtf8(readName())));
            }
        } else if (text_[at_] == '&') {
            readReference(text);
        } else {
            readCharacterData(text);
        }
    }
    fail(u"The document ends inside <%1>."_s.arg(QString::fromUtf8(open_.back())));
    return {};
}

void XmlTokens::readCharacterData(QString& text) {
    const char* const start = text_.constData() + at_;
    const char* const end = text_.constData() + text_.size();
    const char* const stop = std::find_if(start, end, [](char c) { return c == '<' || c == '&'; });
    const QString part = decodedText({start, stop - start});
    // Appended in place: a long text may be broken by references without number.
    if (text.isEmpty()) {
        text = part;
    } else {
        text += part;
    }
    at_ += stop - start;
}

void XmlTokens::readReference(QString& text) {
    constexpr qsizetype longestReference = 12;
    const QByteArrayView rest = QByteArrayView(text_).sliced(at_ + 1);
    const qsizetype end = rest.first(std::min(rest.size(), longestReference)).indexOf(';');
    const QByteArray name = end < 0 ? QByteArray() : rest.first(end).toByteArray();
    const std::optional<uint> code = referredCharacter(name);
    if (!code) {
        fail(u"\"&%1\" stands for no character."_s.arg(QString::fromUtf8(
            end < 0 ? rest.first(std::min<qsizetype>(rest.size(), 4)) : rest.first(end + 1))));
        return;
    }
    const char32_t character = *code;
    text += QString::fromUcs4(&character, 1);
    at_ += end + 2;
}

}  // namespace platform
