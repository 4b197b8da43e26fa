// What a switch is: the panel's inventory as a value, as a table and as JSON.
#pragma once

#include "language.h"
#include "texttable.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

//! Ports of one kind. Without any, the numbers are those that the view model starts with.
struct PortGroup
{
    QStringList names;
    int lowest = -1;
    int highest = -1;
    int count = 0; //!< as the panel counts: highest minus lowest
    QString range; //!< as the panel shows it, "(1-24)"
};

struct Inventory
{
    QString port;   //!< of this machine, as the user named it
    QString family; //!< "huawei" or "hua3"
    QString boardType;
    bool isAggregationSwitch = false;
    PortGroup down;
    PortGroup up;
};

//! Which naming of ports the switch uses: "huawei", "huawei-sub" (GE0/0/1 instead of GigabitEthernet0/0/1) or "hua3".
QString profileOf(const Inventory &inventory);

QStringList inventoryLines(const Inventory &inventory, Language language, const Painter &painter);
QJsonObject inventoryJson(const Inventory &inventory);

//! Port names with runs drawn together: "g0/0/1-g0/0/24, g0/0/30".
QString portRuns(const QStringList &names);
