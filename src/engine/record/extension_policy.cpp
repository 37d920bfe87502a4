#include "engine/record/extension_policy.h"

#include "links/names/file_names.h"
#include "links/paths/path_components.h"
#include "links/text/trimming.h"
#include "platform/files/type_identifiers.h"

namespace engine {
namespace {

constexpr qint64 ifNone = 1;
constexpr qint64 ifForeign = 2;
constexpr qint64 always = 3;

}  // namespace

QString filenameWithExtensionPolicy(const QString& name, const QString& contentType,
                                    qint64 policy) {
    const QString extension = links::pathExtension(name);
    if (policy < ifNone || policy > always || (policy == ifNone && !extension.isEmpty()))
        return name;
    const QString mimeType = links::trimmedString(contentType.section(u';', 0, 0));
    const QString type =
        mimeType.isEmpty() ? QString() : platform::typeIdentifierForMimeType(mimeType);
    if (type.isEmpty())
        return name;
    if (policy == ifForeign && !extension.isEmpty() &&
        platform::typeIdentifiersForExtension(extension).contains(type, Qt::CaseInsensitive))
        return name;
    const QString preferred = platform::preferredExtensionForType(type);
    if (preferred.isEmpty() || preferred == extension)
        return name;
    return links::stringByAppendingPathExtension(links::cleanFilename(name), preferred);
}

}  // namespace engine
