#pragma once

#include "consolesession.h"

#include <QtCore/QByteArray>

#include <vector>

namespace simulator {

/// Sections gathered in the order of a configuration.
class SectionList
{
public:
    /// One line, or several of a kind, at the margin. Nothing for none.
    void addGlobal(const QByteArrayList &lines)
    {
        if (!lines.isEmpty())
            _sections.push_back({{}, lines});
    }
    void add(const QByteArray &header, const QByteArrayList &lines) { _sections.push_back({header, lines}); }
    void addIfAny(const QByteArray &header, const QByteArrayList &lines)
    {
        if (!lines.isEmpty())
            add(header, lines);
    }
    /// The remembered sections whose header begins like that.
    void addRemembered(const SwitchConfiguration &configuration, const char *beginning);

    std::vector<OtherSection> take() { return std::move(_sections); }

private:
    std::vector<OtherSection> _sections;
};

/// `command 2 5 to 9`, as many lines as it takes.
QByteArrayList vlanCommands(const QByteArray &command, const VlanSet &vlans);

/// How the dialects call the same settings.
struct BridgedWords
{
    QByteArray access;       ///< "port default vlan "
    QByteArray allow;        ///< "port trunk allow-pass vlan "
    QByteArray trunkDefault; ///< "port trunk pvid vlan "
};

QByteArrayList bridgedLines(const BridgedInterface &interface, LinkType usual, const BridgedWords &words);

} // namespace simulator
