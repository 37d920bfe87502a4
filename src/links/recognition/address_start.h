#pragma once

#include <QStringView>
#include <optional>

namespace links {

/// Where an address of http or https begins in a text.
struct AddressStart {
    qsizetype position;
    /// Of what follows the scheme and its slashes.
    qsizetype rest;
};

/// The first one at or behind `from`: "http://" in any case, the disguises that repair knows
/// ("hxxp://", slashes escaped for JSON, an address escaped as a whole) and the colon in brackets
/// of those who want no link ("hxxp[:]//"). Any thread.
[[nodiscard]] std::optional<AddressStart> findAddressStart(QStringView text, qsizetype from = 0);

}  // namespace links
