// Findings of an analysis, brought together by what happened and to whom.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <vector>

//! All findings of one kind, of one message type, from one address.
struct FindingGroup
{
    QString abnormalType;
    QString messageType;
    QString source;
    int count = 0;
    QString first; //!< time of the earliest finding, "yyyy-MM-dd hh:mm:ss.zzz"
    QString last;  //!< time of the latest; of a finding that spans two times, the later one
};

/*!
    Groups the maps of PacketAnalysisViewModel::abnormalPackets(). Interval faults come first, then silent slaves, late
   and missing answers, any other kind at the end; addresses in numerical order within a kind.
*/
std::vector<FindingGroup> groupFindings(const QVariantList &findings);

//! Addresses in numerical order, octet by octet: 10.0.0.9 before 10.0.0.10.
QStringList inAddressOrder(QStringList addresses);
