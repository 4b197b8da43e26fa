#include "ptpv2parser/ptpv2types.h"

#include <gtest/gtest.h>

using namespace PTPv2;

TEST(PTPv2Types, clockIdentity_isLowerCaseHexadecimalWithColons)
{
    EXPECT_EQ((ClockIdentity{{0x00, 0x1B, 0x19, 0xFF, 0xFE, 0x0A, 0xBC, 0xDE}}.toString()), "00:1b:19:ff:fe:0a:bc:de");
    EXPECT_EQ(ClockIdentity{}.toString(), "00:00:00:00:00:00:00:00");
    EXPECT_EQ((ClockIdentity{{255, 255, 255, 255, 255, 255, 255, 255}}.toString()), "ff:ff:ff:ff:ff:ff:ff:ff");
}

TEST(PTPv2Types, portIdentity_isClockIdentityAndDecimalPort)
{
    const ClockIdentity clock{{0, 1, 2, 3, 4, 5, 6, 7}};
    EXPECT_EQ((PortIdentity{clock, 1}.toString()), "00:01:02:03:04:05:06:07-1");
    EXPECT_EQ((PortIdentity{clock, 65535}.toString()), "00:01:02:03:04:05:06:07-65535");
}

TEST(PTPv2Types, timestamp_hasNineDigitsOfNanoseconds)
{
    EXPECT_EQ(Timestamp{}.toString(), "0.000000000");
    EXPECT_EQ((Timestamp{1700000000, 42, 0}.toString()), "1700000000.000000042");
    EXPECT_EQ((Timestamp{5, 999999999, 0}.toString()), "5.999999999");
}

TEST(PTPv2Types, timestamp_48BitSecondsAndHostileNanoseconds)
{
    EXPECT_EQ((Timestamp{0xFFFFFFFF, 0xFFFFFFFF, 0xFFFF}.toString()), "281474976710655.4294967295");
    EXPECT_EQ((Timestamp{0, 0, 1}.secondsField()), 4294967296U);
}

TEST(PTPv2Types, identities_compareByOctetsThenPort)
{
    const ClockIdentity a{{0, 0, 0, 0, 0, 0, 0, 1}};
    const ClockIdentity b{{1, 0, 0, 0, 0, 0, 0, 0}};
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_TRUE((PortIdentity{a, 2} < PortIdentity{b, 1}));
    EXPECT_TRUE((PortIdentity{a, 1} < PortIdentity{a, 2}));
    EXPECT_FALSE((PortIdentity{a, 2} < PortIdentity{a, 2}));
    EXPECT_TRUE((PortIdentity{a, 2} == PortIdentity{a, 2}));
    EXPECT_TRUE((PortIdentity{a, 2} != PortIdentity{a, 3}));
    EXPECT_TRUE((PortIdentity{a, 2} != PortIdentity{b, 2}));
}
