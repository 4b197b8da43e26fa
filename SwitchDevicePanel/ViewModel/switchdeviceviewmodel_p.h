// State of SwitchDeviceViewModel, in one small plain struct per concern, with the defaults beside the fields.
#pragma once

#include "interfacenamingprofile.h"
#include "switchdeviceviewmodel.h"

#include <QtCore/QAtomicInt>
#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QMutex>
#include <QtCore/QMutexLocker>
#include <QtCore/QSharedPointer>
#include <QtCore/QThread>
#include <QtCore/QTimer>

#include <chrono>
#include <memory>

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
    // At most one of each; they run while the switch waits for a credential that has not been set.
    QTimer *userNameTimer = nullptr;
    QTimer *passwordTimer = nullptr;
};

//! A second parameter set, for reopening the port; a to d in storage order.
struct ReopenSettings
{
    QString port;
    int a = 0;
    int b = 0;
    int c = 0;
    int d = 0;
};

//! Lower and upper port number; both -1 until an inventory has been read.
struct PortBounds
{
    int minimum = -1;
    int maximum = -1;

    // Upper minus lower, without +1: the panel relies on it.
    int count() const { return maximum - minimum; }
};

//! The device descriptions, from the application's folder.
inline constexpr char kHuaweiDescription[] = "/../share/devices/Huawei.xml";
inline constexpr char kHuaweiSubModelDescription[] = "/../share/devices/Huawei_sub.xml";
inline constexpr char kHua3Description[] = "/../share/devices/Hua3.xml";

//! How the connected switch names its ports, and where its description stands.
struct SwitchModel
{
    QString familyLabel;
    QString descriptionPath;
    InterfaceNamingProfile naming;
};

struct PortInventory
{
    QVariantList downPorts;
    QVariantList upPorts;
    PortBounds down;
    PortBounds up;
    int slotNumber = 0;
    int isAggregationSwitch = 0;
    QStringList opticalPortLines; // never emptied but by the next listing: they outlive the switch
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

    // Replies and their completion may arrive late. User-interface thread only.
    bool isSentInSession = false; // anything since the last disconnect
    int wakeUps = 0;              // connections made
    int wokenSession = 0;         // of the last of them

    SwitchDeviceViewModel::CommandObserver observer; // user-interface thread only

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

//! What detached work holds of the view model: nothing any more once its destructor has begun.
struct SwitchDeviceViewModel::SelfReference
{
    QMutex lock; // guards viewModel, and is held while a signal of it is emitted from another thread
    SwitchDeviceViewModel *viewModel = nullptr;
    QAtomicInt session; // disconnects so far: an opening that was asked for before one of them is not begun after it

    bool isWanted(int askedInSession)
    {
        const QMutexLocker locker(&lock);
        return viewModel && session.loadRelaxed() == askedInSession;
    }
};

//! When a reply arrived.
struct SwitchDeviceViewModel::ReplyOrigin
{
    int session = 0;
    bool isLate = false; // behind a disconnect, with nothing sent since
    int wakeUps = 0;
};

struct SwitchDeviceViewModel::Private
{
    LanguageType languageType = Zh;
    ConnectionSettings connection;
    ReopenSettings reopen;
    SwitchModel model;
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
    QSharedPointer<SelfReference> self = QSharedPointer<SelfReference>::create();
    QThread *auxiliaryThreads[2] = {nullptr, nullptr};
};
