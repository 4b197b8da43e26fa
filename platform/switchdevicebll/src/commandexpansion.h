#pragma once

#include "devicedescription.h"
#include "devicevalues.h"

#include <QtCore/QStringList>

namespace ovra {
namespace bll {

/// The commands of one block in typing order; or none, and a sentence on the value that was refused.
struct Expansion
{
    QStringList commands;
    QString refusal;
};

/// Puts the values into a block of the description. `ports` are the port texts of a block that repeats over "ports".
///
/// A value reaches a line as a number within its limits, as a port whose type the description names, or as one of the
/// two joining characters, and in no other form. One value that is none of these, and the whole block is refused.
Expansion expand(const CommandList &block, const DeviceDescription &description, const DeviceValues &values,
                 const QStringList &ports = {});

} // namespace bll
} // namespace ovra
