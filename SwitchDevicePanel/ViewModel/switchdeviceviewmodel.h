// The switch view model: every value that the panel shows or edits about one managed switch, as a Qt property.
#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <functional>
#include <memory>

#include "packetanalysisviewmodel.h"

namespace reply {
class ReplyText;
}

/*!
    The one object behind the switch device panel.

    Thread: the user-interface thread; all properties are read and written there. The message handler alone may run on
   any thread, and only posts to the object's own thread.

    Ownership: created and destroyed by QML (or any host) with no parent needed. Owns its PacketAnalysisViewModel and
   two auxiliary threads; shares the process-wide console session (ovra::bll::SwitchDevice) with every other instance,
   so that destroying any instance closes the serial port.

    Setters follow one of two rules: "on change" stores and notifies only when the value differs; "always" stores and
   notifies on every call (up-port range, link-aggregation ranges, currentCom). VLAN ids outside 1 to 4093, words other
   than "enable"/"disable" and "access"/"trunk" are ignored without a sound. Irregular readings are part of the
   interface: connType always reads Login, userName always reads "" and ignores writes, toast can be neither read nor
   written, and the port counts are upper minus lower bound without the +1.
*/
class SwitchDeviceViewModel : public QObject
{
    Q_OBJECT

    // clang-format off
    // Panel and connection
    Q_PROPERTY(LanguageType    languageType           READ languageType                                           NOTIFY languageTypeChanged)
    Q_PROPERTY(int             baudRate               READ baudRate               WRITE setBaudRate               NOTIFY baudRateChanged)
    Q_PROPERTY(QString         currentCom             READ currentCom             WRITE setCurrentCom             NOTIFY currentComChanged)
    Q_PROPERTY(ConnectType     connType               READ connType                                               NOTIFY currentconnectTypeChanged)
    Q_PROPERTY(QString         userName               READ userName               WRITE setUserName               NOTIFY currentuserNameChanged)
    Q_PROPERTY(QString         toast                  NOTIFY showToast)
    // Port inventory
    Q_PROPERTY(int             downComNum             READ downComNum                                             NOTIFY comDownNumChanged)
    Q_PROPERTY(int             upComNum               READ upComNum                                               NOTIFY comUpNumChanged)
    Q_PROPERTY(int             isAggregationSwitch    READ isAggregationSwitch                                    NOTIFY isAggregationSwitchChanged)
    Q_PROPERTY(QString         curlogoChanged         READ curlogoChanged         WRITE setCurlogoChanged         NOTIFY curlogoChangedChanged)
    Q_PROPERTY(QString         boardType              READ boardType                                              NOTIFY boardTypeChanged)
    Q_PROPERTY(QString         downComRange           READ downComRange                                           NOTIFY downComRangeChanged)
    Q_PROPERTY(QString         upComRange             READ upComRange                                             NOTIFY upComRangeChanged)
    // VLAN
    Q_PROPERTY(int             downPortMin            READ downPortMin            WRITE setDownPortMin            NOTIFY downPortMinChanged)
    Q_PROPERTY(bool            vlanEnable             READ vlanEnable             WRITE setVlanEnable             NOTIFY vlanEnableChanged)
    Q_PROPERTY(int             vlanId                 READ vlanId                 WRITE setVlanId                 NOTIFY vlanIdChanged)
    Q_PROPERTY(QString         interfaceType          READ interfaceType          WRITE setInterfaceType          NOTIFY interfaceTypeChanged)
    Q_PROPERTY(int             upPortMin              READ upPortMin              WRITE setUpPortMin              NOTIFY upPortMinChanged)
    Q_PROPERTY(int             upPortMax              READ upPortMax              WRITE setUpPortMax              NOTIFY upPortMaxChanged)
    Q_PROPERTY(int             downPortMax            READ downPortMax            WRITE setDownPortMax            NOTIFY downPortMaxChanged)
    Q_PROPERTY(bool            vlanUpPortEnable       READ vlanUpPortEnable       WRITE setVlanUpPortEnable       NOTIFY vlanUpPortEnableChanged)
    Q_PROPERTY(bool            vlanDownPortEnable     READ vlanDownPortEnable     WRITE setVlanDownPortEnable     NOTIFY vlanDownPortEnableChanged)
    // Multicast
    Q_PROPERTY(bool            multicastEnable        READ multicastEnable        WRITE setMulticastEnable        NOTIFY multicastEnableChanged)
    Q_PROPERTY(QString         multicastStatus        READ multicastStatus        WRITE setMulticastStatus        NOTIFY multicastStatusChanged)
    Q_PROPERTY(int             multicastVlanId        READ multicastVlanId        WRITE setMulticastVlanId        NOTIFY multicastVlanIdChanged)
    // Querier
    Q_PROPERTY(bool            querierEnable          READ querierEnable          WRITE setQuerierEnable          NOTIFY querierEnableChanged)
    Q_PROPERTY(QString         querierStatus          READ querierStatus          WRITE setQuerierStatus          NOTIFY querierStatusChanged)
    Q_PROPERTY(int             querierVlanId          READ querierVlanId          WRITE setQuerierVlanId          NOTIFY querierVlanIdChanged)
    // Link aggregation
    Q_PROPERTY(bool            linkAggregationEnable  READ linkAggregationEnable  WRITE setLinkAggregationEnable  NOTIFY linkAggregationEnableChanged)
    Q_PROPERTY(int             linkId                 READ linkId                 WRITE setLinkId                 NOTIFY linkIdChanged)
    Q_PROPERTY(QString         linkInterfaceType      READ linkInterfaceType      WRITE setLinkInterfaceType      NOTIFY linkInterfaceTypeChanged)
    Q_PROPERTY(int             linkUpPortMin          READ linkUpPortMin          WRITE setLinkUpPortMin          NOTIFY linkUpPortMinChanged)
    Q_PROPERTY(int             linkUpPortMax          READ linkUpPortMax          WRITE setLinkUpPortMax          NOTIFY linkUpPortMaxChanged)
    Q_PROPERTY(int             linkDownPortMin        READ linkDownPortMin        WRITE setLinkDownPortMin        NOTIFY linkDownPortMinChanged)
    Q_PROPERTY(int             linkDownPortMax        READ linkDownPortMax        WRITE setLinkDownPortMax        NOTIFY linkDownPortMaxChanged)
    // Port mirroring
    Q_PROPERTY(bool            mirrorPortEnable       READ mirrorPortEnable       WRITE setMirrorPortEnable       NOTIFY mirrorPortEnableChanged)
    Q_PROPERTY(QString         mirrorStatus           READ mirrorStatus           WRITE setMirrorStatus           NOTIFY mirrorStatusChanged)
    Q_PROPERTY(int             mirrorId               READ mirrorId               WRITE setMirrorId               NOTIFY mirrorIdChanged)
    Q_PROPERTY(QString         mirrorSourcePort       READ mirrorSourcePort       WRITE setMirrorSourcePort       NOTIFY mirrorSourcePortChanged)
    Q_PROPERTY(QString         mirrorDstPort          READ mirrorDstPort          WRITE setMirrorDstPort          NOTIFY mirrorDstPortChanged)
    // Auto-negotiation
    Q_PROPERTY(bool            autoNegEnable          READ autoNegEnable          WRITE setAutoNegEnable          NOTIFY autoNegEnableChanged)
    Q_PROPERTY(QString         autoNegStatus          READ autoNegStatus          WRITE setAutoNegStatus          NOTIFY autoNegStatusChanged)
    Q_PROPERTY(QString         autoNegPort            READ autoNegPort            WRITE setAutoNegPort            NOTIFY autoNegPortChanged)
    // Command queue
    Q_PROPERTY(bool            isWaitingResponse      READ isWaitingResponse                                      NOTIFY isWaitingResponseChanged)
    // PoE
    Q_PROPERTY(bool            poeEnable              READ poeEnable              WRITE setPoeEnable              NOTIFY poeEnableChanged)
    Q_PROPERTY(QString         poeStatus              READ poeStatus              WRITE setPoeStatus              NOTIFY poeStatusChanged)
    Q_PROPERTY(QString         poePort                READ poePort                WRITE setPoePort                NOTIFY poePortChanged)
    Q_PROPERTY(int             poeDownPortMin         READ poeDownPortMin         WRITE setPoeDownPortMin         NOTIFY poeDownPortMinChanged)
    Q_PROPERTY(int             poeDownPortMax         READ poeDownPortMax         WRITE setPoeDownPortMax         NOTIFY poeDownPortMaxChanged)
    // Log, credentials
    Q_PROPERTY(bool            logMore                READ logMore                WRITE setLogMore                NOTIFY logMoreChanged)
    Q_PROPERTY(QString         userText               READ userText               WRITE setUserText               NOTIFY userTextChanged)
    Q_PROPERTY(QString         passwordText           READ passwordText           WRITE setPasswordText           NOTIFY passwordTextChanged)
    // Link aggregation parts, interfaces
    Q_PROPERTY(bool            linkUpPortEnable       READ linkUpPortEnable       WRITE setLinkUpPortEnable       NOTIFY linkUpPortEnableChanged)
    Q_PROPERTY(bool            linkDownPortEnable     READ linkDownPortEnable     WRITE setLinkDownPortEnable     NOTIFY linkDownPortEnableChanged)
    Q_PROPERTY(bool            interfaceEnable        READ interfaceEnable        WRITE setInterfaceEnable        NOTIFY interfaceEnableChanged)
    Q_PROPERTY(QString         interfaceStatus        READ interfaceStatus        WRITE setInterfaceStatus        NOTIFY interfaceStatusChanged)
    Q_PROPERTY(QVariantList    selectedInterfacePorts READ selectedInterfacePorts WRITE setSelectedInterfacePorts NOTIFY selectedInterfacePortsChanged)
    // Packet analysis
    Q_PROPERTY(PacketAnalysisViewModel *packetAnalysis READ packetAnalysis CONSTANT)
    // clang-format on

public:
    //! Language of the interface texts.
    enum LanguageType { Zh = 0, En = 1 };
    Q_ENUM(LanguageType)

    //! What the connection dialogue asks for. The spelling of ConfrimPassword is the one that QML uses.
    enum ConnectType { Login = 0, ConfrimPassword = 1, ChangePassword = 2, Null = 3 };
    Q_ENUM(ConnectType)

    //! What a reply of the switch means for the dialogue.
    enum ParseState {
        NeedUsername = 0,
        NeedPassword = 1,
        NeedConfirmPassword = 2,
        LoginSuccess = 3,
        LoginFailed = 4,
        InputMore = 5,
        ConnectSuccess = 6,
        CurrentConfiguration = 7,
        ParseSuccess = 8,
        ConfigInfo = 9,
        Unknown = 10
    };
    Q_ENUM(ParseState)

    explicit SwitchDeviceViewModel(QObject *parent = nullptr);
    ~SwitchDeviceViewModel() override;

    // Panel and connection
    LanguageType languageType() const;
    int baudRate() const;
    void setBaudRate(int value);
    QString currentCom() const;
    void setCurrentCom(const QString &value);
    ConnectType connType() const;
    QString userName() const;
    void setUserName(const QString &value);

    // Port inventory
    int downComNum() const;
    int upComNum() const;
    int isAggregationSwitch() const;
    QString curlogoChanged() const;
    void setCurlogoChanged(const QString &value);
    QString boardType() const;
    QString downComRange() const;
    QString upComRange() const;

    // VLAN
    int downPortMin() const;
    void setDownPortMin(int value);
    bool vlanEnable() const;
    void setVlanEnable(bool value);
    int vlanId() const;
    void setVlanId(int value);
    QString interfaceType() const;
    void setInterfaceType(const QString &value);
    int upPortMin() const;
    void setUpPortMin(int value);
    int upPortMax() const;
    void setUpPortMax(int value);
    int downPortMax() const;
    void setDownPortMax(int value);
    bool vlanUpPortEnable() const;
    void setVlanUpPortEnable(bool value);
    bool vlanDownPortEnable() const;
    void setVlanDownPortEnable(bool value);

    // Multicast
    bool multicastEnable() const;
    void setMulticastEnable(bool value);
    QString multicastStatus() const;
    void setMulticastStatus(const QString &value);
    int multicastVlanId() const;
    void setMulticastVlanId(int value);

    // Querier
    bool querierEnable() const;
    void setQuerierEnable(bool value);
    QString querierStatus() const;
    void setQuerierStatus(const QString &value);
    int querierVlanId() const;
    void setQuerierVlanId(int value);

    // Link aggregation
    bool linkAggregationEnable() const;
    void setLinkAggregationEnable(bool value);
    int linkId() const;
    void setLinkId(int value);
    QString linkInterfaceType() const;
    void setLinkInterfaceType(const QString &value);
    int linkUpPortMin() const;
    void setLinkUpPortMin(int value);
    int linkUpPortMax() const;
    void setLinkUpPortMax(int value);
    int linkDownPortMin() const;
    void setLinkDownPortMin(int value);
    int linkDownPortMax() const;
    void setLinkDownPortMax(int value);

    // Port mirroring
    bool mirrorPortEnable() const;
    void setMirrorPortEnable(bool value);
    QString mirrorStatus() const;
    void setMirrorStatus(const QString &value);
    int mirrorId() const;
    void setMirrorId(int value);
    QString mirrorSourcePort() const;
    void setMirrorSourcePort(const QString &value);
    QString mirrorDstPort() const;
    void setMirrorDstPort(const QString &value);

    // Auto-negotiation
    bool autoNegEnable() const;
    void setAutoNegEnable(bool value);
    QString autoNegStatus() const;
    void setAutoNegStatus(const QString &value);
    QString autoNegPort() const;
    void setAutoNegPort(const QString &value);

    // Command queue
    bool isWaitingResponse() const;

    // PoE
    bool poeEnable() const;
    void setPoeEnable(bool value);
    QString poeStatus() const;
    void setPoeStatus(const QString &value);
    QString poePort() const;
    void setPoePort(const QString &value);
    int poeDownPortMin() const;
    void setPoeDownPortMin(int value);
    int poeDownPortMax() const;
    void setPoeDownPortMax(int value);

    // Log, credentials
    bool logMore() const;
    void setLogMore(bool value);
    QString userText() const;
    void setUserText(const QString &value);
    QString passwordText() const;
    void setPasswordText(const QString &value);

    // Link aggregation parts, interfaces
    bool linkUpPortEnable() const;
    void setLinkUpPortEnable(bool value);
    bool linkDownPortEnable() const;
    void setLinkDownPortEnable(bool value);
    bool interfaceEnable() const;
    void setInterfaceEnable(bool value);
    QString interfaceStatus() const;
    void setInterfaceStatus(const QString &value);
    QVariantList selectedInterfacePorts() const;
    void setSelectedInterfacePorts(const QVariantList &value);

    // Packet analysis
    PacketAnalysisViewModel *packetAnalysis() const;

signals:
    void showToast(const QString &text, int state);
    void currentconnectTypeChanged(ConnectType type);
    void changeLanguage();
    void languageTypeChanged();
    void isShowLoader(bool isShow, const QString &text);
    void signal_loadLanguage(const QString &type);
    void signal_threadFinished();
    void signal_deviceCommunicate();
    void comDownNumChanged(int num);
    void comUpNumChanged(int num);
    void parseStateChanged(ParseState state);
    void logMessage(const QString &message);

    // Change signals of the properties
    void baudRateChanged();
    void currentComChanged();
    void currentuserNameChanged(const QString &text);
    void vlanEnableChanged();
    void vlanIdChanged();
    void interfaceTypeChanged();
    void upPortMinChanged();
    void upPortMaxChanged();
    void downPortMinChanged();
    void downPortMaxChanged();
    void multicastEnableChanged();
    void multicastStatusChanged();
    void multicastVlanIdChanged();
    void querierEnableChanged();
    void querierStatusChanged();
    void querierVlanIdChanged();
    void linkAggregationEnableChanged();
    void linkIdChanged();
    void linkInterfaceTypeChanged();
    void linkUpPortMinChanged();
    void linkUpPortMaxChanged();
    void linkDownPortMinChanged();
    void linkDownPortMaxChanged();
    void mirrorPortEnableChanged();
    void mirrorStatusChanged();
    void mirrorIdChanged();
    void mirrorSourcePortChanged();
    void mirrorDstPortChanged();
    void autoNegEnableChanged();
    void autoNegStatusChanged();
    void autoNegPortChanged();
    void isWaitingResponseChanged();
    void isAggregationSwitchChanged();
    void poeEnableChanged();
    void poeStatusChanged();
    void poePortChanged();
    void poeDownPortMinChanged();
    void poeDownPortMaxChanged();
    void curlogoChangedChanged(const QString &logo);
    void boardTypeChanged();
    void logMoreChanged();
    void userTextChanged();
    void passwordTextChanged();
    void downComRangeChanged(const QString &range);
    void upComRangeChanged(const QString &range);
    void vlanUpPortEnableChanged(bool enable);
    void vlanDownPortEnableChanged();
    void linkUpPortEnableChanged();
    void linkDownPortEnableChanged();
    void interfaceEnableChanged();
    void interfaceStatusChanged();
    void selectedInterfacePortsChanged();

public slots:
    void slot_deviceCommunicate();
    void slot_readBack();
    void slot_languageChange(const QString &type);
    void slot_threadFinished();
    void slot_RecAllData(const QByteArray &data);
    void slot_handleParseState(ParseState state);
    //! Process-wide Qt message handler; any thread. Forwards the switch modules' messages of level info and above, as
    //! logMessage, to the newest living view model, and every message to the handler that was there before.
    static void messageHandler(QtMsgType type, const QMessageLogContext &context, const QString &msg);
    void onCommandCompleted();

private slots:
    void onDataReceived(const QByteArray &data);
    //! Emits logMessage(message); a detailed message only while logMore is on.
    void emitLogMessage(const QString &message, bool isDetailedLog = false);

public:
    //! The text in the panel's current language; the text itself where there is no translation. Source texts are
    //! Chinese.
    Q_INVOKABLE QString lxTr(const QString &text) const;
    Q_INVOKABLE bool deviceCommunicate();
    //! Closes the serial port, empties the command queue and says so in a toast.
    Q_INVOKABLE void disconnectDevice();
    //! The serial ports of this machine by name, in the system's order.
    Q_INVOKABLE QVariantList refreshCOM();
    Q_INVOKABLE void setUserPassword(const QByteArray &userName, const QByteArray &password);
    Q_INVOKABLE void setShadowVisible(bool isVisible);
    Q_INVOKABLE void sendSwitchDeviceCmd();
    Q_INVOKABLE void clearAllConfig();
    Q_INVOKABLE void queryDeviceStatus(const QString &queryType);
    Q_INVOKABLE QVariantList gInterface();
    Q_INVOKABLE QVariantList xgInterface();
    Q_INVOKABLE QVariantList poeInterface();
    Q_INVOKABLE QVariantList allInterface();
    Q_INVOKABLE int downInterfaceMin();
    Q_INVOKABLE int downInterfaceMax();
    Q_INVOKABLE int upInterfaceMin();
    Q_INVOKABLE int upInterfaceMax();
    Q_INVOKABLE void saveSwitchDeviceCmd();
    Q_INVOKABLE QString getDefaultConfigPath();
    Q_INVOKABLE void exportSwitchInfo();
    Q_INVOKABLE void setExportPath(const QString &path);
    Q_INVOKABLE QString getExportPath();
    Q_INVOKABLE void importSwitchInfo(const QString &path);

    //! For programs without a panel: is told of each block as the queue sends it. An empty function ends that.
    using CommandObserver = std::function<void(const QString &label, const QByteArray &bytes)>;
    void setCommandObserver(CommandObserver observer);
    //! For the same: no block is outstanding and none waits.
    bool isQueueIdle() const;

private:
    struct Private;
    struct SelfReference;
    struct ReplyOrigin;
    class ReplyReader;
    class FeatureSender;

    void loadLanguage(const QString &code);
    void startLogRouting();
    void stopLogRouting();
    void startLogBatching();
    void stopLogBatching();
    void flushConsoleLines();
    void collectConsoleLines(const QByteArray &data);

    // Connection
    int currentSession() const;
    void wakeConsole(int session);
    void requestUserName();
    void requestPassword();
    void sendUserName();
    void sendPassword();
    void sendPortListing();
    static bool readBackPara();

    // Queue
    void enqueueCommand(const QString &label, const QByteArray &bytes);
    void processNextCommand();
    void setWaitingResponse(bool value);
    void appendToExport(const QByteArray &data);
    ReplyOrigin replyOrigin() const;
    bool isReplyInForce(const ReplyOrigin &origin) const;

    // Replies
    void startParsing(const QByteArray &data);
    void startParsingHua3(const QByteArray &data);
    void parseLater(const QByteArray &data, void (ReplyReader::*read)(), QList<QByteArray> &pendingReplies);
    void finishParsing(const ReplyOrigin &origin);
    void parseTransceiverInfo(const reply::ReplyText &text);

    std::unique_ptr<Private> _d;
};
