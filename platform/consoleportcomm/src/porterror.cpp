#include "porterror.h"

#include <lxtranslate/translator.h>

#include <atomic>

namespace {

std::atomic<const lumen::trans::Translator *> theTranslator{nullptr};

// %1 is the port, %2 the detail.
QString sourceText(PortError::Kind kind)
{
    switch (kind) {
    case PortError::Kind::None:
        return {};
    case PortError::Kind::NoPortChosen:
        return QStringLiteral("未选择串口");
    case PortError::Kind::BadBaudRate:
        return QStringLiteral("串口 %1 不支持波特率 %2");
    case PortError::Kind::UnsupportedSettings:
        return QStringLiteral("串口 %1 只支持8个数据位、无校验、1个停止位、无流控");
    case PortError::Kind::ThreadNotRunning:
        return QStringLiteral("串口 %1 无法使用：串口线程未运行");
    case PortError::Kind::NoSuchPort:
        return QStringLiteral("串口 %1 不存在，请检查连接线");
    case PortError::Kind::NoPermission:
        return QStringLiteral("没有权限打开串口 %1");
    case PortError::Kind::Busy:
        return QStringLiteral("串口 %1 正被其他程序占用");
    case PortError::Kind::NotATerminal:
        return QStringLiteral("%1 不是串口");
    case PortError::Kind::OpenTimedOut:
        return QStringLiteral("打开串口 %1 超时");
    case PortError::Kind::OpenRevoked:
        return QStringLiteral("已取消打开串口 %1");
    case PortError::Kind::OpenFailed:
        return QStringLiteral("无法打开串口 %1：%2");
    case PortError::Kind::NotOpen:
        return QStringLiteral("串口未打开");
    case PortError::Kind::WriteTimedOut:
        return QStringLiteral("串口 %1 发送超时");
    case PortError::Kind::WriteFailed:
        return QStringLiteral("串口 %1 发送失败：%2");
    case PortError::Kind::Vanished:
        return QStringLiteral("串口 %1 已断开，请检查连接线");
    }
    return {};
}

} // namespace

QString PortError::text() const
{
    const QString text = portText(sourceText(kind));
    // One call for both: a port name with a placeholder in it must not be filled in again.
    if (text.contains(QLatin1String("%2")))
        return text.arg(port, detail);
    return text.contains(QLatin1String("%1")) ? text.arg(port) : text;
}

void setPortTextTranslator(const lumen::trans::Translator *translator)
{
    theTranslator = translator;
}

QString portText(const QString &source)
{
    return lumen::trans::translate(theTranslator, QStringLiteral("ConsolePort"), QString(), source);
}
