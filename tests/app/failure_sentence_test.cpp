#include "app/failures/failure_sentence.h"

#include "app/failures/file_problem.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QTemporaryDir>
#include <cerrno>

#include "engine/workers/download_worker_prototype.h"
#include "http/http_request_error.h"
#include "platform/base/user_defaults.h"
#include "platform/net/http_authentication.h"
#include "platform/net/http_read_stream.h"
#include "platform/net/transfer_error.h"
#include "support/printers.h"

namespace {

using namespace Qt::Literals::StringLiterals;
using app::failureSentence;
using engine::WorkerErrorCode;
using http::HTTPRequestErrorCode;
using platform::Error;

/// As a request reports what its stream met.
Error connectionFailure(const Error& cause) {
    return http::makeRequestError(HTTPRequestErrorCode::ConnectionFailure,
                                  u"A connection failure occurred"_s, cause);
}

Error transferError(CURLcode code, int systemError = 0, long verification = 0) {
    return connectionFailure(
        platform::errorForResult({code, u"libcurl: SSL_read 0x7f"_s, systemError, verification}));
}

Error workerError(WorkerErrorCode code, int systemError) {
    const Error cause = platform::posixError(systemError);
    return engine::makeWorkerError(code, u"<DQHTTPRequestDownloadWorker 0x55d0> cannot write"_s,
                                   &cause);
}

/// Sizes are written as the settings want it.
class FailureSentence : public ::testing::Test {
protected:
    FailureSentence() { platform::installStandardDefaults(&defaults); }
    ~FailureSentence() override { platform::installStandardDefaults(nullptr); }

    QTemporaryDir folder;
    platform::UserDefaults defaults{folder.path(), u"Test"_s};
};

TEST_F(FailureSentence, SaysWhyAFileCannotBeReadOrWritten) {
    struct Case {
        int code;
        const char* reading;
        const char* writing;
    };
    for (const Case& c :
         {Case{EACCES, "You are not allowed to read it.", "Its folder cannot be written to."},
          {ENOENT, "The file or its folder is gone.", "The file or its folder is gone."},
          {EISDIR, "It is a folder.", "A folder lies in its place."},
          {ENOSPC, "The log says more.", "The disk is full."},
          {EROFS, "The log says more.", "Its disk cannot be written to."},
          {EIO, "The disk reports an error.", "The disk reports an error."},
          {ELOOP, "The log says more.", "The log says more."}}) {
        const Error error = platform::posixError(c.code);
        EXPECT_EQ(app::readingProblem(error).toStdString(), c.reading);
        EXPECT_EQ(app::writingProblem(error).toStdString(), c.writing);
    }
}

TEST_F(FailureSentence, SaysPlainlyWhatHappened) {
    platform::HTTPProxy proxy{platform::HTTPProxy::Kind::Http, u"gate"_s, 3128, {}, {}};
    platform::HTTPResponseHead refusal;
    refusal.statusCode = 502;
    refusal.statusLine = u"HTTP/1.1 502 <b>Bad</b> 0xdeadbeef"_s;
    constexpr long expired = 10, notYetValid = 9, unknownIssuer = 20;
    const std::pair<Error, QString> table[] = {
        {transferError(CURLE_COULDNT_RESOLVE_HOST), u"There is no server of this name."_s},
        {transferError(CURLE_COULDNT_CONNECT, ECONNREFUSED),
         u"The server refused the connection."_s},
        {transferError(CURLE_COULDNT_CONNECT, EHOSTUNREACH), u"The server cannot be reached."_s},
        {transferError(CURLE_COULDNT_RESOLVE_PROXY), u"There is no proxy of the name"_s},
        {connectionFailure(platform::proxyRefusalError(proxy, refusal)),
         u"The proxy gate:3128 answered 502."_s},
        {transferError(CURLE_PEER_FAILED_VERIFICATION),
         u"The certificate is not valid for this host."_s},
        {transferError(CURLE_PEER_FAILED_VERIFICATION, 0, expired),
         u"The certificate of the server has expired"_s},
        {transferError(CURLE_PEER_FAILED_VERIFICATION, 0, notYetValid),
         u"The certificate of the server is not valid yet"_s},
        {transferError(CURLE_PEER_FAILED_VERIFICATION, 0, unknownIssuer),
         u"Nobody who is trusted vouches"_s},
        {transferError(CURLE_SSL_CONNECT_ERROR), u"No secure connection"_s},
        {transferError(CURLE_PARTIAL_FILE),
         u"The server closed the connection after 12 MB of 40 MB."_s},
        {connectionFailure(platform::brokenReusedConnectionError()),
         u"The server closed the connection after 12 MB of 40 MB."_s},
        {connectionFailure(platform::badResponseError(u"0x"_s)),
         u"The server’s answer cannot be used."_s},
        {http::timedOutError(), u"The server stopped answering."_s},
        {http::authenticationError(), u"A name and a password are needed."_s},
        {http::tooMuchRedirectionError(), u"The address leads on to others without end."_s},
        {workerError(WorkerErrorCode::CannotWrite, ENOSPC),
         u"The disk is full: 3 MB free on “Data”."_s},
        {workerError(WorkerErrorCode::CannotWrite, EROFS), u"The folder cannot be written to."_s},
        {workerError(WorkerErrorCode::CannotWrite, EBADF), u"The file cannot be written."_s},
        {engine::makeWorkerError(WorkerErrorCode::WrongPart, u"DQ 0x1"_s),
         u"The server sent something else"_s},
        {http::unhandledExceptionError(std::runtime_error("std::bad_0x12")),
         u"The download failed. The log says more."_s},
    };
    static const QRegularExpression technical(u"0x|::|DQ|HTTP[A-Z]|SSL|libcurl|errno|<"_s);
    for (const auto& [error, sentence] : table) {
        const QString said = failureSentence(error, {12'000'000, 40'000'000, u"Data"_s, 3'000'000});
        EXPECT_TRUE(said.startsWith(sentence)) << said.toStdString();
        EXPECT_FALSE(said.contains(technical)) << said.toStdString();
    }
    EXPECT_EQ(
        failureSentence(workerError(WorkerErrorCode::CannotWrite, ENOSPC), {0, 0, u"Data"_s, 0}),
        u"The disk is full: nothing is free on “Data”."_s);
    EXPECT_EQ(failureSentence(transferError(CURLE_PARTIAL_FILE), {}),
              u"The server closed the connection."_s);
}

}  // namespace
