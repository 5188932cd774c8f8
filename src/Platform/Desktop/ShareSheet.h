#pragma once

#include <QString>

namespace navorin {

/// Hands a file to other programs. UI thread only; what becomes of it there is not known.
class ShareSheet
{
public:
    virtual ~ShareSheet() = default;

    /// Lets the user choose a program to open it with, or opens it with the usual one where there is no
    /// choice.
    virtual void openWith(const QString &file) = 0;
    /// Its folder, with the file marked where the file manager can do that.
    virtual void showInFileManager(const QString &file) = 0;
    /// To be pasted into a folder or a message.
    virtual void copy(const QString &file) = 0;
};

} // namespace navorin
