// State of SwitchDeviceViewModel, in one small plain struct per concern, with the defaults beside the fields.
#pragma once

#include "switchdeviceviewmodel.h"

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QMutex>
#include <QtCore/QThread>
#include <QtCore/QTimer>

namespace lumen {
namespace trans {
class Translator;
}
} // namespace lumen
namespace ovra {
namespace bll {
class SwitchDevice;
}
} // namespace ovra

struct ConnectionSettings
{
    int baudRate = 9600; // bits per second; the console default of both families
    QString currentCom;
    QString userText;
    QString passwordText;
};

//! Lower and upper port number; both -1 until an inventory has been read.
struct PortBounds
{
    int minimum = -1;
    int maximum = -1;

    // Upper minus lower, without +1: the panel relies on it.
    int count() const { return maximum - minimum; }
};

struct PortInventory
{
    QVariantList downPorts;
    QVariantList upPorts;
    PortBounds down;
    PortBounds up;
    int isAggregationSwitch = 0;
    QString familyLabel;
    QString boardType;
    QString downRangeText;
    QString upRangeText;
};

struct VlanSettings
{
    bool enable = false;
    int id = 1;
    QString interfaceType = QStringLiteral("access");
    int downPortMin = 0;
    int downPortMax = 0;
    int upPortMin = 0;
    int upPortMax = 0;
    bool upPortEnable = false;
    bool downPortEnable = false;
};

//! Multicast (IGMP snooping) and querier settings have the same shape.
struct VlanFeatureSettings
{
    bool enable = false;
    QString status = QStringLiteral("enable");
    int vlanId = 1;
};

struct LinkAggregationSettings
{
    bool enable = false;
    int id = 1;
    QString interfaceType = QStringLiteral("trunk");
    int upPortMin = 1;
    int upPortMax = 4;
    int downPortMin = 1;
    int downPortMax = 24;
    bool upPortEnable = false;
    bool downPortEnable = false;
};

struct MirrorSettings
{
    bool enable = false;
    QString status = QStringLiteral("enable");
    int id = 1;
    QString sourcePort;
    QString dstPort;
};

struct AutoNegSettings
{
    bool enable = false;
    QString status = QStringLiteral("enable");
    QString port;
};

struct PoeSettings
{
    bool enable = false;
    QString status = QStringLiteral("enable");
    QString port;
    int downPortMin = 1;
    int downPortMax = 24;
};

struct InterfaceSettings
{
    bool enable = false;
    QString status = QStringLiteral("enable");
    QVariantList selectedPorts;
};

//! One block of console bytes is outstanding at most; the map orders the waiting ones by label.
struct CommandQueue
{
    QMutex lock; // guards pending, currentLabel, currentBytes, isOutstanding
    QMap<QString, QByteArray> pending;
    QString currentLabel;
    QByteArray currentBytes;
    bool isOutstanding = false;

    bool isWaitingResponse = false; // the property: user-interface thread only, no decision of the queue reads it
};

struct ReceiveState
{
    QMutex lock; // guards chunks
    QList<QByteArray> chunks;
    bool isParsing = false;
    bool isLoggedIn = false;
};

struct ConsoleLog
{
    bool logMore = false;
    QStringList resultLines; // user-interface thread only
    QTimer *batchTimer = nullptr;
};

struct ConfigurationFiles
{
    QString exportPath;
    bool isExportRunning = false;
};

struct SwitchDeviceViewModel::Private
{
    LanguageType languageType = Zh;
    ConnectionSettings connection;
    PortInventory inventory;
    VlanSettings vlan;
    VlanFeatureSettings multicast;
    VlanFeatureSettings querier;
    LinkAggregationSettings link;
    MirrorSettings mirror;
    AutoNegSettings autoNeg;
    PoeSettings poe;
    InterfaceSettings ports;
    CommandQueue queue;
    ReceiveState receive;
    ConsoleLog log;
    ConfigurationFiles files;

    lumen::trans::Translator *translator = nullptr; // owned by the language manager
    ovra::bll::SwitchDevice *device = nullptr;      // process-wide singleton
    std::unique_ptr<PacketAnalysisViewModel> packetAnalysis;
    QThread *auxiliaryThreads[2] = {nullptr, nullptr};
};
