#pragma once

#include <QtCore/QString>
#include <QtCore/QtGlobal>

/// What a system can deny a program, for tests of what happens then. The functions say whether the system has such a
/// thing.
namespace systemlimits {

/// Acts as a user without privileges until it goes out of scope. A superuser passes every permission check, so that
/// without this a test of a denied file would test nothing in a container.
class UnprivilegedScope
{
public:
    UnprivilegedScope();
    ~UnprivilegedScope();
    UnprivilegedScope(const UnprivilegedScope &) = delete;
    UnprivilegedScope &operator=(const UnprivilegedScope &) = delete;

    /// False when the process still passes permission checks that it should fail.
    bool isUnprivileged() const { return _isUnprivileged; }

private:
    bool _isUnprivileged = false;
    bool _wasChanged = false;
};

/// Files of this process cannot grow beyond so many bytes while this exists: writing further fails as on a full disk.
class FileSizeLimit
{
public:
    explicit FileSizeLimit(qint64 bytes);
    ~FileSizeLimit();
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;

    bool isInForce() const { return _isInForce; }

private:
    bool _isInForce = false;
    quint64 _before = 0;
};

/// Makes a named pipe in the file system.
bool makePipe(const QString &path);

bool makeSymbolicLink(const QString &target, const QString &path);

/// A device that can be opened for writing and takes nothing; empty where there is none.
QString fullDevice();

} // namespace systemlimits
