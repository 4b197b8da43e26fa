// A hostile switch, hostile blocks and passing time at the console session. Whatever comes, each block gets its one
// reply, and it makes no difference in which pieces the bytes come.
#include "consolesession.h"
#include "generaldescription.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <vector>

namespace {

using namespace ovra::bll;
using std::chrono::milliseconds;

// What happens besides bytes from the switch.
enum Step : std::uint8_t {
    kShortWhile = 0xf0,
    kWhile = 0xf1,
    kLongWhile = 0xf2,
    kNextDue = 0xf3,
    kBlock = 0xf4, // the bytes up to the next kEnd
    kPrepared = 0xf5,
    kLost = 0xf6,
    kReconnected = 0xf7,
    kEcho = 0xf8, // the switch echoes what was typed last
    kEnd = 0xff
};

constexpr int kMostSteps = 100000;

void require(bool condition)
{
    if (!condition)
        std::abort();
}

// The general one, with commands in it.
std::shared_ptr<const DeviceDescription> description()
{
    auto made = std::make_shared<DeviceDescription>(*generalDescription());
    made->session.questions.push_back({"reboot", "reboot", "Y"});
    made->session.questions.push_back({"save", {}, "Y"});
    made->session.slowCommands.push_back({"save", std::chrono::seconds(120)});
    made->session.restarts = {"reboot"};
    made->session.expectedRefusals = {"undo"};
    ReplyRule rule;
    rule.command = "display";
    rule.kind = ReplyRule::Kind::Drop;
    rule.text = "GE#/#.";
    made->replyRules.push_back(rule);
    rule.kind = ReplyRule::Kind::End;
    rule.command.clear();
    rule.text = "fail";
    made->replyRules.push_back(rule);
    return made;
}

class Run
{
public:
    Run(bool isByteByByte, bool hasDescription)
        : _isByteByByte(isByteByByte)
        , _session([hasDescription] { return hasDescription ? description() : nullptr; })
    {
        _session.connected();
    }

    void play(const std::uint8_t *data, std::size_t size)
    {
        QByteArray bytes;
        for (std::size_t at = 0; at < size; ++at) {
            if (data[at] < kShortWhile || data[at] > kEcho) {
                bytes.append(static_cast<char>(data[at]));
                continue;
            }
            feed(bytes);
            bytes.clear();
            if (data[at] == kBlock) {
                QByteArray block;
                while (++at < size && data[at] != kEnd)
                    block.append(static_cast<char>(data[at]));
                submit(block);
            } else {
                step(data[at]);
            }
        }
        feed(bytes);
        for (int i = 0; _session.dueAt(); ++i) {
            require(i < kMostSteps);
            step(kNextDue);
        }
        require(_replies == _blocks);
    }

    QByteArray transcript() const { return _transcript; }

private:
    void feed(const QByteArray &bytes)
    {
        if (!_isByteByByte)
            return keep(_session.receive(bytes, _now));
        for (const char byte : bytes)
            keep(_session.receive(QByteArray(1, byte), _now));
    }

    void submit(const QByteArray &block)
    {
        ++_blocks;
        keep(_session.submit(block, _now));
    }

    void step(std::uint8_t kind)
    {
        switch (kind) {
        case kShortWhile:
            return pass(milliseconds(25));
        case kWhile:
            return pass(milliseconds(300));
        case kLongWhile:
            return pass(milliseconds(2000));
        case kNextDue:
            if (const auto due = _session.dueAt()) {
                _now = std::max(_now, *due);
                keep(_session.advance(_now));
            }
            return;
        case kPrepared:
            return submit(_prepared[_blocks % _prepared.size()]);
        case kLost:
            keep(_session.connectionLost());
            require(_replies == _blocks);
            return;
        case kReconnected:
            _session.connected();
            _blocks = _replies; // they are never answered
            _wasEmpty = false;  // as on a line that nothing is known of
            return;
        case kEcho:
            return feed(_typed);
        default:
            return;
        }
    }

    void pass(milliseconds time)
    {
        const auto end = _now + time;
        for (int i = 0; _session.dueAt() && *_session.dueAt() <= end; ++i) {
            require(i < kMostSteps);
            step(kNextDue);
        }
        _now = end;
    }

    void keep(const SessionActions &actions)
    {
        for (const SessionAction &action : actions) {
            if (action.kind == SessionAction::Kind::Send) {
                require(!action.bytes.isEmpty());
                _typed = action.bytes;
                _transcript += "typed " + action.bytes + '\n';
            } else if (action.kind == SessionAction::Kind::Deliver) {
                require(++_replies <= _blocks);
                require(!_wasEmpty || !action.bytes.isEmpty());
                _wasEmpty = action.bytes.isEmpty();
                _transcript += "reply " + action.bytes + '\n';
            }
        }
    }

    const bool _isByteByByte;
    const std::vector<QByteArray> _prepared{"\r\n",          "display vlan\r\nspace",
                                            "save\r\nY\r\n", "    \r\n",
                                            "reboot\r\n",    "system-view\r\nvlan 20\r\nreturn\r\n"};
    ConsoleSession _session;
    ConsoleSession::Time _now{std::chrono::hours(1)};
    std::size_t _blocks = 0;
    std::size_t _replies = 0;
    bool _wasEmpty = false;
    QByteArray _typed;
    QByteArray _transcript;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const bool hasDescription = (data[0] & 1U) != 0;
    Run whole(false, hasDescription);
    whole.play(data + 1, size - 1);
    Run pieces(true, hasDescription);
    pieces.play(data + 1, size - 1);
    require(whole.transcript() == pieces.transcript());
    return 0;
}
