// How a switch model names its interfaces in commands and replies, and the patterns that find its ports in replies.
#pragma once

#include <QtCore/QString>

/*!
    One family's naming, as data. Prefixes and keywords are plain texts. Patterns are regular expressions: the two port
    patterns in the ECMAScript grammar, the three others in QRegExp's default syntax; all are case-sensitive.
*/
struct InterfaceNamingProfile
{
    QString downPortPrefix;       // before each gigabit port in port lists and commands
    QString upPortPrefix;         // the same for 10-gigabit ports
    QString upPort40Prefix;       // the same for 40-gigabit ports
    QString linkDownPortPrefix;   // gigabit ports in link aggregation commands
    QString linkUpPortPrefix;     // 10-gigabit ports in link aggregation commands
    QString linkUpPort40Prefix;   // 40-gigabit ports in link aggregation commands
    QString portSeparator;        // between ports in multicast and querier commands; null in a profile: stays as it was
    QString multiPortName;        // gigabit interfaces in replies
    QString tenGigExcludeKeyword; // a line that contains it holds no gigabit port
    QString configInterfaceKeyword;  // begins an interface section of the current configuration
    QString mirrorPortKeyword;       // interface name in port mirroring lines
    QString interfaceCommandPrefix;  // enters the interface view
    QString mirrorPortName;          // interface name of mirror ports in commands
    QString observePortKeyword;      // marks the line of a mirroring destination
    QString inboundKeyword;          // marks the line of a mirroring source
    QString downPortPattern;         // group 1: slot/subslot/port of a gigabit port
    QString upPortPattern;           // group 1: slot/subslot/port of a 10-gigabit port
    QString observePortPattern;      // group 1: mirroring id, group 2: port number of the destination
    QString inboundPortPattern;      // group 1: port number of the source
    QString autoNegInterfacePattern; // group 1: port number of an interface of the current configuration

    //! Becomes \a profile, except that a null port separator of \a profile leaves the present one.
    void take(const InterfaceNamingProfile &profile);
};

//! Long names: GigabitEthernet0/0/1, XGigabitEthernet0/0/1.
const InterfaceNamingProfile &huaweiNaming();
//! Short names in listings: GE1/0/1, XGE1/0/25. Its port separator is null.
const InterfaceNamingProfile &hua3Naming();
//! The models of the Huawei family whose listings show GE0/0/1 and 10GE0/0/1.
const InterfaceNamingProfile &huaweiSubModelNaming();
