#pragma once

#include <QString>
#include <vector>

namespace app {

/// A piece of what somebody pasted, dropped or typed in which there is nothing to download.
struct RefusedText {
    enum class Reason {
        NoAddress,    ///< Prose, above all.
        LacksScheme,  ///< "www.example.org/x".
        OtherScheme,  ///< "magnet:?xt=...".
        Malformed,    ///< Of http or https, but no server can be made out in it.
        TooLong       ///< No server takes so many characters.
    };

    QString text;  ///< As it stands; of one that is too long the beginning.
    Reason reason = Reason::NoAddress;
    /// What to offer for correction: `text`, or the address in it with the scheme that it lacks.
    QString proposal;
};

[[nodiscard]] RefusedText refusedText(const QString& text);

/// Why it was refused, with the text: a line for a terminal.
[[nodiscard]] QString refusalLine(const RefusedText& refused);
/// Why these were refused, in a few sentences.
[[nodiscard]] QString refusalExplanation(const std::vector<RefusedText>& refused);

}  // namespace app
