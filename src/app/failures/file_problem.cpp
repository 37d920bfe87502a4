#include "app/failures/file_problem.h"

#include <cerrno>

#include "links/text/localization.h"

namespace app {

using links::localized;

namespace {

bool isForbidden(const platform::Error& error) {
    return error.is(platform::posixErrorDomain, EACCES) ||
           error.is(platform::posixErrorDomain, EPERM);
}

/// Those that mean the same whatever was to be done.
QString commonProblem(const platform::Error& error) {
    if (error.is(platform::posixErrorDomain, ENOENT) ||
        error.is(platform::posixErrorDomain, ENOTDIR))
        return localized("The file or its folder is gone.");
    if (error.is(platform::posixErrorDomain, EIO))
        return localized("The disk reports an error.");
    if (error.is(platform::posixErrorDomain, EFBIG))
        return localized("The file is too large.");
    return localized("The log says more.");
}

}  // namespace

QString readingProblem(const platform::Error& error) {
    if (error.is(platform::posixErrorDomain, EISDIR))
        return localized("It is a folder.");
    return isForbidden(error) ? localized("You are not allowed to read it.") : commonProblem(error);
}

QString writingProblem(const platform::Error& error) {
    if (error.is(platform::posixErrorDomain, ENOSPC) ||
        error.is(platform::posixErrorDomain, EDQUOT))
        return localized("The disk is full.");
    if (error.is(platform::posixErrorDomain, EROFS))
        return localized("Its disk cannot be written to.");
    if (error.is(platform::posixErrorDomain, EISDIR))
        return localized("A folder lies in its place.");
    if (error.is(platform::posixErrorDomain, ENOTDIR))
        return localized("A file lies where its folder should be.");
    return isForbidden(error) ? localized("Its folder cannot be written to.")
                              : commonProblem(error);
}

}  // namespace app
