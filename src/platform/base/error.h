#pragma once

#include <QString>
#include <memory>

namespace platform {

/// A failure: `domain` and `code` for logic, `text` for people.
struct Error {
    QString domain;
    int code = 0;
    QString text;
    /// The error that caused this one; null if there is none.
    std::shared_ptr<const Error> underlying;

    [[nodiscard]] bool is(const QString& otherDomain, int otherCode) const {
        return domain == otherDomain && code == otherCode;
    }
};

/// Domain of errors whose code is an errno value.
inline const QString posixErrorDomain = QStringLiteral("NSPOSIXErrorDomain");

/// The error that an errno value stands for, with the system's text.
[[nodiscard]] Error posixError(int errorNumber);

}  // namespace platform
