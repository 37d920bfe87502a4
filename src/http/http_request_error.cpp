#include "http/http_request_error.h"

#include <cxxabi.h>

#include <cstdlib>
#include <typeinfo>

#include "platform/net/http_read_stream.h"

namespace http {

using namespace Qt::Literals::StringLiterals;
using platform::Error;

Error makeRequestError(HTTPRequestErrorCode code, const QString& text) {
    return {httpRequestErrorDomain, static_cast<int>(code), text, nullptr};
}

Error makeRequestError(HTTPRequestErrorCode code, const QString& text, const Error& underlying) {
    return {httpRequestErrorDomain, static_cast<int>(code), text,
            std::make_shared<const Error>(underlying)};
}

Error timedOutError() {
    return makeRequestError(HTTPRequestErrorCode::TimedOut, u"The request timed out"_s);
}

Error authenticationError() {
    return makeRequestError(HTTPRequestErrorCode::Authentication, u"Authentication needed"_s);
}

Error cancelledError() {
    return makeRequestError(HTTPRequestErrorCode::Cancelled, u"The request was cancelled"_s);
}

Error unableToCreateRequestError() {
    return makeRequestError(HTTPRequestErrorCode::UnableToCreateRequest,
                            u"Unable to create request (bad url?)"_s);
}

Error tooMuchRedirectionError() {
    return makeRequestError(HTTPRequestErrorCode::TooMuchRedirection,
                            u"The request failed because it redirected too many times"_s);
}

Error fileAttributesError(const QString& path) {
    return makeRequestError(HTTPRequestErrorCode::FileManagement,
                            u"Failed to get attributes for file at path '%1'"_s.arg(path));
}

Error fileMoveError(const QString& from, const QString& to) {
    return makeRequestError(HTTPRequestErrorCode::FileManagement,
                            u"Failed to move file from '%1' to '%2'"_s.arg(from, to));
}

Error fileDeletionError(const QString& path) {
    return makeRequestError(HTTPRequestErrorCode::FileManagement,
                            u"Failed to delete file at path '%1'"_s.arg(path));
}

Error fileWriteError(const QString& path) {
    return makeRequestError(HTTPRequestErrorCode::FileManagement,
                            u"Failed to write file at path '%1'"_s.arg(path));
}

Error unhandledExceptionError(const std::exception& exception) {
    const char* const mangled = typeid(exception).name();
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> name(
        abi::__cxa_demangle(mangled, nullptr, nullptr, &status), &std::free);
    const Error reason = makeRequestError(HTTPRequestErrorCode::UnhandledException,
                                          QString::fromLocal8Bit(exception.what()));
    return makeRequestError(HTTPRequestErrorCode::UnhandledException,
                            QString::fromLatin1(name ? name.get() : mangled), reason);
}

bool hasRequestErrorCode(const Error& error, HTTPRequestErrorCode code) {
    return error.is(httpRequestErrorDomain, static_cast<int>(code));
}

}  // namespace http
