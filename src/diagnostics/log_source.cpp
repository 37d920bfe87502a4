#include "diagnostics/log_source.h"

namespace diagnostics {

namespace {

class LogTool final : public LogSource {
public:
    bool isAvailable() const override {
        static const bool isThere = !ILRJSONLogStream::toolPath().isEmpty();
        return isThere;
    }
    std::unique_ptr<Stream> start(const QStringList& arguments, LogEntryHandler handler) override {
        return std::make_unique<Running>(arguments, std::move(handler));
    }
    void read(const QStringList& arguments, const LogEntryHandler& handler) override {
        ILRJSONLogStream::waitForStreamWithArguments(arguments, handler);
    }

private:
    struct Running final : Stream {
        Running(const QStringList& arguments, LogEntryHandler handler)
            : stream(arguments, std::move(handler), false) {}
        ILRJSONLogStream stream;
    };
};

}  // namespace

std::unique_ptr<LogSource> makeLogToolSource() {
    return std::make_unique<LogTool>();
}

}  // namespace diagnostics
