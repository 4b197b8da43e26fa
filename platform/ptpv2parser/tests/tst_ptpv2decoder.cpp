#include "ptpv2messagebuilder.h"
#include "ptpv2parser/ptpv2types.h"

#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

using namespace PTPv2;
using namespace ptpv2messagebuilder;

namespace {

/// Decodes a copy of exactly `length` bytes, so that a sanitizer sees a read of one byte more.
DecodeResult decode(const Bytes &bytes, std::size_t length, PTPv2Message &out)
{
    const std::unique_ptr<uint8_t[]> exact(new uint8_t[length]);
    std::copy_n(bytes.begin(), length, exact.get());
    return decodeMessage(exact.get(), length, out);
}

DecodeResult decode(const Bytes &bytes)
{
    PTPv2Message message;
    return decode(bytes, bytes.size(), message);
}

PTPv2Message decoded(const Bytes &bytes)
{
    PTPv2Message message;
    EXPECT_EQ(decode(bytes, bytes.size(), message), DecodeResult::Ok);
    return message;
}

Bytes withLength(Bytes bytes, std::size_t messageLength)
{
    bytes[2] = static_cast<uint8_t>(messageLength >> 8);
    bytes[3] = static_cast<uint8_t>(messageLength);
    return bytes;
}

class DecoderOfType : public testing::TestWithParam<unsigned>
{};

} // namespace

TEST_P(DecoderOfType, smallestMessage_isAccepted)
{
    const PTPv2Message message = decoded(smallestMessage(GetParam()));
    EXPECT_EQ(message.header.messageType, static_cast<MessageType>(GetParam()));
    EXPECT_EQ(message.header.messageLength, kMessageLengths[GetParam()]);
}

TEST_P(DecoderOfType, everyShorterDatagram_isRefused)
{
    const Bytes bytes = smallestMessage(GetParam());
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        PTPv2Message message;
        EXPECT_EQ(decode(bytes, length, message), DecodeResult::Truncated) << length << " octets";
    }
}

TEST_P(DecoderOfType, messageLengthBelowTheMinimumOrBeyondTheDatagram_isRefused)
{
    const std::size_t minimum = kMessageLengths[GetParam()];
    const Bytes bytes = join({smallestMessage(GetParam()), Bytes(10, 0)});
    EXPECT_EQ(decode(withLength(bytes, 0)), DecodeResult::BadLength);
    EXPECT_EQ(decode(withLength(bytes, minimum - 1)), DecodeResult::BadLength);
    EXPECT_EQ(decode(withLength(bytes, minimum)), DecodeResult::Ok) << "ten octets behind the message";
    EXPECT_EQ(decode(withLength(bytes, minimum + 10)), DecodeResult::Ok) << "ten octets of suffix";
    EXPECT_EQ(decode(withLength(bytes, minimum + 11)), DecodeResult::BadLength);
    EXPECT_EQ(decode(withLength(bytes, 0xFFFF)), DecodeResult::BadLength);
}

TEST_P(DecoderOfType, otherVersions_areNotOurs)
{
    Bytes bytes = smallestMessage(GetParam());
    for (unsigned octet = 0; octet < 256; ++octet) {
        bytes[1] = static_cast<uint8_t>(octet);
        EXPECT_EQ(decode(bytes), (octet & 0x0F) == 2 ? DecodeResult::Ok : DecodeResult::NotPTPv2) << octet;
    }
}

INSTANTIATE_TEST_SUITE_P(PTPv2Decoder, DecoderOfType, testing::Range(0U, 16U));

TEST(PTPv2Decoder, versionOfAShortDatagram_isLookedAtFirst)
{
    PTPv2Message message;
    EXPECT_EQ(decode({0, 1}, 2, message), DecodeResult::NotPTPv2);
    EXPECT_EQ(decode({0, 2}, 2, message), DecodeResult::Truncated);
    EXPECT_EQ(decodeMessage(nullptr, 0, message), DecodeResult::Truncated);
}

TEST(PTPv2Decoder, header_everyField)
{
    // By hand, octet by octet: Sync, transportSpecific 8, 1588-2019 minor version 1, domain 5, twoStep and PTP
    // timescale.
    const Bytes bytes = {
        0x80, 0x12, 0x00, 0x2C, 0x05, 0x00, 0x02, 0x08, // type, version, messageLength, domainNumber, flagField
        0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0x80, 0x00, // correctionField: -1.5 ns
        0xDE, 0xAD, 0xBE, 0xEF,                         // reserved
        0x00, 0x1B, 0x19, 0xFF, 0xFE, 0xAB, 0xCD, 0xEF, 0x12, 0x34, // sourcePortIdentity
        0xFE, 0xDC, 0x00, 0xFD,                                     // sequenceId, controlField, logMessageInterval -3
        0x00, 0x01, 0x65, 0x53, 0xF1, 0x00, 0x3B, 0x9A, 0xC9, 0xFF, // originTimestamp
    };
    const PTPv2Message message = decoded(bytes);
    const PTPv2Header &header = message.header;
    EXPECT_EQ(header.getMessageType(), MessageType::Sync);
    EXPECT_EQ(header.versionPTP, 2);
    EXPECT_EQ(header.minorVersionPTP, 1);
    EXPECT_EQ(header.messageLength, 44);
    EXPECT_EQ(header.domainNumber, 5);
    EXPECT_EQ(header.flagField, 0x0208);
    EXPECT_TRUE(header.twoStepFlag());
    EXPECT_EQ(header.correctionField, -98304);
    EXPECT_EQ(header.sourcePortIdentity.toString(), "00:1b:19:ff:fe:ab:cd:ef-4660");
    EXPECT_EQ(header.sequenceId, 0xFEDC);
    EXPECT_EQ(header.logMessageInterval, -3);
    EXPECT_EQ(message.timestamp.secondsField(), 0x16553F100U);
    EXPECT_EQ(message.timestamp.toString(), "5994967296.999999999");
    EXPECT_EQ(message.captureSeconds, 0);
    EXPECT_EQ(message.captureNanoseconds, 0);
}

TEST(PTPv2Decoder, twoStepFlag_isBit1OfTheFirstFlagOctet)
{
    Bytes bytes = smallestMessage(0);
    bytes[6] = 0xFD;
    bytes[7] = 0xFF;
    EXPECT_FALSE(decoded(bytes).header.twoStepFlag());
    bytes[6] = 0x02;
    bytes[7] = 0;
    EXPECT_TRUE(decoded(bytes).header.twoStepFlag());
}

TEST(PTPv2Decoder, announce_everyField)
{
    Bytes bytes = smallestMessage(11);
    const Bytes body = {
        0x00, 0x00, 0x00, 0x00, 0x00, 0x07, 0x00, 0x00, 0x00, 0x09, // originTimestamp
        0xFF, 0xDB, 0xEE,                                           // currentUtcOffset -37, reserved
        0x80, 0x06, 0x21, 0x4E, 0x5D, 0x7F,                         // priority1, clockQuality, priority2
        0x00, 0x1B, 0x19, 0xFF, 0xFE, 0x00, 0x00, 0x64,             // grandmasterIdentity
        0x01, 0x02, 0x20,                                           // stepsRemoved, timeSource
    };
    ASSERT_EQ(body.size(), 30U);
    std::copy(body.begin(), body.end(), bytes.begin() + 34);

    const PTPv2Message message = decoded(bytes);
    EXPECT_EQ(message.timestamp.toString(), "7.000000009");
    EXPECT_EQ(message.announce.currentUtcOffset, -37);
    EXPECT_EQ(message.announce.grandmasterPriority1, 128);
    EXPECT_EQ(message.announce.grandmasterClockQuality, 0x06214E5DU);
    EXPECT_EQ(message.announce.grandmasterPriority2, 127);
    EXPECT_EQ(message.announce.grandmasterIdentity.toString(), "00:1b:19:ff:fe:00:00:64");
    EXPECT_EQ(message.announce.stepsRemoved, 0x0102);
    EXPECT_EQ(message.announce.timeSource, 0x20);
}

TEST(PTPv2Decoder, delayResp_receiveTimestampAndRequester)
{
    const PTPv2Message message = decoded(delayResp({}, {0xFFFFFFFFFFFF, 5}, {0xA1B2C3D4E5F60718, 0xFFFE}));
    EXPECT_EQ(message.timestamp.toString(), "281474976710655.000000005");
    EXPECT_EQ(message.requestingPortIdentity.toString(), "a1:b2:c3:d4:e5:f6:07:18-65534");
}

TEST(PTPv2Decoder, typesWithoutABody_haveNoTimestamp)
{
    for (const unsigned type : {2U, 3U, 4U, 7U, 10U, 12U, 13U, 15U})
        EXPECT_EQ(decoded(join({smallestMessage(type), Bytes(30, 0xEE)})).timestamp, Timestamp{}) << "type " << type;
}

TEST(PTPv2Decoder, reusedMessage_keepsNothingOfTheOneBefore)
{
    PTPv2Message message = decoded(announce({}));
    const Bytes bytes = sync({}, {1, 2});
    ASSERT_EQ(decode(bytes, bytes.size(), message), DecodeResult::Ok);
    EXPECT_EQ(message.announce.grandmasterPriority1, 0);
    EXPECT_EQ(message.announce.grandmasterIdentity, ClockIdentity{});
}
