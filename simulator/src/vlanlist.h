#pragma once

#include <simulator/switchstate.h>

#include <QtCore/QByteArrayList>

namespace simulator {

VlanSet allVlans();

/// `2 5 to 9`, as commands and configuration write it, in lines of at most `perLine` ranges.
QByteArrayList vlanListLines(const VlanSet &vlans, int perLine = 10);
QByteArray vlanListText(const VlanSet &vlans);

} // namespace simulator
