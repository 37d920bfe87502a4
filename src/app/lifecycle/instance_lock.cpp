#include "app/lifecycle/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <cerrno>

#include "platform/base/error.h"

namespace app {

using namespace Qt::Literals::StringLiterals;

InstanceLock::~InstanceLock() {
    release();
}

void InstanceLock::release() {
    if (descriptor_ >= 0) {
        ::close(descriptor_);
    }
}

InstanceLock::Claim InstanceLock::claim(const QString& supportFolder) {
    release();
    QDir().mkpath(supportFolder);
    // The file is never removed: whoever waits for a removed one would hold a lock on nothing.
    const QByteArray path = QFile::encodeName(supportFolder + u"/Queue.lock"_s);
    descriptor_ = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor_ >= 0 && ::flock(descriptor_, LOCK_EX | LOCK_NB) == 0) {
        return Claim::Owned;
    }
    if (descriptor_ >= 0 && errno == EWOULDBLOCK) {
        return Claim::Taken;
    }
    problem_ =
        u"cannot lock %1: %2"_s.arg(QFile::decodeName(path), platform::posixError(errno).text);
    return Claim::Impossible;
}

}  // namespace app
