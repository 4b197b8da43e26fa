#include "vlanlist.h"

#include "text.h"

namespace simulator {

VlanSet allVlans()
{
    return VlanSet().set().reset(0);
}

QByteArrayList vlanListLines(const VlanSet &vlans, int perLine)
{
    QByteArrayList lines, ranges;
    for (int first = 1; first <= kLastVlan; ++first) {
        if (!vlans.test(static_cast<std::size_t>(first)))
            continue;
        int last = first;
        while (last < kLastVlan && vlans.test(static_cast<std::size_t>(last) + 1))
            ++last;
        if (ranges.size() == perLine)
            lines << ranges.join(' '), ranges.clear();
        // Two neighbours are written one by one.
        ranges << (last == first ? number(first) : number(first) + (last == first + 1 ? " " : " to ") + number(last));
        first = last;
    }
    if (!ranges.isEmpty())
        lines << ranges.join(' ');
    return lines;
}

QByteArray vlanListText(const VlanSet &vlans)
{
    return vlanListLines(vlans, kLastVlan).join(' ');
}

} // namespace simulator
