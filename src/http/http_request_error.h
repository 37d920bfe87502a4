#pragma once

#include <QString>
#include <exception>
#include <memory>

#include "platform/base/error.h"

namespace http {

/// Domain of every error that a request reports.
inline const QString httpRequestErrorDomain = QStringLiteral("HTTPRequestErrorDomain");

/// Codes of httpRequestErrorDomain.
enum class HTTPRequestErrorCode {
    ConnectionFailure = 1,
    TimedOut = 2,
    Authentication = 3,
    Cancelled = 4,
    UnableToCreateRequest = 5,
    InternalStream = 6,
    ApplyingCredentials = 7,
    FileManagement = 8,
    TooMuchRedirection = 9,
    UnhandledException = 10,
    Compression = 11,
};

[[nodiscard]] platform::Error makeRequestError(HTTPRequestErrorCode code, const QString& text);
[[nodiscard]] platform::Error makeRequestError(HTTPRequestErrorCode code, const QString& text,
                                               const platform::Error& underlying);

/// The errors whose text never varies.
[[nodiscard]] platform::Error timedOutError();
[[nodiscard]] platform::Error authenticationError();
[[nodiscard]] platform::Error cancelledError();
[[nodiscard]] platform::Error unableToCreateRequestError();
[[nodiscard]] platform::Error tooMuchRedirectionError();

/// Code 8, with a text for each thing that goes wrong with files.
[[nodiscard]] platform::Error fileAttributesError(const QString& path);
[[nodiscard]] platform::Error fileMoveError(const QString& from, const QString& to);
[[nodiscard]] platform::Error fileDeletionError(const QString& path);
[[nodiscard]] platform::Error fileWriteError(const QString& path);

/// Code 10: the text is the exception's name, the underlying error's what it says.
[[nodiscard]] platform::Error unhandledExceptionError(const std::exception& exception);

[[nodiscard]] bool hasRequestErrorCode(const platform::Error& error, HTTPRequestErrorCode code);

}  // namespace http
