#pragma once

#include "devicedescription.h"
#include "devicevalues.h"

#include <QtCore/QStringList>

#include <optional>

namespace ovra {
namespace bll {

/// Why a value was refused: `text` in Chinese, to be translated and filled in. %1 is `label`, which is to be translated
/// as well, %2 the first of `values`.
struct Refusal
{
    QString text;
    QString label;
    QStringList values;
};

/// The commands of one block in typing order; or none, and the refusal.
struct Expansion
{
    QStringList commands;
    std::optional<Refusal> refusal;
};

/// Puts the values into a block of the description. `ports` are the port texts of a block that repeats over "ports".
///
/// A value reaches a line as a number within its limits, as a port whose type the description names, or as one of the
/// two joining characters, and in no other form. One value that is none of these, and the whole block is refused.
Expansion expand(const CommandList &block, const DeviceDescription &description, const DeviceValues &values,
                 const QStringList &ports = {});

} // namespace bll
} // namespace ovra
