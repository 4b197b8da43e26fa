// Every property of the switch view model: place, type, access, change signal, first value and setter rule.
#include "switchdeviceviewmodel.h"

#include "signalrecorder.h"

#include <QtCore/QLoggingCategory>
#include <QtCore/QMetaProperty>
#include <QtCore/QMutex>
#include <QtTest/QtTest>

namespace {

enum class Access { None, Read, ReadWrite, Constant };

//! What a write does. OnChange: stores and notifies a different value. Always: stores and notifies any value.
enum class Rule { NotWritable, Ignored, OnChange, Always };

struct PropertyRow
{
    const char *name;
    const char *type;
    Access access;
    Rule rule;
    const char *notify; //!< empty: no change signal
    QVariant fresh;     //!< of a new object; invalid: not looked at
    QVariant other;     //!< a different value, which a writable property takes
    QVariantList refused;
};

// In declaration order.
// clang-format off
const QVector<PropertyRow> &propertyRows()
{
    static const QVector<PropertyRow> rows {
        {"languageType",           "LanguageType",             Access::Read,      Rule::NotWritable, "languageTypeChanged()",                  int(SwitchDeviceViewModel::Zh), int(SwitchDeviceViewModel::En), {}},
        {"baudRate",               "int",                      Access::ReadWrite, Rule::OnChange,    "baudRateChanged()",                      9600, 115200, {}},
        {"currentCom",             "QString",                  Access::ReadWrite, Rule::Always,      "currentComChanged()",                    "", "GE0/0/7", {}},
        {"connType",               "ConnectType",              Access::Read,      Rule::NotWritable, "currentconnectTypeChanged(ConnectType)", int(SwitchDeviceViewModel::Login), int(SwitchDeviceViewModel::Null), {}},
        {"userName",               "QString",                  Access::ReadWrite, Rule::Ignored,     "currentuserNameChanged(QString)",        "", "GE0/0/7", {}},
        {"toast",                  "QString",                  Access::None,      Rule::NotWritable, "",                                       {}, "text", {}},
        {"downComNum",             "int",                      Access::Read,      Rule::NotWritable, "comDownNumChanged(int)",                 0, 5, {}},
        {"upComNum",               "int",                      Access::Read,      Rule::NotWritable, "comUpNumChanged(int)",                   0, 5, {}},
        {"isAggregationSwitch",    "int",                      Access::Read,      Rule::NotWritable, "isAggregationSwitchChanged()",           0, 5, {}},
        {"curlogoChanged",         "QString",                  Access::ReadWrite, Rule::OnChange,    "curlogoChangedChanged(QString)",         "", "华为", {}},
        {"boardType",              "QString",                  Access::Read,      Rule::NotWritable, "boardTypeChanged()",                     "", "GE0/0/7", {}},
        {"downComRange",           "QString",                  Access::Read,      Rule::NotWritable, "downComRangeChanged(QString)",           "", "GE0/0/7", {}},
        {"upComRange",             "QString",                  Access::Read,      Rule::NotWritable, "upComRangeChanged(QString)",             "", "GE0/0/7", {}},
        {"downPortMin",            "int",                      Access::ReadWrite, Rule::OnChange,    "downPortMinChanged()",                   0, 7, {}},
        {"vlanEnable",             "bool",                     Access::ReadWrite, Rule::OnChange,    "vlanEnableChanged()",                    false, true, {}},
        {"vlanId",                 "int",                      Access::ReadWrite, Rule::OnChange,    "vlanIdChanged()",                        1, 4093, {0, 4094, -1, 65536}},
        {"interfaceType",          "QString",                  Access::ReadWrite, Rule::OnChange,    "interfaceTypeChanged()",                 "access", "trunk", {"", "hybrid", "Trunk", " access"}},
        {"upPortMin",              "int",                      Access::ReadWrite, Rule::Always,      "upPortMinChanged()",                     0, 7, {}},
        {"upPortMax",              "int",                      Access::ReadWrite, Rule::Always,      "upPortMaxChanged()",                     0, 7, {}},
        {"downPortMax",            "int",                      Access::ReadWrite, Rule::OnChange,    "downPortMaxChanged()",                   0, 7, {}},
        {"vlanUpPortEnable",       "bool",                     Access::ReadWrite, Rule::OnChange,    "vlanUpPortEnableChanged(bool)",          false, true, {}},
        {"vlanDownPortEnable",     "bool",                     Access::ReadWrite, Rule::OnChange,    "vlanDownPortEnableChanged()",            false, true, {}},
        {"multicastEnable",        "bool",                     Access::ReadWrite, Rule::OnChange,    "multicastEnableChanged()",               false, true, {}},
        {"multicastStatus",        "QString",                  Access::ReadWrite, Rule::OnChange,    "multicastStatusChanged()",               "enable", "disable", {"", "Enable", "enable ", "on", "1"}},
        {"multicastVlanId",        "int",                      Access::ReadWrite, Rule::OnChange,    "multicastVlanIdChanged()",               1, 4093, {0, 4094, -1, 65536}},
        {"querierEnable",          "bool",                     Access::ReadWrite, Rule::OnChange,    "querierEnableChanged()",                 false, true, {}},
        {"querierStatus",          "QString",                  Access::ReadWrite, Rule::OnChange,    "querierStatusChanged()",                 "enable", "disable", {"", "Enable", "enable ", "on", "1"}},
        {"querierVlanId",          "int",                      Access::ReadWrite, Rule::OnChange,    "querierVlanIdChanged()",                 1, 4093, {0, 4094, -1, 65536}},
        {"linkAggregationEnable",  "bool",                     Access::ReadWrite, Rule::OnChange,    "linkAggregationEnableChanged()",         false, true, {}},
        {"linkId",                 "int",                      Access::ReadWrite, Rule::OnChange,    "linkIdChanged()",                        1, 8, {}},
        {"linkInterfaceType",      "QString",                  Access::ReadWrite, Rule::OnChange,    "linkInterfaceTypeChanged()",             "trunk", "GE0/0/7", {}},
        {"linkUpPortMin",          "int",                      Access::ReadWrite, Rule::Always,      "linkUpPortMinChanged()",                 1, 8, {}},
        {"linkUpPortMax",          "int",                      Access::ReadWrite, Rule::Always,      "linkUpPortMaxChanged()",                 4, 11, {}},
        {"linkDownPortMin",        "int",                      Access::ReadWrite, Rule::Always,      "linkDownPortMinChanged()",               1, 8, {}},
        {"linkDownPortMax",        "int",                      Access::ReadWrite, Rule::Always,      "linkDownPortMaxChanged()",               24, 31, {}},
        {"mirrorPortEnable",       "bool",                     Access::ReadWrite, Rule::OnChange,    "mirrorPortEnableChanged()",              false, true, {}},
        {"mirrorStatus",           "QString",                  Access::ReadWrite, Rule::OnChange,    "mirrorStatusChanged()",                  "enable", "GE0/0/7", {}},
        {"mirrorId",               "int",                      Access::ReadWrite, Rule::OnChange,    "mirrorIdChanged()",                      1, 8, {}},
        {"mirrorSourcePort",       "QString",                  Access::ReadWrite, Rule::OnChange,    "mirrorSourcePortChanged()",              "", "GE0/0/7", {}},
        {"mirrorDstPort",          "QString",                  Access::ReadWrite, Rule::OnChange,    "mirrorDstPortChanged()",                 "", "GE0/0/7", {}},
        {"autoNegEnable",          "bool",                     Access::ReadWrite, Rule::OnChange,    "autoNegEnableChanged()",                 false, true, {}},
        {"autoNegStatus",          "QString",                  Access::ReadWrite, Rule::OnChange,    "autoNegStatusChanged()",                 "enable", "GE0/0/7", {}},
        {"autoNegPort",            "QString",                  Access::ReadWrite, Rule::OnChange,    "autoNegPortChanged()",                   "", "GE0/0/7", {}},
        {"isWaitingResponse",      "bool",                     Access::Read,      Rule::NotWritable, "isWaitingResponseChanged()",             false, true, {}},
        {"poeEnable",              "bool",                     Access::ReadWrite, Rule::OnChange,    "poeEnableChanged()",                     false, true, {}},
        {"poeStatus",              "QString",                  Access::ReadWrite, Rule::OnChange,    "poeStatusChanged()",                     "enable", "disable", {"", "Enable", "enable ", "on", "1"}},
        {"poePort",                "QString",                  Access::ReadWrite, Rule::OnChange,    "poePortChanged()",                       "", "GE0/0/7", {}},
        {"poeDownPortMin",         "int",                      Access::ReadWrite, Rule::OnChange,    "poeDownPortMinChanged()",                1, 8, {}},
        {"poeDownPortMax",         "int",                      Access::ReadWrite, Rule::OnChange,    "poeDownPortMaxChanged()",                24, 31, {}},
        {"logMore",                "bool",                     Access::ReadWrite, Rule::OnChange,    "logMoreChanged()",                       false, true, {}},
        {"userText",               "QString",                  Access::ReadWrite, Rule::OnChange,    "userTextChanged()",                      "", "GE0/0/7", {}},
        {"passwordText",           "QString",                  Access::ReadWrite, Rule::OnChange,    "passwordTextChanged()",                  "", "GE0/0/7", {}},
        {"linkUpPortEnable",       "bool",                     Access::ReadWrite, Rule::OnChange,    "linkUpPortEnableChanged()",              false, true, {}},
        {"linkDownPortEnable",     "bool",                     Access::ReadWrite, Rule::OnChange,    "linkDownPortEnableChanged()",            false, true, {}},
        {"interfaceEnable",        "bool",                     Access::ReadWrite, Rule::OnChange,    "interfaceEnableChanged()",               false, true, {}},
        {"interfaceStatus",        "QString",                  Access::ReadWrite, Rule::OnChange,    "interfaceStatusChanged()",               "enable", "disable", {"", "Enable", "enable ", "on", "1"}},
        {"selectedInterfacePorts", "QVariantList",             Access::ReadWrite, Rule::OnChange,    "selectedInterfacePortsChanged()",        QVariantList(), QVariantList{1, "GE0/0/2"}, {}},
        {"packetAnalysis",         "PacketAnalysisViewModel*", Access::Constant,  Rule::NotWritable, "",                                       {}, {}, {}},    };
    return rows;
}
// clang-format on

const PropertyRow &rowOfTag()
{
    for (const PropertyRow &row : propertyRows()) {
        if (qstrcmp(row.name, QTest::currentDataTag()) == 0)
            return row;
    }
    qFatal("No row for this tag");
}

bool isEnumerated(const PropertyRow &row)
{
    return qstrcmp(row.type, "LanguageType") == 0 || qstrcmp(row.type, "ConnectType") == 0;
}

//! A value as this test compares it: enumerators by their number.
QVariant plain(const PropertyRow &row, const QVariant &value)
{
    return isEnumerated(row) ? QVariant(value.toInt()) : value;
}

//! The one emission that announces a new value: signals with a parameter carry it.
QStringList announcement(const PropertyRow &row, const QVariant &value)
{
    const QByteArray notify(row.notify);
    const QByteArray name = notify.left(notify.indexOf('('));
    const bool carriesValue = !notify.endsWith("()");
    return {QStringLiteral("%1(%2)").arg(QLatin1String(name), carriesValue ? value.toString() : QString())};
}

// The tags alone are the data: rowOfTag() has the rest.
template<typename Predicate>
void addRows(Predicate isWanted)
{
    QTest::addColumn<bool>("tagOnly");
    for (const PropertyRow &row : propertyRows()) {
        if (isWanted(row))
            QTest::newRow(row.name) << true;
    }
}

void addRowsOfRule(Rule rule)
{
    addRows([rule](const PropertyRow &row) { return row.rule == rule; });
}

// Debug texts that reach the handler that was installed before the view model.
QMutex capturedLock;
QStringList capturedDebugTexts;

void captureDebug(QtMsgType type, const QMessageLogContext &, const QString &text)
{
    if (type != QtDebugMsg)
        return;
    const QMutexLocker locker(&capturedLock);
    capturedDebugTexts.append(text);
}

} // namespace

class TestSwitchDeviceViewModelProperties : public QObject
{
    Q_OBJECT

private slots:
    void properties_standInDocumentedOrder();
    void property_hasTypeAccessAndChangeSignal_data();
    void property_hasTypeAccessAndChangeSignal();
    void property_ofNewObject_hasItsDefault_data();
    void property_ofNewObject_hasItsDefault();
    void write_toReadOnlyProperty_changesNothing_data() { addRowsOfRule(Rule::NotWritable); }
    void write_toReadOnlyProperty_changesNothing();
    void write_thatIsIgnored_changesNothing_data() { addRowsOfRule(Rule::Ignored); }
    void write_thatIsIgnored_changesNothing();
    void write_onChange_notifiesDifferentValuesOnly_data() { addRowsOfRule(Rule::OnChange); }
    void write_onChange_notifiesDifferentValuesOnly();
    void write_always_notifiesEqualValuesToo_data() { addRowsOfRule(Rule::Always); }
    void write_always_notifiesEqualValuesToo();

    void vlanIds_takeOneTo4093_data();
    void vlanIds_takeOneTo4093();
    void userName_writtenFromOutside_stillReadsEmpty();
    void toast_isNeitherReadableNorWritable();
    void portCounts_areUpperMinusLowerBound();
    void selectedInterfacePorts_sameElements_areSilent();
    void selectedInterfacePorts_otherElementOrSize_notifies_data();
    void selectedInterfacePorts_otherElementOrSize_notifies();
    void downPortMin_logsOldAndNewValueAtDebugLevel();
    void packetAnalysis_isOneObjectForLife();
};

void TestSwitchDeviceViewModelProperties::properties_standInDocumentedOrder()
{
    const QMetaObject &metaObject = SwitchDeviceViewModel::staticMetaObject;
    QCOMPARE(metaObject.superClass(), &QObject::staticMetaObject);
    QStringList declared;
    for (int i = metaObject.propertyOffset(); i < metaObject.propertyCount(); ++i)
        declared.append(QLatin1String(metaObject.property(i).name()));
    QStringList documented;
    for (const PropertyRow &row : propertyRows())
        documented.append(QLatin1String(row.name));
    QCOMPARE(declared, documented);
}

void TestSwitchDeviceViewModelProperties::property_hasTypeAccessAndChangeSignal_data()
{
    addRows([](const PropertyRow &) { return true; });
}

void TestSwitchDeviceViewModelProperties::property_hasTypeAccessAndChangeSignal()
{
    const PropertyRow &row = rowOfTag();
    const QMetaObject &metaObject = SwitchDeviceViewModel::staticMetaObject;
    const QMetaProperty property = metaObject.property(metaObject.indexOfProperty(row.name));
    QCOMPARE(property.typeName(), row.type);
    QCOMPARE(property.isEnumType(), isEnumerated(row));
    QCOMPARE(property.isReadable(), row.access != Access::None);
    QCOMPARE(property.isWritable(), row.access == Access::ReadWrite);
    QCOMPARE(property.isConstant(), row.access == Access::Constant);
    QCOMPARE(property.isResettable(), false);
    QCOMPARE(property.hasNotifySignal() ? property.notifySignal().methodSignature() : QByteArray(),
             QByteArray(row.notify));
}

void TestSwitchDeviceViewModelProperties::property_ofNewObject_hasItsDefault_data()
{
    addRows([](const PropertyRow &row) { return row.fresh.isValid(); }); // the others have tests of their own
}

void TestSwitchDeviceViewModelProperties::property_ofNewObject_hasItsDefault()
{
    const PropertyRow &row = rowOfTag();
    const SwitchDeviceViewModel viewModel;
    QCOMPARE(plain(row, viewModel.property(row.name)), row.fresh);
}

void TestSwitchDeviceViewModelProperties::write_toReadOnlyProperty_changesNothing()
{
    const PropertyRow &row = rowOfTag();
    SwitchDeviceViewModel viewModel;
    const QVariant before = viewModel.property(row.name);
    const SignalRecorder recorder(&viewModel);
    QVERIFY(!viewModel.setProperty(row.name, row.other));
    QCOMPARE(plain(row, viewModel.property(row.name)), plain(row, before));
    QCOMPARE(recorder.texts(), QStringList());
}

void TestSwitchDeviceViewModelProperties::write_thatIsIgnored_changesNothing()
{
    const PropertyRow &row = rowOfTag();
    SwitchDeviceViewModel viewModel;
    const SignalRecorder recorder(&viewModel);
    QVERIFY(viewModel.setProperty(row.name, row.other));
    QCOMPARE(viewModel.property(row.name), row.fresh);
    QCOMPARE(recorder.texts(), QStringList());
}

void TestSwitchDeviceViewModelProperties::write_onChange_notifiesDifferentValuesOnly()
{
    const PropertyRow &row = rowOfTag();
    SwitchDeviceViewModel viewModel;
    SignalRecorder recorder(&viewModel);

    QVERIFY(viewModel.setProperty(row.name, row.fresh));
    QCOMPARE(viewModel.property(row.name), row.fresh);
    QCOMPARE(recorder.texts(), QStringList());

    QVERIFY(viewModel.setProperty(row.name, row.other));
    QCOMPARE(viewModel.property(row.name), row.other);
    QCOMPARE(recorder.texts(), announcement(row, row.other));
    recorder.clear();

    QVERIFY(viewModel.setProperty(row.name, row.other));
    for (const QVariant &refused : row.refused) {
        QVERIFY(viewModel.setProperty(row.name, refused));
        QCOMPARE(viewModel.property(row.name), row.other);
    }
    QCOMPARE(recorder.texts(), QStringList());

    QVERIFY(viewModel.setProperty(row.name, row.fresh));
    QCOMPARE(viewModel.property(row.name), row.fresh);
    QCOMPARE(recorder.texts(), announcement(row, row.fresh));
}

void TestSwitchDeviceViewModelProperties::write_always_notifiesEqualValuesToo()
{
    const PropertyRow &row = rowOfTag();
    SwitchDeviceViewModel viewModel;
    SignalRecorder recorder(&viewModel);
    for (const QVariant &value : {row.fresh, row.other, row.other}) {
        recorder.clear();
        QVERIFY(viewModel.setProperty(row.name, value));
        QCOMPARE(viewModel.property(row.name), value);
        QCOMPARE(recorder.texts(), announcement(row, value));
    }
}

void TestSwitchDeviceViewModelProperties::vlanIds_takeOneTo4093_data()
{
    QTest::addColumn<int>("written");
    QTest::addColumn<int>("read"); // after 100
    QTest::newRow("1, the lowest") << 1 << 1;
    QTest::newRow("4093, the highest") << 4093 << 4093;
    QTest::newRow("0") << 0 << 100;
    QTest::newRow("4094, legal elsewhere") << 4094 << 100;
    QTest::newRow("4095") << 4095 << 100;
    QTest::newRow("negative") << -4093 << 100;
}

void TestSwitchDeviceViewModelProperties::vlanIds_takeOneTo4093()
{
    QFETCH(const int, written);
    QFETCH(const int, read);
    for (const char *name : {"vlanId", "multicastVlanId", "querierVlanId"}) {
        SwitchDeviceViewModel viewModel;
        viewModel.setProperty(name, 100);
        const SignalRecorder recorder(&viewModel);
        viewModel.setProperty(name, written);
        QCOMPARE(viewModel.property(name).toInt(), read);
        QCOMPARE(recorder.emissions().size(), written == read ? 1 : 0);
    }
}

void TestSwitchDeviceViewModelProperties::userName_writtenFromOutside_stillReadsEmpty()
{
    SwitchDeviceViewModel viewModel;
    viewModel.setProperty("userText", QStringLiteral("admin"));
    viewModel.setProperty("userName", QStringLiteral("admin"));
    QCOMPARE(viewModel.property("userName"), QVariant(QString()));
    QCOMPARE(viewModel.property("userText"), QVariant(QStringLiteral("admin")));
}

void TestSwitchDeviceViewModelProperties::toast_isNeitherReadableNorWritable()
{
    SwitchDeviceViewModel viewModel;
    viewModel.disconnectDevice(); // shows a toast, which the property does not keep
    QCOMPARE(viewModel.property("toast").toString(), QString());
    QVERIFY(!viewModel.setProperty("toast", QStringLiteral("text")));
    QCOMPARE(viewModel.property("toast").toString(), QString());
}

void TestSwitchDeviceViewModelProperties::portCounts_areUpperMinusLowerBound()
{
    // Both bounds are -1 before an inventory has been read: no port, and the difference is 0.
    SwitchDeviceViewModel viewModel;
    QCOMPARE(viewModel.downInterfaceMin(), -1);
    QCOMPARE(viewModel.downInterfaceMax(), -1);
    QCOMPARE(viewModel.upInterfaceMin(), -1);
    QCOMPARE(viewModel.upInterfaceMax(), -1);
    QCOMPARE(viewModel.downComNum(), 0);
    QCOMPARE(viewModel.upComNum(), 0);
}

void TestSwitchDeviceViewModelProperties::selectedInterfacePorts_sameElements_areSilent()
{
    SwitchDeviceViewModel viewModel;
    viewModel.setSelectedInterfacePorts({1, QStringLiteral("2")});
    const SignalRecorder recorder(&viewModel);
    viewModel.setSelectedInterfacePorts(QVariantList() << 1 << QStringLiteral("2"));
    QCOMPARE(recorder.texts(), QStringList());
}

void TestSwitchDeviceViewModelProperties::selectedInterfacePorts_otherElementOrSize_notifies_data()
{
    QTest::addColumn<QVariantList>("ports"); // after {1, 2}
    QTest::newRow("another first element") << QVariantList{3, 2};
    QTest::newRow("another last element") << QVariantList{1, 3};
    QTest::newRow("another order") << QVariantList{2, 1};
    QTest::newRow("one more") << QVariantList{1, 2, 3};
    QTest::newRow("one fewer") << QVariantList{1};
    QTest::newRow("none") << QVariantList();
}

void TestSwitchDeviceViewModelProperties::selectedInterfacePorts_otherElementOrSize_notifies()
{
    QFETCH(const QVariantList, ports);
    SwitchDeviceViewModel viewModel;
    viewModel.setSelectedInterfacePorts({1, 2});
    const SignalRecorder recorder(&viewModel);
    viewModel.setSelectedInterfacePorts(ports);
    QCOMPARE(viewModel.selectedInterfacePorts(), ports);
    QCOMPARE(recorder.texts(), QStringList{QStringLiteral("selectedInterfacePortsChanged()")});
}

void TestSwitchDeviceViewModelProperties::downPortMin_logsOldAndNewValueAtDebugLevel()
{
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=true"));
    const QtMessageHandler before = qInstallMessageHandler(&captureDebug);
    {
        SwitchDeviceViewModel viewModel;
        capturedDebugTexts.clear();
        viewModel.setDownPortMin(5);
        viewModel.setDownPortMin(5);
    }
    qInstallMessageHandler(before);
    const QStringList about = capturedDebugTexts.filter(QStringLiteral("downPortMin"));
    QCOMPARE(about, (QStringList{QStringLiteral("Setting downPortMin to: 5 Current value: 0"),
                                 QStringLiteral("downPortMinChanged signal emitted"),
                                 QStringLiteral("Setting downPortMin to: 5 Current value: 5")}));
}

void TestSwitchDeviceViewModelProperties::packetAnalysis_isOneObjectForLife()
{
    const SwitchDeviceViewModel viewModel;
    auto *analysis = viewModel.property("packetAnalysis").value<PacketAnalysisViewModel *>();
    QVERIFY(analysis);
    QCOMPARE(analysis->parent(), nullptr);
    QCOMPARE(viewModel.property("packetAnalysis").value<PacketAnalysisViewModel *>(), analysis);
}

QTEST_GUILESS_MAIN(TestSwitchDeviceViewModelProperties)
#include "tst_switchdeviceviewmodel_properties.moc"
