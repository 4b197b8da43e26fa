#include "interfacenames.h"

#include "text.h"

#include <utility>

namespace simulator {

namespace {

// Qt's own conversion accepts signs and blanks.
std::optional<int> plainNumber(const QByteArray &text)
{
    if (text.isEmpty() || text.size() > 6)
        return std::nullopt;
    int value = 0;
    for (const char sign : text) {
        if (sign < '0' || sign > '9')
            return std::nullopt;
        value = value * 10 + (sign - '0');
    }
    return value;
}

bool isPort(InterfaceKind kind)
{
    return kind == InterfaceKind::Gigabit || kind == InterfaceKind::TenGigabit || kind == InterfaceKind::FortyGigabit;
}

} // namespace

std::pair<QByteArray, QByteArray> splitInterfaceName(const QByteArray &word)
{
    int start = word.size();
    while (start > 0
           && ((word[start - 1] >= '0' && word[start - 1] <= '9') || word[start - 1] == '/' || word[start - 1] == '.'))
        --start;
    return {word.left(start), word.mid(start)};
}

InterfaceNames::InterfaceNames(std::vector<InterfaceType> types, const SwitchHardware &hardware)
    : _types(std::move(types))
    , _hardware(hardware)
{}

const InterfaceType *InterfaceNames::type(InterfaceKind kind) const
{
    for (const InterfaceType &type : _types) {
        if (type.kind == kind)
            return &type;
    }
    return nullptr;
}

QByteArray InterfaceNames::longName(const InterfaceId &id) const
{
    const InterfaceType *const found = type(id.kind);
    const QByteArray name = found ? found->longName + found->path + number(id.number) : QByteArray();
    return id.sub > 0 ? name + '.' + number(id.sub) : name;
}

QByteArray InterfaceNames::shortName(const InterfaceId &id) const
{
    const InterfaceType *const found = type(id.kind);
    return found ? found->shortName + found->path + number(id.number) : QByteArray();
}

QByteArray InterfaceNames::longName(std::size_t port) const
{
    return longName(id(port));
}

QByteArray InterfaceNames::shortName(std::size_t port) const
{
    return shortName(id(port));
}

QByteArray InterfaceNames::path(std::size_t port) const
{
    const InterfaceType *const found = type(_hardware.ports[port].kind);
    return (found ? found->path : QByteArray()) + number(_hardware.ports[port].number);
}

const InterfaceType *InterfaceNames::findType(const QByteArray &word) const
{
    const InterfaceType *found = nullptr;
    for (const InterfaceType &type : _types) {
        if (isSame(word, type.longName) || isSame(word, type.shortName))
            return &type;
        if (isBeginning(word, type.longName)) {
            if (found)
                return nullptr;
            found = &type;
        }
    }
    return found;
}

std::optional<InterfaceId> InterfaceNames::find(const InterfaceType &type, const QByteArray &numberPart) const
{
    if (!numberPart.startsWith(type.path))
        return std::nullopt;
    const QByteArrayList parts = numberPart.mid(type.path.size()).split('.');
    const auto main = plainNumber(parts.first());
    const auto sub = parts.size() == 2 ? plainNumber(parts.last()) : std::optional<int>(0);
    if (!main || !sub || parts.size() > 2 || *sub > kLastVlan || (parts.size() == 2 && *sub == 0))
        return std::nullopt;
    const bool exists = isPort(type.kind) ? _hardware.findPort(type.kind, *main).has_value()
                                          : *main >= type.firstNumber && *main <= type.lastNumber && *sub == 0;
    return exists ? std::optional<InterfaceId>({type.kind, *main, *sub}) : std::nullopt;
}

std::optional<std::size_t> InterfaceNames::portIndex(const InterfaceId &id) const
{
    return isPort(id.kind) && id.sub == 0 ? _hardware.findPort(id.kind, id.number) : std::nullopt;
}

InterfaceId InterfaceNames::id(std::size_t port) const
{
    return {_hardware.ports[port].kind, _hardware.ports[port].number, 0};
}

QByteArrayList InterfaceNames::typeNames() const
{
    QByteArrayList names;
    for (const InterfaceType &type : _types)
        names << type.longName;
    return names;
}

} // namespace simulator
