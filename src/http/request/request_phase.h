#pragma once

namespace http {

/// Where a request is in its course; each is reached from those before it, and a redirect, another
/// send or an answer to a question goes back to the second or third.
enum class RequestPhase {
    New,           ///< Not started; perhaps it has been cancelled before it could be.
    Preparing,     ///< Makes its message and looks for a proxy.
    Transferring,  ///< A stream is open.
    Answered,      ///< The response is at its end; what follows from it is being done.
    Ended,         ///< For good: well, or with an error.
    Cancelled,     ///< For good, by somebody on this side.
};

/// What follows from the head of the response in hand, once its body has ended.
enum class Sequel {
    Nothing,             ///< It is the answer.
    Redirect,            ///< Another address is asked.
    RedirectInQuestion,  ///< The same, if the delegate wants it so.
    ServerCredentials,   ///< It is asked again, with credentials.
    ProxyCredentials,
};

/// For whom it runs.
enum class RequestRole {
    Ordinary,
    Synchronous,  ///< For a thread that waits for it; nobody can be asked anything meanwhile.
    ProxyScript,  ///< Fetches a script for another request, and needs no proxy itself.
};

}  // namespace http
