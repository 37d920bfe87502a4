#pragma once

#include <QString>

namespace app {

/// What a user is told who is asked for a name and a password. The texts are in the user's
/// language; what servers contribute to them is one printable line.
struct AuthenticationQuestion {
    QString explanation;
    QString securityInfo;
    QString host;  ///< Who will get the password, with its port if the address has one.
    bool isForProxy = false;
    bool needsDomain = false;
    bool storesPassword = true;  ///< What the switch for keeping it shows at first.
};

struct AuthenticationAnswer {
    QString domain, name, password;
    bool storesPassword = true;
};

/// Where one user is asked one such question at a time. Main thread.
class AuthenticationPrompt {
public:
    /// Who takes the answer.
    class Client {
    public:
        virtual void applyCredentialsFromDialog(const AuthenticationAnswer& answer) = 0;
        virtual void cancelDialog() = 0;

    protected:
        ~Client() = default;
    };

    virtual ~AuthenticationPrompt() = default;

    [[nodiscard]] virtual bool isVisible() const = 0;
    /// Comes up, or shows the next question in place of the last one, without waiting for the
    /// answer; one operation of `client` is called later. False: nobody is there to be asked.
    [[nodiscard]] virtual bool show(const AuthenticationQuestion& question, Client& client) = 0;
    /// Goes away; the client hears nothing any more.
    virtual void close() = 0;
};

}  // namespace app
