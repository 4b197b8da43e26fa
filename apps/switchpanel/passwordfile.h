// The password of a switch from a file, so that it never stands on a command line.
#pragma once

#include "language.h"

struct PasswordFile
{
    QString password;
    QString error; //!< a sentence for the user, empty when all is well
};

//! The first line of the file, without its line end (LF or CR LF) and without a byte-order mark. Blanks count. A file
//! that cannot be read, an empty first line, control characters and text that is not UTF-8 are errors.
PasswordFile readPasswordFile(const QString &path, Language language);
