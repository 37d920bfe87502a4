#include "links/text/typography.h"

using namespace Qt::Literals::StringLiterals;

namespace links {

QString ellipsisString() {
    return u"\u2026"_s;
}
QString dashString() {
    return u"\u2014"_s;
}
QString spacedDashString() {
    return u" \u2014 "_s;
}
QString stringWithDashesForHyphens(QString text) {
    return text.replace(u" - "_s, spacedDashString());
}
QString bulletString() {
    return u"\u2022"_s;
}
QString spacedBulletString() {
    return u"\u2022 "_s;
}
QString dotString() {
    return u"\u00B7"_s;
}
QString rightTriangleArrowString() {
    return u"\u25B8"_s;
}
QString spacedRightTriangleArrowString() {
    return u" \u25B8 "_s;
}

}  // namespace links
