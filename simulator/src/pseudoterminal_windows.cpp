#include "pseudoterminal.h"

namespace simulator {

// Windows has no pseudo terminals that a serial port could be opened on.

PseudoTerminal::PseudoTerminal() = default;
PseudoTerminal::~PseudoTerminal() = default;

bool PseudoTerminal::isAvailable()
{
    return false;
}

bool PseudoTerminal::open()
{
    _error = QStringLiteral("this system has no pseudo terminals");
    return false;
}

void PseudoTerminal::close() {}

PseudoTerminal::Events PseudoTerminal::wait(std::optional<std::chrono::milliseconds>, bool)
{
    return {};
}

void PseudoTerminal::wake() {}

QByteArray PseudoTerminal::read()
{
    return {};
}

int PseudoTerminal::write(const QByteArray &)
{
    return 0;
}

} // namespace simulator
