#pragma once

#include <QStringList>
#include <QVariantList>
#include <functional>

#include "scripting/bus/reply.h"

namespace app {
class DQMainController;
}

namespace scripting {

/// What a front end does when the desktop starts the program over the bus.
struct Launches {
    /// Opens addresses and absolute paths, or only shows the program if there are none. The token
    /// is the desktop's leave to take the focus; it may be empty. `saved` as in `app::Handover`.
    using Saved = std::function<void(bool isSaved)>;
    std::function<void(const QStringList& items, const QString& token, const Saved& saved)> open;
    /// Adds the addresses in the clipboard, once the program is in front. Null: it has no window.
    std::function<void()> addFromClipboard = {};
};

/// The program as launchers meet it: the interface org.freedesktop.Application ("D-Bus Activation"
/// of the Desktop Entry Specification). Main thread.
class Launching {
public:
    /// The controller outlives this.
    Launching(app::DQMainController& controller, Launches launches);

    /// Of the arguments of one of its methods. Null: it has none that is called so.
    [[nodiscard]] static const QString* signatureOf(const QString& method);
    /// `arguments` fit the signature.
    void perform(const QString& method, const QVariantList& arguments, const Reply& reply) const;

private:
    void open(const QStringList& addresses, const QVariant& platformData, const Reply& reply) const;
    void activateAction(const QString& action, const QVariant& platformData,
                        const Reply& reply) const;

    app::DQMainController& controller_;
    const Launches launches_;
};

/// Asks a running program to perform an action of its desktop entry (`app::actions`). False: none
/// runs, or it does not answer. Waits; needs a QCoreApplication.
[[nodiscard]] bool didAskRunningProgram(const QString& action, const QString& token);

}  // namespace scripting
