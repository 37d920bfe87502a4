#pragma once

#include <memory>

#include "engine/workers/download_worker_prototype.h"

namespace support {

/// Receives what a test tells it to.
class TestWorker final : public engine::DQDownloadWorkerPrototype {
public:
    explicit TestWorker(const engine::Context& context)
        : engine::DQDownloadWorkerPrototype(context) {}

    [[nodiscard]] static std::shared_ptr<TestWorker> make(const engine::Context& context,
                                                          qint64 start = 0, qint64 resume = 0,
                                                          qint64 end = 0) {
        auto worker = std::make_shared<TestWorker>(context);
        worker->setFractionStartByte(start);
        worker->setResumeByteOffset(resume);
        worker->setEndByte(end);
        return worker;
    }
    /// 0: without saying how much is to come.
    void answer(qint64 length) { processResponse({}, length); }
    void receive(qint64 count) { processDownloadedBytes(count); }

protected:
    [[nodiscard]] Pointer makeAnother() const override {
        return std::make_shared<TestWorker>(context());
    }
    [[nodiscard]] bool startWithRequest(const engine::WorkerRequest&, const QString&,
                                        platform::Seconds) override {
        return true;
    }
    void forgetTarget() override {}
};

}  // namespace support
