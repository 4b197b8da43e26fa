#include "ptpv2parser/ptpv2analyzer.h"

#include "ptpv2messagebuilder.h"
#include "ptpv2parser/ptpv2parser.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

using namespace PTPv2;
using namespace ptpv2messagebuilder;

namespace {

constexpr int64_t kNs = 65536; // one nanosecond in units of a correction field

const Port kMaster{0x001B19FFFE000064, 1};
const Port kSlave{0x001B19FFFE000005, 1};

struct CaptureTime
{
    int64_t seconds;
    int32_t nanoseconds;
};

void add(PTPv2Analyzer &analyzer, const Bytes &bytes, CaptureTime time)
{
    PTPv2Message message;
    ASSERT_EQ(decodeMessage(bytes.data(), bytes.size(), message), DecodeResult::Ok);
    message.captureSeconds = time.seconds;
    message.captureNanoseconds = time.nanoseconds;
    analyzer.addMessage(message);
}

Header from(const Port &port, unsigned sequenceId, int64_t correctionField = 0, bool twoStep = false)
{
    Header header;
    header.source = port;
    header.sequenceId = sequenceId;
    header.correctionField = correctionField;
    header.twoStep = twoStep;
    return header;
}

/// A slave 500 ns ahead of its master, 200 ns away: t1 = 100.0, t2 = t1 + 700, t3 = 100.5, t4 = t3 - 300.
void addOneStepSync(PTPv2Analyzer &analyzer, const Port &master = kMaster, unsigned sequenceId = 1)
{
    add(analyzer, sync(from(master, sequenceId), {100, 0}), {100, 700});
}

void addDelayReq(PTPv2Analyzer &analyzer, const Port &slave = kSlave, unsigned sequenceId = 9)
{
    add(analyzer, delayReq(from(slave, sequenceId)), {100, 500000000});
}

void addDelayResp(PTPv2Analyzer &analyzer, const Port &master = kMaster, const Port &slave = kSlave,
                  unsigned sequenceId = 9)
{
    add(analyzer, delayResp(from(master, sequenceId), {100, 499999700}, slave), {100, 500100000});
}

SyncSession onlySession(const PTPv2Analyzer &analyzer)
{
    const std::vector<SyncSession> sessions = analyzer.getSyncSessions();
    EXPECT_EQ(sessions.size(), 1U);
    EXPECT_EQ(analyzer.sessionCount(), sessions.size());
    return sessions.empty() ? SyncSession{} : sessions.front();
}

/// Requests of many slaves, then their answers; each answer gives another path delay, so that a lost request shows.
void expectAllMatched(PTPv2Analyzer &analyzer, unsigned slaves)
{
    for (unsigned i = 0; i < slaves; ++i)
        addDelayReq(analyzer, {kSlave.clockIdentity + i, 1}, i * 7 & 0xFFFF);
    for (unsigned i = 0; i < slaves; ++i) {
        const Port slave{kSlave.clockIdentity + i, 1};
        add(analyzer, delayResp(from(kMaster, i * 7 & 0xFFFF), {100, 499999700 + 2 * i}, slave), {100, 500100000});
        ASSERT_EQ(onlySession(analyzer).pathDelay, 200.0 + i) << "slave " << i;
    }
}

} // namespace

TEST(PTPv2Analyzer, oneStepExchange_offsetAndPathDelay)
{
    PTPv2Analyzer analyzer;
    addOneStepSync(analyzer);
    addDelayReq(analyzer);
    EXPECT_FALSE(onlySession(analyzer).hasValidSync);
    addDelayResp(analyzer);

    const SyncSession session = onlySession(analyzer);
    EXPECT_EQ(session.masterPortIdentity.toString(), "00:1b:19:ff:fe:00:00:64-1");
    EXPECT_EQ(session.domainNumber, 0);
    EXPECT_TRUE(session.hasValidSync);
    EXPECT_EQ(session.clockOffset, 500.0);
    EXPECT_EQ(session.pathDelay, 200.0);
    EXPECT_EQ(session.lastSyncSequence, 1);
    EXPECT_EQ(session.lastFollowUpSequence, 0);
}

TEST(PTPv2Analyzer, twoStepExchange_takesTheOriginFromFollowUp)
{
    PTPv2Analyzer analyzer;
    add(analyzer, sync(from(kMaster, 1, 0, true), {99, 123}), {100, 700});
    add(analyzer, followUp(from(kMaster, 1), {100, 0}), {100, 5000});
    addDelayReq(analyzer);
    addDelayResp(analyzer);

    const SyncSession session = onlySession(analyzer);
    EXPECT_TRUE(session.hasValidSync);
    EXPECT_EQ(session.clockOffset, 500.0);
    EXPECT_EQ(session.pathDelay, 200.0);
    EXPECT_EQ(session.lastFollowUpSequence, 1);
}

TEST(PTPv2Analyzer, twoStepSyncWithoutItsFollowUp_isNoExchange)
{
    PTPv2Analyzer analyzer;
    add(analyzer, sync(from(kMaster, 1, 0, true), {100, 0}), {100, 700});
    add(analyzer, followUp(from(kMaster, 2), {100, 0}), {100, 5000});
    addDelayReq(analyzer);
    addDelayResp(analyzer);
    const SyncSession session = onlySession(analyzer);
    EXPECT_FALSE(session.hasValidSync);
    EXPECT_EQ(session.clockOffset, 0.0);
    EXPECT_EQ(session.pathDelay, 0.0);
    EXPECT_EQ(session.lastSyncSequence, 1);
    EXPECT_EQ(session.lastFollowUpSequence, 2);
}

TEST(PTPv2Analyzer, followUpBeforeItsSync_isMatched)
{
    PTPv2Analyzer analyzer;
    add(analyzer, followUp(from(kMaster, 1), {100, 0}), {100, 690});
    EXPECT_FALSE(onlySession(analyzer).hasValidSync) << "a Follow_Up alone opens the session";
    add(analyzer, sync(from(kMaster, 1, 0, true), {0, 0}), {100, 700});
    addDelayReq(analyzer);
    addDelayResp(analyzer);
    EXPECT_EQ(onlySession(analyzer).clockOffset, 500.0);
}

TEST(PTPv2Analyzer, followUpLeftFromAnEarlierRound_isNotMatchedAgain)
{
    PTPv2Analyzer analyzer;
    add(analyzer, followUp(from(kMaster, 7), {1, 0}), {1, 0}); // its Sync was not captured
    add(analyzer, sync(from(kMaster, 8, 0, true), {0, 0}), {2, 0});
    add(analyzer, sync(from(kMaster, 7, 0, true), {0, 0}), {100, 700}); // the master has started again
    addDelayReq(analyzer);
    addDelayResp(analyzer);
    EXPECT_FALSE(onlySession(analyzer).hasValidSync);
    add(analyzer, followUp(from(kMaster, 7), {100, 0}), {100, 600000000});
    EXPECT_EQ(onlySession(analyzer).clockOffset, 500.0) << "the answer came before the Follow_Up";
}

TEST(PTPv2Analyzer, followUpThatComesTwice_countsOnce)
{
    PTPv2Analyzer analyzer;
    add(analyzer, sync(from(kMaster, 1, 0, true), {0, 0}), {100, 700});
    add(analyzer, followUp(from(kMaster, 1), {100, 0}), {100, 5000});
    add(analyzer, followUp(from(kMaster, 1), {7, 0}), {100, 6000}); // of a later round, its Sync was not captured
    addDelayReq(analyzer);
    addDelayResp(analyzer);
    EXPECT_EQ(onlySession(analyzer).clockOffset, 500.0);
}

TEST(PTPv2Analyzer, followUpBehindTheNextSync_isMatchedWithItsOwn)
{
    PTPv2Analyzer analyzer;
    add(analyzer, sync(from(kMaster, 1, 0, true), {0, 0}), {100, 700});
    add(analyzer, sync(from(kMaster, 2, 0, true), {0, 0}), {100, 9000});
    add(analyzer, followUp(from(kMaster, 1), {100, 0}), {100, 9500});
    addDelayReq(analyzer);
    addDelayResp(analyzer);
    EXPECT_EQ(onlySession(analyzer).clockOffset, 500.0);
}

TEST(PTPv2Analyzer, repeatedSequenceId_takesTheLaterSync)
{
    PTPv2Analyzer analyzer;
    add(analyzer, sync(from(kMaster, 1, 0, true), {0, 0}), {90, 0});
    add(analyzer, sync(from(kMaster, 1, 0, true), {0, 0}), {100, 700});
    add(analyzer, followUp(from(kMaster, 1), {100, 0}), {100, 900});
    addDelayReq(analyzer);
    addDelayResp(analyzer);
    EXPECT_EQ(onlySession(analyzer).clockOffset, 500.0);
}

TEST(PTPv2Analyzer, correctionFields_areTakenOff)
{
    // The same exchange through transparent clocks: Sync 40 ns and Follow_Up 60 ns late, Delay_Req 10 ns (which the
    // master has copied into its answer) and 20.5 ns in the answer's correction in all.
    PTPv2Analyzer analyzer;
    add(analyzer, sync(from(kMaster, 1, 40 * kNs, true), {0, 0}), {100, 800});
    add(analyzer, followUp(from(kMaster, 1, 60 * kNs), {100, 0}), {100, 5000});
    add(analyzer, delayReq(from(kSlave, 9, 10 * kNs)), {100, 500000000});
    add(analyzer, delayResp(from(kMaster, 9, 20 * kNs + kNs / 2), {100, 499999720}, kSlave), {100, 500100000});

    // t2 - t1 - corrections = 700, t4 - t3 - corrections = -300.5
    const SyncSession session = onlySession(analyzer);
    EXPECT_EQ(session.pathDelay, 199.75);
    EXPECT_EQ(session.clockOffset, 500.25);
}

TEST(PTPv2Analyzer, negativeCorrection_isAdded)
{
    PTPv2Analyzer analyzer;
    add(analyzer, sync(from(kMaster, 1, -100 * kNs), {100, 0}), {100, 600});
    addDelayReq(analyzer);
    addDelayResp(analyzer);
    EXPECT_EQ(onlySession(analyzer).clockOffset, 500.0);
    EXPECT_EQ(onlySession(analyzer).pathDelay, 200.0);
}

TEST(PTPv2Analyzer, lastCompleteExchange_counts)
{
    PTPv2Analyzer analyzer;
    addOneStepSync(analyzer);
    addDelayReq(analyzer);
    addDelayResp(analyzer);
    add(analyzer, sync(from(kMaster, 2), {200, 0}), {200, 2000});
    EXPECT_EQ(onlySession(analyzer).clockOffset, 500.0) << "a Sync alone is no exchange";
    EXPECT_EQ(onlySession(analyzer).lastSyncSequence, 2);
    add(analyzer, delayReq(from(kSlave, 10)), {200, 500});
    EXPECT_EQ(onlySession(analyzer).clockOffset, 500.0);
    add(analyzer, delayResp(from(kMaster, 10), {200, 500}, kSlave), {200, 600});
    EXPECT_EQ(onlySession(analyzer).clockOffset, 1000.0);
    EXPECT_EQ(onlySession(analyzer).pathDelay, 1000.0);
}

TEST(PTPv2Analyzer, delayRespForAnotherRequest_isNotMatched)
{
    PTPv2Analyzer analyzer;
    addOneStepSync(analyzer);
    addDelayReq(analyzer);
    addDelayResp(analyzer, kMaster, kSlave, 10);
    addDelayResp(analyzer, kMaster, {kSlave.clockIdentity, 2}, 9);
    for (unsigned i = 1; i < 5000; ++i) // many, so that some fall into the request's place of the table
        addDelayResp(analyzer, kMaster, {kSlave.clockIdentity + i, 1}, 9);
    EXPECT_FALSE(onlySession(analyzer).hasValidSync);
    addDelayResp(analyzer);
    EXPECT_TRUE(onlySession(analyzer).hasValidSync);
}

TEST(PTPv2Analyzer, delayRespOfAnotherDomain_isNotMatched)
{
    PTPv2Analyzer analyzer;
    Header otherDomain = from(kMaster, 9);
    otherDomain.domainNumber = 1;
    add(analyzer, sync(otherDomain, {100, 0}), {100, 700});
    addDelayReq(analyzer);
    add(analyzer, delayResp(otherDomain, {100, 499999700}, kSlave), {100, 500100000});
    EXPECT_FALSE(onlySession(analyzer).hasValidSync);
}

TEST(PTPv2Analyzer, severalMastersAndDomains_areSessionsInOrderOfAppearance)
{
    const Port second{0x00, 7}; // sorts before the first
    PTPv2Analyzer analyzer;
    Header domain1 = from(kMaster, 31);
    domain1.domainNumber = 1;
    addOneStepSync(analyzer, kMaster, 11);
    addOneStepSync(analyzer, second, 21);
    add(analyzer, followUp(domain1, {1, 0}), {1, 0});
    addOneStepSync(analyzer, kMaster, 12);
    addDelayReq(analyzer);
    addDelayResp(analyzer, second);

    const std::vector<SyncSession> sessions = analyzer.getSyncSessions();
    ASSERT_EQ(sessions.size(), 3U);
    EXPECT_EQ(sessions[0].masterPortIdentity.toString(), "00:1b:19:ff:fe:00:00:64-1");
    EXPECT_EQ(sessions[0].domainNumber, 0);
    EXPECT_EQ(sessions[0].lastSyncSequence, 12);
    EXPECT_FALSE(sessions[0].hasValidSync);
    EXPECT_EQ(sessions[1].masterPortIdentity.toString(), "00:00:00:00:00:00:00:00-7");
    EXPECT_EQ(sessions[1].lastSyncSequence, 21);
    EXPECT_TRUE(sessions[1].hasValidSync);
    EXPECT_EQ(sessions[2].domainNumber, 1);
    EXPECT_EQ(sessions[2].lastFollowUpSequence, 31);
}

TEST(PTPv2Analyzer, twoMastersAnsweringOneRequest_areBothValid)
{
    const Port second{kMaster.clockIdentity + 1, 1};
    PTPv2Analyzer analyzer;
    addOneStepSync(analyzer);
    addOneStepSync(analyzer, second);
    addDelayReq(analyzer);
    addDelayResp(analyzer);
    addDelayResp(analyzer, second);
    for (const SyncSession &session : analyzer.getSyncSessions())
        EXPECT_TRUE(session.hasValidSync) << session.masterPortIdentity.toString();
}

TEST(PTPv2Analyzer, otherMessages_openNoSession)
{
    PTPv2Analyzer analyzer;
    for (unsigned type = 0; type < 16; ++type) {
        if (type != 0 && type != 8)
            add(analyzer, smallestMessage(type), {1, 0});
    }
    EXPECT_EQ(analyzer.sessionCount(), 0U);
    EXPECT_TRUE(analyzer.getSyncSessions().empty());
}

TEST(PTPv2Analyzer, clear_forgetsSessionsAndRequests)
{
    PTPv2Analyzer analyzer;
    addOneStepSync(analyzer);
    addDelayReq(analyzer);
    analyzer.clear();
    EXPECT_EQ(analyzer.sessionCount(), 0U);
    addOneStepSync(analyzer);
    addDelayResp(analyzer);
    EXPECT_FALSE(onlySession(analyzer).hasValidSync) << "the request was from before";
}

TEST(PTPv2Analyzer, parserWithoutAMessage_isIgnored)
{
    const PTPv2Parser parser;
    PTPv2Analyzer analyzer;
    analyzer.addMessage(parser);
    EXPECT_EQ(analyzer.sessionCount(), 0U);
}

TEST(PTPv2Analyzer, clocksDecadesApart_keepNanosecondsInThePathDelay)
{
    // A master that counts from its start, a capture in Unix time.
    PTPv2Analyzer analyzer;
    add(analyzer, sync(from(kMaster, 1), {100, 0}), {1700000100, 301});
    add(analyzer, delayReq(from(kSlave, 9)), {1700000100, 500});
    add(analyzer, delayResp(from(kMaster, 9), {100, 602}, kSlave), {1700000100, 900});
    const SyncSession session = onlySession(analyzer);
    EXPECT_EQ(session.pathDelay, 201.5);
    EXPECT_DOUBLE_EQ(session.clockOffset, 1700000000.0 * 1e9);
}

TEST(PTPv2Analyzer, hostileNumbers_giveFiniteResults)
{
    const CaptureTime times[] = {{std::numeric_limits<int64_t>::max(), 999999999},
                                 {std::numeric_limits<int64_t>::min(), 0}};
    const Time masterTimes[] = {{0xFFFFFFFFFFFF, 0xFFFFFFFF}, {0, 0}};
    const int64_t corrections[] = {std::numeric_limits<int64_t>::max(), std::numeric_limits<int64_t>::min()};
    for (const CaptureTime &time : times) {
        for (const Time &masterTime : masterTimes) {
            for (const int64_t correction : corrections) {
                PTPv2Analyzer analyzer;
                add(analyzer, sync(from(kMaster, 1, correction, true), masterTime), time);
                add(analyzer, followUp(from(kMaster, 1, correction), masterTime), time);
                add(analyzer, delayReq(from(kSlave, 9, correction)), times[0]);
                add(analyzer, delayResp(from(kMaster, 9, correction), masterTimes[0], kSlave), time);
                const SyncSession session = onlySession(analyzer);
                EXPECT_TRUE(session.hasValidSync);
                EXPECT_TRUE(std::isfinite(session.clockOffset));
                EXPECT_TRUE(std::isfinite(session.pathDelay));
            }
        }
    }
}

TEST(PTPv2Analyzer, secondsAtTheEndOf48Bits_giveTheOffset)
{
    constexpr uint64_t farthest = 0xFFFFFFFFFFFF;
    PTPv2Analyzer analyzer;
    add(analyzer, sync(from(kMaster, 1), {farthest, 0}), {100, 700});
    addDelayReq(analyzer);
    add(analyzer, delayResp(from(kMaster, 9), {farthest, 499999700}, kSlave), {100, 500100000});
    EXPECT_DOUBLE_EQ(onlySession(analyzer).clockOffset, -(static_cast<double>(farthest) - 100) * 1e9);
    EXPECT_EQ(onlySession(analyzer).pathDelay, 200.0);
}

TEST(PTPv2Analyzer, hundredsOfSlavesAtOnce_areAllMatched)
{
    PTPv2Analyzer analyzer;
    addOneStepSync(analyzer);
    expectAllMatched(analyzer, 500);
}

TEST(PTPv2Analyzer, requestsThatNobodyAnswers_giveWayToTheNext)
{
    PTPv2Analyzer analyzer;
    addOneStepSync(analyzer);
    for (unsigned i = 0; i < 20000; ++i)
        add(analyzer, delayReq(from({i * uint64_t{0x9E3779B97F4A7C15}, i & 0xFFFF}, i & 0xFFFF)), {100, 0});
    expectAllMatched(analyzer, 500);
}

TEST(PTPv2Analyzer, requestWithARepeatedSequenceId_takesTheLaterOne)
{
    PTPv2Analyzer analyzer;
    addOneStepSync(analyzer);
    add(analyzer, delayReq(from(kSlave, 9)), {50, 0}); // before the slave started again
    addDelayReq(analyzer);
    addDelayResp(analyzer);
    EXPECT_EQ(onlySession(analyzer).pathDelay, 200.0);
}

TEST(PTPv2Analyzer, manySessions_keepTheirOwnState)
{
    constexpr unsigned masters = 3000;
    PTPv2Analyzer analyzer;
    for (unsigned round = 1; round <= 2; ++round) {
        for (unsigned i = 0; i < masters; ++i)
            addOneStepSync(analyzer, {i, i % 3}, i + round);
    }
    const std::vector<SyncSession> sessions = analyzer.getSyncSessions();
    ASSERT_EQ(sessions.size(), masters);
    for (unsigned i = 0; i < masters; ++i)
        ASSERT_EQ(sessions[i].lastSyncSequence, i + 2);
}
