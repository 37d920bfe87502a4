#include "links/names/content_disposition.h"

#include <gtest/gtest.h>

#include "support/printers.h"

using namespace Qt::Literals::StringLiterals;

namespace {

struct Case {
    QString field;
    QString name;
};

TEST(ContentDisposition, Names) {
    const Case cases[] = {
        // Extended.
        {u"attachment; filename*=UTF-8''a%20b.zip"_s, u"a b.zip"_s},
        {u"attachment; filename=\"plain.zip\"; filename* = utf-8'en' %C3%A4.zip ;x"_s, u"ä.zip"_s},
        {u"attachment; filename*=utf-8''%2Fetc%2Fx.zip"_s, u"x.zip"_s},
        {u"attachment; filename*=UTF-8''%E4.zip"_s, u"ä.zip"_s},
        {u"attachment; filename*=UTF-8''50%.zip"_s, u"50%.zip"_s},
        {u"attachment; filename*=iso-8859-1''x.zip"_s, u""_s},
        {u"attachment; filename*=iso-8859-1''%E4.zip; filename=\"a.zip\""_s, u"a.zip"_s},
        {u"attachment; filename*=utf-8'' ; filename=\"a.zip\""_s, u"a.zip"_s},
        // Quoted.
        {u"attachment; FileName = \" a;b.zip \"; size=3"_s, u"a;b.zip"_s},
        {uR"(attachment; filename="say \"hi\".zip"; x="y")"_s, uR"(say \"hi\".zip)"_s},
        {uR"(attachment; filename="C:\dir\x.zip")"_s, uR"(C:\dir\x.zip)"_s},
        {uR"(attachment; filename="ends\\")"_s, uR"(ends\\)"_s},
        {u"attachment; filename=\"../../x.zip\""_s, u"x.zip"_s},
        // Token.
        {u"attachment; filename=x.zip"_s, u"x.zip"_s},
        {u"attachment; filename = 'x y.zip' "_s, u"x y.zip"_s},
        {u"attachment; filename=x.zip; size=3"_s, u"x.zip; size=3"_s},
        {u"attachment; filename=a/b/x.zip"_s, u"x.zip"_s},
        {u"attachment; filename=\"unclosed.zip"_s, u"\"unclosed.zip"_s},
        {u"attachment; filename=\"\""_s, u""_s},
        {u"attachment; filename=''"_s, u""_s},
        {u"attachment; filename=\""_s, u"\""_s},
        {u"attachment; filename="_s, u""_s},
        {u"attachment; filename"_s, u""_s},
        {u"inline"_s, u""_s},
        {u""_s, u""_s},
    };
    for (const Case& c : cases)
        EXPECT_EQ(links::filenameFromContentDisposition(c.field), c.name) << qPrintable(c.field);
}

TEST(ContentDisposition, HugeFieldsEnd) {
    const QString slashes = u"filename=\""_s + QString(300'000, u'\\');
    EXPECT_EQ(links::filenameFromContentDisposition(slashes).size(), 16384 - 9);
    const QString names = u"filename=\\\""_s.repeated(30'000);
    EXPECT_FALSE(links::filenameFromContentDisposition(names).isEmpty());
}

}  // namespace
