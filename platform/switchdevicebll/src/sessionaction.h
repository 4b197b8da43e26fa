#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

namespace ovra {
namespace bll {

/// What the console session wants done.
struct SessionAction
{
    enum class Kind {
        Send,    // `bytes` to the switch
        Deliver, // `bytes`, the reply of a block
        Debug,   // `text`, for developers
        Warning  // `text` in Chinese, to be translated and then filled in with `values`, for the user
    };

    Kind kind = Kind::Send;
    QByteArray bytes;
    QString text;
    QStringList values;
};

using SessionActions = std::vector<SessionAction>;

} // namespace bll
} // namespace ovra
