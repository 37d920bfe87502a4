#include "engine/finishing/verification.h"

#include <fcntl.h>
#include <unistd.h>
#include <QFile>
#include <cerrno>
#include <utility>

#include "engine/context.h"
#include "engine/record/download_record.h"
#include "links/paths/file_attributes.h"
#include "platform/files/descriptor.h"
#include "platform/files/disks.h"
#include "platform/files/files.h"

namespace engine {
namespace {

/// Between two looks at the cancel flag.
constexpr qsizetype bufferSize = qsizetype{1} << 20;

}  // namespace

FileSum sumOfFile(const QString& path, QCryptographicHash::Algorithm algorithm,
                  const std::atomic<bool>& isCancelled) {
    // Of what is no file an opening may wait for ever.
    const platform::Descriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (!file.isOpen())
        return {{}, platform::posixError(errno)};
    posix_fadvise(file.get(), 0, 0, POSIX_FADV_SEQUENTIAL);
    QCryptographicHash hash(algorithm);
    QByteArray buffer(bufferSize, Qt::Uninitialized);
    while (!isCancelled) {
        const ssize_t got = ::read(file.get(), buffer.data(), bufferSize);
        if (got == 0)
            return {Checksum{algorithm, hash.result()}, {}};
        if (got > 0)
            hash.addData(QByteArrayView(buffer.constData(), got));
        else if (errno != EINTR)
            return {{}, platform::posixError(errno)};
    }
    return {};
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
