#include "engine/finishing/verification.h"

#include <utility>

#include "engine/context.h"
#include "engine/record/download_record.h"
#include "links/paths/file_attributes.h"
#include "platform/files/disks.h"
#include "platform/files/files.h"

namespace engine {
FileSum sumOfFile(const QString& path, QCryptographicHash::Algorithm algorithm,
                  const std::atomic<bool>& isCancelled) {
    return SumReader(path, algorithm).finish(isCancelled);
}

FileSum sumOfFile(const QString& path, QCryptographicHash::Algorithm algorithm,
                  const std::shared_ptr<SumReader>& begun, const std::atomic<bool>& isCancelled) {
    const bool goesOn = begun && begun->algorithm() == algorithm && begun->isReading(path);
    return goesOn ? begun->finish(isCancelled) : sumOfFile(path, algorithm, isCancelled);
}

void writeChecksum(const Checksum& checksum, const QString& path) {
    static_cast<void>(platform::setExtendedAttribute(
        path, QString::fromUtf16(links::attributes::checksum), checksum.text().toLatin1()));
}

void Verification::begin(DownloadRecord& record, QCryptographicHash::Algorithm algorithm,
                         std::function<void(const FileSum&)> completion) {
    cancel();
    isCancelled_ = std::make_shared<std::atomic<bool>>(false);
    const auto sum = std::make_shared<FileSum>();
    const QString path = record.path();
    record.context().disks.holding(path).run(
        [path, algorithm, sum, isCancelled = isCancelled_] {
            *sum = sumOfFile(path, algorithm, *isCancelled);
            if (sum->checksum)
                writeChecksum(*sum->checksum, path);
        },
        [weak = record.weak_from_this(), sum, isCancelled = isCancelled_,
         completion = std::move(completion)] {
            const auto kept = weak.lock();
            if (kept && !*isCancelled)
                completion(*sum);
        });
}

void Verification::cancel() {
    if (isCancelled_)
        *isCancelled_ = true;
}

}  // namespace engine
