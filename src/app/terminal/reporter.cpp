#include "app/terminal/reporter.h"

#include "links/text/localization.h"

namespace app::terminal {
namespace {

using namespace Qt::Literals::StringLiterals;
using links::localized;

QString heading(Event::Kind kind) {
    switch (kind) {
        case Event::Kind::Started:
            return localized("Started");
        case Event::Kind::Completed:
            return localized("Download Complete");
        case Event::Kind::Failed:
            return localized("Download Failed");
        case Event::Kind::Problem:
            return u"orlop-terminal"_s;
        case Event::Kind::Notice:
            break;
    }
    return {};
}

Ink inkOf(Event::Kind kind) {
    switch (kind) {
        case Event::Kind::Completed:
            return Ink::Done;
        case Event::Kind::Failed:
        case Event::Kind::Problem:
            return Ink::Failed;
        case Event::Kind::Started:
        case Event::Kind::Notice:
            break;
    }
    return Ink::Normal;
}

bool isTrouble(Event::Kind kind) {
    return kind == Event::Kind::Failed || kind == Event::Kind::Problem;
}

}  // namespace

QString eventText(const Event& event, Glyphs glyphs) {
    QString text = heading(event.kind);
    if (!text.isEmpty())
        text += u": "_s;
    text += printable(event.name, glyphs);
    if (!event.detail.isEmpty())
        text += u" - "_s + printable(event.detail, glyphs);
    return text;
}

void PlainReporter::tell(const Event& event) {
    Output& output = isTrouble(event.kind) ? errors_ : output_;
    output.write((eventText(event, glyphs_) + u'\n').toUtf8());
}

void LiveReporter::tell(const Event& event) {
    // The figures below tell that it has started.
    if (event.kind == Event::Kind::Started)
        return;
    pending_.push_back({{{0, eventText(event, glyphs_), inkOf(event.kind)}}});
    if (!isReleased_ && output_.isReady())
        tellPending();
}

void LiveReporter::tellPending() {
    if (pending_.empty())
        return;
    output_.write(screen_.printAbove(pending_));
    pending_.clear();
}

void LiveReporter::show(const ProgressSnapshot& snapshot) {
    if (!output_.isReady())
        return;
    isReleased_ = false;
    tellPending();
    if (!output_.isInForeground()) {
        // The other job leaves the terminal in a state of its own.
        screen_.invalidate();
        return;
    }
    const Size size = output_.size();
    if (size_ && *size_ != size)
        screen_.invalidate();
    size_ = size;
    const QByteArray bytes = screen_.show(progressLines(snapshot, size, glyphs_));
    if (!bytes.isEmpty())
        output_.write(bytes);
}

void LiveReporter::release() {
    tellPending();
    const QByteArray bytes = screen_.clear();
    if (!bytes.isEmpty())
        output_.write(bytes);
    isReleased_ = true;
}

}  // namespace app::terminal
