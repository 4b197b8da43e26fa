#include "capturetally.h"

#include <QtTest/QtTest>

#include <cstring>
#include <stdexcept>

using analysis::CaptureTally;

class TestCaptureTally : public QObject
{
    Q_OBJECT

private slots:
    void aMillionPorts_areCounted_oneMoreIsRefused();
    void aMillionAddresses_areCounted_oneMoreIsRefused();
    void moreThanAMillionSyncSessions_areRefused();
};

namespace {

analysis::StoredMessage messageOfPort(quint32 number)
{
    analysis::StoredMessage stored;
    std::memcpy(stored.message.header.sourcePortIdentity.clockIdentity.octets.data(), &number, sizeof number);
    return stored;
}

analysis::StoredMessage messageOfAddress(quint32 address)
{
    analysis::StoredMessage stored;
    stored.source = {address, true};
    return stored;
}

constexpr auto kLimit = quint32(CaptureTally::kMaxDistinct);

} // namespace

void TestCaptureTally::aMillionPorts_areCounted_oneMoreIsRefused()
{
    CaptureTally tally;
    for (quint32 port = 0; port < kLimit; ++port)
        tally.add(messageOfPort(port));
    tally.add(messageOfPort(0)); // known already
    tally.checkLimits(0);
    tally.add(messageOfPort(kLimit));
    QVERIFY_EXCEPTION_THROWN(tally.checkLimits(0), std::runtime_error);
}

void TestCaptureTally::aMillionAddresses_areCounted_oneMoreIsRefused()
{
    CaptureTally tally;
    for (quint32 address = 0; address < kLimit; ++address)
        tally.add(messageOfAddress(address));
    tally.add(analysis::StoredMessage()); // without an address: no address
    tally.checkLimits(0);
    tally.add(messageOfAddress(kLimit));
    QVERIFY_EXCEPTION_THROWN(tally.checkLimits(0), std::runtime_error);
}

void TestCaptureTally::moreThanAMillionSyncSessions_areRefused()
{
    const CaptureTally tally;
    tally.checkLimits(CaptureTally::kMaxDistinct);
    QVERIFY_EXCEPTION_THROWN(tally.checkLimits(CaptureTally::kMaxDistinct + 1), std::runtime_error);
}

QTEST_APPLESS_MAIN(TestCaptureTally)
#include "tst_capturetally.moc"
