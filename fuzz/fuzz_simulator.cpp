// Hostile typing, faults and passing time at the console of the simulated switch.
#include <simulator/memoryterminal.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace simulator;

namespace {

// Above the printable characters: what happens besides typing.
enum Step : std::uint8_t {
    kMoment = 0xf0,
    kSeconds = 0xf1,
    kMinutes = 0xf2,
    kNeighbour = 0xf3,
    kFault = 0xf4,
    kPlugIn = 0xf5
};

class Bytes
{
public:
    Bytes(const std::uint8_t *data, std::size_t size)
        : _data(data)
        , _size(size)
    {}

    bool isEmpty() const { return _size == 0; }
    std::uint8_t take()
    {
        if (_size == 0)
            return 0;
        --_size;
        return *_data++;
    }

private:
    const std::uint8_t *_data;
    std::size_t _size;
};

SimulatorOptions options(Bytes &bytes)
{
    SimulatorOptions made;
    const std::uint8_t kind = bytes.take(), manner = bytes.take(), contents = bytes.take();
    made.family = static_cast<Family>(kind % 3);
    made.start = static_cast<Start>(kind / 3 % 8);
    made.login = static_cast<LoginKind>(kind / 24 % 3);
    made.model = {contents % 5, contents % 3, contents / 5 % 4, contents / 20 % 3, (contents & 0x80U) != 0, {}};
    made.paging = static_cast<Paging>(manner % 3);
    made.twoStage = (manner & 4U) != 0;
    made.initialPasswordQuestion = (manner & 8U) != 0;
    made.firstLoginPassword = (manner & 16U) != 0;
    made.bytesPerSecond = (manner & 32U) != 0 ? 9600 : 0;
    made.largestChunk = (manner & 64U) != 0 ? 40 : 0;
    made.echoRedraw = (manner & 128U) == 0;
    made.hurry = 100;
    made.startupConfiguration = (contents & 1U) == 0;
    return made;
}

Fault fault(Bytes &bytes)
{
    Fault made;
    made.kind = static_cast<FaultKind>(bytes.take() % 14);
    made.line = bytes.take() % 4;
    made.after = bytes.take();
    made.amount = bytes.take() % 32;
    made.time = std::chrono::milliseconds(bytes.take());
    made.text = "Continue? [Y/N]:";
    return made;
}

// Nothing may come over a line that is cut.
void check(const MemoryTerminal &terminal, bool wasCut, const QByteArray &shown)
{
    if (wasCut && terminal.console().isCablePulled() && !shown.isEmpty())
        std::abort();
}

void step(MemoryTerminal &terminal, Bytes &bytes)
{
    const bool wasCut = terminal.console().isCablePulled();
    const std::uint8_t byte = bytes.take();
    switch (byte) {
    case kMoment:
        return check(terminal, wasCut, terminal.advance(std::chrono::milliseconds(50)));
    case kSeconds:
        return check(terminal, wasCut, terminal.advance(std::chrono::seconds(5)));
    case kMinutes:
        return check(terminal, wasCut, terminal.advance(std::chrono::minutes(11)));
    case kNeighbour:
        terminal.console().setNeighbour(bytes.take() % 12, bytes.take() % 2 != 0, terminal.now());
        return;
    case kFault:
        return terminal.console().addFault(fault(bytes));
    case kPlugIn:
        return terminal.console().plugIn();
    default:
        terminal.type(QByteArray(1, static_cast<char>(byte)));
        return check(terminal, wasCut, terminal.advance(Duration::zero()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    Bytes bytes(data, size);
    MemoryTerminal terminal(options(bytes));
    while (!bytes.isEmpty())
        step(terminal, bytes);
    terminal.settle();
    if (!terminal.console().configurationText().endsWith("return\r\n"))
        std::abort();
    return 0;
}
