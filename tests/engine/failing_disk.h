#pragma once

#include <QtGlobal>

namespace engine_test {

/// While it lives, writing at offsets (pwrite) takes so many bytes more and then fails, as on a
/// disk that is full. The last write before that may be a short one.
class FailingDisk {
public:
    FailingDisk(int errorNumber, qint64 room);
    ~FailingDisk();
    FailingDisk(const FailingDisk&) = delete;
    FailingDisk& operator=(const FailingDisk&) = delete;
};

/// While it lives, a file that is written to behind its end (pwrite) has zeros up to there written,
/// as on the file systems of sticks and cameras.
class HolelessDisk {
public:
    HolelessDisk();
    ~HolelessDisk();
    HolelessDisk(const HolelessDisk&) = delete;
    HolelessDisk& operator=(const HolelessDisk&) = delete;
};

/// While it lives, syncing a file (fdatasync) on the disk that holds `path` does not return.
class HangingDisk {
public:
    explicit HangingDisk(const char* path);
    ~HangingDisk();
    HangingDisk(const HangingDisk&) = delete;
    HangingDisk& operator=(const HangingDisk&) = delete;
};

/// While it lives, no file without a name is given one (linkat), as where /proc is not mounted.
class UnlinkableFiles {
public:
    UnlinkableFiles();
    ~UnlinkableFiles();
    UnlinkableFiles(const UnlinkableFiles&) = delete;
    UnlinkableFiles& operator=(const UnlinkableFiles&) = delete;
};

/// While it lives, nothing can be renamed.
class FailingRenames {
public:
    explicit FailingRenames(int errorNumber);
    ~FailingRenames();
    FailingRenames(const FailingRenames&) = delete;
    FailingRenames& operator=(const FailingRenames&) = delete;
};

}  // namespace engine_test
