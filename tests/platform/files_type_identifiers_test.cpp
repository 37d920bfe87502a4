#include "platform/files/type_identifiers.h"

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace {

TEST(TypeIdentifiers, KnowTypesByNameAliasAndExtension) {
    EXPECT_EQ(platform::typeIdentifierForMimeType(u"application/zip"_s), u"application/zip"_s);
    EXPECT_EQ(platform::typeIdentifierForMimeType(u"application/x-zip-compressed"_s),
              u"application/zip"_s);
    EXPECT_EQ(platform::typeIdentifierForMimeType(u"Text/HTML; charset=utf-8"_s), u"text/html"_s);
    EXPECT_EQ(platform::typeIdentifierForMimeType(u"application/x-no-such"_s), QString());
    EXPECT_EQ(platform::preferredExtensionForType(u"application/zip"_s), u"zip"_s);
    EXPECT_EQ(platform::preferredExtensionForType(u"image/jpeg"_s), u"jpg"_s);
    EXPECT_EQ(platform::preferredExtensionForType(u"nothing"_s), QString());
    EXPECT_EQ(platform::mimeTypeForExtension(u"ZIP"_s), u"application/zip"_s);
    for (const QString& unknown : {u""_s, u"nosuchextension"_s, u"a/b"_s}) {
        EXPECT_EQ(platform::mimeTypeForExtension(unknown), QString());
        EXPECT_EQ(platform::typeIdentifiersForExtension(unknown), QStringList());
    }
}

}  // namespace
