// The switch family, and the ports that a switch reports, over the recording platform.
#include "consolescene.h"

#include <QtTest/QtTest>

using Family = ConsoleScene::Family;
using VM = SwitchDeviceViewModel;

Q_DECLARE_METATYPE(ConsoleScene::Family)

namespace {

RecordingPlatform &platform()
{
    return RecordingPlatform::instance();
}

//! The call that loads a description of that name, in the application's folder; an empty name: without any path.
QString loading(const char *file)
{
    const QString path = file[0] == '\0' ? QString()
                                         : QCoreApplication::applicationDirPath() + QStringLiteral("/../share/devices/")
                                               + QLatin1String(file);
    return QStringLiteral("loadXmlConfig(\"%1\")").arg(path);
}

QString sentCall(const char *block)
{
    return QStringLiteral("sendControlCmd(\"%1\")").arg(QLatin1String(block));
}

QVariantList names(const char *prefix, int first, int last)
{
    QVariantList list;
    for (int port = first; port <= last; ++port)
        list.append(QLatin1String(prefix) + QString::number(port));
    return list;
}

//! "lowest-highest", of what the four invokables and the two counts say.
QString ranges(VM &viewModel)
{
    return QStringLiteral("down %1-%2 %3, up %4-%5 %6")
        .arg(viewModel.downInterfaceMin())
        .arg(viewModel.downInterfaceMax())
        .arg(viewModel.downComNum())
        .arg(viewModel.upInterfaceMin())
        .arg(viewModel.upInterfaceMax())
        .arg(viewModel.upComNum());
}

//! The separator that the family in force hands over, seen from outside.
QString separator(ConsoleScene &scene)
{
    scene->setMulticastEnable(true);
    scene->sendSwitchDeviceCmd();
    scene->setMulticastEnable(false);
    return platform().callsOf(QStringLiteral("setWildcard")).last().text;
}

//! The slot that the view model hands over, seen from outside.
QString slot(ConsoleScene &scene)
{
    scene->clearAllConfig();
    return platform().callsOf(QStringLiteral("setBoardNum")).last().text;
}

} // namespace

class TestSwitchDeviceViewModelInventory : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // Family
    void family_loadsItsDescription_thenAnnounces_data();
    void family_loadsItsDescription_thenAnnounces();
    void family_sameLabelAgain_doesNothing();
    void family_unknownLabel_loadsTheLastDescriptionAgain();
    void family_descriptionThatCannotBeLoaded_isStillTheFamily();
    void family_separator_survivesHua3_data();
    void family_separator_survivesHua3();
    void subModel_lastsUntilAnotherLabelIsWritten();

    // Before any listing
    void fresh_hasNoPorts();

    // Listings
    void listing_fillsTheInventory_data();
    void listing_fillsTheInventory();
    void listing_announcesInThisOrder_data();
    void listing_announcesInThisOrder();
    void listing_setsTheRangesOfAllFeatures_data();
    void listing_setsTheRangesOfAllFeatures();
    void listing_sameAgain_notifiesTheAlwaysRangesOnly();
    void listing_withoutAnyPort_keepsTheRanges_data();
    void listing_withoutAnyPort_keepsTheRanges();
    void listing_withoutPorts_afterOneWithPorts_keepsTheRanges();
    void listing_ofAnAggregationSwitch_makesItOneForGood();
    void listing_subModel_takesTheDescriptionFirst();
    void listing_eachHeader_isAnnounced();
    void listing_slotOfTheFirstPort_data();
    void listing_slotOfTheFirstPort();
    void listing_hua3_leavesTheSlot();
    void listing_hua3_gigabitLinesThatNameXG_areNone();
    void listing_fasterPortsAlone_areNoGigabitPorts_data();
    void listing_fasterPortsAlone_areNoGigabitPorts();
    void listing_chainsTheSlotListing_behindTheLoginOnly();
    void listing_chainsTheSlotListing_withItsSlot();
    void listing_chain_withoutCommands_asksNothing();
    void listing_chain_inEnglish();
    void slotListing_givesBoardTypeAndOpticalPorts();

    void twoViewModels_haveInventoriesOfTheirOwn();

private:
    std::unique_ptr<MessageLog> _log;
};

void TestSwitchDeviceViewModelInventory::init()
{
    _log = std::make_unique<MessageLog>();
}

void TestSwitchDeviceViewModelInventory::cleanup()
{
    const QStringList warnings = _log->takeWarnings();
    _log.reset();
    QCOMPARE(warnings, QStringList());
}

void TestSwitchDeviceViewModelInventory::family_loadsItsDescription_thenAnnounces_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("loaded");
    const QString zh = QStringLiteral("zh_CN");
    const QString en = QStringLiteral("en");
    QTest::newRow("Huawei") << zh << QStringLiteral("华为") << loading("Huawei.xml");
    QTest::newRow("Hua3") << zh << QStringLiteral("华三") << loading("Hua3.xml");
    QTest::newRow("Huawei in English") << en << QStringLiteral("Huawei") << loading("Huawei.xml");
    QTest::newRow("Hua3 in English") << en << QStringLiteral("Hua3") << loading("Hua3.xml");
    QTest::newRow("another, with nothing loaded before") << zh << QStringLiteral("思科") << loading("");
    QTest::newRow("the other language's label") << en << QStringLiteral("华为") << loading("");
    QTest::newRow("compared exactly") << en << QStringLiteral("huawei") << loading("");
}

void TestSwitchDeviceViewModelInventory::family_loadsItsDescription_thenAnnounces()
{
    QFETCH(const QString, language);
    QFETCH(const QString, label);
    QFETCH(const QString, loaded);
    QStringList callsAtSignal;
    ConsoleScene scene(Family::None, language);
    connect(&scene.viewModel(), &VM::curlogoChangedChanged, this, [&] { callsAtSignal = scene.calls(); });
    scene->setCurlogoChanged(label);
    QCOMPARE(scene->curlogoChanged(), label);
    QCOMPARE(callsAtSignal, QStringList{loaded});
    QCOMPARE(scene.calls(), QStringList{loaded});
    QCOMPARE(scene.signalTexts(), QStringList{QStringLiteral("curlogoChangedChanged(%1)").arg(label)});
}

void TestSwitchDeviceViewModelInventory::family_sameLabelAgain_doesNothing()
{
    ConsoleScene scene(Family::None);
    scene->setCurlogoChanged(QString()); // as it was
    QCOMPARE(scene.calls(), QStringList());
    scene->setCurlogoChanged(QStringLiteral("华为"));
    scene->setCurlogoChanged(QStringLiteral("华为"));
    QCOMPARE(scene.calls(), QStringList{loading("Huawei.xml")});
    QCOMPARE(scene.countOf("curlogoChangedChanged"), 1);
}

void TestSwitchDeviceViewModelInventory::family_unknownLabel_loadsTheLastDescriptionAgain()
{
    ConsoleScene scene(Family::Hua3);
    scene->setCurlogoChanged(QStringLiteral("思科"));
    QCOMPARE(scene.calls(), QStringList{loading("Hua3.xml")});
    QCOMPARE(scene.signalTexts(), QStringList{QStringLiteral("curlogoChangedChanged(思科)")});
    // The naming stays too.
    scene.answer(ConsoleScene::listing(Family::Hua3, 1, 1));
    QCOMPARE(scene->gInterface(), names("g1/0/", 1, 1));
    QCOMPARE(scene->xgInterface(), names("t1/0/", 2, 2));
}

void TestSwitchDeviceViewModelInventory::family_descriptionThatCannotBeLoaded_isStillTheFamily()
{
    ConsoleScene scene(Family::None);
    platform().setLoadResult(false);
    scene->setCurlogoChanged(QStringLiteral("华三"));
    QCOMPARE(scene.signalTexts(), QStringList{QStringLiteral("curlogoChangedChanged(华三)")});
    scene.answer(ConsoleScene::listing(Family::Hua3, 1, 0));
    QCOMPARE(scene->gInterface(), names("g1/0/", 1, 1));
}

void TestSwitchDeviceViewModelInventory::family_separator_survivesHua3_data()
{
    QTest::addColumn<Family>("before");
    QTest::addColumn<QString>("separatorBefore");
    QTest::addColumn<QString>("separatorThen");
    QTest::newRow("behind Huawei") << Family::Huawei << QStringLiteral("setWildcard(\"-\")")
                                   << QStringLiteral("setWildcard(\"-\")");
    QTest::newRow("behind the sub-model")
        << Family::HuaweiSubModel << QStringLiteral("setWildcard(\" \")") << QStringLiteral("setWildcard(\" \")");
    QTest::newRow("behind nothing") << Family::None << QStringLiteral("setWildcard(\"\")")
                                    << QStringLiteral("setWildcard(\"\")");
}

void TestSwitchDeviceViewModelInventory::family_separator_survivesHua3()
{
    QFETCH(const Family, before);
    QFETCH(const QString, separatorBefore);
    QFETCH(const QString, separatorThen);
    ConsoleScene scene(before);
    QCOMPARE(separator(scene), separatorBefore);
    scene->setCurlogoChanged(QStringLiteral("华三"));
    QCOMPARE(separator(scene), separatorThen);
}

void TestSwitchDeviceViewModelInventory::subModel_lastsUntilAnotherLabelIsWritten()
{
    ConsoleScene scene(Family::HuaweiSubModel);
    scene->setCurlogoChanged(QStringLiteral("华为"));
    QCOMPARE(scene.calls(), QStringList());
    QCOMPARE(separator(scene), QStringLiteral("setWildcard(\" \")"));
    scene.clear();
    // An unknown label loads the last description, which is the sub-model's.
    scene->setCurlogoChanged(QStringLiteral("思科"));
    QCOMPARE(scene.calls(), QStringList{loading("Huawei_sub.xml")});
    scene.clear();
    scene->setCurlogoChanged(QStringLiteral("华为"));
    QCOMPARE(scene.calls(), QStringList{loading("Huawei.xml")});
    QCOMPARE(separator(scene), QStringLiteral("setWildcard(\"-\")"));
}

void TestSwitchDeviceViewModelInventory::fresh_hasNoPorts()
{
    ConsoleScene scene;
    QCOMPARE(scene->gInterface(), QVariantList());
    QCOMPARE(scene->xgInterface(), QVariantList());
    QCOMPARE(scene->allInterface(), QVariantList());
    QCOMPARE(scene->poeInterface(), QVariantList{QStringLiteral("all")});
    QCOMPARE(ranges(scene.viewModel()), QStringLiteral("down -1--1 0, up -1--1 0"));
    QCOMPARE(slot(scene), QStringLiteral("setBoardNum(0)"));
}

void TestSwitchDeviceViewModelInventory::listing_fillsTheInventory_data()
{
    QTest::addColumn<Family>("family");
    QTest::addColumn<QByteArray>("listing");
    QTest::addColumn<QVariantList>("down");
    QTest::addColumn<QVariantList>("up");
    QTest::addColumn<int>("isAggregation");
    QTest::addColumn<QString>("ranges");

    QTest::newRow("Huawei") << Family::Huawei << ConsoleScene::listing(Family::Huawei) << names("g0/0/", 1, 24)
                            << names("xg0/0/", 1, 4) << 0 << QStringLiteral("down 1-24 23, up 1-4 3");
    QTest::newRow("sub-model") << Family::Huawei << ConsoleScene::listing(Family::HuaweiSubModel)
                               << names("GE0/0/", 1, 24) << names("10GE0/0/", 1, 4) << 0
                               << QStringLiteral("down 1-24 23, up 1-4 3");
    QTest::newRow("Hua3") << Family::Hua3 << ConsoleScene::listing(Family::Hua3) << names("g1/0/", 1, 24)
                          << names("t1/0/", 25, 28) << 0 << QStringLiteral("down 1-24 23, up 25-28 3");
    QTest::newRow("a single port") << Family::Huawei << ConsoleScene::listing(Family::Huawei, 1, 0)
                                   << names("g0/0/", 1, 1) << QVariantList() << 0
                                   << QStringLiteral("down 1-1 0, up -1--1 0");
    QTest::newRow("aggregation sub-model")
        << Family::Huawei << ConsoleScene::aggregationListing(Family::HuaweiSubModel) << names("10GE0/0/", 1, 24)
        << QVariantList() << 1 << QStringLiteral("down 1-24 23, up 1-6 5");
    QTest::newRow("aggregation Hua3") << Family::Hua3 << ConsoleScene::aggregationListing(Family::Hua3)
                                      << names("t1/0/", 1, 24) << QVariantList() << 1
                                      << QStringLiteral("down 1-24 23, up 1-6 5");
    QTest::newRow("10-gigabit ports of long names alone")
        << Family::Huawei << QByteArray("Interface PHY\r\nXGigabitEthernet0/0/1 up\r\nXGigabitEthernet0/0/2 up\r\n")
        << names("xg0/0/", 1, 2) << QVariantList() << 1 << QStringLiteral("down 1-2 1, up -1--1 0");
    QTest::newRow("with echo and prompt")
        << Family::Huawei << QByteArray("<S>display interface brief\r\nInterface PHY\r\nGigabitEthernet0/0/7 up\r\n<S>")
        << names("g0/0/", 7, 7) << QVariantList() << 0 << QStringLiteral("down 7-7 0, up -1--1 0");
}

void TestSwitchDeviceViewModelInventory::listing_fillsTheInventory()
{
    QFETCH(const Family, family);
    QFETCH(const QByteArray, listing);
    QFETCH(const QVariantList, down);
    QFETCH(const QVariantList, up);
    QFETCH(const int, isAggregation);
    QFETCH(const QString, ranges);
    ConsoleScene scene(family);
    scene.answer(listing);
    QCOMPARE(scene->gInterface(), down);
    QCOMPARE(scene->xgInterface(), up);
    QCOMPARE(scene->allInterface(), down + up);
    QCOMPARE(scene->poeInterface(), QVariantList{QStringLiteral("all")} + down);
    QCOMPARE(scene->isAggregationSwitch(), isAggregation);
    QCOMPARE(::ranges(scene.viewModel()), ranges);
    // A listing replaces the one before.
    scene.answer(listing);
    QCOMPARE(scene->allInterface(), down + up);
}

void TestSwitchDeviceViewModelInventory::listing_announcesInThisOrder_data()
{
    QTest::addColumn<Family>("family");
    QTest::addColumn<QByteArray>("listing");
    QTest::addColumn<QStringList>("first");
    QTest::addColumn<QStringList>("last");
    const QString header = QStringLiteral("logMessage(端口状态信息:)");
    const QString aggregation = QStringLiteral("isAggregationSwitchChanged()");
    QTest::newRow("Huawei") << Family::Huawei
                            << QByteArray("Interface PHY\r\nGigabitEthernet0/0/3 up\r\nGigabitEthernet0/0/48 up\r\n"
                                          "XGigabitEthernet0/0/2 up\r\nXGigabitEthernet0/0/5 up\r\n")
                            << QStringList{header}
                            << QStringList{QStringLiteral("comDownNumChanged(45)"),
                                           QStringLiteral("comUpNumChanged(3)"),
                                           QStringLiteral("downComRangeChanged((3-48))"),
                                           QStringLiteral("upComRangeChanged((2-5))")};
    QTest::newRow("Hua3") << Family::Hua3
                          << QByteArray("Interface Link Speed\r\nGE1/0/3 UP\r\nGE1/0/48 UP\r\nXGE1/0/49 UP\r\n"
                                        "XGE1/0/52 UP\r\n")
                          << QStringList()
                          << QStringList{QStringLiteral("comDownNumChanged(45)"), QStringLiteral("comUpNumChanged(3)"),
                                         QStringLiteral("downComRangeChanged((3-48))"),
                                         QStringLiteral("upComRangeChanged((49-52))")};
    QTest::newRow("aggregation sub-model")
        << Family::Huawei
        << QByteArray("Interface PHY\r\n10GE0/0/3 up\r\n10GE0/0/48 up\r\n40GE0/0/1 up\r\n"
                      "40GE0/0/2 up\r\n")
        << QStringList{header, aggregation}
        << QStringList{QStringLiteral("comDownNumChanged(45)"), QStringLiteral("comUpNumChanged(1)"),
                       QStringLiteral("downComRangeChanged((3-48))"), QStringLiteral("upComRangeChanged((1-2))")};
}

void TestSwitchDeviceViewModelInventory::listing_announcesInThisOrder()
{
    QFETCH(const Family, family);
    QFETCH(const QByteArray, listing);
    QFETCH(const QStringList, first);
    QFETCH(const QStringList, last);
    ConsoleScene scene(family);
    scene->slot_handleParseState(VM::InputMore);
    scene.clear();
    scene.answer(listing);
    const QStringList setters{QStringLiteral("downPortMaxChanged()"),     QStringLiteral("downPortMinChanged()"),
                              QStringLiteral("linkDownPortMinChanged()"), QStringLiteral("linkDownPortMaxChanged()"),
                              QStringLiteral("poeDownPortMaxChanged()"),  QStringLiteral("poeDownPortMinChanged()"),
                              QStringLiteral("upPortMaxChanged()"),       QStringLiteral("upPortMinChanged()"),
                              QStringLiteral("linkUpPortMinChanged()"),   QStringLiteral("linkUpPortMaxChanged()")};
    // The end of the waiting: of the listing itself, or, with Hua3, of the port status table in the same text.
    QStringList expected = first + setters + last;
    if (family == Family::Hua3)
        expected.prepend(QStringLiteral("isWaitingResponseChanged()"));
    else
        expected.append(QStringLiteral("isWaitingResponseChanged()"));
    QCOMPARE(scene.signalTexts(), expected);
    QVERIFY(!scene->isWaitingResponse());
}

void TestSwitchDeviceViewModelInventory::listing_setsTheRangesOfAllFeatures_data()
{
    QTest::addColumn<Family>("family");
    QTest::addColumn<QByteArray>("listing");
    QTest::addColumn<QList<int>>("downAndUp");
    QTest::newRow("Huawei") << Family::Huawei << ConsoleScene::listing(Family::Huawei, 16, 2)
                            << QList<int>{1, 16, 1, 2};
    QTest::newRow("Hua3") << Family::Hua3 << ConsoleScene::listing(Family::Hua3, 48, 4) << QList<int>{1, 48, 49, 52};
    QTest::newRow("aggregation") << Family::Hua3 << ConsoleScene::aggregationListing(Family::Hua3, 32, 2)
                                 << QList<int>{1, 32, 1, 2};
}

void TestSwitchDeviceViewModelInventory::listing_setsTheRangesOfAllFeatures()
{
    QFETCH(const Family, family);
    QFETCH(const QByteArray, listing);
    QFETCH(const QList<int>, downAndUp);
    ConsoleScene scene(family);
    scene.answer(listing);
    const QList<int> down = downAndUp.mid(0, 2);
    const QList<int> up = downAndUp.mid(2);
    QCOMPARE((QList<int>{scene->downPortMin(), scene->downPortMax()}), down);
    QCOMPARE((QList<int>{scene->linkDownPortMin(), scene->linkDownPortMax()}), down);
    QCOMPARE((QList<int>{scene->poeDownPortMin(), scene->poeDownPortMax()}), down);
    QCOMPARE((QList<int>{scene->upPortMin(), scene->upPortMax()}), up);
    QCOMPARE((QList<int>{scene->linkUpPortMin(), scene->linkUpPortMax()}), up);
    QCOMPARE(scene->downComRange(), QStringLiteral("(%1-%2)").arg(down[0]).arg(down[1]));
    QCOMPARE(scene->upComRange(), QStringLiteral("(%1-%2)").arg(up[0]).arg(up[1]));
}

void TestSwitchDeviceViewModelInventory::listing_sameAgain_notifiesTheAlwaysRangesOnly()
{
    ConsoleScene scene;
    scene.answer(ConsoleScene::listing(Family::Huawei));
    scene.clear();
    scene.answer(ConsoleScene::listing(Family::Huawei));
    QCOMPARE(scene.signalTexts(),
             (QStringList{QStringLiteral("logMessage(端口状态信息:)"), QStringLiteral("linkDownPortMinChanged()"),
                          QStringLiteral("linkDownPortMaxChanged()"), QStringLiteral("upPortMaxChanged()"),
                          QStringLiteral("upPortMinChanged()"), QStringLiteral("linkUpPortMinChanged()"),
                          QStringLiteral("linkUpPortMaxChanged()"), QStringLiteral("comDownNumChanged(23)"),
                          QStringLiteral("comUpNumChanged(3)"), QStringLiteral("downComRangeChanged((1-24))"),
                          QStringLiteral("upComRangeChanged((1-4))")}));
}

void TestSwitchDeviceViewModelInventory::listing_withoutAnyPort_keepsTheRanges_data()
{
    QTest::addColumn<Family>("family");
    QTest::addColumn<QByteArray>("listing");
    QTest::newRow("Huawei, header alone") << Family::Huawei << QByteArray("Interface PHY\r\n");
    QTest::newRow("Hua3, header alone") << Family::Hua3 << QByteArray("Interface Link Speed\r\n");
    QTest::newRow("ports numbered 0") << Family::Huawei << QByteArray("Interface PHY\r\nXGigabitEthernet0/0/0 up\r\n");
    QTest::newRow("too few parts") << Family::Huawei << QByteArray("Interface PHY\r\nGigabitEthernet0/1 up\r\n");
}

void TestSwitchDeviceViewModelInventory::listing_withoutAnyPort_keepsTheRanges()
{
    QFETCH(const Family, family);
    QFETCH(const QByteArray, listing);
    ConsoleScene scene(family);
    scene.answer(listing);
    QStringList expected{QStringLiteral("isAggregationSwitchChanged()"), QStringLiteral("comDownNumChanged(0)"),
                         QStringLiteral("comUpNumChanged(0)"), QStringLiteral("downComRangeChanged((-1--1))"),
                         QStringLiteral("upComRangeChanged((-1--1))")};
    if (family == Family::Huawei)
        expected.prepend(QStringLiteral("logMessage(端口状态信息:)"));
    QCOMPARE(scene.signalTexts(), expected);
    QCOMPARE(scene->isAggregationSwitch(), 1);
    QCOMPARE(ranges(scene.viewModel()), QStringLiteral("down -1--1 0, up -1--1 0"));
    QCOMPARE(scene->downPortMax(), 0);
    QCOMPARE(scene->linkDownPortMax(), 24);
}

void TestSwitchDeviceViewModelInventory::listing_withoutPorts_afterOneWithPorts_keepsTheRanges()
{
    ConsoleScene scene;
    scene.answer(ConsoleScene::listing(Family::Huawei));
    scene.clear();
    scene.answer("Interface PHY\r\n");
    QCOMPARE(scene->allInterface(), QVariantList());
    QCOMPARE(ranges(scene.viewModel()), QStringLiteral("down 1-24 23, up 1-4 3"));
    QCOMPARE(scene.signalTexts().mid(2),
             (QStringList{QStringLiteral("comDownNumChanged(23)"), QStringLiteral("comUpNumChanged(3)"),
                          QStringLiteral("downComRangeChanged((1-24))"), QStringLiteral("upComRangeChanged((1-4))")}));
}

void TestSwitchDeviceViewModelInventory::listing_ofAnAggregationSwitch_makesItOneForGood()
{
    ConsoleScene scene;
    scene.answer(ConsoleScene::aggregationListing(Family::HuaweiSubModel));
    scene.clear();
    scene.answer(ConsoleScene::listing(Family::HuaweiSubModel));
    QCOMPARE(scene->isAggregationSwitch(), 1);
    QCOMPARE(scene.countOf("isAggregationSwitchChanged"), 0);
    // So the 10-gigabit ports stand among the down ports.
    QCOMPARE(scene->gInterface(), names("GE0/0/", 1, 24) + names("10GE0/0/", 1, 4));
    QCOMPARE(scene->xgInterface(), QVariantList());
    scene.clear();
    scene.answer(ConsoleScene::aggregationListing(Family::HuaweiSubModel));
    QCOMPARE(scene.countOf("isAggregationSwitchChanged"), 1); // announced each time
}

void TestSwitchDeviceViewModelInventory::listing_subModel_takesTheDescriptionFirst()
{
    QStringList callsAtFirstSignal;
    ConsoleScene scene;
    connect(&scene.viewModel(), &VM::logMessage, this, [&] {
        if (callsAtFirstSignal.isEmpty())
            callsAtFirstSignal = scene.calls();
    });
    scene.answer(ConsoleScene::listing(Family::HuaweiSubModel));
    QCOMPARE(callsAtFirstSignal, QStringList{loading("Huawei_sub.xml")});
    scene.clear();
    scene.answer(ConsoleScene::listing(Family::HuaweiSubModel)); // and each time again
    QCOMPARE(scene.calls(), QStringList{loading("Huawei_sub.xml")});
    scene.clear();
    scene.answer(ConsoleScene::listing(Family::Huawei)); // long names keep the naming in force
    QCOMPARE(scene.calls(), QStringList());
    QCOMPARE(separator(scene), QStringLiteral("setWildcard(\" \")"));
}

void TestSwitchDeviceViewModelInventory::listing_eachHeader_isAnnounced()
{
    ConsoleScene scene(Family::Huawei, QStringLiteral("en"));
    scene.answer("Interface PHY\r\nGigabitEthernet0/0/1 up\r\nInterface PHY\r\n\r\n");
    QCOMPARE(scene.announcedLines(), (QStringList{QStringLiteral("Port status:"), QStringLiteral("Port status:")}));
    scene.clear();
    scene.answer("Interface\r\nPHY\r\nGigabitEthernet0/0/1 up\r\n"); // a listing, without a line that is its header
    QCOMPARE(scene.announcedLines(), QStringList());
    QCOMPARE(scene.countOf("comDownNumChanged"), 1);
}

void TestSwitchDeviceViewModelInventory::listing_slotOfTheFirstPort_data()
{
    QTest::addColumn<QByteArray>("ports");
    QTest::addColumn<QString>("slot");
    QTest::newRow("long name") << QByteArray("GigabitEthernet2/0/1\r\nGigabitEthernet3/0/1\r\n")
                               << QStringLiteral("setBoardNum(2)");
    QTest::newRow("10-gigabit long name first")
        << QByteArray("XGigabitEthernet4/0/1\r\nGigabitEthernet3/0/1\r\n") << QStringLiteral("setBoardNum(4)");
    QTest::newRow("short name") << QByteArray("GE5/0/1\r\nGE6/0/1\r\n") << QStringLiteral("setBoardNum(5)");
    QTest::newRow("no port at all") << QByteArray("Vlanif1 up\r\n") << QStringLiteral("setBoardNum(0)");
    QTest::newRow("too large a number") << QByteArray("GigabitEthernet99999999999/0/1\r\n")
                                        << QStringLiteral("setBoardNum(0)");
}

void TestSwitchDeviceViewModelInventory::listing_slotOfTheFirstPort()
{
    QFETCH(const QByteArray, ports);
    QFETCH(const QString, slot);
    ConsoleScene scene;
    scene.answer("Interface PHY\r\nGigabitEthernet7/0/1 up\r\n"); // is forgotten with the next listing
    scene.answer("Interface PHY\r\n" + ports);
    QCOMPARE(::slot(scene), slot);
}

void TestSwitchDeviceViewModelInventory::listing_hua3_leavesTheSlot()
{
    ConsoleScene scene;
    scene.answer("Interface PHY\r\nGigabitEthernet7/0/1 up\r\n");
    scene->setCurlogoChanged(QStringLiteral("华三"));
    scene.answer(ConsoleScene::listing(Family::Hua3));
    QCOMPARE(slot(scene), QStringLiteral("setBoardNum(7)"));
}

void TestSwitchDeviceViewModelInventory::listing_hua3_gigabitLinesThatNameXG_areNone()
{
    ConsoleScene scene(Family::Hua3);
    scene.answer("Interface Link Speed\r\nGE1/0/1 UP to XG uplink\r\nGE1/0/2 UP XG\r\n");
    QCOMPARE(scene->gInterface(), QVariantList());
    QCOMPARE(scene->isAggregationSwitch(), 1);
}

void TestSwitchDeviceViewModelInventory::listing_fasterPortsAlone_areNoGigabitPorts_data()
{
    QTest::addColumn<Family>("family");
    QTest::addColumn<QByteArray>("line");
    for (const char *name : {"10GE", "25GE", "40GE", "100GE"}) {
        const QByteArray line = QByteArray(name) + "0/0/1 up\r\n";
        QTest::newRow(qPrintable(QLatin1String(name) + QStringLiteral(" of the sub-model"))) << Family::Huawei << line;
        QTest::newRow(qPrintable(QLatin1String(name) + QStringLiteral(" of Hua3"))) << Family::Hua3 << line;
    }
}

void TestSwitchDeviceViewModelInventory::listing_fasterPortsAlone_areNoGigabitPorts()
{
    QFETCH(const Family, family);
    QFETCH(const QByteArray, line);
    ConsoleScene scene(family);
    scene.answer((family == Family::Hua3 ? "Interface Link Speed\r\n" : "Interface PHY\r\n") + line);
    QCOMPARE(scene->isAggregationSwitch(), 1);
    for (const QVariant &port : scene->gInterface())
        QVERIFY2(port.toString().startsWith(QLatin1String("10GE")), qPrintable(port.toString()));
    QCOMPARE(scene->xgInterface(), QVariantList());
}

void TestSwitchDeviceViewModelInventory::listing_chainsTheSlotListing_behindTheLoginOnly()
{
    ConsoleScene scene;
    scene.answer(ConsoleScene::listing(Family::Huawei));
    scene.ask(scene.tr("端口状态监测")); // the same commands under another label
    scene.answer(ConsoleScene::listing(Family::Huawei));
    QCOMPARE(scene.calls(), QStringList());

    ConsoleScene other(Family::Hua3);
    other.ask(other.tr("接口解析"));
    other.answer(ConsoleScene::listing(Family::Hua3));
    other.complete();
    QCOMPARE(other.calls(), QStringList());
}

void TestSwitchDeviceViewModelInventory::listing_chainsTheSlotListing_withItsSlot()
{
    ConsoleScene scene;
    platform().setCommands(QStringLiteral("getInterfaceSpeedCommands"),
                           {QStringLiteral("screen-length 0 temporary"), QStringLiteral("display device slot 9 x"),
                            QStringLiteral("space"), QStringLiteral("display device slot"), QStringLiteral("端口")});
    scene.ask(scene.tr("接口解析"));
    _log->clear();
    scene.answer("Interface PHY\r\nGigabitEthernet3/0/1 up\r\n");
    QCOMPARE(scene.calls(), QStringList{QStringLiteral("getInterfaceSpeedCommands()")}); // waits for its turn
    QCOMPARE(scene.signalTexts().last(), QStringLiteral("isWaitingResponseChanged()"));
    QVERIFY(!scene->isWaitingResponse());
    scene.complete();
    QCOMPARE(scene.sent(), QList<QByteArray>{"screen-length 0 temporary\r\ndisplay device slot 3\r\n"
                                             "spacedisplay device slot 3\r\n端口\r\n"});
    QCOMPARE(_log->lines(QStringLiteral("info")),
             (QStringList{QStringLiteral("接口解析执行结束"), QStringLiteral("光电端口解析执行中...")}));
}

void TestSwitchDeviceViewModelInventory::listing_chain_withoutCommands_asksNothing()
{
    ConsoleScene scene;
    platform().setCommands(QStringLiteral("getInterfaceSpeedCommands"), QStringList());
    scene.ask(scene.tr("接口解析"));
    scene.answer("Interface PHY\r\nGigabitEthernet3/0/1 up\r\n");
    QVERIFY(!scene->isWaitingResponse());
    scene.complete();
    QCOMPARE(scene.sent(), QList<QByteArray>());
}

void TestSwitchDeviceViewModelInventory::listing_chain_inEnglish()
{
    ConsoleScene scene(Family::Huawei, QStringLiteral("en"));
    scene.ask(QStringLiteral("Interface discovery"));
    scene.answer("Interface PHY\r\nGigabitEthernet3/0/1 up\r\n");
    scene.complete();
    QCOMPARE(scene.calls(),
             (QStringList{QStringLiteral("getInterfaceSpeedCommands()"),
                          sentCall("getInterfaceSpeedCommands 1\\r\\ngetInterfaceSpeedCommands 2\\r\\n")}));
    QCOMPARE(_log->lines(QStringLiteral("info")).last(),
             QStringLiteral("Optical/electrical port discovery in progress..."));
}

void TestSwitchDeviceViewModelInventory::slotListing_givesBoardTypeAndOpticalPorts()
{
    ConsoleScene scene;
    scene.answer(ConsoleScene::slotListing(8));
    QCOMPARE(scene->boardType(), QStringLiteral("S5720-28X"));
    QCOMPARE(scene.signalTexts(), QStringList{QStringLiteral("boardTypeChanged()")});
    // The number of copper ports shows where a range is lowered to it.
    scene->setVlanEnable(true);
    scene->setVlanDownPortEnable(true);
    scene->setDownPortMin(1);
    scene->setDownPortMax(24);
    scene->sendSwitchDeviceCmd();
    QCOMPARE(scene->downPortMax(), 8);
    scene.clear();
    scene.answer(ConsoleScene::slotListing(8));
    QCOMPARE(scene.countOf("boardTypeChanged"), 0);
    // The next listing replaces the lines.
    scene.answer(ConsoleScene::slotListing(4));
    scene->setDownPortMax(24);
    scene->sendSwitchDeviceCmd();
    QCOMPARE(scene->downPortMax(), 4);
}

void TestSwitchDeviceViewModelInventory::twoViewModels_haveInventoriesOfTheirOwn()
{
    ConsoleScene first;
    SwitchDeviceViewModel second;
    second.setCurlogoChanged(QStringLiteral("华三"));
    const SignalRecorder recorder(&second);
    first.answer(ConsoleScene::aggregationListing(Family::HuaweiSubModel));
    QCOMPARE(second.allInterface(), QVariantList());
    QCOMPARE(second.isAggregationSwitch(), 0);
    for (const QString &text : recorder.texts())
        QVERIFY2(text.startsWith(QLatin1String("logMessage([")), qPrintable(text)); // the newest one shows the log
}

QTEST_GUILESS_MAIN(TestSwitchDeviceViewModelInventory)
#include "tst_switchdeviceviewmodel_inventory.moc"
