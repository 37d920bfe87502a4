#include <QString>

#include "fuzz_target.h"
#include "links/names/content_disposition.h"
#include "links/paths/path_components.h"

/// A header field as servers send it: what comes out is one component of a path.
void checkInput(const QByteArray& input) {
    const QString field = QString::fromUtf8(input);
    const QString name = links::filenameFromContentDisposition(field);
    require(name == links::lastPathComponent(name));
}
