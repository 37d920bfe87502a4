#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <optional>

namespace platform {
class Descriptor;
}

namespace links {

/// The extended attributes that we write, all in the "user." namespace, the only one open to
/// everyone (xattr(7)).
namespace attributes {
/// The addresses that a file came from: a binary property list, an array of strings.
inline constexpr char16_t sourceURLs[] = u"user.orlop.source-urls";
/// How much of a file has arrived: a decimal fraction from 0 to 1 in ASCII.
inline constexpr char16_t fractionCompleted[] = u"user.orlop.fraction-completed";
/// Which download a finished file belongs to; see engine/finishing/finished_files.h.
inline constexpr char16_t downloadMark[] = u"user.orlop.download";
/// What the bytes of a file added up to when they were last looked at, as "sha256=9f86...".
inline constexpr char16_t checksum[] = u"user.orlop.checksum";
/// The three that desktops share (freedesktop.org, Common Extended Attributes).
inline constexpr char16_t originURL[] = u"user.xdg.origin.url";
inline constexpr char16_t referrerURL[] = u"user.xdg.referrer.url";
inline constexpr char16_t comment[] = u"user.xdg.comment";
}  // namespace attributes

/// Beware: true says that the attribute of an existing file could NOT be set, false that it was set
/// or that there is no file.
bool setDataForExtendedFileAttribute(const QString& path, const QByteArray& data,
                                     const QString& attribute);
/// Nothing: no such file or attribute, or an empty one.
[[nodiscard]] std::optional<QByteArray> dataForExtendedFileAttribute(const QString& path,
                                                                     const QString& attribute);

/// The same with a value, kept as a binary property list. An invalid value: nothing is stored.
bool setValueForExtendedFileAttribute(const QString& path, const QVariant& value,
                                      const QString& attribute);
/// Invalid: none, or not a property list.
[[nodiscard]] QVariant valueForExtendedFileAttribute(const QString& path, const QString& attribute);

/// The comment that file managers show for a file. Whether it was stored.
bool setSpotlightComment(const QString& path, const QString& comment);

/// Keeps where a file came from: all of `urlStrings`, the first also as its origin and the second,
/// which is where the user began, as its referrer; with `alsoAsComment` (the setting "Store Source
/// URL In Spotlight Comment") as its comment too. User names, passwords and fragments are left out.
/// Whether the list was stored.
bool setSourceURLStrings(const QString& path, const QStringList& urlStrings, bool alsoAsComment);
bool setSourceURLStrings(const platform::Descriptor& file, const QStringList& urlStrings,
                         bool alsoAsComment);
/// Whether that is what the first of the addresses kept there was.
[[nodiscard]] bool isFromURLString(const QString& path, const QString& urlString);

/// `fraction` is a decimal number from 0 to 1, in ASCII. Whether it was stored.
bool setFractionCompleted(const QString& path, const QString& fraction);

}  // namespace links
