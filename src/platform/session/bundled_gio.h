#pragma once

#include <QByteArrayList>
#include <QString>

namespace platform {

/// GIO starts programs through a helper and has the desktop's settings from a module, and looks for
/// both where its own distribution keeps them. Where they come along with the program, as in the
/// portable archive, this names them in the environment, as far as that says nothing itself. To be
/// called before there is a second thread.
void useBundledGio();
/// The same for what lies in that folder. Answers the variables that it has set.
QByteArrayList nameBundledGio(const QString& folder);

/// What useBundledGio() has set, and what no other program is to have: it has another GIO.
[[nodiscard]] const QByteArrayList& variablesOfBundledGio();

}  // namespace platform
