#include "interfacenamingprofile.h"

namespace {

//! One field in the three profiles; a null pointer leaves the field null.
struct FieldRow
{
    QString InterfaceNamingProfile::*field;
    const char *huawei;
    const char *hua3;
    const char *huaweiSubModel;
};

using P = InterfaceNamingProfile;

// clang-format off
const FieldRow kFields[] = {
    // Link aggregation takes the short names on Huawei switches; only Hua3 needs the long ones there.
    {&P::downPortPrefix,         "g",                         "g",                   "GE"},
    {&P::upPortPrefix,           "xg",                        "t",                   "10GE"},
    {&P::upPort40Prefix,         "40g",                       "40g",                 "40GE"},
    {&P::linkDownPortPrefix,     "g",                         "GigabitEthernet",     "GE"},
    {&P::linkUpPortPrefix,       "xg",                        "Ten-GigabitEthernet", "10GE"},
    {&P::linkUpPort40Prefix,     "40g",                       "40-GigabitEthernet",  "40GE"},
    {&P::portSeparator,          "-",                         nullptr,               " "},
    {&P::multiPortName,          "GigabitEthernet",           "GE",                  "MultiGE"},
    {&P::tenGigExcludeKeyword,   "XGigabitEthernet",          "XGE",                 "10GE"},
    {&P::configInterfaceKeyword, "interface GigabitEthernet", "interface GE",        "interface MultiGE"},
    {&P::mirrorPortKeyword,      "GigabitEthernet",           "GigabitEthernet",     "MultiGE"},
    {&P::interfaceCommandPrefix, "interface GigabitEthernet", "interface GE",        "interface MultiGE"},
    {&P::mirrorPortName,         "GigabitEthernet",           "GE",                  "MultiGE"},
    {&P::observePortKeyword,     "Observe-port",              "Observe-port",        "Observe-port"},
    {&P::inboundKeyword,         "Inbound",                   "Inbound",             "Inbound"},
    {&P::downPortPattern,
        R"(GigabitEthernet(\d+/\d+/\d+))", R"(GE(\d+/\d+/\d+))", R"(GE(\d+/\d+/\d+))"},
    {&P::upPortPattern,
        R"(XGigabitEthernet(\d+/\d+/\d+))", R"(XGE(\d+/\d+/\d+))", R"(10GE(\d+/\d+/\d+))"},
    {&P::observePortPattern,
        R"(Observe-port\s+(\d+)\s*:\s*GigabitEthernet\d+/\d+/(\d+))",
        R"(Observe-port\s+(\d+)\s*:\s*GigabitEthernet\d+/\d+/(\d+))",
        R"(Observe-port\s+(\d+)\s*:\s*MultiGE\d+/\d+/(\d+))"},
    {&P::inboundPortPattern,
        R"(\s*\d+\s+GigabitEthernet\d+/\d+/(\d+)\s+Inbound)",
        R"(\s*\d+\s+GigabitEthernet\d+/\d+/(\d+)\s+Inbound)",
        R"(\s*\d+\s+MultiGE\d+/\d+/(\d+)\s+Inbound)"},
    {&P::autoNegInterfacePattern,
        R"(GigabitEthernet0/0/(\d+))", R"(GE0/0/(\d+))", R"(MultiGE/0/(\d+))"},
};
// clang-format on

InterfaceNamingProfile makeProfile(const char *FieldRow::*column)
{
    InterfaceNamingProfile profile;
    for (const FieldRow &row : kFields)
        profile.*row.field = QString::fromLatin1(row.*column);
    return profile;
}

} // namespace

void InterfaceNamingProfile::take(const InterfaceNamingProfile &profile)
{
    const QString separator = profile.portSeparator.isNull() ? portSeparator : profile.portSeparator;
    *this = profile;
    portSeparator = separator;
}

const InterfaceNamingProfile &huaweiNaming()
{
    static const InterfaceNamingProfile profile = makeProfile(&FieldRow::huawei);
    return profile;
}

const InterfaceNamingProfile &hua3Naming()
{
    static const InterfaceNamingProfile profile = makeProfile(&FieldRow::hua3);
    return profile;
}

const InterfaceNamingProfile &huaweiSubModelNaming()
{
    static const InterfaceNamingProfile profile = makeProfile(&FieldRow::huaweiSubModel);
    return profile;
}
